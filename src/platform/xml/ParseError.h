#pragma once

#include <cstdint>
#include <string>

namespace Varnel_Tolv_XML_Creation {

/// Why a document could not be loaded.
struct ParseError {
  std::int32_t errorCode = 0;  // 0: it did not fail
  int line = 0;                // counted from 1; 0 where no line is to blame
  std::string reason;          // one line

  static constexpr std::int32_t kCannotOpen = -2146697210;  // 0x800C0006
};

}  // namespace Varnel_Tolv_XML_Creation
