#include "message/makeHCPDetailType.h"

#include "config/Attributes.h"
#include "message/CreateDocumentDataNodes.h"
#include "message/buildXPath.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

Acknowledge makeHCPDetailType(const Session& session, const Document& objXmlDocument,
                              const Node& objAction, std::string strParentXPath,
                              std::string_view strNodeXPath, const Node& objDocNode) {
  return Guarded("makeHCPDetailType", [&]() -> Acknowledge {
    Acknowledge objAck;
    if (!objXmlDocument.selectSingleNode(strNodeXPath)) return objAck;

    for (const Node& objParameter : required(objAction.selectNodes("parameter"))) {
      const std::string strAction = toLower(attributeText(objParameter, "action"));
      const std::string strUnder = attributeText(objParameter, "under");
      const std::string strText = objParameter.text();
      const bool blnUnderParent = toLower(strUnder) == "parent";
      if (strAction == "create" && blnUnderParent) {
        Node objCreated;
        objAck = buildXPath(session, strParentXPath, strText, objXmlDocument, objCreated);
      } else if (strAction == "copy") {
        // deliberate: the longer path stays in force for the parameters that follow.
        if (!blnUnderParent) strParentXPath += "/" + strUnder;
        objAck = CreateDocumentDataNodes(session, objXmlDocument, strParentXPath,
                                         std::string(strNodeXPath) + "/" + strText, objDocNode);
      }
      if (!objAck.Success()) return objAck;
    }
    return objAck;
  });
}

}  // namespace Varnel_Tolv_XML_Creation
