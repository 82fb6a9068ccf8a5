#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// The prefixes that selections know, from a list like xmlns:a='urn:a' xmlns:b='urn:b'.
class SelectionNamespaces {
 public:
  SelectionNamespaces() = default;

  /// Raises kXmlFailure for a text that is no such list.
  explicit SelectionNamespaces(std::string_view strDeclarations);

  /// The text it was made from, letter by letter.
  const std::string& text() const noexcept { return strText_; }

  /// The URI of a prefix; none when it is not declared.
  std::optional<std::string_view> uri(std::string_view strPrefix) const;

  const std::vector<std::pair<std::string, std::string>>& declarations() const noexcept {
    return declarations_;
  }

 private:
  std::string strText_;
  const std::string* find(std::string_view strPrefix) const;

  std::vector<std::pair<std::string, std::string>> declarations_;  // prefix, URI
  std::map<std::string, std::size_t, std::less<>> places_;  // of many by their prefixes, else empty
};

}  // namespace Varnel_Tolv_XML_Creation
