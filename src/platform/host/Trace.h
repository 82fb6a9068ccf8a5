#pragma once

#include <string_view>

#include "../../result/Export.h"

namespace Varnel_Tolv_XML_Creation {

/// Receives the trace, one whole line at a time: source, ": ", message, CR LF. What it throws is
/// ignored, so tracing never fails a run.
class VARNEL_EXPORT TraceSink {
 public:
  virtual ~TraceSink() = default;
  virtual void write(std::string_view strLine) = 0;
};

/// Writes the line of `strMessage` and `strSource` to `sink`; does nothing when `blnTrace` is
/// False or there is no sink. An empty source gives a line that begins with ": ".
VARNEL_EXPORT void DebugTrace(TraceSink* sink, std::string_view strMessage,
                              std::string_view strSource, bool blnTrace) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
