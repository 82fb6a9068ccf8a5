#pragma once

#include <string>

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

/// All that a tree of libxml2 holds, but for its document type.
inline std::string told(const xmlDoc* document) {
  const auto* top = reinterpret_cast<const xmlNode*>(document);
  std::string strTold;
  const auto tell = [&](const xmlNode* node) {
    strTold += "[" + std::to_string(node->type) + " " + std::string(view(node->name));
    const bool blnNamed = node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE;
    if (blnNamed && node->ns) {
      strTold +=
          " in " + std::string(view(node->ns->prefix)) + "=" + std::string(view(node->ns->href));
    }
  };
  for (const xmlNode* node = nextBelow(top, top); node; node = nextBelow(node, top)) {
    if (node->type == XML_DTD_NODE) continue;
    tell(node);
    for (const xmlNode* above = node->parent; above; above = above->parent) strTold += "<";
    if (isElement(node)) {
      for (const xmlNs* ns = node->nsDef; ns; ns = ns->next) {
        strTold += " declares " + std::string(view(ns->prefix)) + "=" + std::string(view(ns->href));
      }
      for (xmlAttr* item = node->properties; item; item = item->next) {
        tell(asNode(item));
        strTold += "='" + textOf(asNode(item)) + "']";
      }
    } else {
      strTold += "'" + std::string(view(node->content)) + "'";
    }
    strTold += "]\n";
  }
  return strTold;
}

}  // namespace Varnel_Tolv_XML_Creation
