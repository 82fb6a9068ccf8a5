#pragma once

#include <string_view>

#include "config/Session.h"
#include "deployment/NodePath.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Makes the chain of elements `strNodePath` (names joined by "/", each with a registered namespace
/// prefix or registered as a whole) below the first element that `strParentXPath` selects in
/// `objXmlDocument`. Elements on the way are used where they exist; the last one is always new, the
/// last child of its parent, and comes back in `objCurrentNode`.
///
/// Errors: SVC_RET_XML_CREATION_PARENT_NODE_MISSING, _NODE_PATH_MISSING, _NODE_PATH_ERROR,
/// _APPEND_NODE_TO_PARENT_FAILED. The result is that of the last namespace lookup, so it may be a
/// failure although the chain was made; an `objCurrentNode` that was Nothing before the call tells.
Acknowledge buildXPath(const Session& session, std::string_view strParentXPath,
                       std::string_view strNodePath, const Document& objXmlDocument,
                       Node& objCurrentNode);

/// The same for a place that is known.
Acknowledge buildXPath(const Session& session, const NodePath& path, const Document& objXmlDocument,
                       Node& objCurrentNode);

}  // namespace Varnel_Tolv_XML_Creation
