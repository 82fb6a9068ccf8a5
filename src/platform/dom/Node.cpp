#include "platform/dom/Node.h"

#include <utility>

#include "platform/dom/DocumentState.h"
#include "platform/xml/CopyXml.h"
#include "platform/xml/SerialiseXml.h"
#include "platform/xml/XmlCharacters.h"
#include "result/RuntimeError.h"

// What reads a document. What changes it stands in NodeChanges.cpp.

namespace Varnel_Tolv_XML_Creation {

namespace {

std::vector<void*> erased(const std::vector<xmlNode*>& nodes) {
  return {nodes.begin(), nodes.end()};
}

}  // namespace

bool operator==(const Node& left, const Node& right) noexcept {
  return left.state_ == right.state_ && left.node_ == right.node_;
}

NodeType Node::nodeType() const {
  switch (DocumentState::target(*this)->type) {
    case XML_ELEMENT_NODE:
      return NodeType::element;
    case XML_ATTRIBUTE_NODE:
      return NodeType::attribute;
    case XML_CDATA_SECTION_NODE:
      return NodeType::cdataSection;
    case XML_PI_NODE:
      return NodeType::processingInstruction;
    case XML_COMMENT_NODE:
      return NodeType::comment;
    case XML_DOCUMENT_NODE:
      return NodeType::document;
    case XML_DTD_NODE:
      return NodeType::documentType;
    default:
      return NodeType::text;
  }
}

std::string Node::nodeName() const {
  const xmlNode* node = DocumentState::target(*this);
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
      return qualifiedName(node);
  }
}

std::string Node::baseName() const { return std::string(withoutPrefix(nodeName())); }

std::string Node::text() const {
  const xmlNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::readText)) return {};
  return textOf(node);
}

bool Node::hasText() const {
  const xmlNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::readText)) return false;
  return Varnel_Tolv_XML_Creation::hasText(node);
}

std::string Node::xml() const {
  const xmlNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::serialise)) return {};
  return serialiseXml(node);
}

bool Node::hasChildNodes() const { return firstChild(DocumentState::target(*this)) != nullptr; }

std::optional<NodeList> Node::childNodes() const {
  const xmlNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::childNodes)) return std::nullopt;
  std::vector<void*> nodes;
  for (xmlNode* child = firstChild(node); child; child = child->next) nodes.push_back(child);
  return NodeList(state_, std::move(nodes));
}

Node Node::parentNode() const {
  const xmlNode* node = DocumentState::target(*this);
  if (isAttribute(node) || !node->parent) return {};
  if (state_->blnFragment && isDocument(node->parent)) return {};
  return DocumentState::handle(state_, node->parent);
}

std::optional<std::string> Node::getAttribute(std::string_view strName) const {
  const xmlNode* element = DocumentState::targetElement(*this);
  if (state_->givesNothing(DomOperation::getAttribute)) return std::nullopt;
  xmlAttr* attribute = findAttribute(element, strName);
  if (!attribute) return std::nullopt;
  return textOf(asNode(attribute));
}

Node Node::getNamedItem(std::string_view strName) const {
  const xmlNode* element = DocumentState::targetElement(*this);
  if (state_->givesNothing(DomOperation::getAttribute)) return {};
  return DocumentState::handle(state_, asNode(findAttribute(element, strName)));
}

std::optional<NodeList> Node::selectNodes(std::string_view strXPath) const {
  xmlNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::select)) return std::nullopt;
  return NodeList(state_, erased(select(state_->selectionContext(node, strXPath), strXPath)));
}

Node Node::selectSingleNode(std::string_view strXPath) const {
  xmlNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::select)) return {};
  return DocumentState::handle(state_,
                               selectFirst(state_->selectionContext(node, strXPath), strXPath));
}

std::optional<NodeList> Node::getElementsByTagName(std::string_view strName) const {
  const xmlNode* top = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::getElementsByTagName)) return std::nullopt;
  std::vector<void*> nodes;
  if (firstChild(top)) {
    for (xmlNode* node = firstChild(top); node; node = nextBelow(node, top)) {
      if (isElement(node) && (strName == "*" || hasQualifiedName(node, strName))) {
        nodes.push_back(node);
      }
    }
  }
  return NodeList(state_, std::move(nodes));
}

Node Node::cloneNode(bool blnDeep) const {
  const xmlNode* node = DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::cloneNode)) return {};
  if (node->type == XML_DTD_NODE) refuse("A document type is not copied by itself.");

  auto state = std::make_shared<DocumentState>(state_->settings, !isDocument(node));
  state->selectionNamespaces = state_->selectionNamespaces;
  xmlDoc* document = state->document.get();
  if (isAttribute(node)) {
    state->reserveDetached(1);
    xmlNode* copy = copyXml(node, true, document, state->namespaces).release();
    state->detach(copy);
    return Node(std::move(state), copy);
  }
  if (!isDocument(node)) {
    xmlNode* copy = copyXml(node, blnDeep, document, state->namespaces).release();
    linkNode(asNode(document), copy, nullptr);
    return Node(std::move(state), copy);
  }
  for (const xmlNode* child = blnDeep ? node->children : nullptr; child; child = child->next) {
    if (child->type == XML_DTD_NODE) {
      copyDocumentType(reinterpret_cast<const xmlDtd*>(child), document);
    } else {
      xmlNode* copy = copyXml(child, true, document, state->namespaces).release();
      linkNode(asNode(document), copy, nullptr);
    }
  }
  return Node(std::move(state), nullptr);
}

Node NodeList::item(std::size_t lngIndex) const {
  if (lngIndex >= nodes_.size()) return {};
  return DocumentState::handle(state_, static_cast<xmlNode*>(nodes_[lngIndex]));
}

}  // namespace Varnel_Tolv_XML_Creation
