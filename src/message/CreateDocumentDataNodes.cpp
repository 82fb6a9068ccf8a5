#include "message/CreateDocumentDataNodes.h"

#include <optional>
#include <string>

#include "config/Attributes.h"
#include "platform/dom/Document.h"
#include "platform/text/Conversions.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

Acknowledge CreateDocumentDataNodes(const Document& objSendXML, std::string_view strParentXPath,
                                    std::string_view strNodeXPath, const Node& objDocNode) {
  return Guarded("CreateDocumentDataNodes", [&]() -> Acknowledge {
    const Node objParent = objSendXML.selectSingleNode(strParentXPath);
    if (!objParent) return {};

    Node objReference;     // deliberate: both outlive a copy, as a rule without any text to try
    std::string strTried;  // finds again what the copy before it found
    for (const Node& objNode : required(objSendXML.selectNodes(strNodeXPath))) {
      const Node objCopy = objNode.cloneNode(true);
      const Node objInsertBefore = objDocNode.selectSingleNode("insertbefore");
      if (!objInsertBefore) {
        required(objParent.appendChild(objCopy));
        continue;
      }
      const std::optional<std::string> strAppend = objInsertBefore.getAttribute("appendonnomatch");
      const bool blnAppendOnNoMatch = strAppend && toBoolean(*strAppend);
      for (const Node& objPath : required(objInsertBefore.selectNodes("node"))) {
        if (objPath.text().empty()) continue;
        strTried = objPath.text();
        objReference = objParent.selectSingleNode(strTried);
        if (objReference) break;
      }
      if (objReference) {
        required(objParent.insertBefore(objCopy, objReference));
      } else if (blnAppendOnNoMatch) {
        required(objParent.appendChild(objCopy));
      } else {
        // deliberate: the user message is this procedure's own name.
        return Failure(SVC_RET_XML_CREATION_CREATE_DOC_NODES_FAILED,
                       "An error occurred because the child node to insert before in the document "
                       "data was not found. insertbefore xpath:" +
                           strTried,
                       "CreateDocumentDataNodes");
      }
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
