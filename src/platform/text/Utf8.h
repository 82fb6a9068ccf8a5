#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// A character of a text, or a byte that belongs to none.
struct Utf8Character {
  std::int32_t lngCodePoint = -1;  // negative for such a byte
  std::size_t lngBytes = 1;

  bool isCharacter() const noexcept { return lngCodePoint >= 0; }
};

/// What a text begins with, whose first byte is not ASCII.
Utf8Character firstBeyondAscii(std::string_view strText) noexcept;

/// What a text begins with that is not empty.
inline Utf8Character firstCharacter(std::string_view strText) noexcept {
  const auto lngByte = static_cast<unsigned char>(strText.front());
  return lngByte < 0x80 ? Utf8Character{lngByte, 1} : firstBeyondAscii(strText);
}

}  // namespace Varnel_Tolv_XML_Creation
