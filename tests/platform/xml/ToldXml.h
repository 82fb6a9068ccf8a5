#pragma once

#include <string>

#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

/// Whether white space counts where a node stands.
inline bool isSpaceKept(const xmlNode* node) {
  for (const xmlNode* above = node->parent; above && isElement(above); above = above->parent) {
    for (const xmlAttr* item = above->properties; item; item = item->next) {
      if (!item->ns || view(item->ns->prefix) != "xml" || view(item->name) != "space") continue;
      const std::string_view strValue = item->children ? view(item->children->content) : "";
      if (strValue == "preserve") return true;
      if (strValue == "default") return false;
    }
  }
  return false;
}

/// All that a tree of libxml2 holds, but for its document type. One that is `blnAsParsed` by the
/// library itself has its XML declaration beside the nodes, and white space that a document does
/// not keep.
inline std::string told(const xmlDoc* document, bool blnAsParsed = false) {
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
  constexpr int kNoDeclaration = -1;
  if (blnAsParsed && document->standalone != kNoDeclaration) {
    strTold += "[" + std::to_string(XML_PI_NODE) + " xml<'version=\"1.0\"";
    if (document->standalone >= 0) strTold += " standalone=\"";
    if (document->standalone >= 0) strTold += document->standalone == 1 ? "yes\"" : "no\"";
    strTold += "']\n";
  }
  for (const xmlNode* node = nextBelow(top, top); node; node = nextBelow(node, top)) {
    if (node->type == XML_DTD_NODE) continue;
    const bool blnSpace = node->type == XML_TEXT_NODE && isXmlWhiteSpace(view(node->content));
    if (blnAsParsed && blnSpace && !isSpaceKept(node)) continue;
    tell(node);
    for (const xmlNode* above = node->parent; above; above = above->parent) strTold += "<";
    if (isElement(node)) {
      for (const xmlNs* ns = node->nsDef; ns; ns = ns->next) {
        strTold += " declares " + std::string(view(ns->prefix)) + "=" + std::string(view(ns->href));
      }
      for (xmlAttr* item = node->properties; item; item = item->next) {
        tell(asNode(item));
        strTold += "='";
        for (const xmlNode* value = item->children; value; value = value->next) {
          strTold += view(value->content);
        }
        strTold += "']";
      }
    } else {
      strTold += "'" + std::string(view(node->content)) + "'";
    }
    strTold += "]\n";
  }
  return strTold;
}

}  // namespace Varnel_Tolv_XML_Creation
