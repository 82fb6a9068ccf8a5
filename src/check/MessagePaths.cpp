#include "check/MessagePaths.h"

#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string key(std::size_t lngAbove, const std::string& strName) {
  return std::to_string(lngAbove) + "/" + strName;
}

}  // namespace

std::size_t MessagePaths::add(std::size_t lngAbove, const std::string& strName) {
  const auto [path, blnNew] = paths_.emplace(key(lngAbove, strName), paths_.size() + 1);
  if (blnNew) keys_.push_back(&path->first);
  return path->second;
}

std::optional<std::size_t> MessagePaths::find(std::size_t lngAbove,
                                              const std::string& strName) const {
  const auto found = paths_.find(key(lngAbove, strName));
  if (found == paths_.end()) return std::nullopt;
  return found->second;
}

std::optional<std::size_t> MessagePaths::find(std::string_view strPath) const {
  if (!strPath.starts_with('/')) return std::nullopt;
  std::optional<std::size_t> lngPath = kTop;
  for (const std::string& strName : split(strPath.substr(1), "/")) {
    lngPath = find(*lngPath, strName);
    if (!lngPath) return std::nullopt;
  }
  return lngPath;
}

}  // namespace Varnel_Tolv_XML_Creation
