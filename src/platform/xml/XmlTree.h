#pragma once

#include <libxml/tree.h>

#include <string_view>

#include "platform/xml/OwnedXml.h"

// How this layer walks and links the nodes of a libxml2 tree; internal to it. The library's own
// functions merge and free text, look namespaces up by prefix and recurse, so none of them is used
// to change a tree. Nothing here recurses.

namespace Varnel_Tolv_XML_Creation {

/// An empty document. std::bad_alloc when there is no memory, as for all that makes nodes here.
OwnedXmlDoc newXmlDoc();

/// A text node of its own, an empty one for the empty text.
OwnedXmlNode newTextNode(xmlDoc* document, std::string_view strText);

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
inline xmlAttr* asAttribute(xmlNode* node) noexcept { return reinterpret_cast<xmlAttr*>(node); }

inline bool isElement(const xmlNode* node) noexcept { return node->type == XML_ELEMENT_NODE; }
inline bool isAttribute(const xmlNode* node) noexcept { return node->type == XML_ATTRIBUTE_NODE; }
inline bool isDocument(const xmlNode* node) noexcept { return node->type == XML_DOCUMENT_NODE; }

/// The node after `node` in document order among those below `top`; null after the last.
xmlNode* nextBelow(const xmlNode* node, const xmlNode* top) noexcept;

/// Takes a node, which is no attribute, out of where it is; it then has no parent.
void unlinkNode(xmlNode* node) noexcept;

/// Puts a node without a parent, of the same document, below `parent`: before `before`, or at the
/// end when that is null.
void linkNode(xmlNode* parent, xmlNode* node, xmlNode* before) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
