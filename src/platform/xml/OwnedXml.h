#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>

namespace Varnel_Tolv_XML_Creation {

template <auto kFree>
struct FreedBy {
  template <class Object>
  void operator()(Object* object) const noexcept {
    kFree(object);
  }
};

/// What owns an object of libxml2: it knows the function by which that kind is freed.
template <class Object, auto kFree>
using Owned = std::unique_ptr<Object, FreedBy<kFree>>;

/// A node or an attribute.
inline void freeXmlNode(xmlNode* node) noexcept {
  if (node->type == XML_ATTRIBUTE_NODE) {
    xmlFreeProp(reinterpret_cast<xmlAttr*>(node));
  } else {
    xmlFreeNode(node);
  }
}

/// A parser with the document that it has made so far.
inline void freeXmlParser(xmlParserCtxt* parser) noexcept {
  xmlFreeDoc(parser->myDoc);
  xmlFreeParserCtxt(parser);
}

inline void freeXmlText(xmlChar* text) noexcept { xmlFree(text); }

using OwnedXmlDoc = Owned<xmlDoc, xmlFreeDoc>;
using OwnedXmlNode = Owned<xmlNode, freeXmlNode>;
using OwnedXmlParser = Owned<xmlParserCtxt, freeXmlParser>;
using OwnedXmlText = Owned<xmlChar, freeXmlText>;

}  // namespace Varnel_Tolv_XML_Creation
