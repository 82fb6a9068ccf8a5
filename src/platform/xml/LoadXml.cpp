#include "platform/xml/LoadXml.h"

#include <libxml/parser.h>
#include <libxml/valid.h>

#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/xml/GuardedParser.h"
#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlMemory.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// What an entity holds is put into the tree only when it has been read. So the library does not
/// find the namespaces that are declared around it: it leaves its elements and attributes without,
/// and declares the prefix of an element as nothing.
void restoreNamespaces(xmlNode* element, const xmlChar* prefix, const xmlChar* uri,
                       int attributeCount, const xmlChar** attributes) {
  const auto declared = [&](const xmlChar* ownPrefix, const xmlChar* ownUri) {
    if (xmlNs* ns = xmlSearchNs(element->doc, element, ownPrefix)) return ns;
    for (xmlNs* ns = element->nsDef; ns; ns = ns->next) {
      if (view(ns->prefix) != view(ownPrefix) || ns->href) continue;
      ns->href = xmlStrdup(ownUri);
      return ns;
    }
    return xmlNewNs(element, ownUri, ownPrefix);
  };
  if (uri && !element->ns) element->ns = declared(prefix, uri);
  constexpr std::ptrdiff_t kFields = 5;
  for (int at = 0; at < attributeCount; ++at) {
    const xmlChar* const* from = attributes + kFields * at;
    if (!from[2]) continue;
    xmlAttr* attribute = element->properties;
    while (attribute && (attribute->ns || view(attribute->name) != view(from[0]))) {
      attribute = attribute->next;
    }
    if (attribute) attribute->ns = declared(from[1], from[2]);
  }
}

void onStartElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                    int namespaceCount, const xmlChar** namespaces, int attributeCount,
                    int defaultedCount, const xmlChar** attributes) {
  xmlSAX2StartElementNs(context, name, prefix, uri, namespaceCount, namespaces, attributeCount,
                        defaultedCount, attributes);
  auto* parser = static_cast<xmlParserCtxt*>(context);
  if (parser->depth > 0 && parser->node) {
    restoreNamespaces(parser->node, prefix, uri, attributeCount - defaultedCount, attributes);
  }
}

/// Whether white space is kept below an element, given whether it is kept around it.
bool keepsSpace(const xmlNode* element, bool blnKeptAround) {
  const xmlAttr* space = findAttribute(element, "xml:space");
  if (!space) return blnKeptAround;
  const std::string strSpace = textOf(asNode(const_cast<xmlAttr*>(space)));
  return strSpace == "preserve" || (strSpace != "default" && blnKeptAround);
}

void dropNode(xmlNode* node) {
  unlinkNode(node);
  xmlFreeNode(node);
}

/// Drops the text nodes of nothing but white space. False when the tree is too deep, as it can
/// become where an entity is used a second time: the parser then copies and reports no elements.
bool dropWhiteSpace(xmlDoc* document) {
  std::vector<bool> colKept = {false};  // one for each open element
  xmlNode* const top = asNode(document);
  xmlNode* node = top;
  bool blnDescend = true;
  while (true) {
    if (xmlNode* child = blnDescend ? firstChild(node) : nullptr) {
      if (isElement(node)) colKept.push_back(keepsSpace(node, colKept.back()));
      if (colKept.size() > kMaxDepth + 1) return false;
      node = child;
      continue;
    }
    if (node == top) return true;
    // Done with `node` and what is below it.
    if (isElement(node) && colKept.size() > kMaxDepth) return false;  // a leaf can be too deep too
    xmlNode* const next = node->next;
    xmlNode* const parent = node->parent;
    if (isText(node) && !colKept.back() && isXmlWhiteSpace(view(node->content))) dropNode(node);
    blnDescend = next != nullptr;
    node = next ? next : parent;
    if (!next && isElement(node)) colKept.pop_back();
  }
}

/// Forgets which attributes are of type ID: `id()` would find them by values that are long gone.
void forgetIds(xmlDoc* document) {
  if (!document->ids) return;
  xmlNode* const top = asNode(document);
  for (xmlNode* node = top; node; node = nextBelow(node, top)) {
    if (!isElement(node)) continue;
    for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
      attribute->atype = XML_ATTRIBUTE_CDATA;
    }
  }
  xmlFreeIDTable(static_cast<xmlIDTable*>(document->ids));
  document->ids = nullptr;
}

/// Makes the XML declaration, if there was one, the first node of the document.
void keepDeclaration(xmlDoc* document) {
  constexpr int kNoDeclaration = -1;
  if (document->standalone == kNoDeclaration) return;
  std::string strContent = "version=\"1.0\"";
  if (document->standalone == 1) strContent += " standalone=\"yes\"";
  if (document->standalone == 0) strContent += " standalone=\"no\"";
  xmlNode* declaration = xmlNewDocPI(document, xmlText("xml"), xmlText(strContent.c_str()));
  if (!declaration) throw std::bad_alloc();
  linkNode(asNode(document), declaration, document->children);
}

}  // namespace

LoadedXml loadXml(std::string_view strBytes, XmlEncoding encoding, AttributeDefaults defaults) {
  LoadedXml loaded;
  const MemoryWatch memory;
  GuardedParser parser;
  parser.startElement = onStartElement;
  OwnedXmlDoc document = parser.parse(strBytes, encoding, loaded.error, defaults);
  if (!document) return loaded;
  if (!dropWhiteSpace(document.get())) return {nullptr, {XML_ERR_INTERNAL_ERROR, 0, kTooDeep}};
  forgetIds(document.get());
  keepDeclaration(document.get());
  memory.check();
  loaded.document = std::move(document);
  return loaded;
}

}  // namespace Varnel_Tolv_XML_Creation
