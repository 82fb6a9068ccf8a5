#pragma once

#include <string>

#include "config/Session.h"

namespace Varnel_Tolv_XML_Creation {

/// Offers every element at or below `objNode` that has no content to `checkNodeForRemoval`,
/// children before their parent. `strPath` is the element path of `objNode`'s parent. True when
/// `objNode` itself is empty and its parent should offer it. Has no handler: run-time errors pass
/// to the caller.
bool RemoveEmptyElements(const Session& session, const Node& objNode,
                         const Document& objReferenceXML, std::string strPath);

}  // namespace Varnel_Tolv_XML_Creation
