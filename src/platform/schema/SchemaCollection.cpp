#include <utility>

#include "platform/fault/InjectedFault.h"
#include "platform/schema/CompileSchema.h"
#include "platform/schema/ReadSchemaDocuments.h"
#include "platform/schema/SchemaCollectionImpl.h"
#include "platform/schema/component/ComponentReader.h"
#include "platform/xml/FileCacheEntry.h"

namespace Varnel_Tolv_XML_Creation {

const SchemaComponents* SchemaCollection::Impl::schemaFor(
    std::string_view strRootNamespaceUri) const {
  if (schemas.empty()) return nullptr;
  const auto found = schemas.find(strRootNamespaceUri);
  return (found == schemas.end() ? schemas.begin() : found)->second.get();
}

namespace {

FileCache::Made compile(std::string_view strNamespaceUri, std::string_view strPath,
                        std::string_view strCatalog) {
  constexpr std::size_t kTimesItsText = 20;  // about what components take
  SchemaDocuments documents = readSchemaDocuments(strNamespaceUri, strPath, strCatalog);
  FileCache::Made made;
  made.value = std::shared_ptr(compileSchema(documents, strPath));
  made.files = std::move(documents.files);
  made.lngBytes = made.files.bytes() * kTimesItsText;
  return made;
}

}  // namespace

SchemaCollection::SchemaCollection(FaultInjector* faults, FileCache* cache)
    : impl_(std::make_unique<Impl>(faults, cache)) {}
SchemaCollection::~SchemaCollection() = default;
SchemaCollection::SchemaCollection(SchemaCollection&&) noexcept = default;
SchemaCollection& SchemaCollection::operator=(SchemaCollection&&) noexcept = default;

void SchemaCollection::catalog(std::string_view strPath) { impl_->strCatalog = strPath; }

void SchemaCollection::add(std::string_view strNamespaceUri, std::string_view strPath) {
  mayFail(impl_->faults, DomOperation::addSchema);
  const auto compileIt = [&] { return compile(strNamespaceUri, strPath, impl_->strCatalog); };
  std::shared_ptr<const void> schema;
  if (impl_->cache) {
    std::string strName = "schema";
    for (const std::string_view strPart :
         {strNamespaceUri, strPath, std::string_view(impl_->strCatalog)}) {
      strName.append(1, '\0').append(strPart);
    }
    schema = impl_->cache->get(strName, compileIt);
  } else {
    schema = compileIt().value;
  }
  impl_->schemas.insert_or_assign(std::string(strNamespaceUri),
                                  std::static_pointer_cast<const SchemaComponents>(schema));
}

}  // namespace Varnel_Tolv_XML_Creation
