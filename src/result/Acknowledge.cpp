#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

void Acknowledge::SetError(std::int32_t lngErrorCode, std::string_view strErrorDetail,
                           std::string_view strUserMessage, std::string_view /*strErrorSource*/) {
  const std::string strMessage(strUserMessage);  // may be a text of this very object
  lngErrorCode_ = lngErrorCode;
  strErrorDetail_ = strErrorDetail;
  strUserMessage_ = strMessage;
}

Acknowledge Failure(std::int32_t lngErrorCode, std::string_view strErrorDetail,
                    std::string_view strUserMessage) {
  Acknowledge objAck;
  objAck.SetError(lngErrorCode, strErrorDetail, strUserMessage);
  return objAck;
}

}  // namespace Varnel_Tolv_XML_Creation
