#pragma once

#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// Whether the text is a name without a colon, as prefixes and local names are.
bool isNCName(std::string_view strName);

/// Whether the byte may stand in such a name. Of bytes beyond ASCII it only says that they can
/// belong to a letter: `isNCName` decides.
constexpr bool isNameByte(char byte) noexcept {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= '0' && byte <= '9') || byte == '_' || byte == '-' || byte == '.' ||
         static_cast<unsigned char>(byte) >= 0x80;
}

}  // namespace Varnel_Tolv_XML_Creation
