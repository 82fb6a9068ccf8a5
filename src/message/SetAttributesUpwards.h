#pragma once

#include <span>
#include <string_view>

#include "platform/dom/Node.h"

namespace Varnel_Tolv_XML_Creation {

/// Sets the attributes named in `strNames`, a list joined by "~", on an element, to the values at
/// the same places of the list `strValues`; each element above it, up to the top of its fragment,
/// gets the first two only. Has no handler: run-time error 9 for a list of values that is too
/// short. It ends before `objMarked`, which has got them already, as has all above it.
void SetAttributesUpwards(const Node& objNode, std::string_view strNames,
                          std::string_view strValues);
void SetAttributesUpwards(const Node& objNode, std::span<const std::string_view> names,
                          std::span<const std::string_view> values, const Node& objMarked);

}  // namespace Varnel_Tolv_XML_Creation
