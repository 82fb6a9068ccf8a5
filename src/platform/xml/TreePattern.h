#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// An element with all that is below it, ready to be copied in its own document many times with
/// other values in some leaves. The nodes lie one behind the other in one image, linked with one
/// another there: a copy is the bytes of the image, its links moved by the distance.
class TreePattern {
 public:
  /// Which of the values the copies of a leaf get: of an attribute, or a text.
  using Places = std::unordered_map<const TreeNode*, std::size_t>;

  /// Of `element`, which belongs to the tree. It is not looked at again.
  TreePattern(const TreeNode* element, const Places& places, Tree& tree);

  TreePattern(TreePattern&&) = default;
  TreePattern& operator=(TreePattern&&) = default;

  /// In how many leaves of a copy values go.
  std::size_t places() const noexcept { return filled_.size(); }

  /// The bytes that these values take in it.
  std::size_t bytes(std::span<const std::string_view> values) const noexcept;

  /// A copy, without a parent.
  TreeNode* copy(std::span<const std::string_view> values, Tree& tree) const;

  /// For each of the first values of a copy an element which it was put into, as a text or an
  /// attribute, wherever that is by now; null for a value without a place.
  void elementsOf(TreeNode* copy, std::span<TreeNode*> elements) const;

 private:
  struct Filled {
    std::size_t lngOffset;  // of the leaf in the image, in bytes
    std::size_t lngValue;
  };

  TreeNode* add(const TreeNode* source, const Places& places, Tree& tree);

  std::vector<std::uint64_t> image_;  // which never grows: the links are addresses in it
  std::size_t lngUsed_ = 0;           // of its bytes
  std::size_t lngNodes_ = 0;
  std::size_t lngSharedBytes_ = 0;  // of the values that all copies have
  std::vector<Filled> filled_;
};

}  // namespace Varnel_Tolv_XML_Creation
