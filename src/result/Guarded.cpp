#include "result/Guarded.h"

#include <string>

namespace Varnel_Tolv_XML_Creation {

Acknowledge FailureFromCurrentError(std::string_view strProcedure) noexcept {
  Acknowledge objAck;
  objAck.ErrorCode(kOutOfMemory);  // stands when there is no memory left to tell more
  try {
    const RuntimeError error = CurrentRuntimeError();
    objAck.ErrorCode(error.number() == 0 ? kInternalError : error.number());
    objAck.UserMessage(error.description());
    objAck.ErrorDetail(std::string(strProcedure) + " - " + error.description());
  } catch (...) {
    objAck.ErrorDetail("Out of memory");  // short enough to need no memory of its own
    objAck.UserMessage("Out of memory");
  }
  return objAck;
}

}  // namespace Varnel_Tolv_XML_Creation
