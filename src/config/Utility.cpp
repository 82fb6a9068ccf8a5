#include "config/Utility.h"

#include "platform/fault/InjectedFault.h"
#include "platform/host/Trace.h"
#include "platform/text/Text.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

void writeTrace(const Session& session, std::string_view strSource,
                std::initializer_list<std::string_view> pieces) noexcept {
  try {
    std::string strMessage;
    for (const std::string_view strPiece : pieces) strMessage += strPiece;
    DebugTrace(session.host.traceSink, strMessage, strSource, true);
  } catch (...) {  // no memory for the line: the run matters more than its trace
  }
}

Acknowledge FailureInContext(const Session& session, std::string_view strProcedure,
                             std::int32_t lngErrorCode, std::string_view strDetail) {
  return Failure(lngErrorCode, std::string(strDetail) + " - Context=" + std::string(strProcedure),
                 session.strDefaultUserMessage);
}

Acknowledge TracedFailure(const Session& session, std::string_view strProcedure,
                          std::int32_t lngErrorCode, std::string_view strDetail) {
  trace(session, strProcedure, {strDetail});
  return Failure(lngErrorCode, strDetail, session.strDefaultUserMessage);
}

std::optional<std::vector<std::string>> splitText(const Session& session, std::string_view strText,
                                                  std::string_view strSeparator) {
  if (givesNothing(session.host.documentSettings.faults, DomOperation::split)) return std::nullopt;
  return split(strText, strSeparator);
}

std::string_view GetParentPath(std::string_view strPath) {
  const std::size_t lngSlash = strPath.rfind('/');
  if (lngSlash == std::string_view::npos) throw RuntimeError(kInvalidArgument);
  return strPath.substr(0, lngSlash);
}

}  // namespace Varnel_Tolv_XML_Creation
