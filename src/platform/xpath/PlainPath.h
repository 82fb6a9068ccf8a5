#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/xpath/Selection.h"

namespace Varnel_Tolv_XML_Creation {

// The commonest expressions, with names in ASCII and no blank anywhere:
//
//   [ "/" | "//" ] name { "/" name } [ "[@id='...']" ]
//
// Nothing is kept of the expression, so a selection costs little more than to read it. None for any
// other expression, one with a prefix that is not declared, and where the indexes do not give the
// answer.

/// The first node that is selected, or null.
std::optional<TreeNode*> firstOfPlainPath(const SelectionContext& context,
                                          std::string_view strXPath);

/// All of them, in document order.
std::optional<std::vector<TreeNode*>> allOfPlainPath(const SelectionContext& context,
                                                     std::string_view strXPath);

}  // namespace Varnel_Tolv_XML_Creation
