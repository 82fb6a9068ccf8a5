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

Node NodePattern::copy(std::span<const std::string_view> values) const {
  const auto& state = DocumentState::stateOf(objElement_);
  for (const std::string_view strValue : values) requireXmlText(strValue);
  state->grow(pattern_.bytes(values) + lngWritten_);
  return DocumentState::handle(state, pattern_.copy(values, state->changeable().tree));
}

std::vector<Node> NodePattern::elementsOf(const Node& objCopy, std::size_t lngValues) const {
  std::vector<TreeNode*> elements(lngValues);
  pattern_.elementsOf(DocumentState::target(objCopy), elements);
  std::vector<Node> nodes;
  nodes.reserve(lngValues);
  for (TreeNode* const element : elements) {
    nodes.push_back(DocumentState::handle(DocumentState::stateOf(objCopy), element));
  }
  return nodes;
}

}  // namespace Varnel_Tolv_XML_Creation
