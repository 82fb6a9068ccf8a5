#include "message/AddInfoToNode.h"

#include <optional>

#include "config/AnswerLog.h"
#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "message/ProtocolObject.h"
#include "message/buildXPath.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "AddInfoToNode";
constexpr std::string_view kUserMessage = "An error occurred adding information to the node";
constexpr std::string_view kParameterUserMessage =
    "An error occurred retrieving the value from the parameter object";
constexpr std::size_t kParameters = 2;

/// Notes of whose answers `strText` is made that goes into `objNode`. Where the question's own is
/// none of them, the whole text stands for it, unless a parameter gives no value at all.
void noteSources(AnswerLog& answers, const NodeList& colParameters, const Node& prtobjct,
                 const Document& objParkXML, const Node& objNode, std::string_view strText) {
  Node objIdle;
  for (const Node& objParameter : colParameters) {
    const std::string strItem = attributeText(objParameter, kItem);
    if (!isBlank(strItem)) {
      answers.writeFrom(selectProtocolObject(objParkXML, strItem), objNode, strText);
    } else if (!isBlank(attributeText(objParameter, kFormValue))) {
      answers.writeFrom(prtobjct, objNode, strText);
    } else if (isBlank(attributeText(objParameter, kFormLabel))) {
      objIdle = objParameter;
    }
  }
  if (objIdle && !answers.isDecided()) answers.lose(reason::kValueNotUsed, objIdle);
  answers.standsFor(objNode);
}

}  // namespace

Acknowledge AddInfoToNode(const Session& session, const Node& prtobjct, const Document& objSendXML,
                          std::string_view strParentXPath, const Document& objParkXML,
                          std::string_view strNode, std::string_view strFieldLabel,
                          std::string_view strValue, const Node& objAction) {
  return Guarded(kProcedure, [&] {
    return AddInfoToNode(session, prtobjct, objSendXML, NodePath(strParentXPath, strNode),
                         objParkXML, strFieldLabel, strValue, objAction);
  });
}

Acknowledge AddInfoToNode(const Session& session, const Node& prtobjct, const Document& objSendXML,
                          const NodePath& place, const Document& objParkXML,
                          std::string_view strFieldLabel, std::string_view strValue,
                          const Node& objAction) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    const std::string strLabelLine = replaceAll(strFieldLabel, "\r\n", "");
    const std::string strValueLine = replaceAll(strValue, "\r\n", "");
    if (!prtobjct) {
      return Failure(SVC_RET_XML_CREATION_PRT_FLD_MISSING,
                     "The protocol field object is not an object", session.strDefaultUserMessage);
    }
    const std::string strQuestionId = attributeText(prtobjct, kId);
    if (isBlank(strQuestionId)) {
      return Failure(SVC_RET_XML_CREATION_QUESTION_ID_MISSING,
                     "The protocol field does not have an identifier. Context=AddInfoToNode",
                     session.strDefaultUserMessage);
    }
    // deliberate: read before the action is tested, so a missing action is use of Nothing.
    std::string strSeparator = attributeText(objAction, "separator");
    if (isBlank(strSeparator)) strSeparator = " ";
    if (!objAction) {
      return Failure(SVC_RET_XML_CREATION_ACTION_MISSING,
                     "The action object is missing. Context=AddInfoToNode",
                     session.strDefaultUserMessage);
    }
    const std::optional<NodeList> colParameters = objAction.selectNodes("parameter");
    if (!colParameters) {
      return Failure(SVC_RET_XML_CREATION_PRM_LST_MISSING, "The parameter list is missing",
                     kUserMessage);
    }
    if (colParameters->length() != kParameters) {
      return Failure(SVC_RET_XML_CREATION_PRM_LST_LNGTH_INCORRECT,
                     "The length of the parameter list is invalid", kUserMessage);
    }

    std::string strText;
    for (const Node& objParameter : *colParameters) {
      std::string strPart;
      Acknowledge objAck =
          GetValueFromParameter(objParameter, objParkXML, strLabelLine, strValueLine, strPart);
      if (!objAck.Success()) return objAck;
      strText = strText.empty() ? strPart : strText + strSeparator + strPart;
    }

    Node objNode;
    // deliberate: only the node counts, not what the lookup of its namespace says.
    static_cast<void>(buildXPath(session, place, objSendXML, objNode));
    if (!objNode) {
      return Failure(SVC_RET_XML_CREATION_CREATE_NODE_FAILED,
                     "An error occurred creating the node for the information", kUserMessage);
    }
    if (session.answers)
      noteSources(*session.answers, *colParameters, prtobjct, objParkXML, objNode, strText);

    objNode.setText(strText);
    objNode.setAttribute(kQuestionId, strQuestionId);
    return {};
  });
}

Acknowledge GetValueFromParameter(const Node& objParameter, const Document& objParkXML,
                                  std::string_view strFieldLabel, std::string_view strValue,
                                  std::string& strResult) {
  return Guarded("GetValueFromParameter", [&]() -> Acknowledge {
    strResult.clear();
    if (!objParameter) {
      return Failure(SVC_RET_XML_CREATION_PRM_OBJ_MISSING,
                     "An error occurred because the parameter object is missing",
                     kParameterUserMessage);
    }
    if (!isBlank(attributeText(objParameter, kFormLabel))) strResult = strFieldLabel;
    if (!isBlank(attributeText(objParameter, kFormValue))) strResult = strValue;

    const std::string strItem = attributeText(objParameter, kItem);
    if (isBlank(strItem)) return {};
    const Node objItem = selectProtocolObject(objParkXML, strItem);
    if (!objItem) {
      return Failure(SVC_RET_XML_CREATION_PRT_FLD_MISSING,
                     "An error occurred because the protocol field object is missing",
                     kParameterUserMessage);
    }
    strResult = attributeText(objItem, kValue);
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
