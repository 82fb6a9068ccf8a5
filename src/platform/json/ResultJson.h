#pragma once

#include <string>
#include <string_view>

#include "../../result/Acknowledge.h"
#include "../../result/Export.h"
#include "../../result/RunReport.h"
#include "../../result/ValidationErrors.h"

namespace Varnel_Tolv_XML_Creation {

/// Whether and how the report of a run stands in its result, and how that is written.
struct ReportInResult {
  const RunReport* report = nullptr;  // null: it does not
  bool blnJournal = false;            // whether its journal does too
  std::string_view strFolder = {};    // the deployment's: files below it are told relative to it
  // The file of the object list, which is told of what that decides; empty where the caller passed
  // a document of its own.
  std::string_view strObjectList = {};
  bool blnCompact = false;  // on one line without blanks, for those who keep many
};

/// The result of a run as one JSON object and a line end. The order of its keys is fixed; what is
/// not UTF-8 becomes U+FFFD.
VARNEL_EXPORT std::string resultJson(const Acknowledge& objAck,
                                     const ValidationUserErrors& colUserErrors,
                                     const ValidationIntErrors& colInternalErrors,
                                     const ReportInResult& reported = {});

}  // namespace Varnel_Tolv_XML_Creation
