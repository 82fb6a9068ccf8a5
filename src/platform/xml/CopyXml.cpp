#include "platform/xml/CopyXml.h"

#include <new>

#include "platform/xml/XmlMemory.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

class Copier {
 public:
  Copier(xmlDoc* document, InternedNamespaces& namespaces)
      : document_(document), namespaces_(namespaces) {}

  OwnedXmlNode copy(const xmlNode* source) {
    if (isAttribute(source)) return copyAttribute(asAttribute(source));
    if (isElement(source)) return copyElement(source);
    OwnedXmlNode node(makeLeaf(source));
    if (!node) throw std::bad_alloc();
    node->doc = document_;
    return node;
  }

 private:
  xmlNode* makeLeaf(const xmlNode* source) const {
    switch (source->type) {
      case XML_CDATA_SECTION_NODE:
        return xmlNewCDataBlock(document_, source->content, xmlStrlen(source->content));
      case XML_COMMENT_NODE:
        return xmlNewDocComment(document_, source->content);
      case XML_PI_NODE:
        return xmlNewDocPI(document_, source->name, source->content);
      default:
        return newTextNode(document_, view(source->content)).release();
    }
  }

  OwnedXmlNode copyElement(const xmlNode* source) {
    OwnedXmlNode element(xmlNewDocNode(document_, nullptr, source->name, nullptr));
    if (!element) throw std::bad_alloc();
    element->ns = ownNamespace(source->ns);
    copyDeclarations(source, element.get());
    xmlAttr* last = nullptr;
    for (const xmlAttr* from = source->properties; from; from = from->next) {
      xmlAttr* attribute = asAttribute(copyAttribute(from).release());
      attribute->parent = element.get();
      attribute->prev = last;
      (last ? last->next : element->properties) = attribute;
      last = attribute;
    }
    return element;
  }

  OwnedXmlNode copyAttribute(const xmlAttr* source) {
    xmlAttr* attribute = xmlNewDocProp(document_, source->name, nullptr);
    if (!attribute) throw std::bad_alloc();
    OwnedXmlNode copy(asNode(attribute));
    attribute->ns = ownNamespace(source->ns);
    const std::string strValue = textOf(reinterpret_cast<const xmlNode*>(source));
    linkValue(attribute, newTextNode(document_, strValue));
    return copy;
  }

  static void linkValue(xmlAttr* attribute, OwnedXmlNode value) noexcept {
    value->parent = asNode(attribute);
    attribute->children = attribute->last = value.release();
  }

  void copyDeclarations(const xmlNode* source, xmlNode* element) const {
    xmlNs** link = &element->nsDef;
    for (const xmlNs* from = source->nsDef; from; from = from->next) {
      *link = xmlNewNs(nullptr, from->href, from->prefix);
      if (!*link) throw std::bad_alloc();
      link = &(*link)->next;
    }
  }

  xmlNs* ownNamespace(const xmlNs* source) {
    if (!source) return nullptr;
    if (source != lastSource_) {  // neighbours mostly share one
      lastOwn_ = namespaces_.get(view(source->prefix), view(source->href));
      lastSource_ = source;
    }
    return lastOwn_;
  }

  xmlDoc* document_;
  InternedNamespaces& namespaces_;
  const xmlNs* lastSource_ = nullptr;
  xmlNs* lastOwn_ = nullptr;
};

}  // namespace

OwnedXmlNode copyXml(const xmlNode* source, bool blnDeep, xmlDoc* document,
                     InternedNamespaces& namespaces) {
  const MemoryWatch memory;
  Copier copier(document, namespaces);
  OwnedXmlNode top = copier.copy(source);
  memory.check();
  if (!blnDeep) return top;

  const xmlNode* from = source;
  xmlNode* parent = top.get();  // the copy of the parent of what `from` moves to
  while (true) {
    if (const xmlNode* child = firstChild(from)) {
      from = child;
    } else {
      while (from != source && !from->next) {
        from = from->parent;
        if (from != source) parent = parent->parent;
      }
      if (from == source) {
        memory.check();
        return top;
      }
      from = from->next;
    }
    xmlNode* node = copier.copy(from).release();
    linkNode(parent, node, nullptr);
    if (firstChild(from)) parent = node;
  }
}

void copyDocumentType(const xmlDtd* source, xmlDoc* document) {
  const MemoryWatch memory;
  xmlDtd* type = xmlNewDtd(nullptr, source->name, source->ExternalID, source->SystemID);
  if (!type) throw std::bad_alloc();
  type->doc = document;
  document->intSubset = type;
  linkNode(asNode(document), reinterpret_cast<xmlNode*>(type), nullptr);
  memory.check();
}

}  // namespace Varnel_Tolv_XML_Creation
