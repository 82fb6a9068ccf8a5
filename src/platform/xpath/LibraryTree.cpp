#include "platform/xpath/LibraryTree.h"

#include <algorithm>
#include <climits>
#include <new>
#include <string>
#include <utility>

#include "platform/xml/XmlLibrary.h"
#include "platform/xml/XmlMemory.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

OwnedXmlDoc newXmlDoc() {
  prepareXmlLibrary();
  OwnedXmlDoc document(xmlNewDoc(nullptr));
  if (!document) throw std::bad_alloc();
  return document;
}

OwnedXmlNode newTextNode(xmlDoc* document, std::string_view strText) {
  if (strText.size() >= INT_MAX) throw std::bad_alloc();  // the library counts in int
  const char* text = strText.empty() ? "" : strText.data();
  OwnedXmlNode node(xmlNewDocTextLen(document, xmlText(text), static_cast<int>(strText.size())));
  if (!node || !node->content) throw std::bad_alloc();
  return node;
}

// The library's own functions merge and free text, look namespaces up by prefix and recurse, so
// none of them is used to link nodes.

/// Takes a node, which is no attribute, out of where it is; it then has no parent.
void unlinkNode(xmlNode* node) noexcept {
  xmlNode* const parent = node->parent;
  (node->prev ? node->prev->next : parent->children) = node->next;
  (node->next ? node->next->prev : parent->last) = node->prev;
  node->parent = node->next = node->prev = nullptr;
}

/// Puts a node without a parent, of the same document, below `parent`: before `before`, or at the
/// end when that is null.
void linkNode(xmlNode* parent, xmlNode* node, xmlNode* before) noexcept {
  node->parent = parent;
  node->next = before;
  node->prev = before ? before->prev : parent->last;
  (node->prev ? node->prev->next : parent->children) = node;
  (before ? before->prev : parent->last) = node;
}

}  // namespace

LibraryTree::LibraryTree(TreeNode* top) : document_(newXmlDoc()) {
  const MemoryWatch memory;
  xmlNode* const document = asNode(document_.get());
  if (isDocument(top)) {
    keep(top, document);
    for (TreeNode* child = top->first; child; child = child->next) {
      copyBelow(child, document, nullptr);
    }
  } else if (isAttribute(top)) {
    lone_ = newCopy(top);
    lone_->parent = document;
  } else {
    copyBelow(top, document, nullptr);
  }
  memory.check();
}

/// Copies `top` and all that is below it, between `parent` and `before`.
void LibraryTree::copyBelow(TreeNode* top, xmlNode* parent, xmlNode* before) {
  TreeNode* node = top;
  if (node->kind == NodeKind::documentType) return;
  while (true) {
    linkNode(parent, newCopy(node).release(), node == top ? before : nullptr);
    if (TreeNode* const child = firstChild(node)) {
      parent = node == top && before ? before->prev : parent->last;
      node = child;
      continue;
    }
    while (node != top && !node->next) {
      node = node->parent;
      parent = parent->parent;
    }
    if (node == top) return;
    node = node->next;
  }
}

// The children are compared in one pass. Those that went are in no list of the original's parent
// any more, those that came have no copy; what has moved in from elsewhere, or to another place, is
// left to a new copy of all.
bool LibraryTree::update(const TreeNode* parent) {
  const MemoryWatch memory;
  xmlNode* const copy = copyOf(parent);
  if (!copy) return true;  // it went, or stands in what was copied since
  if (isElement(parent)) {
    dropAttributes(copy);
    copyAttributes(parent, copy);
  }
  xmlNode* at = copy->children;
  const auto dropGone = [&] {
    while (at && originalOf(at)->parent != parent) drop(std::exchange(at, at->next));
  };
  for (TreeNode* child = parent->first; child; child = child->next) {
    dropGone();
    if (!at || originalOf(at) != child) {
      if (copyOf(child)) return false;
      copyBelow(child, copy, at);
      continue;
    }
    if (isCharacterData(child) && view(at->content) != valueOf(child)) {
      std::swap(at->content, newTextNode(document_.get(), valueOf(child))->content);
    }
    at = at->next;
  }
  dropGone();
  memory.check();
  return at == nullptr;
}

xmlNode* LibraryTree::copyOf(const TreeNode* node) const {
  const auto found = copies_.find(node);
  return found == copies_.end() ? nullptr : found->second;
}

void LibraryTree::keep(TreeNode* original, xmlNode* copy) {
  if (!copy) throw std::bad_alloc();
  copy->_private = original;
  copies_[original] = copy;
}

/// The original may have another copy already, where it went.
void LibraryTree::forget(const xmlNode* copy) noexcept {
  const auto found = copies_.find(originalOf(copy));
  if (found != copies_.end() && found->second == copy) copies_.erase(found);
}

