#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dom/Node.h"
#include "platform/xml/TreePattern.h"

namespace Varnel_Tolv_XML_Creation {

/// An element that is copied again and again, with all that is below it, where some attributes and
/// texts have other values in each copy. What happens to it later changes no copy.
class NodePattern {
 public:
  /// An attribute or a text, and which of the values its copies get.
  struct Place {
    Node objLeaf;
    std::size_t lngValue = 0;
  };

  /// Whether copies may be made of an element: not in a document whose operations a test makes
  /// fail, since a copy needs none of them.
  static bool isPossible(const Node& objElement);

  /// None when a place is no attribute or text at or below the element, or is told twice with two
  /// values. Each copy counts as so many bytes more that were written: what in it is not the
  /// element's from the start.
  static std::optional<NodePattern> of(const Node& objElement, std::span<const Place> places,
                                       std::size_t lngWritten = 0);

  /// A copy in the same document, which stands nowhere, with these values. As where each is
  /// written by itself, kXmlFailure, and no copy, for one that XML cannot hold and for more text
  /// than may be written to a document.
  Node copy(std::span<const std::string_view> values) const;

  /// Into which elements of a copy its first `lngValues` values were put, as texts or attributes,
  /// wherever these are by now; Nothing for one without a place.
  std::vector<Node> elementsOf(const Node& objCopy, std::size_t lngValues) const;

 private:
  NodePattern(Node objElement, TreePattern pattern, std::size_t lngWritten)
      : objElement_(std::move(objElement)), pattern_(std::move(pattern)), lngWritten_(lngWritten) {}

  Node objElement_;
  TreePattern pattern_;
  std::size_t lngWritten_;
};

}  // namespace Varnel_Tolv_XML_Creation
