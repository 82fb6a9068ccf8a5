#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

struct Acknowledge::Texts {
  std::string strErrorDetail;
  std::string strUserMessage;
  std::string strErrorSource;
};

const Acknowledge::Texts& Acknowledge::texts() const noexcept {
  static const Texts kEmpty;
  return texts_ ? *texts_ : kEmpty;
}

const std::string& Acknowledge::ErrorSource() const noexcept { return texts().strErrorSource; }

const std::string& Acknowledge::UserMessage() const noexcept { return texts().strUserMessage; }

const std::string& Acknowledge::ErrorDetail() const noexcept { return texts().strErrorDetail; }

// What is given may be a text of this very object: the new texts are made before those go.

void Acknowledge::ErrorSource(std::string_view strErrorSource) {
  texts_ = std::make_shared<const Texts>(
      Texts{ErrorDetail(), UserMessage(), std::string(strErrorSource)});
}

void Acknowledge::UserMessage(std::string_view strUserMessage) {
  SetError(lngErrorCode_, ErrorDetail(), strUserMessage);
}

void Acknowledge::ErrorDetail(std::string_view strErrorDetail) {
  SetError(lngErrorCode_, strErrorDetail, UserMessage());
}

void Acknowledge::SetError(std::int32_t lngErrorCode, std::string_view strErrorDetail,
                           std::string_view strUserMessage, std::string_view /*strErrorSource*/) {
  texts_ = std::make_shared<const Texts>(
      Texts{std::string(strErrorDetail), std::string(strUserMessage), ErrorSource()});
  lngErrorCode_ = lngErrorCode;
}

Acknowledge Failure(std::int32_t lngErrorCode, std::string_view strErrorDetail,
                    std::string_view strUserMessage) {
  Acknowledge objAck;
  objAck.SetError(lngErrorCode, strErrorDetail, strUserMessage);
  return objAck;
}

}  // namespace Varnel_Tolv_XML_Creation