void LibraryTree::drop(xmlNode* top) noexcept {
  for (xmlNode* node = top; node; node = nextBelow(node, top)) {
    forget(node);
    if (isElement(node)) dropAttributes(node);
  }
  unlinkNode(top);
  freeXmlNode(top);
}

void LibraryTree::dropAttributes(xmlNode* element) noexcept {
  for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
    forget(asNode(attribute));
  }
  xmlFreePropList(std::exchange(element->properties, nullptr));
  xmlFreeNsList(std::exchange(element->nsDef, nullptr));
}

OwnedXmlNode LibraryTree::newCopy(TreeNode* original) {
  OwnedXmlNode copy;
  if (isElement(original)) {
    copy.reset(
        xmlNewDocNode(document_.get(), nullptr, xmlText(original->name->strLocal.data()), nullptr));
    keep(original, copy.get());
    copy->ns = namespaceOf(original->name);
    copyAttributes(original, copy.get());
    return copy;
  }
  const std::string strValue(valueOf(original));  // with the NUL that the library wants
  if (strValue.size() >= INT_MAX) throw std::bad_alloc();
  xmlDoc* const document = document_.get();
  switch (original->kind) {
    case NodeKind::attribute: {
      xmlAttr* const attribute =
          xmlNewDocProp(document, xmlText(original->name->strLocal.data()), nullptr);
      copy.reset(asNode(attribute));
      if (!attribute) break;
      attribute->ns = namespaceOf(original->name);
      xmlNode* const value = newTextNode(document, strValue).release();
      value->parent = asNode(attribute);
      attribute->children = attribute->last = value;
      break;
    }
    case NodeKind::cdata:
      copy.reset(
          xmlNewCDataBlock(document, xmlText(strValue.c_str()), static_cast<int>(strValue.size())));
      break;
    case NodeKind::comment:
      copy.reset(xmlNewDocComment(document, xmlText(strValue.c_str())));
      break;
    case NodeKind::instruction:
      copy.reset(xmlNewDocPI(document, xmlText(original->name->strLocal.data()),
                             xmlText(strValue.c_str())));
      break;
    default:
      copy = newTextNode(document, strValue);
  }
  keep(original, copy.get());
  return copy;
}

void LibraryTree::copyAttributes(const TreeNode* original, xmlNode* copy) {
  xmlNs** declared = &copy->nsDef;
  xmlAttr* last = nullptr;
  for (TreeNode* from = asParent(original)->attributes; from; from = from->next) {
    if (!isAttribute(from)) {
      const NamePart* const prefix = from->name->prefix;
      *declared = xmlNewNs(nullptr, xmlText(from->name->uri->strText.data()),
                           prefix->lngNumber == 0 ? nullptr : xmlText(prefix->strText.data()));
      if (!*declared) throw std::bad_alloc();
      declared = &(*declared)->next;
      continue;
    }
    auto* const attribute = reinterpret_cast<xmlAttr*>(newCopy(from).release());
    attribute->parent = copy;
    attribute->prev = last;
    (last ? last->next : copy->properties) = attribute;
    last = attribute;
  }
}

/// A namespace that belongs to no element, for all the nodes of one name.
xmlNs* LibraryTree::namespaceOf(const TreeName* name) {
  if (name->uri->lngNumber == 0) return nullptr;
  xmlNs& ns = namespaces_[name];
  ns.type = XML_LOCAL_NAMESPACE;
  ns.href = xmlText(name->uri->strText.data());
  ns.prefix = name->prefix->lngNumber == 0 ? nullptr : xmlText(name->prefix->strText.data());
  return &ns;
}

void LibraryTreeCache::note(const TreeNode* parent) noexcept {
  // What has no copy is copied when it comes in. What was taken out still has one, and may come
  // back.
  if (!tree_->copyOf(parent)) return;
  if (!changed_.empty() && changed_.back() == parent) return;
  if (changed_.size() == kMostChanges) return drop();
  changed_.push_back(parent);
}

std::shared_ptr<const LibraryTree> LibraryTreeCache::get(TreeNode* document) const {
  const std::lock_guard lock(mutex_);
  std::shared_ptr<LibraryTree> tree = std::move(tree_);  // lost where a change cannot be followed
  if (tree && !std::all_of(changed_.begin(), changed_.end(),
                           [&](const TreeNode* parent) { return tree->update(parent); })) {
    tree.reset();
  }
  changed_.clear();
  changed_.reserve(kMostChanges);
  if (!tree) tree = std::make_shared<LibraryTree>(document);
  return tree_ = std::move(tree);
}

}  // namespace Varnel_Tolv_XML_Creation
