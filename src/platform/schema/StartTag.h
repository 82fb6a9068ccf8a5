#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/schema/MessageNames.h"

namespace Varnel_Tolv_XML_Creation {

/// A start tag as the parser reports it; borrowed for the length of the event.
struct StartTag {
  const MessageName* name = nullptr;
  std::size_t namespaceCount = 0;
  const xmlChar** namespaces = nullptr;  // two pointers each: prefix, uri
  std::size_t attributeCount = 0;
  const xmlChar** attributes = nullptr;  // five pointers each: local, prefix, uri, value, its end

  static constexpr std::size_t kPointersPerAttribute = 5;

  const xmlChar** attribute(std::size_t lngIndex) const noexcept {
    return attributes + lngIndex * kPointersPerAttribute;
  }

  std::string_view value(std::size_t lngIndex) const noexcept {
    const xmlChar** parts = attribute(lngIndex);
    return {reinterpret_cast<const char*>(parts[3]), static_cast<std::size_t>(parts[4] - parts[3])};
  }
};

/// The namespaces that the open elements bind prefixes to.
class PrefixBindings {
 public:
  std::size_t size() const noexcept { return bindings_.size(); }

  void declare(const StartTag& tag);
  void resize(std::size_t lngSize) { bindings_.resize(lngSize); }

  /// Nothing when the prefix is not bound. Without a prefix and a default namespace: the empty one.
  std::optional<std::string_view> find(std::string_view strPrefix) const noexcept;

 private:
  std::vector<std::pair<const xmlChar*, const xmlChar*>> bindings_;  // the innermost last
};

}  // namespace Varnel_Tolv_XML_Creation
