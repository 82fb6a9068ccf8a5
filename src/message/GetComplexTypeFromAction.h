#pragma once

#include <string_view>

#include "deployment/SchemaTypes.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// A copy, standing alone, of the complex type (`schematype`) whose id is the lower-cased
/// `strActionId`, in `objComplexType`; Nothing after a failure. One that will be placed in the
/// document of `objTarget` is made for it, see `Node::cloneFor`.
///
/// Errors: SVC_RET_XML_CREATION_ACTION_MISSING for an empty id, _CMPLX_TYPE_MISSING,
/// _CLONING_CMPLX_TYPE_FAILED.
Acknowledge GetComplexTypeFromAction(const Document& objSchemaTypeMapper,
                                     std::string_view strActionId, Node& objComplexType,
                                     const Node& objTarget = {});

/// Whether a node stands in the copy of a complex type, or is that. Has no handler.
bool standsIn(const Node& objComplexType, const Node& objNode);

/// What the compiled schema type mapper says of that complex type; null where there is none, or
/// only the document can tell. Has no handler.
const SchemaType* compiledType(const Document& objSchemaTypeMapper, std::string_view strActionId);

}  // namespace Varnel_Tolv_XML_Creation
