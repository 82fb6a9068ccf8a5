#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Varnel_Tolv_XML_Creation {

/// Paths of elements, "/m:report/m:head", each known by a number: the names as written, without
/// positions. A path is kept as its last name and the number of the path above it, so that many
/// long paths take no more room than a tree of their names.
class MessagePaths {
 public:
  static constexpr std::size_t kTop = 0;  // the path of the document, which is empty

  /// The path of the elements with this name below those of `lngAbove`.
  std::size_t add(std::size_t lngAbove, const std::string& strName);

  std::optional<std::size_t> find(std::size_t lngAbove, const std::string& strName) const;

  /// The path that a text writes; none for one that is not known or is no path.
  std::optional<std::size_t> find(std::string_view strPath) const;

  /// Calls `visit` with the number of the path above and the last name of each, in any order.
  template <class Visit>
  void forEach(const Visit& visit) const {
    for (const auto& [strKey, lngPath] : paths_) {
      const std::size_t lngName = strKey.find('/');
      visit(std::stoul(strKey.substr(0, lngName)), strKey.substr(lngName + 1));
    }
  }

 private:
  std::unordered_map<std::string, std::size_t> paths_;  // by the number above, "/" and the name
};

}  // namespace Varnel_Tolv_XML_Creation
