#include "platform/dom/Prepared.h"

#include <optional>

#include "platform/dom/DocumentState.h"

namespace Varnel_Tolv_XML_Creation {

Node selectSingleNode(const Node& objFrom, const PathView& path) {
  TreeNode* const from = DocumentState::target(objFrom);
  const auto& state = DocumentState::stateOf(objFrom);
  if (state->givesNothing(DomOperation::select)) return {};
  std::optional<TreeNode*> found;
  if (!path.steps.empty() && isDocument(from)) found = state->firstOf(path);
  if (!found) found = selectFirst(state->selectionContext(from, path.strText), path.strText);
  return DocumentState::handle(state, *found);
}

std::string_view attributeView(const Node& objElement, std::string_view strName) {
  const TreeNode* const element = DocumentState::targetElement(objElement);
  if (DocumentState::stateOf(objElement)->givesNothing(DomOperation::getAttribute)) return {};
  const TreeNode* const attribute = findAttribute(element, strName);
  return attribute ? valueOf(attribute) : std::string_view();
}

Node nodeOf(const Document& objDocument, const void* identity) {
  DocumentState::target(objDocument);
  auto* const node = static_cast<TreeNode*>(const_cast<void*>(identity));
  return DocumentState::handle(DocumentState::stateOf(objDocument), node);
}

}  // namespace Varnel_Tolv_XML_Creation
