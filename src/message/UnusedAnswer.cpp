#include "message/UnusedAnswer.h"

#include <algorithm>
#include <string>

#include "config/AnswerLog.h"
#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The lines for which no placeholder ends in their number.
std::string linesWithoutSlot(const AddressLines& lines, const NodeList& colPlaceholders) {
  std::string strSlots;
  for (const Node& objPlaceholder : colPlaceholders) {
    const std::string strId = attributeText(objPlaceholder, kId);
    if (!strId.empty()) strSlots += strId.back();
  }
  std::string strLost;
  for (std::size_t lngLine = 1; lngLine <= lines.size(); ++lngLine) {
    const std::string& strLine = lines[lngLine - 1];
    if (strLine.empty() || strSlots.find(std::to_string(lngLine)) != std::string::npos) continue;
    if (!strLost.empty()) strLost += ", ";
    strLost += strLine;
  }
  return strLost;
}

bool givesNothing(const Node& objParameter) {
  return attributeText(objParameter, kFormLabel) != "true" &&
         isBlank(attributeText(objParameter, kMessageItem)) && !objParameter.hasText();
}

}  // namespace

void noteUnusedAnswer(AnswerLog& answers, const Node& objAction, const NodeList& colPlaceholders,
                      const std::optional<AddressLines>& arrLines) {
  if (arrLines) {
    const std::string strLost = linesWithoutSlot(*arrLines, colPlaceholders);
    if (!strLost.empty()) answers.lose(reason::kLineWithoutSlot, {}, strLost);
    return;
  }
  if (answers.isDecided()) return;
  Node objIdle;
  for (const Node& objParameter : required(objAction.selectNodes("//parameter"))) {
    const std::string strFormValue = attributeText(objParameter, kFormValue);
    if (!saysNo(strFormValue)) {
      answers.lose(strFormValue == "true" ? reason::kValueNotUsed : reason::kWordNotTrue,
                   objParameter);
      return;
    }
    if (givesNothing(objParameter)) objIdle = objParameter;
  }
  const bool blnUnfilled =
      std::any_of(colPlaceholders.begin(), colPlaceholders.end(),
                  [](const Node& objPlaceholder) { return bool{objPlaceholder.parentNode()}; });
  if (objIdle || blnUnfilled) answers.lose(reason::kValueNotUsed, objIdle ? objIdle : objAction);
}

}  // namespace Varnel_Tolv_XML_Creation
