#pragma once

#include <string_view>

#include "platform/dom/Node.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

class Document;

/// A copy, standing alone, of the complex type (`schematype`) whose id is the lower-cased
/// `strActionId`, in `objComplexType`; Nothing after a failure. One that will be placed in the
/// document of `objTarget` is made for it, see `Node::cloneFor`.
///
/// Errors: SVC_RET_XML_CREATION_ACTION_MISSING for an empty id, _CMPLX_TYPE_MISSING,
/// _CLONING_CMPLX_TYPE_FAILED.
Acknowledge GetComplexTypeFromAction(const Document& objSchemaTypeMapper,
                                     std::string_view strActionId, Node& objComplexType,
                                     const Node& objTarget = {});

}  // namespace Varnel_Tolv_XML_Creation
