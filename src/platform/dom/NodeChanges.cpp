#include <algorithm>
#include <new>
#include <utility>

#include "platform/dom/DocumentState.h"
#include "platform/dom/Node.h"
#include "platform/xml/CopyXml.h"
#include "platform/xml/XmlCharacters.h"
#include "result/RuntimeError.h"

// What changes a document. Each operation does first what can fail (checks, memory) and then what
// cannot, so that a failure leaves everything as it was.

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The index of ids tells of elements by their attribute `id` and refers to its very text.
void beforeAttributeChange(DocumentState& state, std::string_view strName) {
  if (strName == "id") state.idIndex.drop();
}

/// Whether that index may tell of `top` or of what is below it. What it does not tell of comes and
/// goes without changing it.
bool holdsId(const xmlNode* top) {
  for (const xmlNode* node = top; node; node = nextBelow(node, top)) {
    if (!isElement(node)) continue;
    for (const xmlAttr* item = node->properties; item; item = item->next) {
      if (view(item->name) == "id") return true;
    }
  }
  return false;
}

void setValue(DocumentState& state, xmlAttr* attribute, std::string_view strValue) {
  OwnedXmlNode value = newTextNode(attribute->doc, strValue);
  const xmlNode* const before = attribute->children;
  state.grow(strValue.size(), before ? view(before->content).size() : 0);
  beforeAttributeChange(state, view(attribute->name));
  xmlFreeNodeList(attribute->children);  // no handle ever points below an attribute
  value->parent = asNode(attribute);
  attribute->children = attribute->last = value.release();
}

void setContent(DocumentState& state, xmlNode* element, std::string_view strText) {
  OwnedXmlNode value = newTextNode(element->doc, strText);
  state.grow(strText.size());  // what it replaces stays for the handles to it
  std::size_t lngChildren = 0;
  bool blnIds = false;
  for (const xmlNode* child = element->children; child; child = child->next) {
    ++lngChildren;
    blnIds = blnIds || holdsId(child);
  }
  state.reserveDetached(lngChildren);

  if (blnIds) state.idIndex.drop();
  state.childNames.emptying(element);
  while (element->children) state.detach(element->children);
  linkNode(element, value.release(), nullptr);
}

void setCharacters(DocumentState& state, xmlNode* node, std::string_view strText) {
  OwnedXmlNode fresh = newTextNode(node->doc, strText);
  state.grow(strText.size(), view(node->content).size());
  std::swap(node->content, fresh->content);
}

bool hasElementChild(const xmlNode* document, const xmlNode* except) {
  for (const xmlNode* child = document->children; child; child = child->next) {
    if (isElement(child) && child != except) return true;
  }
  return false;
}

/// Whether a document type stands at or after `before` among the children of a document.
bool precedesDocumentType(const xmlNode* before) {
  while (before && before->type != XML_DTD_NODE) before = before->next;
  return before != nullptr;
}

/// How many levels of elements `top` and what is below it make; no more than `limit` + 1 are
/// counted.
int levels(const xmlNode* top, int limit) {
  int deepest = 0;
  int level = 0;  // of `node`'s parent
  const xmlNode* node = top;
  while (true) {
    if (isElement(node)) deepest = std::max(deepest, level + 1);
    if (deepest > limit) return deepest;
    if (const xmlNode* child = firstChild(node)) {
      ++level;
      node = child;
      continue;
    }
    while (node != top && !node->next) {
      --level;
      node = node->parent;
    }
    if (node == top) return deepest;
    node = node->next;
  }
}

/// A tree deeper than what can be loaded could not be read again.
void requireDepth(const xmlNode* parent, const xmlNode* child) {
  if (!isElement(child)) return;
  int above = 0;
  for (; parent && isElement(parent); parent = parent->parent) ++above;
  if (above + levels(child, kMaxDepth - above) > kMaxDepth) refuse(kTooDeep);
}

/// Refuses what would make no tree, or none that can be written and read again.
void requirePlace(const xmlNode* parent, const xmlNode* child, const xmlNode* before) {
  if (!isElement(parent) && !isDocument(parent)) {
    refuse("This type of node cannot have children.");
  }
  if (isDocument(child) || isAttribute(child) || child->type == XML_DTD_NODE) {
    refuse("This type of node cannot be a child.");
  }
  if (before && before->parent != parent) refuse("The reference node is not a child of this node.");
  // Without children it stands above nothing, so the walk up is spared to what is just made.
  if (child == parent) refuse("A node cannot be put below itself.");
  for (const xmlNode* above = firstChild(child) ? parent : nullptr; above; above = above->parent) {
    if (above == child) refuse("A node cannot be put below itself.");
  }
  requireDepth(parent, child);
  const bool blnFirst = before ? before == parent->children : !parent->children;
  if (isDeclaration(child) && !(isDocument(parent) && blnFirst)) {
    refuse("The XML declaration can only be the first node of a document.");
  }
  if (!isDocument(parent)) return;
  if (isText(child) || isCData(child))
    refuse("Text is not allowed at the top level of a document.");
  if (before && isDeclaration(before)) refuse("Nothing can stand before the XML declaration.");
  if (isElement(child)) {
    if (hasElementChild(parent, child)) refuse("Only one element is allowed at the top level.");
    if (precedesDocumentType(before)) refuse("The root cannot stand before the document type.");
  }
}

