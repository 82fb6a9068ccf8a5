#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// The paths of those elements of `objMessage` that `wanted` names by their identity, by that
/// identity: "/m:Case[1]/m:Row[3]", each step with the element's position among its siblings of the
/// same qualified name. An element that does not stand in the message has none. One walk, in which
/// the children of each element are counted once: linear in the message.
std::unordered_map<const void*, std::string> messagePlaces(
    const Document& objMessage, const std::unordered_set<const void*>& wanted);

}  // namespace Varnel_Tolv_XML_Creation
