#include "ExplainText.h"

#include "TerminalText.h"
#include "Words.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

std::string name(const ExplainedAnswer& answer) {
  std::string strName = answer.strQuestionId;
  if (!answer.strRowIndex.empty()) strName += ", row " + answer.strRowIndex;
  if (!answer.strColumnId.empty()) strName += ", column " + answer.strColumnId;
  if (!answer.strLabel.empty()) strName += " (" + answer.strLabel + ')';
  return oneLine(strName);
}

void addAnswer(const ExplainedAnswer& answer, std::string& strText) {
  strText += name(answer) + ": " + oneLine(answer.strValue) + '\n';
  strText += "    ";
  strText += journalOutcomeName(answer.outcome);
  if (answer.outcome == JournalOutcome::lost) {
    strText.append(": ").append(oneLine(answer.strWhy)).append(" [");
    strText.append(answer.strReason).append("]");
  }
  strText += '\n';
  for (const std::string& strPlace : answer.places) strText += "    " + oneLine(strPlace) + '\n';
  if (!answer.strRule.empty()) strText += "    " + oneLine(answer.strRule) + '\n';
}

}  // namespace

std::string explainText(const Explanation& explanation) {
  std::string strText;
  if (!explanation.strFailure.empty()) {
    strText += "The run failed: " + oneLine(explanation.strFailure) + '\n';
  }
  strText += std::to_string(countOf(explanation, JournalOutcome::written)) + " written, " +
             std::to_string(countOf(explanation, JournalOutcome::leftOut)) + " left out, " +
             std::to_string(countOf(explanation, JournalOutcome::lost)) +
             " lost; the schema: " + oneLine(explanation.strVerdict) + '\n';
  for (const bool blnLost : {true, false}) {
    for (const ExplainedAnswer& answer : explanation.answers) {
      if (!isNoAnswer(answer.strValue) && (answer.outcome == JournalOutcome::lost) == blnLost) {
        addAnswer(answer, strText);
      }
    }
  }
  return strText;
}
