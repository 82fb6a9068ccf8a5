#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

/// The result of a procedure that has none for part of its way.
struct LateResult {
  std::optional<Acknowledge> objAck;

  /// Tells a failure. While there is no result to tell it with, that is use of Nothing: run-time
  /// error 91, raised.
  void fail(std::int32_t lngErrorCode, std::string_view strDetail,
            std::string_view strUserMessage) {
    if (!objAck) throw RuntimeError(kObjectNotSet);
    objAck->SetError(lngErrorCode, strDetail, strUserMessage);
  }
};

/// The handler of such a procedure: a run-time error becomes a failure of `result`, or is replaced
/// by the one of `LateResult::fail`.
template <class Body>
std::optional<Acknowledge> GuardedLate(std::string_view strProcedure, LateResult& result,
                                       Body&& body) {
  return Guarded(strProcedure, std::forward<Body>(body),
                 [&](const RuntimeError& error) -> std::optional<Acknowledge> {
                   result.fail(error.number(),
                               std::string(strProcedure) + " - " + error.description(),
                               error.description());
                   return result.objAck;
                 });
}

}  // namespace Varnel_Tolv_XML_Creation
