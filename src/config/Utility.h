#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Whether trace lines go anywhere. Ask before building a piece of a line that costs something.
inline bool tracing(const Session& session) noexcept { return session.host.traceSink != nullptr; }

/// Writes the trace line of the joined pieces with `strSource` in front. Never fails.
void writeTrace(const Session& session, std::string_view strSource,
                std::initializer_list<std::string_view> pieces) noexcept;

/// The same where trace lines go anywhere. Without a sink nothing is composed.
inline void trace(const Session& session, std::string_view strSource,
                  std::initializer_list<std::string_view> pieces) noexcept {
  if (tracing(session)) writeTrace(session, strSource, pieces);
}

/// How a Boolean stands in the trace.
constexpr std::string_view traceWord(bool blnValue) { return blnValue ? "True" : "False"; }

/// A failure of `strProcedure` whose detail ends by naming it, " - Context=..."; its user message
/// is the default one.
Acknowledge FailureInContext(const Session& session, std::string_view strProcedure,
                             std::int32_t lngErrorCode, std::string_view strDetail);

/// A failure of `strProcedure` whose detail is traced too; its user message is the default one.
Acknowledge TracedFailure(const Session& session, std::string_view strProcedure,
                          std::int32_t lngErrorCode, std::string_view strDetail);

/// The pieces of a text between separators, see `split`; no list only where a test makes it fail.
std::optional<std::vector<std::string>> splitText(const Session& session, std::string_view strText,
                                                  std::string_view strSeparator);

/// What stands before the last "/" of a path: "/a/b" for "/a/b/c", "" for "/a". A path without "/"
/// is run-time error 5.
std::string_view GetParentPath(std::string_view strPath);

}  // namespace Varnel_Tolv_XML_Creation
