#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/xml/OwnedXml.h"

// A tree for the tests of selection, and what they say about its nodes.

namespace Varnel_Tolv_XML_Creation {

using TestTree = OwnedXmlDoc;

inline TestTree parsedTree(const std::string& strXml) {
  return TestTree(xmlReadMemory(strXml.data(), static_cast<int>(strXml.size()), nullptr, nullptr,
                                XML_PARSE_NODICT | XML_PARSE_NONET));
}

inline xmlNode* nodeOf(const TestTree& tree) { return reinterpret_cast<xmlNode*>(tree.get()); }

inline std::string text(const xmlChar* text) {
  return text ? reinterpret_cast<const char*>(text) : std::string();
}

/// An element by its name and, when it has one, "#" and its id; an attribute as @name=value.
inline std::string described(xmlNode* node) {
  if (node->type == XML_DOCUMENT_NODE) return "/";
  if (node->type == XML_ATTRIBUTE_NODE) {
    return "@" + text(node->name) + "=" + (node->children ? text(node->children->content) : "");
  }
  if (node->type != XML_ELEMENT_NODE) return "'" + text(node->content) + "'";
  std::string strId;
  for (const xmlAttr* item = node->properties; item; item = item->next) {
    if (item->ns || text(item->name) != "id") continue;
    strId = "#" + (item->children ? text(item->children->content) : "");
  }
  return text(node->name) + strId;
}

inline std::string described(const std::vector<xmlNode*>& colNodes) {
  std::string strResult;
  for (xmlNode* node : colNodes) strResult += (strResult.empty() ? "" : " ") + described(node);
  return strResult;
}

}  // namespace Varnel_Tolv_XML_Creation
