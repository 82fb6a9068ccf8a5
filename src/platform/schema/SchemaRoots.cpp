#include "platform/schema/SchemaRoots.h"

#include <new>

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

SchemaRoots::SchemaRoots(const xmlSchema& schema) : schema_(schema) {
  const auto samePointer = [](void* element, const xmlChar* /*name*/) { return element; };
  elements_.reset(schema.elemDecl ? xmlHashCopy(schema.elemDecl, samePointer) : xmlHashCreate(8));
  if (!elements_) throw std::bad_alloc();
  schema_.elemDecl = elements_.get();
}

const xmlChar* SchemaRoots::nameFor(const xmlSchemaType* type) {
  const auto [known, blnNew] = byType_.try_emplace(type);
  if (blnNew) {
    Root& root = roots_.emplace_back();
    root.strName = " " + std::to_string(roots_.size());  // a blank: no name in a document
    root.element = {};
    root.element.type = XML_SCHEMA_TYPE_ELEMENT;
    root.element.name = xmlText(root.strName.c_str());
    root.element.targetNamespace = schema_.targetNamespace;
    root.element.subtypes = const_cast<xmlSchemaType*>(type);  // it is only read
    root.element.flags = XML_SCHEMAS_ELEM_GLOBAL | XML_SCHEMAS_ELEM_NILLABLE;
    known->second = &root;
    if (xmlHashAddEntry(elements_.get(), root.element.name, &root.element) != 0) {
      byType_.erase(known);
      throw std::bad_alloc();
    }
  }
  return known->second->element.name;
}

}  // namespace Varnel_Tolv_XML_Creation
