#include "platform/dom/NodePattern.h"

#include <vector>

#include "platform/dom/DocumentState.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

bool NodePattern::isPossible(const Node& objElement) {
  DocumentState::targetElement(objElement);
  return DocumentState::stateOf(objElement)->settings.faults == nullptr;
}

std::optional<NodePattern> NodePattern::of(const Node& objElement, std::span<const Place> places,
                                           std::size_t lngWritten) {
  const TreeNode* const element = DocumentState::targetElement(objElement);
  DocumentState& state = *DocumentState::stateOf(objElement);
  TreePattern::Places valueOf;
  for (const auto& [objLeaf, lngValue] : places) {
    const TreeNode* const leaf = DocumentState::target(objLeaf);
    if (!isAttribute(leaf) && !isText(leaf)) return std::nullopt;
    if (valueOf.try_emplace(leaf, lngValue).first->second != lngValue) return std::nullopt;
  }
  TreePattern pattern(element, valueOf, state.changeable().tree);
  if (pattern.places() != valueOf.size()) return std::nullopt;
  return NodePattern(objElement, std::move(pattern), lngWritten);
}

Node NodePattern::copy(std::span<const std::string_view> values, std::span<Node> filled) const {
  const auto& state = DocumentState::stateOf(objElement_);
  for (const std::string_view strValue : values) requireXmlText(strValue);
  state->grow(pattern_.bytes(values) + lngWritten_);
  std::vector<TreeNode*> leaves(filled.size());
  TreeNode* const element = pattern_.copy(values, leaves, state->changeable().tree);
  for (std::size_t lngValue = 0; lngValue < filled.size(); ++lngValue) {
    if (leaves[lngValue]) filled[lngValue] = DocumentState::handle(state, leaves[lngValue]->parent);
  }
  return DocumentState::handle(state, element);
}

}  // namespace Varnel_Tolv_XML_Creation
