#include <algorithm>
#include <string>
#include <vector>

#include "platform/dom/DocumentState.h"
#include "platform/dom/Node.h"
#include "platform/text/ShortText.h"
#include "platform/text/Text.h"
#include "platform/xml/CopyTree.h"
#include "platform/xml/TreeLimits.h"
#include "platform/xml/XmlCharacters.h"
#include "result/RuntimeError.h"

// What changes a document. Each operation does first what can fail (checks, memory) and then what
// cannot, so that a failure leaves everything as it was.

namespace Varnel_Tolv_XML_Creation {

namespace {

void setValue(DocumentState& state, TreeNode* leaf, std::string_view strValue) {
  DocumentContent& content = state.changeable();
  state.grow(strValue.size(), leaf->lngSize);
  state.changing(leaf->parent, isAttribute(leaf) ? leaf : nullptr);
  content.tree.setValue(leaf, strValue);
}

void setContent(DocumentState& state, TreeNode* element, std::string_view strText) {
  DocumentContent& content = state.changeable();
  TreeNode* const text = content.tree.newLeaf(NodeKind::text, nullptr, strText);
  state.grow(strText.size());  // what it replaces stays for the handles to it
  state.changing(element, nullptr);
  for (const TreeNode* child = element->first; child; child = child->next) {
    if (isElement(child)) state.changing(element, child);
  }
  content.childNames.emptying(element);
  while (element->first) unlinkNode(element->first);
  linkNode(element, text, nullptr);
}

/// Whether an attribute has this name: the one of the document, or null and as it is written.
bool isNamed(const TreeNode* attribute, const TreeName* name, std::string_view strName) noexcept {
  if (name) return attribute->name == name;
  return isAttribute(attribute) && isSame(attribute->name->strQualified, strName);
}

bool hasElementChild(const TreeNode* document, const TreeNode* except) {
  for (const TreeNode* child = document->first; child; child = child->next) {
    if (isElement(child) && child != except) return true;
  }
  return false;
}

/// Whether a document type stands at or after `before` among the children of a document.
bool precedesDocumentType(const TreeNode* before) {
  while (before && before->kind != NodeKind::documentType) before = before->next;
  return before != nullptr;
}

/// How many levels of elements `top` and what is below it make; no more than `limit` + 1 are
/// counted.
int levels(const TreeNode* top, int limit) {
  int deepest = 0;
  int level = 0;  // of `node`'s parent
  const TreeNode* node = top;
  while (true) {
    if (isElement(node)) deepest = std::max(deepest, level + 1);
    if (deepest > limit) return deepest;
    if (const TreeNode* child = firstChild(node)) {
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
void requireDepth(const TreeNode* parent, const TreeNode* child) {
  if (!isElement(child)) return;
  // One that holds nothing stands no deeper than one that is there.
  if (!child->first && parent->first && isElement(parent->first)) return;
  int above = 0;
  for (; parent && isElement(parent); parent = parent->parent) ++above;
  if (above + levels(child, kMaxDepth - above) > kMaxDepth) refuse(kTooDeep);
}

/// Refuses what would make no tree, or none that can be written and read again.
void requirePlace(const TreeNode* parent, const TreeNode* child, const TreeNode* before) {
  if (!isElement(parent) && !isDocument(parent)) {
    refuse("This type of node cannot have children.");
  }
  if (isDocument(child) || isAttribute(child) || child->kind == NodeKind::documentType) {
    refuse("This type of node cannot be a child.");
  }
  if (before && before->parent != parent) refuse("The reference node is not a child of this node.");
  // Without children it stands above nothing, so the walk up is spared to what is just made.
  if (child == parent) refuse("A node cannot be put below itself.");
  for (const TreeNode* above = firstChild(child) ? parent : nullptr; above; above = above->parent) {
    if (above == child) refuse("A node cannot be put below itself.");
  }
  requireDepth(parent, child);
  const bool blnFirst = before ? before == parent->first : !parent->first;
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
void takeOut(DocumentState& state, DocumentContent& content, TreeNode* node) noexcept {
  if (!node->parent) return;
  state.changing(node->parent, node);
  content.childNames.removing(node);
  unlinkNode(node);
}

/// The same for the attribute to which a link of its element's leads; nothing for null.
void takeOut(DocumentState& state, TreeNode* element, TreeNode** link) noexcept {
  TreeNode* const attribute = *link;
  if (!attribute) return;
  state.changing(element, attribute);
  *link = attribute->next;
  attribute->parent = attribute->next = nullptr;
}

/// What leads to the attribute of an element with this name, as `isNamed`; to null behind the last.
TreeNode** linkTo(TreeNode* element, const TreeName* name, std::string_view strName) noexcept {
  TreeNode** link = &asParent(element)->attributes;
  while (*link && !isNamed(*link, name, strName)) link = &(*link)->next;
  return link;
}

Node place(const Node& objParent, const Node& objChild, TreeNode* before) {
  TreeNode* const parent = DocumentState::target(objParent);
  TreeNode* child = DocumentState::target(objChild);
  const std::shared_ptr<DocumentState>& state = DocumentState::stateOf(objParent);
  DocumentState& source = *DocumentState::stateOf(objChild);
  requirePlace(parent, child, before);
  if (child == before) return objChild;

  DocumentContent& content = state->changeable();
  DocumentContent& sourceContent = source.changeable();
  TreeNode* const placed = &sourceContent == &content ? child : copyNode(child, true, content.tree);
  content.childNames.prepare(parent, placed);
  takeOut(source, sourceContent, child);
  state->changing(parent, placed);
  linkNode(parent, placed, before);
  content.childNames.added(placed);
  return DocumentState::handle(state, placed);
}

}  // namespace

void Node::setText(std::string_view strText) const {
  TreeNode* node = DocumentState::target(*this);
  state_->mayFail(DomOperation::writeText);
  requireXmlText(strText);
  if (isElement(node)) return setContent(*state_, node, strText);
  if (!isAttribute(node) && !isCharacterData(node)) {
    refuse("The text of this type of node cannot be set.");
  }
  if (isCData(node) && strText.find("]]>") != std::string_view::npos) {
    refuse("A CDATA section cannot hold ']]>'.");
  }
  setValue(*state_, node, strText);
}

void Node::setAttribute(std::string_view strName, std::string_view strValue) const {
  TreeNode* element = DocumentState::targetElement(*this);
  state_->mayFail(DomOperation::setAttribute);
  const TreeName* name = state_->attributeName(strName);
  if (name && name->blnColon) name = nullptr;
  const bool blnPrefixed = !name && strName.find(':') != std::string_view::npos;
  TreeNode** link = &asParent(element)->attributes;
  std::size_t lngCount = 1;
  for (; *link && !isNamed(*link, name, strName); link = &(*link)->next) ++lngCount;
  TreeNode* const present = *link;
  if (present && isSame(valueOf(present), strValue)) {  // nothing to write, where it may be written
    state_->changeable();
    return;
  }
  // A name without a colon that the document has already is one, so it is not looked at again.
  if (!present && !name) requireQualifiedName(strName);
  if (isSame(strName, "xmlns") || (blnPrefixed && prefixOf(strName) == "xmlns")) {
    refuse("A namespace declaration cannot be set as an attribute.");
  }
  requireXmlText(strValue);
  if (present) return setValue(*state_, present, strValue);
  Tree& tree = state_->changeable().tree;
  tree.hasAttributes(lngCount);
  if (!name) name = tree.name({}, strName, {});
  TreeNode* const attribute = tree.newLeaf(NodeKind::attribute, name, strValue);
  state_->grow(strValue.size());
  state_->changing(element, attribute);
  attribute->parent = element;
  *link = attribute;
}

void Node::removeAttribute(std::string_view strName) const {
  TreeNode* element = DocumentState::targetElement(*this);
  state_->mayFail(DomOperation::removeAttribute);
  state_->changeable();
  takeOut(*state_, element, linkTo(element, nullptr, strName));
}

bool Node::removeAttributes(std::span<const std::string_view> names) const {
  TreeNode* const top = topOf(DocumentState::target(*this));
  if (state_->givesNothing(DomOperation::select)) return false;
  if (names.empty()) refuse("There is no name of an attribute.");
  std::vector<const TreeName*> known;
  for (const std::string_view strName : names) {
    if (!isNCName(strName)) refuse(oneLine("The name '" + std::string(strName) + "' is no name."));
    known.push_back(state_->content().tree.names().find(strName, {}));
  }
  for (TreeNode* node = top; node; node = nextBelow(node, top)) {
    if (!isElement(node) || !asParent(node)->attributes) continue;
    const bool blnAny = std::any_of(known.begin(), known.end(), [node](const TreeName* name) {
      return name && findAttribute(node, name);
    });
    if (!blnAny) continue;
    for (const TreeName* name : known) {
      state_->mayFail(DomOperation::removeAttribute);
      state_->changeable();
      if (name) takeOut(*state_, node, linkTo(node, name, {}));
    }
  }
  return true;
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
  TreeNode* before = DocumentState::target(objBefore);
  if (state_->givesNothing(DomOperation::insertBefore)) return {};
  return place(*this, objChild, before);
}

Node Node::removeChild(const Node& objChild) const {
  const TreeNode* parent = DocumentState::target(*this);
  TreeNode* child = DocumentState::target(objChild);
  if (state_->givesNothing(DomOperation::removeChild)) return {};
  if (child->parent != parent || isAttribute(child)) throw RuntimeError(kInvalidArgument);
  takeOut(*state_, state_->changeable(), child);
  return objChild;
}

}  // namespace Varnel_Tolv_XML_Creation
