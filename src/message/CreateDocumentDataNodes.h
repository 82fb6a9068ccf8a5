#pragma once

#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Puts a copy of every node that `strNodeXPath` selects in the message under the first that
/// `strParentXPath` selects there, at the end or before the first sibling that the `insertbefore`
/// of the rule `objDocNode` finds. No such parent is a success without effect.
///
/// Errors: SVC_RET_XML_CREATION_CREATE_DOC_NODES_FAILED when there is an `insertbefore` that finds
/// nothing and does not allow appending. Copies already placed stay.
Acknowledge CreateDocumentDataNodes(const Session& session, const Document& objSendXML,
                                    std::string_view strParentXPath, std::string_view strNodeXPath,
                                    const Node& objDocNode);

}  // namespace Varnel_Tolv_XML_Creation
