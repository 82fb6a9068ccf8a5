#include "message/GetComplexTypeFromAction.h"

#include <string>

#include "deployment/ObjectMapping.h"
#include "platform/dom/KeptModels.h"
#include "platform/dom/Prepared.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

Acknowledge failure(eReturnValues lngErrorCode, std::string_view strDetail) {
  return Failure(lngErrorCode, strDetail,
                 "An error occurred getting the complex type from the action");
}

/// What the path of an id selects. The compiled mapper has it ready; where there is no such, or the
/// id makes something else of the path, that is selected.
Node schemaType(const Document& objSchemaTypeMapper, std::string_view strId) {
  const auto* const types = modelOf<SchemaTypes>(objSchemaTypeMapper);
  if (!types || !ObjectMapping::isPlainId(strId)) {
    return objSchemaTypeMapper.selectSingleNode(schemaTypePath(strId));
  }
  const SchemaType* const type = types->find(strId);
  return type ? nodeOf(objSchemaTypeMapper, type->element()) : Node();
}

}  // namespace

Acknowledge GetComplexTypeFromAction(const Document& objSchemaTypeMapper,
                                     std::string_view strActionId, Node& objComplexType,
                                     const Node& objTarget) {
  return Guarded("GetComplexTypeFromAction", [&]() -> Acknowledge {
    objComplexType = Node();
    const std::string strId = toLower(strActionId);
    if (strId.empty()) {
      return failure(SVC_RET_XML_CREATION_ACTION_MISSING, "The action is missing");
    }
    const Node objSchemaType = schemaType(objSchemaTypeMapper, strId);
    if (!objSchemaType) {
      return failure(SVC_RET_XML_CREATION_CMPLX_TYPE_MISSING, "The complex type is missing");
    }
    objComplexType =
        objTarget ? objSchemaType.cloneFor(objTarget, true) : objSchemaType.cloneNode(true);
    if (!objComplexType) {
      return failure(SVC_RET_XML_CREATION_CLONING_CMPLX_TYPE_FAILED,
                     "Cloning of the complex type object has failed");
    }
    return {};
  });
}

bool standsIn(const Node& objComplexType, const Node& objNode) {
  Node objTop = objNode;
  while (objTop && objTop != objComplexType) objTop = objTop.parentNode();
  return bool{objTop};
}

const SchemaType* compiledType(const Document& objSchemaTypeMapper, std::string_view strActionId) {
  const std::string strId = toLower(strActionId);
  const auto* const types = modelOf<SchemaTypes>(objSchemaTypeMapper);
  return types && ObjectMapping::isPlainId(strId) ? types->find(strId) : nullptr;
}

}  // namespace Varnel_Tolv_XML_Creation
