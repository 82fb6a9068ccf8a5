#include "platform/text/Utf8.h"

#include <utf8proc.h>

namespace Varnel_Tolv_XML_Creation {

Utf8Character firstBeyondAscii(std::string_view strText) noexcept {
  Utf8Character character;
  const auto lngBytes =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(strText.data()),
                       static_cast<utf8proc_ssize_t>(strText.size()), &character.lngCodePoint);
  if (lngBytes <= 0) return {};
  character.lngBytes = static_cast<std::size_t>(lngBytes);
  return character;
}

}  // namespace Varnel_Tolv_XML_Creation
