#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// How many elements of one id are quickly looked at, such as the rows of all tables that have it.
inline constexpr std::size_t kFewCandidates = 64;

/// The elements of a tree by the value of their attribute `id` (no namespace), each list in
/// document order. It is kept sorted by the hashes of the values, so a list is found by halving.
class IdIndex {
 public:
  /// Indexes all that is below `document`.
  void build(const TreeNode* document);

  /// Empty when there is none.
  std::span<TreeNode* const> find(std::string_view strId) const;

 private:
  std::vector<std::size_t> hashes_;  // of the elements at the same places
  std::vector<TreeNode*> elements_;
};

}  // namespace Varnel_Tolv_XML_Creation
