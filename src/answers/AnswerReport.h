#pragma once

#include <string_view>

#include "config/AnswerLog.h"
#include "config/Session.h"

namespace Varnel_Tolv_XML_Creation {

/// The files of a run, as they were given to it.
struct RuleFiles {
  std::string_view strObjectMapper;
  std::string_view strSchemaTypes;
  std::string_view strHiddenFields;
};

/// Fills the losses of the report, and its journal where the log has one, with what the log tells.
/// Both come from the same list, so they cannot disagree. The log, of a run that is over, is
/// concluded.
void reportAnswers(AnswerLog& log, const Session& session, const RuleFiles& files, bool blnSubmit,
                   RunReport& report);

}  // namespace Varnel_Tolv_XML_Creation
