#pragma once

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Moves the children of a complex type, in their order, to the end of `objParentNode`. The complex
/// type itself stays behind.
///
/// Errors: SVC_RET_XML_CREATION_ADD_CHILD_NODE_FAILED; run-time error 91 for Nothing.
Acknowledge AddComplexTypeToParent(const Session& session, const Node& objParentNode,
                                   const Node& objComplexType);

}  // namespace Varnel_Tolv_XML_Creation
