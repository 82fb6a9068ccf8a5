#pragma once

#include <string>
#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Builds a detail block below `strParentXPath` as the parameters of `objAction` say: "create"
/// makes a node path, "copy" copies what the path given selects below `strNodeXPath`. An `under`
/// other than "parent" moves the place of a copy one path down, for all later copies too. Does
/// nothing when `strNodeXPath` selects nothing. `objDocNode` is handed to
/// `CreateDocumentDataNodes`.
///
/// Errors: those of `buildXPath` and `CreateDocumentDataNodes`; the first one ends the work.
Acknowledge makeHCPDetailType(const Session& session, const Document& objXmlDocument,
                              const Node& objAction, std::string strParentXPath,
                              std::string_view strNodeXPath, const Node& objDocNode);

}  // namespace Varnel_Tolv_XML_Creation
