#pragma once

#include <optional>
#include <string_view>

#include "platform/xpath/Selection.h"

namespace Varnel_Tolv_XML_Creation {

/// The first node, or null, that one of the two commonest expressions selects:
///
///   [ "/" ] name { "/" name } [ "[@id='...']" ]
///   "//" name { "/" name } "[@id='...']"
///
/// with names in ASCII and no blank anywhere. Nothing is kept of the expression, so it costs little
/// more than to read it. None for any other expression, one with a prefix that is not declared, and
/// where the two indexes do not give the answer.
std::optional<TreeNode*> followPlainPath(const SelectionContext& context,
                                         std::string_view strXPath);

}  // namespace Varnel_Tolv_XML_Creation
