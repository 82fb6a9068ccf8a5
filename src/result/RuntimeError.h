#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include "Export.h"

namespace Varnel_Tolv_XML_Creation {

/// The numbers that a run-time error can carry. They reach the caller as `Acknowledge::ErrorCode`
/// when a procedure meets a failure that it did not expect, so they are part of the interface.
enum RuntimeErrorNumber : std::int32_t {
  kInvalidArgument = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kInternalError = 51,
  kObjectNotSet = 91,
  kInvalidUseOfNull = 94,
  kXmlFailure = -2147467259,   // 0x80004005
  kInvalidName = -2147024809,  // 0x80070057
};

/// Any failure raised while a procedure runs: a number, a description of one line and the source
/// that raised it. Copying never throws and never allocates.
class VARNEL_EXPORT RuntimeError : public std::exception {
 public:
  /// An error with a description of its own, such as the XML library's.
  RuntimeError(std::int32_t lngNumber, std::string_view strDescription,
               std::string_view strSource = kSource);

  /// An error with the standard description of its number (5, 6, 7, 9, 13, 51, 91 or 94).
  explicit RuntimeError(RuntimeErrorNumber lngNumber);

  std::int32_t number() const noexcept { return lngNumber_; }
  const std::string& description() const noexcept;
  const std::string& source() const noexcept;
  const char* what() const noexcept override;

  static constexpr std::string_view kSource = "Varnel_Tolv_XML_Creation";

 private:
  struct Texts;

  std::int32_t lngNumber_;
  std::shared_ptr<const Texts> texts_;
};

/// The exception that is being handled, as a run-time error. To be called in a handler only.
/// An exhausted memory is number 7; an exception of any other type is number 51 with its own text.
VARNEL_EXPORT RuntimeError CurrentRuntimeError();

}  // namespace Varnel_Tolv_XML_Creation
