#pragma once

#include <string_view>

#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

class Document;
class Node;

/// A copy, standing alone, of the complex type (`schematype`) whose id is the lower-cased
/// `strActionId`, in `objComplexType`; Nothing after a failure.
///
/// Errors: SVC_RET_XML_CREATION_ACTION_MISSING for an empty id, _CMPLX_TYPE_MISSING,
/// _CLONING_CMPLX_TYPE_FAILED.
Acknowledge GetComplexTypeFromAction(const Document& objSchemaTypeMapper,
                                     std::string_view strActionId, Node& objComplexType);

}  // namespace Varnel_Tolv_XML_Creation
