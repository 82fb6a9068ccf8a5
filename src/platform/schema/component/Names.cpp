#include "platform/schema/component/Names.h"

#include <functional>

namespace Varnel_Tolv_XML_Creation {

std::string ExpandedName::text() const {
  return strUri.empty() ? strLocal : '{' + strUri + '}' + strLocal;
}

NameTable::Key NameTable::keyOf(std::string_view strUri, std::string_view strLocal) noexcept {
  // Not the hash of a document's names, for which many that have the same are soon found: nothing
  // bounds them here.
  const std::hash<std::string_view> hash;
  return {hash(strLocal) * 31 + hash(strUri), strUri, strLocal};
}

NameTable::NameTable() { names_.emplace_back(); }  // kNoName

NameId NameTable::intern(std::string_view strUri, std::string_view strLocal) {
  Key key = keyOf(strUri, strLocal);
  const auto known = ids_.find(key);
  if (known != ids_.end()) return known->second;
  const auto name = static_cast<NameId>(names_.size());
  const ExpandedName& kept =
      names_.emplace_back(ExpandedName{std::string(strUri), std::string(strLocal)});
  key.strUri = kept.strUri;
  key.strLocal = kept.strLocal;
  ids_.emplace(key, name);
  return name;
}

NameId NameTable::find(std::string_view strUri, std::string_view strLocal) const noexcept {
  const auto found = ids_.find(keyOf(strUri, strLocal));
  return found == ids_.end() ? kNoName : found->second;
}

}  // namespace Varnel_Tolv_XML_Creation
