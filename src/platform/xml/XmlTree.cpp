#include "platform/xml/XmlTree.h"

#include <climits>
#include <new>

#include "platform/xml/XmlLibrary.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// Tells a subtree that it now belongs to `document`.
void setDocument(xmlNode* top, xmlDoc* document) noexcept {
  if (top->doc == document) return;
  for (xmlNode* node = top; node; node = nextBelow(node, top)) {
    node->doc = document;
    if (!isElement(node)) continue;
    for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
      attribute->doc = document;
      for (xmlNode* value = attribute->children; value; value = value->next) value->doc = document;
    }
  }
}

}  // namespace

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

xmlNode* firstChild(const xmlNode* node) noexcept {
  return isElement(node) || isDocument(node) ? node->children : nullptr;
}

xmlNode* nextBelow(const xmlNode* node, const xmlNode* top) noexcept {
  if (xmlNode* child = firstChild(node)) return child;
  while (node != top) {
    if (node->next) return node->next;
    node = node->parent;
  }
  return nullptr;
}

std::size_t lineOf(const xmlNode* element) noexcept {
  const long lngLine = xmlGetLineNo(element);
  return lngLine > 0 ? static_cast<std::size_t>(lngLine) : 0;
}

std::string_view prefixOf(const xmlNode* node) noexcept {
  const bool blnMayHaveNamespace = isElement(node) || isAttribute(node);
  return blnMayHaveNamespace && node->ns ? view(node->ns->prefix) : std::string_view();
}

bool hasQualifiedName(const xmlNode* node, std::string_view strName) noexcept {
  const std::string_view strPrefix = prefixOf(node);
  if (!strPrefix.empty()) {
    if (!strName.starts_with(strPrefix)) return false;
    strName.remove_prefix(strPrefix.size());
    if (!strName.starts_with(':')) return false;
    strName.remove_prefix(1);
  }
  return strName == view(node->name);
}

xmlAttr* findAttribute(const xmlNode* element, std::string_view strName) noexcept {
  xmlAttr* attribute = element->properties;
  while (attribute && !hasQualifiedName(asNode(attribute), strName)) attribute = attribute->next;
  return attribute;
}

std::string textOf(const xmlNode* node) {
  std::string strText;
  if (isAttribute(node)) {
    for (const xmlNode* value = node->children; value; value = value->next) {
      strText += view(value->content);
    }
  } else if (isElement(node) || isDocument(node)) {
    for (const xmlNode* below = nextBelow(node, node); below; below = nextBelow(below, node)) {
      if (isText(below) || isCData(below)) strText += view(below->content);
    }
  } else if (node->type != XML_DTD_NODE) {  // which keeps something else in the place of a content
    strText = view(node->content);
  }
  return strText;
}

void unlinkNode(xmlNode* node) noexcept {
  if (node->type == XML_DTD_NODE && node->doc) node->doc->intSubset = nullptr;
  if (xmlNode* parent = node->parent) {
    if (isAttribute(node)) {
      if (parent->properties == asAttribute(node)) parent->properties = asAttribute(node)->next;
    } else {
      if (parent->children == node) parent->children = node->next;
      if (parent->last == node) parent->last = node->prev;
    }
  }
  if (node->next) node->next->prev = node->prev;
  if (node->prev) node->prev->next = node->next;
  node->parent = node->next = node->prev = nullptr;
}

void linkNode(xmlNode* parent, xmlNode* node, xmlNode* before) noexcept {
  setDocument(node, parent->doc);
  node->parent = parent;
  node->next = before;
  node->prev = before ? before->prev : parent->last;
  (node->prev ? node->prev->next : parent->children) = node;
  (before ? before->prev : parent->last) = node;
}

}  // namespace Varnel_Tolv_XML_Creation
