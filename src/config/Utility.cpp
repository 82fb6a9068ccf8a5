#include "config/Utility.h"

#include <new>

#include "interface/result/RuntimeError.h"
#include "platform/FaultInjector.h"
#include "platform/Text.h"
#include "platform/Trace.h"

namespace Varnel_Tolv_XML_Creation {

void trace(const Session& session, std::string_view strSource,
           std::initializer_list<std::string_view> pieces) noexcept {
  if (!tracing(session)) return;
  try {
    std::string strMessage;
    for (const std::string_view strPiece : pieces) strMessage += strPiece;
    DebugTrace(session.host.traceSink, strMessage, strSource, true);
  } catch (...) {  // no memory for the line: the run matters more than its trace
  }
}

std::optional<std::vector<std::string>> splitText(const Session& session, std::string_view strText,
                                                  std::string_view strSeparator) {
  if (FaultInjector* const faults = session.host.documentSettings.faults) {
    switch (faults->next(DomOperation::split)) {
      case Fault::none:
        break;
      case Fault::nothing:
        return std::nullopt;
      case Fault::error:
        throw RuntimeError(kInvalidArgument);
      case Fault::outOfMemory:
        throw std::bad_alloc();
    }
  }
  return split(strText, strSeparator);
}

std::string_view GetParentPath(std::string_view strPath) {
  const std::size_t lngSlash = strPath.rfind('/');
  if (lngSlash == std::string_view::npos) throw RuntimeError(kInvalidArgument);
  return strPath.substr(0, lngSlash);
}

}  // namespace Varnel_Tolv_XML_Creation
