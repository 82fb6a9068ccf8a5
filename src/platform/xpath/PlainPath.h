#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/xml/TreeLimits.h"
#include "platform/xpath/Selection.h"

namespace Varnel_Tolv_XML_Creation {

class ChildNameIndex;

// The commonest expressions, with names in ASCII and no blank anywhere:
//
//   [ "/" | "//" ] name { "/" name } [ id ]
//   [ "/" | "//" ] { name "/" } name id "/" name id            id = "[@id='...']"
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

/// With more names an expression is not one of these.
inline constexpr std::size_t kMostPlainNames = kMaxDepth;  // no document is deeper

/// Takes "/" and a name from the beginning of an expression: the name as it is written, empty where
/// the expression goes on with anything else.
std::string_view takeStep(std::string_view& strXPath) noexcept;

/// Goes from `start` to its first child of the first name, given as its `plain` (null: the document
/// has none), and so on. Where a node has no such child, null, which is an answer only if no name
/// on the way had a second child to try; else none.
std::optional<TreeNode*> firstByNames(TreeNode* start, std::span<const TreeName* const> names,
                                      const ChildNameIndex& childNames);

}  // namespace Varnel_Tolv_XML_Creation
