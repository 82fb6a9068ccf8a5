#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/schema/ValidatingReader.h"
#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

struct SchemaCollection::Impl {
  Impl(FaultInjector* injector, FileCache* fileCache) : faults(injector), cache(fileCache) {}

  /// The schema to check a message with this namespace's root against; null without schemas.
  const SchemaComponents* schemaFor(std::string_view strRootNamespaceUri) const;

  FaultInjector* faults;
  FileCache* cache;
  std::string strCatalog;
  // Nothing in them changes any more: several readers may share them.
  std::map<std::string, std::shared_ptr<const SchemaComponents>, std::less<>> schemas;
};

}  // namespace Varnel_Tolv_XML_Creation
