#include "platform/xml/XmlTree.h"

#include <climits>
#include <new>

#include "platform/xml/XmlLibrary.h"

namespace Varnel_Tolv_XML_Creation {

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

xmlNode* nextBelow(const xmlNode* node, const xmlNode* top) noexcept {
  if ((isElement(node) || isDocument(node)) && node->children) return node->children;
  while (node != top) {
    if (node->next) return node->next;
    node = node->parent;
  }
  return nullptr;
}

void unlinkNode(xmlNode* node) noexcept {
  xmlNode* const parent = node->parent;
  (node->prev ? node->prev->next : parent->children) = node->next;
  (node->next ? node->next->prev : parent->last) = node->prev;
  node->parent = node->next = node->prev = nullptr;
}

void linkNode(xmlNode* parent, xmlNode* node, xmlNode* before) noexcept {
  node->parent = parent;
  node->next = before;
  node->prev = before ? before->prev : parent->last;
  (node->prev ? node->prev->next : parent->children) = node;
  (before ? before->prev : parent->last) = node;
}

}  // namespace Varnel_Tolv_XML_Creation
