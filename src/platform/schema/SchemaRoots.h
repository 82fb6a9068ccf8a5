#pragma once

#include <libxml/hash.h>
#include <libxml/schemasInternals.h>
#include <libxml/xmlschemas.h>

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>

namespace Varnel_Tolv_XML_Creation {

/// A view of a compiled schema in which any of its types can be the root's, so that a validator can
/// begin in the middle of a document. The schema itself stays as it is. It must outlive the view,
/// and the view the validators that use it.
class SchemaRoots {
 public:
  explicit SchemaRoots(const xmlSchema& schema);
  SchemaRoots(const SchemaRoots&) = delete;
  SchemaRoots& operator=(const SchemaRoots&) = delete;

  xmlSchema* schema() noexcept { return &schema_; }

  /// The local name, in the target namespace, of a root of this type. No document can hold it.
  const xmlChar* nameFor(const xmlSchemaType* type);

 private:
  struct FreeTable {
    void operator()(xmlHashTable* table) const noexcept { xmlHashFree(table, nullptr); }
  };
  struct Root {
    std::string strName;
    xmlSchemaElement element;
  };

  xmlSchema schema_;
  std::unique_ptr<xmlHashTable, FreeTable> elements_;
  std::deque<Root> roots_;
  std::unordered_map<const xmlSchemaType*, const Root*> byType_;
};

}  // namespace Varnel_Tolv_XML_Creation
