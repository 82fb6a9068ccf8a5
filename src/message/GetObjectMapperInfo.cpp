#include "message/GetObjectMapperInfo.h"

#include "config/Attributes.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The child `strName`, whose text goes into `strText` when it is there.
Node readChild(const Node& objMessageItem, std::string_view strName, std::string& strText) {
  Node objChild = objMessageItem.selectSingleNode(strName);
  if (objChild) strText = objChild.text();
  return objChild;
}

}  // namespace

Acknowledge GetObjectMapperInfo(const Node& objMessageItem, ObjectMapperInfo& info) {
  return Guarded("GetObjectMapperInfo", [&]() -> Acknowledge {
    if (!objMessageItem) {
      return Failure(SVC_RET_XML_CREATION_OBJ_MAPPER_OBJ_MISSING,
                     "The object mapper object is missing",
                     "An error occurred retrieving information about the object mapper");
    }
    readChild(objMessageItem, "parentxpath", info.strParentXPath);
    readChild(objMessageItem, "extrapath", info.strExtraPath);
    readChild(objMessageItem, "extranode", info.strExtraNode);
    readChild(objMessageItem, "extravalue", info.strExtraValue);
    const Node objNode = readChild(objMessageItem, "node", info.strNode);
    if (objNode) info.strItem = attributeText(objNode, "item");

    info.blnCheckExists = attributeText(objMessageItem, "checkexists") == "true";
    info.strToSchema = attributeText(objMessageItem, "toschema");
    info.strAbsent = attributeText(objMessageItem, "absent");

    info.objAction = Node();
    const Node objAction = objMessageItem.selectSingleNode("action");
    if (objAction) info.objAction = required(objAction.cloneNode(true));
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
