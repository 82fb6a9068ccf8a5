#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/schema/StartTag.h"

namespace Varnel_Tolv_XML_Creation {

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
