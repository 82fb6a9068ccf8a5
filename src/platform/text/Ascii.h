#pragma once

namespace Varnel_Tolv_XML_Creation {

constexpr bool isDigit(char byte) noexcept { return byte >= '0' && byte <= '9'; }

constexpr bool isLetter(char byte) noexcept {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

}  // namespace Varnel_Tolv_XML_Creation
