#include "message/buildXPath.h"

#include <optional>
#include <string>
#include <vector>

#include "config/Utility.h"
#include "config/getSchemaReference.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "buildXPath";

/// What stands before the first ":" of a step, all of it without one. An empty step has no such
/// piece: run-time error 9.
std::string_view schemaIdOf(std::string_view strStep) {
  if (strStep.empty()) throw RuntimeError(kSubscriptOutOfRange);
  return strStep.substr(0, strStep.find(':'));
}

/// The first node that a path selects, if it is an element.
Node selectElement(const Document& objXmlDocument, std::string_view strXPath) {
  const Node objNode = objXmlDocument.selectSingleNode(strXPath);
  return objNode && objNode.nodeType() == NodeType::element ? objNode : Node();
}

}  // namespace

Acknowledge buildXPath(const Session& session, std::string_view strParentXPath,
                       std::string_view strNodePath, const Document& objXmlDocument,
                       Node& objCurrentNode) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    Node objParent = objXmlDocument.selectSingleNode(strParentXPath);
    if (!objParent) {
      return FailureInContext(session, kProcedure, SVC_RET_XML_CREATION_PARENT_NODE_MISSING,
                              "Unable to select the parent xpath from the message template xml.");
    }
    if (strNodePath.empty()) {
      return FailureInContext(session, kProcedure, SVC_RET_XML_CREATION_NODE_PATH_MISSING,
                              "No node path supplied to buildXPath.");
    }
    // deliberate: the line shows blanks around the separator, which is the bare "/".
    trace(session, kProcedure, {"arrNodes = Split(", strNodePath, ", ' / ')"});
    const std::optional<std::vector<std::string>> steps = splitText(session, strNodePath, "/");
    if (!steps) {
      return FailureInContext(session, kProcedure, SVC_RET_XML_CREATION_NODE_PATH_ERROR,
                              "Error in node path supplied to buildXPath.");
    }

    Acknowledge objAck;
    std::string strUri;  // deliberate: kept from step to step, see getSchemaReference
    std::string strWhole;
    strWhole.append(strParentXPath).append("/").append(strNodePath);
    std::string_view strXPath(strWhole.data(), strParentXPath.size());
    for (std::size_t lngStep = 0; lngStep < steps->size(); ++lngStep) {
      const std::string& strStep = (*steps)[lngStep];
      const bool blnLast = lngStep + 1 == steps->size();
      strXPath = {strWhole.data(), strXPath.size() + 1 + strStep.size()};
      trace(session, kProcedure, {"strNodePath = ", strXPath.substr(strParentXPath.size())});

      objCurrentNode = Node();
      if (!blnLast) {
        trace(session, kProcedure,
              {"Set objCurrentNode = objXmlDocument.selectSingleNode(", strXPath, ")"});
        objCurrentNode = selectElement(objXmlDocument, strXPath);
        if (objCurrentNode) objParent = objCurrentNode;
      }
      if (objCurrentNode) continue;

      // deliberate: not checked here. An unknown prefix does not stop the element from being made,
      // but it is the result unless a later lookup succeeds.
      objAck = getSchemaReference(session, schemaIdOf(strStep), strUri);
      trace(session, kProcedure, {"arrSchema = Split(", strStep, ", ':')"});
      trace(session, kProcedure,
            {"Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,", strStep, ", ", strUri,
             ")"});
      objParent =
          objParent.appendChild(objXmlDocument.createNode(NodeType::element, strStep, strUri));
      objCurrentNode = objParent;
      if (!objCurrentNode) {
        return FailureInContext(session, kProcedure,
                                SVC_RET_XML_CREATION_APPEND_NODE_TO_PARENT_FAILED,
                                "Unable to add the newly created node " + strStep + " to " +
                                    std::string(strXPath) + ".");
      }
    }
    return objAck;
  });
}

}  // namespace Varnel_Tolv_XML_Creation
