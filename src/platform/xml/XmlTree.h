#pragma once

#include <libxml/tree.h>

#include <string_view>

// What this layer asks of libxml2's texts and nodes; internal to it.

namespace Varnel_Tolv_XML_Creation {

inline std::string_view view(const xmlChar* text) noexcept {
  return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

inline const xmlChar* xmlText(const char* text) noexcept {
  return reinterpret_cast<const xmlChar*>(text);
}

inline xmlNode* asNode(xmlDoc* document) noexcept { return reinterpret_cast<xmlNode*>(document); }
inline xmlNode* asNode(xmlAttr* attribute) noexcept {
  return reinterpret_cast<xmlNode*>(attribute);
}

inline bool isElement(const xmlNode* node) noexcept { return node->type == XML_ELEMENT_NODE; }
inline bool isAttribute(const xmlNode* node) noexcept { return node->type == XML_ATTRIBUTE_NODE; }
inline bool isDocument(const xmlNode* node) noexcept { return node->type == XML_DOCUMENT_NODE; }

/// The node after `node` in document order among those below `top`; null after the last.
inline xmlNode* nextBelow(const xmlNode* node, const xmlNode* top) noexcept {
  if ((isElement(node) || isDocument(node)) && node->children) return node->children;
  while (node != top) {
    if (node->next) return node->next;
    node = node->parent;
  }
  return nullptr;
}

}  // namespace Varnel_Tolv_XML_Creation
