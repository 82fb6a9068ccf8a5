#include "ExplainView.h"

#include <filesystem>

#include "varnel_xml_creation/platform/text/Replacement.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

void addAnswer(const ExplainedAnswer& answer, const ViewElement& list) {
  const ViewElement item = list.add("answer");
  item.set("label", withXmlCharacters(answer.strLabel))
      .set("question", withXmlCharacters(answer.strQuestionId))
      .set("row", withXmlCharacters(answer.strRowIndex))
      .set("column", withXmlCharacters(answer.strColumnId))
      .set("outcome", journalOutcomeName(answer.outcome))
      .set("reason", answer.strReason)
      .set("why", withXmlCharacters(answer.strWhy))
      .set("rule", withXmlCharacters(answer.strRule));
  item.add("value", withXmlCharacters(answer.strValue));
  for (const std::string& strPlace : answer.places) {
    item.add("place", withXmlCharacters(strPlace));
  }
}

}  // namespace

ViewDocument explainView(const Explanation& explanation) {
  ViewDocument view("explain");
  view.root()
      .set("form",
           withXmlCharacters(std::filesystem::path(explanation.strForm).filename().string()))
      .set("failure", withXmlCharacters(explanation.strFailure))
      .set("verdict", withXmlCharacters(explanation.strVerdict))
      .set("written", std::to_string(countOf(explanation, JournalOutcome::written)))
      .set("left-out", std::to_string(countOf(explanation, JournalOutcome::leftOut)))
      .set("lost", std::to_string(countOf(explanation, JournalOutcome::lost)));
  for (const ExplainedAnswer& answer : explanation.answers) addAnswer(answer, view.root());
  return view;
}
