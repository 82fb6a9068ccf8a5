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

/// The reason, and the line where one is to blame: "a reason (line 3)".
inline std::string describe(const ParseError& error) {
  if (error.line == 0) return error.reason;
  return error.reason + " (line " + std::to_string(error.line) + ")";
}

}  // namespace Varnel_Tolv_XML_Creation
