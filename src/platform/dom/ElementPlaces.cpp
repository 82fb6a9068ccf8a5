#include "platform/dom/ElementPlaces.h"

#include <utility>

#include "platform/dom/DocumentState.h"

namespace Varnel_Tolv_XML_Creation {

std::vector<Node> elementsAt(const Node& objTop, std::span<const std::size_t> numbers) {
  TreeNode* const top = DocumentState::targetElement(objTop);
  std::vector<Node> elements;
  elements.reserve(numbers.size());
  TreeNode* node = top;
  std::size_t lngNumber = 0;  // of `node`, an element
  for (const std::size_t lngWanted : numbers) {
    while (node && lngNumber < lngWanted) {
      node = nextBelow(node, top);
      if (node && isElement(node)) ++lngNumber;
    }
    elements.push_back(DocumentState::handle(DocumentState::stateOf(objTop), node));
  }
  return elements;
}

ChildPositions::ChildPositions(const Node& objParent)
    : objParent_(objParent), next_(firstChild(DocumentState::target(objParent))) {}

std::size_t ChildPositions::of(const Node& objChild) {
  const TreeNode* const child = DocumentState::target(objChild);
  while (next_) {
    const TreeNode* const node = std::exchange(next_, next_->next);
    if (!isElement(node)) continue;
    if (node->name != name_) {  // mostly a row follows another
      if (name_) counts_[name_->strQualified] = lngCounted_;
      name_ = node->name;
      lngCounted_ = counts_[name_->strQualified];
    }
    ++lngCounted_;
    if (node == child) return lngCounted_;
  }
  return 0;
}

}  // namespace Varnel_Tolv_XML_Creation
