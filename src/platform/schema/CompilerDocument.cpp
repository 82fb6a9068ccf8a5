#include "platform/schema/CompilerDocument.h"

#include <algorithm>
#include <limits>
#include <new>

#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlLibrary.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::size_t kMaxLine = 65535;  // that the library's nodes can hold, as its parser does

void link(xmlNode* parent, xmlNode* node) noexcept {
  node->parent = parent;
  node->prev = parent->last;
  (node->prev ? node->prev->next : parent->children) = node;
  parent->last = node;
}

}  // namespace

CompilerDocument::CompilerDocument(const Tree& tree, const std::string& strLocation)
    : arena_(0, std::numeric_limits<std::size_t>::max()) {
  prepareXmlLibrary();
  document_.reset(xmlNewDoc(nullptr));
  if (!document_) throw std::bad_alloc();
  document_->URL = xmlStrdup(xmlText(strLocation.c_str()));
  if (!document_->URL) throw std::bad_alloc();
  const TreeNode* const root = rootOf(tree.document());
  const TreeNode* around = root->parent;
  xmlNode* parent = asNode(document_.get());  // the copy of that
  for (const TreeNode* node = root; node; node = nextBelow(node, root)) {
    for (; around != node->parent; around = around->parent) parent = parent->parent;
    if (isElement(node)) {
      xmlNode* const element = newElement(asParent(node));
      link(parent, element);
      around = node;
      parent = element;
    } else if (isCData(node)) {
      link(parent, newLeaf(XML_CDATA_SECTION_NODE, node));
    } else if (!isXmlWhiteSpace(valueOf(node))) {
      // The compiler would take other texts out, xml:space or not, and free them.
      link(parent, newLeaf(XML_TEXT_NODE, node));
    }
  }
}

xmlNode* CompilerDocument::newElement(const TreeElement* source) {
  auto* const element = arena_.make<xmlNode>();
  element->type = XML_ELEMENT_NODE;
  element->doc = document_.get();
  element->name = xmlText(source->name->strLocal.data());
  if (source->name->uri->lngNumber != 0) element->ns = newNamespace(source->name);
  element->line = static_cast<unsigned short>(std::min<std::size_t>(source->lngLine, kMaxLine));
  takeAttributes(source, element);
  return element;
}

void CompilerDocument::takeAttributes(const TreeElement* source, xmlNode* element) {
  xmlNs** declared = &element->nsDef;
  xmlAttr* last = nullptr;
  for (const TreeNode* from = source->attributes; from; from = from->next) {
    if (!isAttribute(from)) {
      *declared = newNamespace(from->name);
      declared = &(*declared)->next;
      continue;
    }
    auto* const attribute = arena_.make<xmlAttr>();
    attribute->type = XML_ATTRIBUTE_NODE;
    attribute->doc = document_.get();
    attribute->name = xmlText(from->name->strLocal.data());
    if (from->name->uri->lngNumber != 0) attribute->ns = newNamespace(from->name);
    attribute->parent = element;
    attribute->prev = last;
    (last ? last->next : element->properties) = attribute;
    last = attribute;
    xmlNode* const value = newLeaf(XML_TEXT_NODE, from);
    link(asNode(attribute), value);
    // The library's parser lists its identifier with those that the compiler finds.
    if (from->name->strQualified == "xml:id") {
      xmlAddID(nullptr, document_.get(), value->content, attribute);
    }
  }
}

xmlNode* CompilerDocument::newLeaf(xmlElementType type, const TreeNode* source) {
  auto* const leaf = arena_.make<xmlNode>();
  leaf->type = type;
  leaf->doc = document_.get();
  // Nothing writes over it.
  leaf->content = const_cast<xmlChar*>(xmlText(arena_.copy(valueOf(source)).data()));
  return leaf;
}

/// The compiler compares namespaces by their URIs, so a node may have its own.
xmlNs* CompilerDocument::newNamespace(const TreeName* name) {
  auto* const ns = arena_.make<xmlNs>();
  ns->type = XML_LOCAL_NAMESPACE;
  ns->href = xmlText(name->uri->strText.data());
  ns->prefix = name->prefix->lngNumber == 0 ? nullptr : xmlText(name->prefix->strText.data());
  return ns;
}

}  // namespace Varnel_Tolv_XML_Creation
