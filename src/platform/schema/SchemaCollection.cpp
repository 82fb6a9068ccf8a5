#include <utility>

#include "platform/fault/InjectedFault.h"
#include "platform/schema/CompileSchema.h"
#include "platform/schema/ReadSchemaDocuments.h"
#include "platform/schema/SchemaCollectionImpl.h"
#include "platform/schema/component/ComponentReader.h"

namespace Varnel_Tolv_XML_Creation {

const SchemaComponents* SchemaCollection::Impl::schemaFor(
    std::string_view strRootNamespaceUri) const {
  if (schemas.empty()) return nullptr;
  const auto found = schemas.find(strRootNamespaceUri);
  return (found == schemas.end() ? schemas.begin() : found)->second.get();
}

SchemaCollection::SchemaCollection(FaultInjector* faults) : impl_(std::make_unique<Impl>(faults)) {}
SchemaCollection::~SchemaCollection() = default;
SchemaCollection::SchemaCollection(SchemaCollection&&) noexcept = default;
SchemaCollection& SchemaCollection::operator=(SchemaCollection&&) noexcept = default;

void SchemaCollection::catalog(std::string_view strPath) { impl_->strCatalog = strPath; }

void SchemaCollection::add(std::string_view strNamespaceUri, std::string_view strPath) {
  if (givesNothing(impl_->faults, DomOperation::addSchema)) {
    throw RuntimeError(kXmlFailure, "Injected failure");
  }
  const SchemaDocuments documents =
      readSchemaDocuments(strNamespaceUri, strPath, impl_->strCatalog);
  checkByCompiler(documents, strPath);
  impl_->schemas.insert_or_assign(std::string(strNamespaceUri), readComponents(documents));
}

}  // namespace Varnel_Tolv_XML_Creation
