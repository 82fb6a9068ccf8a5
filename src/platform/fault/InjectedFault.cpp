#include "platform/fault/InjectedFault.h"

#include <new>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

bool injectedNothing(FaultInjector& faults, DomOperation operation) {
  switch (faults.next(operation)) {
    case Fault::nothing:
      return true;
    case Fault::error:
      throw RuntimeError(kXmlFailure, kInjectedFailure);
    case Fault::outOfMemory:
      throw std::bad_alloc();
    case Fault::none:
      break;
  }
  return false;
}

void mayFail(FaultInjector* faults, DomOperation operation) {
  if (givesNothing(faults, operation)) throw RuntimeError(kXmlFailure, kInjectedFailure);
}

}  // namespace Varnel_Tolv_XML_Creation
