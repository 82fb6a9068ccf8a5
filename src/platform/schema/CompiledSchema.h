#pragma once

#include <libxml/schemasInternals.h>
#include <libxml/xmlschemas.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/schema/SchemaClosure.h"
#include "platform/schema/ValidatingReader.h"

namespace Varnel_Tolv_XML_Creation {

struct FreeXmlSchema {
  void operator()(xmlSchema* schema) const noexcept { xmlSchemaFree(schema); }
};

/// A schema that is ready for use. Nothing in it changes any more: several readers may share it.
struct CompiledSchema {
  SchemaClosure closure;  // the components of `schema` point into its document
  std::unique_ptr<xmlSchema, FreeXmlSchema> schema;

  bool declares(std::string_view strNamespaceUri, std::string_view strLocalName) const {
    return closure.declared.contains(elementKey(strNamespaceUri, strLocalName));
  }

  /// The global declaration of an element of the target namespace, or null.
  xmlSchemaElement* globalElement(const xmlChar* local, const xmlChar* uri) const;
};

struct SchemaCollection::Impl {
  explicit Impl(FaultInjector* injector) : faults(injector) {}

  /// The schema to check a message with this namespace's root against; null without schemas.
  const CompiledSchema* schemaFor(std::string_view strRootNamespaceUri) const;

  FaultInjector* faults;
  std::map<std::string, CompiledSchema, std::less<>> schemas;
};

}  // namespace Varnel_Tolv_XML_Creation
