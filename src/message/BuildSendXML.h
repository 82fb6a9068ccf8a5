#pragma once

#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Builds the message in `objSendXML` from the parked form: loads the template into it and the
/// reference document, object mapper and schema type mapper beside it (all by file name), carries
/// every field and table over in document order, writes the document data and removes the empty
/// elements that may go.
///
/// Errors: SVC_RET_XML_CREATION_PROTFLD_LIST_SELECTION_FAILED, _ROOT_NODE_SELECTION_FAILED, those
/// of `LoadTemplateXML`, `setSelectionNamespaces` and the steps, run-time error 91 when the
/// document data gives no result, and what the clean-up raises; the first one ends the build and
/// the message stays as far as it was built.
Acknowledge BuildSendXML(const Session& session, const Document& objParkXML,
                         std::string_view strTemplateXML, std::string_view strMsgObjectXML,
                         std::string_view strSchemaTypeMapperXML,
                         std::string_view strReferenceXmlPath, const Document& objSendXML,
                         const Node& objProtocolInfo);

}  // namespace Varnel_Tolv_XML_Creation
