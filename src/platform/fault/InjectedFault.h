#pragma once

#include "platform/fault/FaultInjector.h"

namespace Varnel_Tolv_XML_Creation {

/// Asks the injector, if there is one, how `operation` is to fail. True for Fault::nothing; raises
/// what the other faults stand for.
bool givesNothing(FaultInjector* faults, DomOperation operation);

}  // namespace Varnel_Tolv_XML_Creation
