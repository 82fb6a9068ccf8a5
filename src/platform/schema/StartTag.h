#pragma once

#include <cstddef>
#include <string_view>

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

}  // namespace Varnel_Tolv_XML_Creation
