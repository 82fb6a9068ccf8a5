#include "platform/dom/Node.h"

#include <utility>

#include "platform/dom/DocumentState.h"
#include "platform/text/ShortText.h"
#include "platform/xml/CopyTree.h"
#include "platform/xml/SerialiseXml.h"
#include "platform/xml/XmlCharacters.h"

// What reads a document. What changes it stands in NodeChanges.cpp.

namespace Varnel_Tolv_XML_Creation {

bool operator==(const Node& left, const Node& right) noexcept {
  // A node that came from a fragment has handles of that and of the document where it stands now.
  return left.node_ == right.node_ && (left.node_ || left.state_ == right.state_);
}

std::size_t Node::lineNumber() const {
  const TreeNode* const node = DocumentState::target(*this);
  return isElement(node) ? asParent(node)->lngLine : 0;
}

NodeType Node::nodeType() const {
  switch (DocumentState::target(*this)->kind) {
    case NodeKind::element:
      return NodeType::element;
    case NodeKind::attribute:
      return NodeType::attribute;
    case NodeKind::cdata:
      return NodeType::cdataSection;
    case NodeKind::instruction:
      return NodeType::processingInstruction;
    case NodeKind::comment:
      return NodeType::comment;
    case NodeKind::document:
      return NodeType::document;
    case NodeKind::documentType:
      return NodeType::documentType;
    default:
      return NodeType::text;
  }
}

std::string Node::nodeName() const {
  const TreeNode* node = DocumentState::target(*this);
  switch (nodeType()) {
    case NodeType::text:
      return "#text";
    case NodeType::cdataSection:
      return "#cdata-section";
    case NodeType::comment:
      return "#comment";
    case NodeType::document:
      return "#document";
    default:
      return std::string(node->name->strQualified);
  }
}

std::string Node::baseName() const { return std::string(withoutPrefix(nodeName())); }

std::string Node::namespaceUri() const {
  const TreeNode* node = DocumentState::target(*this);
  const bool blnNamed = isElement(node) || isAttribute(node);
  return blnNamed ? std::string(node->name->uri->strText) : std::string();
}

std::string Node::text() const {
  const TreeNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::readText)) return {};
  return textOf(node);
}

bool Node::hasText() const {
  const TreeNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::readText)) return false;
  return Varnel_Tolv_XML_Creation::hasText(node);
}

std::string Node::xml() const {
  const TreeNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::serialise)) return {};
  return serialiseXml(state_->content().tree, node);
}

bool Node::hasChildNodes() const { return firstChild(DocumentState::target(*this)) != nullptr; }

std::optional<NodeList> Node::childNodes() const {
  const TreeNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::childNodes)) return std::nullopt;
  std::vector<TreeNode*> nodes;
  if (isParent(node)) nodes.reserve(node->lngSize);
  for (TreeNode* child = firstChild(node); child; child = child->next) nodes.push_back(child);
  return NodeList(state_, std::move(nodes));
}

NodeList Node::emptyNodes() const {
  TreeNode* const top = DocumentState::target(*this);
  std::vector<TreeNode*> nodes;
  for (TreeNode* node = top; node; node = nextBelow(node, top)) {
    const TreeNode* const only = firstChild(node);
    const bool blnEmpty = only ? isText(only) && only->lngSize == 0 && !only->next
                               : !isText(node) && !Varnel_Tolv_XML_Creation::hasText(node);
    if (blnEmpty) nodes.push_back(node);
  }
  return NodeList(state_, std::move(nodes));
}

Node Node::parentNode() const {
  const TreeNode* node = DocumentState::target(*this);
  if (isAttribute(node) || !node->parent) return {};
  if (state_->blnFragment && isDocument(node->parent)) return {};
  return DocumentState::handle(state_, node->parent);
}

std::optional<std::string> Node::getAttribute(std::string_view strName) const {
  const TreeNode* element = DocumentState::targetElement(*this);
  if (state_->givesNothing(DomOperation::getAttribute)) return std::nullopt;
  const TreeNode* attribute = findAttribute(element, strName);
  if (!attribute) return std::nullopt;
  return std::string(valueOf(attribute));
}

