#pragma once

#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Whether the reference document calls the message element at `strXpath` mandatory, in
/// `blnMandatory`. An element that is a `choice` is so only when the form has the question. A path
/// equal to `strStopXpath` is not looked up and not mandatory. Only the element itself is tested,
/// never those above it.
///
/// Errors: SVC_RET_XML_CREATION_REF_XML_OBJ_MISSING when the reference document lacks the element.
Acknowledge isXpathMandatory(const Session& session, const Document& objReferenceXml,
                             std::string_view strXpath, std::string_view strStopXpath,
                             std::string_view strQuestionId, const Document& objParkXml,
                             bool& blnMandatory);

}  // namespace Varnel_Tolv_XML_Creation
