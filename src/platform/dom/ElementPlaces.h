#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/dom/Node.h"

// Where elements stand in a document, told by numbers, without a list of all that are in it.

namespace Varnel_Tolv_XML_Creation {

struct TreeName;

/// The elements at and below `objTop` with these numbers in document order, which ascend; that of
/// `objTop` is 0. Nothing for a number that none has. Cost: one look at each node.
std::vector<Node> elementsAt(const Node& objTop, std::span<const std::size_t> numbers);

/// Counts the elements among the children of a node by their names as written. Nobody may change
/// these children meanwhile.
class ChildPositions {
 public:
  explicit ChildPositions(const Node& objParent);

  /// The position, from 1, of a child element among those of its name. It has to come behind those
  /// that were asked for before, else 0: each child is looked at once.
  std::size_t of(const Node& objChild);

 private:
  Node objParent_;
  const TreeNode* next_;
  const TreeName* name_ = nullptr;  // of the element that was counted last,
  std::size_t lngCounted_ = 0;      // and how many have it so far
  std::unordered_map<std::string_view, std::size_t> counts_;  // of the names before it
};

}  // namespace Varnel_Tolv_XML_Creation
