#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "Export.h"
#include "ServiceEnums.h"

namespace Varnel_Tolv_XML_Creation {

/// The outcome of an operation. A new one is successful: code 0 and three empty texts. Copying
/// never throws and never allocates. A reference to a text holds until a text is set or the object
/// is assigned to.
class [[nodiscard]] VARNEL_EXPORT Acknowledge {
 public:
  const std::string& ErrorSource() const noexcept;
  void ErrorSource(std::string_view strErrorSource);

  /// Text meant for the person who submitted the form; that of a run-time error is its description,
  /// which tells such a person nothing.
  const std::string& UserMessage() const noexcept;
  void UserMessage(std::string_view strUserMessage);

  /// Technical description for logs: what failed, often with the XPath or file name involved.
  const std::string& ErrorDetail() const noexcept;
  void ErrorDetail(std::string_view strErrorDetail);

  /// 0 for success, else one of `eReturnValues` or the number of a run-time error.
  std::int32_t ErrorCode() const noexcept { return lngErrorCode_; }
  void ErrorCode(std::int32_t lngErrorCode) noexcept { lngErrorCode_ = lngErrorCode; }

  /// True exactly when the code is 0; it is not stored, so setting the code to 0 makes a failed
  /// object successful again, whatever its texts.
  bool Success() const noexcept { return lngErrorCode_ == 0; }

  /// Sets code, detail and user message.
  // deliberate: the source is accepted and not stored; `ErrorSource` belongs to the caller alone.
  void SetError(std::int32_t lngErrorCode, std::string_view strErrorDetail,
                std::string_view strUserMessage, std::string_view strErrorSource = "");

 private:
  struct Texts;
  const Texts& texts() const noexcept;

  std::int32_t lngErrorCode_ = 0;
  std::shared_ptr<const Texts> texts_;  // null: all are empty, as those of most results
};

/// A failed result with the three values that `SetError` takes.
VARNEL_EXPORT Acknowledge Failure(std::int32_t lngErrorCode, std::string_view strErrorDetail,
                                  std::string_view strUserMessage);

}  // namespace Varnel_Tolv_XML_Creation
