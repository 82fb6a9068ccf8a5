#include "result/Guarded.h"

#include <cstdint>
#include <string>

namespace Varnel_Tolv_XML_Creation {

namespace {

/// Made beforehand, for where there is no memory left to tell more.
const Acknowledge kNoMemory = Failure(kOutOfMemory, "Out of memory", "Out of memory");

}  // namespace

Acknowledge FailureFromCurrentError(std::string_view strProcedure) noexcept {
  Acknowledge objAck;
  objAck.ErrorCode(kOutOfMemory);
  try {
    const RuntimeError error = CurrentRuntimeError();
    objAck.ErrorCode(error.number() == 0 ? kInternalError : error.number());
    objAck.SetError(objAck.ErrorCode(), std::string(strProcedure) + " - " + error.description(),
                    error.description());
  } catch (...) {  // the number is told all the same, if it came so far
    const std::int32_t lngErrorCode = objAck.ErrorCode();
    objAck = kNoMemory;
    objAck.ErrorCode(lngErrorCode);
  }
  return objAck;
}

}  // namespace Varnel_Tolv_XML_Creation
