#pragma once

#include "platform/fault/FaultInjector.h"

namespace Varnel_Tolv_XML_Creation {

/// The description of an injected error.
inline constexpr const char* kInjectedFailure = "Injected failure";

/// Asks the injector how `operation` is to fail. True for Fault::nothing; raises what the other
/// faults stand for.
bool injectedNothing(FaultInjector& faults, DomOperation operation);

/// The same where there may be none.
inline bool givesNothing(FaultInjector* faults, DomOperation operation) {
  return faults && injectedNothing(*faults, operation);
}

/// The same for an operation without a result, where nothing can only be an error.
void mayFail(FaultInjector* faults, DomOperation operation);

}  // namespace Varnel_Tolv_XML_Creation
