#include "message/CreateDocumentDataNodes.h"

#include <optional>
#include <string>

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "platform/dom/Document.h"
#include "platform/text/Conversions.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

void placed(const Session& session, const Node& objNode, const Node& objPlaced) {
  const Node objCopy = required(objPlaced);
  if (session.answers) session.answers->copied(objNode, objCopy);
}

}  // namespace

Acknowledge CreateDocumentDataNodes(const Session& session, const Document& objSendXML,
                                    std::string_view strParentXPath, std::string_view strNodeXPath,
                                    const Node& objDocNode) {
  return Guarded("CreateDocumentDataNodes", [&]() -> Acknowledge {
    const Node objParent = objSendXML.selectSingleNode(strParentXPath);
    if (!objParent) return {};

    Node objReference;     // deliberate: both outlive a copy, as a rule without any text to try
    std::string strTried;  // finds again what the copy before it found
    for (const Node& objNode : required(objSendXML.selectNodes(strNodeXPath))) {
      const Node objCopy = objNode.cloneNode(true);
      const Node objInsertBefore = objDocNode.selectSingleNode("insertbefore");
      if (!objInsertBefore) {
        placed(session, objNode, objParent.appendChild(objCopy));
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
        placed(session, objNode, objParent.insertBefore(objCopy, objReference));
      } else if (blnAppendOnNoMatch) {
        placed(session, objNode, objParent.appendChild(objCopy));
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
