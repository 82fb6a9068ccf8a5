#include "message/GetChildNode.h"

#include <string>
#include <vector>

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "config/convertToXsdDate.h"
#include "message/GetComplexTypeFromAction.h"
#include "message/ProtocolObject.h"
#include "message/UnusedAnswer.h"
#include "platform/text/Ascii.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

Acknowledge failure(eReturnValues lngErrorCode, std::string_view strDetail) {
  return Failure(lngErrorCode, strDetail, "An error occurred building the child node");
}

bool endsInDigit(std::string_view strId) { return !strId.empty() && isDigit(strId.back()); }

/// What the placeholders of one complex type are filled from.
struct ChildValues {
  const Session& session;
  const Node& prtobjct;
  const Node& objAction;
  std::string_view strFieldLabel;
  std::string_view strValue;
  std::string strQuestionId;
  std::vector<Node>& filled;  // the elements that were written to, for the answers
};

/// Writes a value into the element around a placeholder; it is the answer to `objSource`, if any.
void fill(const ChildValues& values, const Node& objParent, std::string_view strText,
          const Node& objSource) {
  if (AnswerLog* const answers = values.session.answers) {
    answers->writeFrom(objSource, objParent, strText);
    values.filled.push_back(objParent);
  }
  objParent.setText(strText);
}

/// A placeholder for one line of a value of several lines.
void fillSlot(const Node& objPlaceholder, const Node& objParent, std::string_view strId,
              const AddressLines& lines, const ChildValues& values) {
  required(objParent.removeChild(objPlaceholder));
  const auto lngSlot = static_cast<std::size_t>(strId.back() - '0');
  if (lngSlot < 1 || lngSlot > lines.size()) throw RuntimeError(kSubscriptOutOfRange);
  const std::string& strLine = lines[lngSlot - 1];
  if (strLine.empty()) {
    required(objParent.parentNode().removeChild(objParent));
    return;
  }
  fill(values, objParent, strLine, values.prtobjct);
  objParent.setAttribute(kQuestionId, values.strQuestionId);
}

/// A placeholder for a single value. One that no parameter names stays as it is.
void fillSingle(const Node& objPlaceholder, const Node& objParent, const std::string& strId,
                const ChildValues& values) {
  if (strId.empty()) return;
  // deliberate: one parameter that does not say messageitem='' is enough to keep the question's id
  // off the elements above.
  const Node objStopMarker = values.objAction.selectSingleNode("//parameter[not(@messageitem='')]");
  const Node objParameter = values.objAction.selectSingleNode("//parameter[@id='" + strId + "']");
  if (!objParameter) return;

  const std::string strFormValue = attributeText(objParameter, kFormValue);
  const std::string strFormLabel = attributeText(objParameter, kFormLabel);
  const std::string strMessageItem = attributeText(objParameter, kMessageItem);

  SetQuestionIdUpwards(objParent, values.strQuestionId, objStopMarker);
  required(objParent.removeChild(objPlaceholder));
  if (strFormValue == "true") {
    fill(values, objParent, values.strValue, values.prtobjct);
  } else if (strFormLabel == "true") {
    fill(values, objParent, values.strFieldLabel, {});
  } else if (isBlank(strMessageItem)) {
    fill(values, objParent, objParameter.text(), {});
  } else {
    const Node objItem = selectProtocolObject(values.prtobjct.parentNode(), strMessageItem);
    if (!objItem) return;
    std::string strItemValue = attributeText(objItem, kValue);
    const std::string strItemType = attributeText(objItem, kType);
    if (strItemType == "date" || strItemType == "time") {
      strItemValue = convertToXsdDate(values.session, strItemType, strItemValue);
    }
    fill(values, objParent, strItemValue, objItem);
    objParent.setAttribute(kQuestionId, strMessageItem);
  }
}

}  // namespace

Acknowledge GetChildNode(const Session& session, const Node& prtobjct,
                         const Document& objSchemaTypeMapper, const Node& objAction,
                         std::string_view strFieldLabel, std::string_view strValue,
                         Node& objChildNode, const std::optional<AddressLines>& arrValues,
                         const std::optional<AddressLines>& /*arrValues2*/,
                         const std::optional<AddressLines>& /*arrValues3*/,
                         const std::optional<AddressLines>& /*arrValues4*/, bool blnMultiValue,
                         const Node& objTarget) {
  return Guarded("GetChildNode", [&]() -> Acknowledge {
    objChildNode = Node();
    if (blnMultiValue && !arrValues) {
      return failure(SVC_RET_XML_CREATION_MULTI_VALUE_MISSING,
                     "An error occurred because the multi value array is missing");
    }
    const std::string strQuestionId = prtobjct ? attributeText(prtobjct, kId) : std::string();
    const std::string strActionId = attributeText(objAction, kId);
    if (strActionId.empty()) {
      return failure(SVC_RET_XML_CREATION_ACTION_MISSING,
                     "An error occurred because the action is missing");
    }
    Node objComplexType;
    Acknowledge objAck =
        GetComplexTypeFromAction(objSchemaTypeMapper, strActionId, objComplexType, objTarget);
    if (!objAck.Success()) return objAck;

    const std::optional<NodeList> colPlaceholders = objComplexType.getElementsByTagName(kValue);
    if (!colPlaceholders) {
      return failure(SVC_RET_XML_CREATION_VALUE_NODES_MISSING,
                     "An error occurred retrieving the value nodes");
    }
    std::vector<Node> filled;
    const ChildValues values{session,  prtobjct,      objAction, strFieldLabel,
                             strValue, strQuestionId, filled};
    for (const Node& objPlaceholder : *colPlaceholders) {
      const std::string strId = toLower(attributeText(objPlaceholder, kId));
      const Node objParent = objPlaceholder.parentNode();
      if (!objParent) {
        return failure(SVC_RET_XML_CREATION_SCHEMA_NODE_MISSING,
                       "An error occurred selecting the schema node");
      }
      if (blnMultiValue && endsInDigit(strId)) {
        fillSlot(objPlaceholder, objParent, strId, *arrValues, values);
      } else {
        fillSingle(objPlaceholder, objParent, strId, values);
      }
    }
    if (session.answers) {
      for (const Node& objFilled : filled) {
        if (!standsIn(objComplexType, objFilled)) session.answers->displaced(objFilled);
      }
      noteUnusedAnswer(*session.answers, objAction, *colPlaceholders, arrValues);
    }
    objChildNode = objComplexType;
    return {};
  });
}

void SetQuestionIdUpwards(const Node& objNode, std::string_view strQuestionId,
                          const Node& objStopMarker) {
  for (Node objCurrent = objNode; objCurrent; objCurrent = objCurrent.parentNode()) {
    // Only above the node given does the walk end here: that one has to be an element itself.
    if (objCurrent != objNode && objCurrent.nodeType() != NodeType::element) return;
    objCurrent.setAttribute(kQuestionId, strQuestionId);
    if (objStopMarker) return;
  }
}

}  // namespace Varnel_Tolv_XML_Creation
