#pragma once

#include <cstddef>
#include <string>
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

  /// A value. The parser writes "&" as "&#38;" in it; where it did, the value goes to `strDecoded`.
  std::string_view value(std::size_t lngIndex, std::string& strDecoded) const;
};

}  // namespace Varnel_Tolv_XML_Creation
