#include "park/ParkProtField.h"

#include <string>

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "config/GetFormCollectionItem.h"
#include "config/Names.h"
#include "platform/dom/Prepared.h"
#include "platform/host/WebRequest.h"
#include "platform/text/Conversions.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// What a check box stores: a browser sends "on" for a ticked box and nothing for another.
std::string checkBoxValue(const Node& objField, std::string_view strSubmitted) {
  if (!equalsLower(strSubmitted, "on")) return {};
  const std::string strCheckedValue = attributeText(objField, kCheckedValue);
  return strCheckedValue.empty() ? "true" : strCheckedValue;
}

}  // namespace

Acknowledge ParkProtField(const Session& session, const Node& objField) {
  return Guarded("ParkProtField", [&]() -> Acknowledge {
    if (!objField) {
      return Failure(SVC_RET_XML_CREATION_PROTFLD_LIST_MISSING,
                     "The protocol field list is missing",
                     "An error occurred because the protocol field list is missing");
    }
    const std::string strId = fieldNameOf(attributeView(objField, kId));
    const bool blnCheckBox = attributeView(objField, kType) == "check";
    // deliberate: only its form matters here; a field whose `dynamic` cannot be read is refused.
    static_cast<void>(toBoolean(attributeView(objField, kDynamic)));

    std::string strFieldLabel;
    Acknowledge objAck = GetFormCollectionItem(session, labelNameOf(strId), strFieldLabel);
    if (!objAck.Success()) return objAck;
    const std::string_view strLetterLabel = attributeView(objField, "letterlabel");
    if (!strLetterLabel.empty()) strFieldLabel = strLetterLabel;

    std::string strValue;
    objAck = GetFormCollectionItem(session, strId, strValue);
    if (!objAck.Success()) return objAck;
    if (blnCheckBox) {
      const bool blnSubmitted = !strValue.empty();
      strValue = checkBoxValue(objField, strValue);
      if (session.answers && blnSubmitted && strValue.empty()) session.answers->boxNotOn();
    }

    objField.setAttribute(kValue, strValue);
    objField.setAttribute(kFieldLabel, strFieldLabel);
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
