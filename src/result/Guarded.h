#pragma once

#include <string_view>
#include <utility>

#include "result/Acknowledge.h"
#include "result/RuntimeError.h"

// The one handler for run-time errors that every procedure has. A procedure returns
// `Guarded("itsName", [&]() -> Acknowledge { ... })`; whatever its body raises becomes a failed
// result, so a procedure that returns an `Acknowledge` never throws.

namespace Varnel_Tolv_XML_Creation {

/// The failure of procedure `strProcedure` for the exception that is being handled: the error's
/// number, "<procedure> - <description>", and the description as user message. To be called in a
/// handler only. When no memory is left for the texts they are shortened, never the number lost. An
/// error numbered 0 is told as 51, so that no error reads as a success.
Acknowledge FailureFromCurrentError(std::string_view strProcedure) noexcept;

/// Runs `body`, which returns an `Acknowledge` (or a type one converts to), under the convention
/// above.
template <class Body>
auto Guarded(std::string_view strProcedure, Body&& body) noexcept -> decltype(body()) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return FailureFromCurrentError(strProcedure);
  }
}

/// The same for the few procedures whose handler does more: `onError(const RuntimeError&)` may
/// trace and return a result, or raise again.
template <class Body, class OnError>
auto Guarded(std::string_view /*strProcedure*/, Body&& body, OnError&& onError)
    -> decltype(body()) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return std::forward<OnError>(onError)(CurrentRuntimeError());
  }
}

}  // namespace Varnel_Tolv_XML_Creation
