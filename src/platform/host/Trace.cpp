#include "platform/host/Trace.h"

#include <string>

namespace Varnel_Tolv_XML_Creation {

void DebugTrace(TraceSink* sink, std::string_view strMessage, std::string_view strSource,
                bool blnTrace) noexcept {
  if (!blnTrace || sink == nullptr) return;
  // A trace is never worth a run: what the sink throws goes no further, nor does a line for which
  // no memory is left.
  try {
    constexpr std::string_view kBetween = ": ";
    constexpr std::string_view kLineEnd = "\r\n";
    std::string strLine;
    strLine.reserve(strSource.size() + kBetween.size() + strMessage.size() + kLineEnd.size());
    strLine.append(strSource).append(kBetween).append(strMessage).append(kLineEnd);
    sink->write(strLine);
  } catch (...) {
  }
}

}  // namespace Varnel_Tolv_XML_Creation
