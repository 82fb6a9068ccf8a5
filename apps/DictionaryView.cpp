#include "DictionaryView.h"

#include <string_view>
#include <vector>

#include "TerminalText.h"
#include "varnel_xml_creation/platform/text/Replacement.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

void addTexts(const std::vector<std::string>& texts, const char* name, const ViewElement& element) {
  for (const std::string& strText : texts) element.add(name, withXmlCharacters(strText));
}

/// A text that Markdown shows as it is, inside a cell of a table too. Any ASCII punctuation mark
/// may stand behind a backslash; blanks would begin or end nothing.
std::string escaped(std::string_view strText) {
  std::string strEscaped;
  for (const char character : oneLine(strText, " ")) {
    if (std::string_view("\\`*_[]<>|~#!&").find(character) != std::string_view::npos) {
      strEscaped += '\\';
    }
    strEscaped += character;
  }
  return strEscaped;
}

std::string joined(const std::vector<std::string>& texts, std::string_view strBetween) {
  std::string strJoined;
  for (const std::string& strText : texts) {
    if (!strJoined.empty()) strJoined += strBetween;
    strJoined += escaped(strText);
  }
  return strJoined;
}

std::string questionCell(const DictionaryEntry& entry) {
  std::string strCell = escaped(entry.strQuestionId);
  if (!entry.strColumnId.empty()) strCell += ", column " + escaped(entry.strColumnId);
  return entry.strLabel.empty() ? strCell : escaped(entry.strLabel) + "<br>" + strCell;
}

std::string typeCell(const DictionaryEntry& entry) {
  std::string strCell = escaped(entry.strKind);
  if (!entry.limits.empty()) strCell += "<br>" + joined(entry.limits, "; ");
  if (!entry.choices.empty()) strCell += "<br>one of: " + joined(entry.choices, ", ");
  return strCell;
}

std::string ruleCell(const DictionaryEntry& entry) {
  std::string strCell = joined(entry.rules, "<br>");
  if (entry.strSource.empty()) return strCell;
  return strCell + (strCell.empty() ? "" : "<br>") + escaped(entry.strSource);
}

}  // namespace

ViewDocument dictionaryView(const Dictionary& dictionary) {
  ViewDocument view("dictionary");
  view.root()
      .set("form", withXmlCharacters(dictionary.strForm))
      .setFlag("schema", dictionary.blnSchema);
  for (const DictionaryEntry& entry : dictionary.entries) {
    const ViewElement item = view.root().add("entry");
    item.set("label", withXmlCharacters(entry.strLabel))
        .set("question", withXmlCharacters(entry.strQuestionId))
        .set("column", withXmlCharacters(entry.strColumnId))
        .set("kind", withXmlCharacters(entry.strKind))
        .set("source", withXmlCharacters(entry.strSource));
    addTexts(entry.limits, "limit", item);
    addTexts(entry.choices, "choice", item);
    addTexts(entry.places, "place", item);
    addTexts(entry.rules, "rule", item);
  }
  return view;
}

std::string dictionaryMarkdown(const Dictionary& dictionary) {
  std::string strText = "# Data dictionary";
  if (!dictionary.strForm.empty()) strText += " of " + escaped(dictionary.strForm);
  strText += "\n\n";
  if (!dictionary.blnSchema) strText += "No schema is named, so no limits are told.\n\n";
  strText +=
      "| Question | Place in the message | Type and limits | Rule |\n"
      "|---|---|---|---|\n";
  for (const DictionaryEntry& entry : dictionary.entries) {
    strText += "| " + questionCell(entry) + " | " + joined(entry.places, "<br>") + " | " +
               typeCell(entry) + " | " + ruleCell(entry) + " |\n";
  }
  return strText;
}