std::vector<NodeAttribute> Node::attributes() const {
  const TreeNode* element = DocumentState::targetElement(*this);
  if (state_->givesNothing(DomOperation::getAttribute)) return {};
  std::vector<NodeAttribute> attributes;
  for (const TreeNode* item = asParent(element)->attributes; item; item = item->next) {
    if (isAttribute(item)) {
      attributes.push_back({std::string(item->name->strQualified), std::string(valueOf(item))});
      continue;
    }
    const std::string strPrefix(item->name->prefix->strText);
    attributes.push_back({strPrefix.empty() ? "xmlns" : "xmlns:" + strPrefix,
                          std::string(item->name->uri->strText)});
  }
  return attributes;
}

Node Node::getNamedItem(std::string_view strName) const {
  const TreeNode* element = DocumentState::targetElement(*this);
  if (state_->givesNothing(DomOperation::getAttribute)) return {};
  return DocumentState::handle(state_, findAttribute(element, strName));
}

std::optional<NodeList> Node::selectNodes(std::string_view strXPath) const {
  TreeNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::select)) return std::nullopt;
  return NodeList(state_, select(state_->selectionContext(node, strXPath), strXPath));
}

Node Node::selectSingleNode(std::string_view strXPath) const {
  TreeNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::select)) return {};
  return DocumentState::handle(state_,
                               selectFirst(state_->selectionContext(node, strXPath), strXPath));
}

std::optional<NodeList> Node::getElementsByTagName(std::string_view strName) const {
  const TreeNode* top = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::getElementsByTagName)) return std::nullopt;
  std::vector<TreeNode*> nodes;
  if (firstChild(top)) {
    nodes.reserve(top->lngSize);  // mostly they are its children
    for (TreeNode* node = firstChild(top); node; node = nextBelow(node, top)) {
      if (isElement(node) && (strName == "*" || isSame(node->name->strQualified, strName))) {
        nodes.push_back(node);
      }
    }
  }
  return NodeList(state_, std::move(nodes));
}

Node Node::cloneNode(bool blnDeep) const {
  const TreeNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::cloneNode)) return {};
  if (node->kind == NodeKind::documentType) refuse("A document type is not copied by itself.");

  auto state = std::make_shared<DocumentState>(state_->settingsOfCopy(), !isDocument(node));
  state->selectionNamespaces = state_->selectionNamespaces;
  state->countTo(state_->budget());
  Tree& tree = state->changeable().tree;
  if (isAttribute(node)) return Node(state, copyNode(node, true, tree));
  if (!isDocument(node)) {
    TreeNode* const copy = copyNode(node, blnDeep, tree);
    linkNode(tree.document(), copy, nullptr);
    return Node(state, copy);
  }
  for (const TreeNode* child = blnDeep ? node->first : nullptr; child; child = child->next) {
    linkNode(tree.document(), copyNode(child, true, tree), nullptr);
  }
  return Node(state, nullptr);
}

Node Node::cloneFor(const Node& objTarget, bool blnDeep) const {
  const TreeNode* node = DocumentState::target(*this);
  DocumentState::target(objTarget);
  if (state_->givesNothing(DomOperation::cloneNode)) return {};
  if (!isElement(node)) refuse("Only an element is copied for another document.");
  // In the same document it is a node like one just created.
  if (state_ == objTarget.state_) {
    return Node(state_, copyNode(node, blnDeep, state_->changeable().tree, true));
  }
  auto state = std::make_shared<DocumentState>(state_->settingsOfCopy(), objTarget.state_);
  state->selectionNamespaces = state_->selectionNamespaces;
  DocumentContent& content = state->changeable();
  TreeNode* const copy = copyNode(node, blnDeep, content.tree, &content == &state_->content());
  return Node(std::move(state), copy);
}

Node NodeList::item(std::size_t lngIndex) const {
  if (lngIndex >= nodes_.size()) return {};
  return DocumentState::handle(state_, nodes_[lngIndex]);
}

}  // namespace Varnel_Tolv_XML_Creation
