#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// Paths of elements, "/m:report/m:head", each known by a number: the names as written, without
/// positions. A path is kept as its last name and the number of the path above it, so that many
/// long paths take no more room than a tree of their names.
class MessagePaths {
 public:
  MessagePaths() = default;
  MessagePaths(const MessagePaths&) = delete;
  MessagePaths& operator=(const MessagePaths&) = delete;

  static constexpr std::size_t kTop = 0;  // the path of the document, which is empty

  /// The path of the elements with this name below those of `lngAbove`.
  std::size_t add(std::size_t lngAbove, const std::string& strName);

  std::optional<std::size_t> find(std::size_t lngAbove, const std::string& strName) const;

  /// The path that a text writes; none for one that is not known or is no path.
  std::optional<std::size_t> find(std::string_view strPath) const;

  /// Calls `visit` with the number of the path above and the last name of each, in the order in
  /// which they were added.
  template <class Visit>
  void forEach(const Visit& visit) const {
    for (const std::string* const key : keys_) {
      const std::size_t lngName = key->find('/');
      visit(std::stoul(key->substr(0, lngName)), key->substr(lngName + 1));
    }
  }

 private:
  std::unordered_map<std::string, std::size_t> paths_;  // by the number above, "/" and the name
  std::vector<const std::string*> keys_;                // those of `paths_`
};

}  // namespace Varnel_Tolv_XML_Creation
