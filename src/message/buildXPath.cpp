#include "message/buildXPath.h"

#include <string>

#include "config/Utility.h"
#include "config/getSchemaReference.h"
#include "platform/dom/Prepared.h"
#include "platform/fault/InjectedFault.h"
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
Node selectElement(const Document& objXmlDocument, const PathView& path) {
  const Node objNode = selectSingleNode(objXmlDocument, path);
  return objNode && objNode.nodeType() == NodeType::element ? objNode : Node();
}

}  // namespace

Acknowledge buildXPath(const Session& session, std::string_view strParentXPath,
                       std::string_view strNodePath, const Document& objXmlDocument,
                       Node& objCurrentNode) {
  return Guarded(kProcedure, [&] {
    return buildXPath(session, NodePath(strParentXPath, strNodePath), objXmlDocument,
                      objCurrentNode);
  });
}

Acknowledge buildXPath(const Session& session, const NodePath& path, const Document& objXmlDocument,
                       Node& objCurrentNode) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    Node objParent = selectSingleNode(objXmlDocument, path.parent());
    if (!objParent) {
      return FailureInContext(session, kProcedure, SVC_RET_XML_CREATION_PARENT_NODE_MISSING,
                              "Unable to select the parent xpath from the message template xml.");
    }
    if (path.node().empty()) {
      return FailureInContext(session, kProcedure, SVC_RET_XML_CREATION_NODE_PATH_MISSING,
                              "No node path supplied to buildXPath.");
    }
    // deliberate: the line shows blanks around the separator, which is the bare "/".
    trace(session, kProcedure, {"arrNodes = Split(", path.node(), ", ' / ')"});
    if (givesNothing(session.host.documentSettings.faults, DomOperation::split)) {
      return FailureInContext(session, kProcedure, SVC_RET_XML_CREATION_NODE_PATH_ERROR,
                              "Error in node path supplied to buildXPath.");
    }

    Acknowledge objAck;
    std::string_view strUri;  // deliberate: kept from step to step, see getSchemaReference
    for (std::size_t lngStep = 0; lngStep < path.steps(); ++lngStep) {
      const std::string_view strStep = path.step(lngStep);
      const bool blnLast = lngStep + 1 == path.steps();
      const PathView here = path.downTo(lngStep);
      trace(session, kProcedure,
            {"strNodePath = ", here.strText.substr(path.parent().strText.size())});

      objCurrentNode = Node();
      if (!blnLast) {
        trace(session, kProcedure,
              {"Set objCurrentNode = objXmlDocument.selectSingleNode(", here.strText, ")"});
        objCurrentNode = selectElement(objXmlDocument, here);
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
                                "Unable to add the newly created node " + std::string(strStep) +
                                    " to " + std::string(here.strText) + ".");
      }
    }
    return objAck;
  });
}

}  // namespace Varnel_Tolv_XML_Creation
