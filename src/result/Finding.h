#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Export.h"

// What the check of a deployment finds. Plain data.

namespace Varnel_Tolv_XML_Creation {

enum class Severity : std::uint8_t {
  error,    // some form fails, or loses an answer or its verdict
  warning,  // most likely not meant
  note,
};

/// "error", "warning", "note".
VARNEL_EXPORT std::string_view severityName(Severity severity) noexcept;

struct Finding {
  Severity severity = Severity::note;
  std::string code;      // of the rule: "no-mapping"
  std::string file;      // as its path was given; empty where none was named
  std::size_t line = 1;  // in that file, from 1
  std::string object;    // the id of the question, column or hidden field concerned, or empty
  std::string message;   // what is wrong, one line
  std::string hint;      // what to do, one line
};

}  // namespace Varnel_Tolv_XML_Creation
