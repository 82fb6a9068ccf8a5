#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "result/Acknowledge.h"
#include "result/RuntimeError.h"

// What tests say about results. A failure is always compared whole: code, detail and user message.
// A return code that was found is noted as a property of the running test, under the code's name;
// project/ReturnCodes.txt holds the tests that must do so.

namespace Varnel_Tolv_XML_Creation::test {

inline ::testing::AssertionResult Succeeded(const Acknowledge& objAck) {
  if (objAck.Success()) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure()
         << "failed with " << objAck.ErrorCode() << " ("
         << ReturnValueName(objAck.ErrorCode()).value_or("a run-time error") << "), detail \""
         << objAck.ErrorDetail() << "\", user message \"" << objAck.UserMessage() << "\"";
}

inline ::testing::AssertionResult FailedWith(const Acknowledge& objAck, std::int32_t lngErrorCode,
                                             std::string_view strDetail,
                                             std::string_view strUserMessage) {
  if (objAck.ErrorCode() == lngErrorCode && objAck.ErrorDetail() == strDetail &&
      objAck.UserMessage() == strUserMessage && objAck.ErrorSource().empty()) {
    if (const auto strName = ReturnValueName(lngErrorCode)) {
      ::testing::Test::RecordProperty(std::string(*strName), lngErrorCode);
    }
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure()
         << "expected " << lngErrorCode << ", detail \"" << strDetail << "\", user message \""
         << strUserMessage << "\", but it " << (objAck.Success() ? "succeeded: " : "")
         << Succeeded(objAck).message() << ", source \"" << objAck.ErrorSource() << "\"";
}

/// A run-time error caught by the handler of procedure `strProcedure`.
inline ::testing::AssertionResult FailedWithRuntimeError(const Acknowledge& objAck,
                                                         std::int32_t lngNumber,
                                                         std::string_view strProcedure,
                                                         std::string_view strDescription) {
  return FailedWith(objAck, lngNumber,
                    std::string(strProcedure) + " - " + std::string(strDescription),
                    strDescription);
}

/// The run-time error that `body` raises; none when it raises none.
template <class Body>
std::optional<RuntimeError> raisedBy(Body&& body) {
  try {
    body();
  } catch (const RuntimeError& error) {
    return error;
  }
  return std::nullopt;
}

}  // namespace Varnel_Tolv_XML_Creation::test
