#include "message/GetComplexTypeFromAction.h"

#include <string>

#include "platform/dom/Document.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

Acknowledge failure(eReturnValues lngErrorCode, std::string_view strDetail) {
  return Failure(lngErrorCode, strDetail,
                 "An error occurred getting the complex type from the action");
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
    const Node objSchemaType = objSchemaTypeMapper.selectSingleNode(
        "SchemaTypeMapperDocument/schematypes/schematype[@id='" + strId + "']");
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

}  // namespace Varnel_Tolv_XML_Creation