/// Takes a node out of the tree of its own document, which keeps it.
void takeOut(DocumentState& state, xmlNode* node) {
  state.reserveDetached(1);
  if (holdsId(node)) state.idIndex.drop();
  state.detach(node);
}

Node place(const Node& objParent, const Node& objChild, xmlNode* before) {
  xmlNode* const parent = DocumentState::target(objParent);
  xmlNode* const child = DocumentState::target(objChild);
  const std::shared_ptr<DocumentState>& state = DocumentState::stateOf(objParent);
  DocumentState& source = *DocumentState::stateOf(objChild);
  requirePlace(parent, child, before);
  if (child == before) return objChild;

  if (&source != state.get()) {
    OwnedXmlNode copy = copyXml(child, true, parent->doc, state->namespaces);
    source.reserveDetached(1);  // once the index refers to the copy nothing may fail
    state->childNames.prepare(parent, copy.get());
    takeOut(source, child);
    if (holdsId(copy.get())) state->idIndex.drop();
    xmlNode* const placed = copy.release();
    linkNode(parent, placed, before);
    state->childNames.added(placed);
    return DocumentState::handle(state, placed);
  }
  state->childNames.prepare(parent, child);
  if (holdsId(child)) state->idIndex.drop();
  state->release(child);
  linkNode(parent, child, before);
  state->childNames.added(child);
  return objChild;
}

}  // namespace

void Node::setText(std::string_view strText) const {
  xmlNode* node = DocumentState::target(*this);
  state_->mayFail(DomOperation::writeText);
  requireXmlText(strText);
  if (isElement(node)) return setContent(*state_, node, strText);
  if (isAttribute(node)) return setValue(*state_, asAttribute(node), strText);
  if (isText(node)) return setCharacters(*state_, node, strText);
  if (!isCData(node)) refuse("The text of this type of node cannot be set.");
  if (strText.find("]]>") != std::string_view::npos) refuse("A CDATA section cannot hold ']]>'.");
  setCharacters(*state_, node, strText);
}

void Node::setAttribute(std::string_view strName, std::string_view strValue) const {
  xmlNode* element = DocumentState::targetElement(*this);
  state_->mayFail(DomOperation::setAttribute);
  requireQualifiedName(strName);
  if (strName == "xmlns" || prefixOf(strName) == "xmlns") {
    refuse("A namespace declaration cannot be set as an attribute.");
  }
  requireXmlText(strValue);
  if (xmlAttr* attribute = findAttribute(element, strName)) {
    return setValue(*state_, attribute, strValue);
  }
  const std::string strTerminated(strName);
  xmlAttr* attribute = xmlNewDocProp(element->doc, xmlText(strTerminated.c_str()), nullptr);
  OwnedXmlNode owned(asNode(attribute));
  if (!attribute || !attribute->name) throw std::bad_alloc();
  setValue(*state_, attribute, strValue);
  static_cast<void>(owned.release());
  linkAttribute(element, attribute);
}

void Node::removeAttribute(std::string_view strName) const {
  const xmlNode* element = DocumentState::targetElement(*this);
  state_->mayFail(DomOperation::removeAttribute);
  xmlAttr* attribute = findAttribute(element, strName);
  if (!attribute) return;
  state_->reserveDetached(1);
  beforeAttributeChange(*state_, view(attribute->name));
  state_->detach(asNode(attribute));
}

Node Node::appendChild(const Node& objChild) const {
  DocumentState::target(*this);
  DocumentState::target(objChild);
  if (state_->givesNothing(DomOperation::appendChild)) return {};
  return place(*this, objChild, nullptr);
}

Node Node::insertBefore(const Node& objChild, const Node& objBefore) const {
  DocumentState::target(*this);
  DocumentState::target(objChild);
  xmlNode* before = DocumentState::target(objBefore);
  if (state_->givesNothing(DomOperation::insertBefore)) return {};
  return place(*this, objChild, before);
}

Node Node::removeChild(const Node& objChild) const {
  const xmlNode* parent = DocumentState::target(*this);
  xmlNode* child = DocumentState::target(objChild);
  if (state_->givesNothing(DomOperation::removeChild)) return {};
  if (child->parent != parent || isAttribute(child)) throw RuntimeError(kInvalidArgument);
  takeOut(*state_, child);
  return objChild;
}

}  // namespace Varnel_Tolv_XML_Creation
