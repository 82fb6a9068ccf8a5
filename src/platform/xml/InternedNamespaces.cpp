#include "platform/xml/InternedNamespaces.h"

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

xmlNs* InternedNamespaces::get(std::string_view strPrefix, std::string_view strUri) {
  std::string strKey(strPrefix);
  strKey += ':';  // stands in no prefix
  strKey += strUri;
  const auto found = entries_.find(strKey);
  if (found != entries_.end()) return &found->second->ns;

  auto entry = std::make_unique<Entry>(Entry{std::string(strPrefix), std::string(strUri)});
  entry->ns.type = XML_LOCAL_NAMESPACE;
  entry->ns.href = xmlText(entry->strUri.c_str());
  entry->ns.prefix = strPrefix.empty() ? nullptr : xmlText(entry->strPrefix.c_str());
  return &entries_.emplace(std::move(strKey), std::move(entry)).first->second->ns;
}

}  // namespace Varnel_Tolv_XML_Creation
