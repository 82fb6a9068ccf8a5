#include "host/FormView.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "host/FormAnswers.h"
#include "host/Moment.h"
#include "platform/host/WebRequest.h"

using Varnel_Tolv_XML_Creation::fieldNameOf;

namespace {

std::string anchorOf(const std::string& strQuestion) { return "q-" + strQuestion; }
std::string anchorOf(const std::string& strQuestion, const std::string& strRow) {
  return anchorOf(strQuestion) + '-' + strRow;
}
std::string anchorOf(const std::string& strQuestion, const std::string& strRow,
                     const std::string& strColumn) {
  return anchorOf(strQuestion, strRow) + '-' + strColumn;
}

// What the stylesheet would have to ask of every input, which there are many of: a test there costs
// hundreds of times what it costs here.

/// Whether the input is a line of text, with one keyboard or another.
bool isPlain(std::string_view strKind) {
  constexpr std::string_view kOthers[] = {"output", "textarea", "select", "radio", "check"};
  return std::ranges::find(kOthers, strKind) == std::end(kOthers);
}

std::string widthOf(const Input& input) {
  if (!input.strWidth.empty()) return input.strWidth;
  if (input.strKind == "date" || input.strKind == "time" || input.strKind == "number") {
    return "short";
  }
  const std::int64_t lngMost = rowNumber(input.strMaxLength, 50);  // 0: more, or not known
  return lngMost == 0 ? "long" : lngMost <= 20 ? "short" : "medium";
}

const char* inputModeOf(std::string_view strKind) {
  if (strKind == "number") return "decimal";
  return strKind == "email" ? "email" : strKind == "tel" ? "tel" : "";
}

/// Writes the questions, with each error at its cell or question; at the row or the table where the
/// page has no such cell or row.
class FormWriter {
 public:
  explicit FormWriter(const FormView& view) : view_(view) {
    if (view.errors.empty()) return;
    const std::set<std::string> anchors = anchorsOfPage();
    for (const FormError& error : view.errors) {
      std::string strAnchor = anchorOf(error.strQuestion);
      for (std::string strNearer : {anchorOf(error.strQuestion, error.strRow),
                                    anchorOf(error.strQuestion, error.strRow, error.strColumn)}) {
        if (anchors.contains(strNearer)) strAnchor = std::move(strNearer);
      }
      if (!anchors.contains(strAnchor)) strAnchor.clear();
      errors_[strAnchor].push_back(&error);
    }
  }

  void writeSections(const ViewElement& root);
  void writeSummary(const ViewElement& root) const;
  void writeHidden(const ViewElement& root) const;

 private:
  struct Listed {
    std::string strAnchor = {};
    std::string strLabel = {};
    std::string strRow = {};
    std::string strColumn = {};
    std::string strMessage = {};
  };

  std::set<std::string> anchorsOfPage() const;
  std::vector<TableRow> rowsOf(const Question& table) const;
  void writeQuestion(const ViewElement& section, const Question& question);
  void writeTable(const ViewElement& element, const Question& table);
  void writeInput(const ViewElement& element, const Input& input, const std::string& strName,
                  const std::string& strAnchor, const Listed& place);
  /// False when there is none.
  bool writeErrors(const ViewElement& element, const std::string& strAnchor, Listed place);

  const FormView& view_;
  std::map<std::string, std::vector<const FormError*>> errors_;  // by anchor; "": without a place
  std::vector<Listed> listed_;                                   // in the order of the page
};

/// The rows that the page shows of a table.
std::vector<TableRow> FormWriter::rowsOf(const Question& table) const {
  if (!table.blnDynamic) return table.rows;
  const std::string strCount = fieldNameOf(table.input.strId) + "_rowCount";
  const bool blnNew = view_.strId.empty() && view_.answers.find(strCount) == view_.answers.end();
  const std::int64_t lngRows =
      blnNew ? table.lngFirstRows
             : std::min(rowCount(table, view_.answers, view_.lngMostRows), view_.lngMostRows);
  std::vector<TableRow> rows;
  for (std::int64_t lngRow = 1; lngRow <= lngRows; ++lngRow) {
    rows.push_back({std::to_string(lngRow), ""});
  }
  return rows;
}

std::set<std::string> FormWriter::anchorsOfPage() const {
  std::set<std::string> anchors;
  for (const Section& section : view_.page->sections) {
    for (const Question& question : section.questions) {
      const std::string& strId = question.input.strId;
      anchors.insert(anchorOf(strId));
      if (!question.blnTable) continue;
      for (const TableRow& row : rowsOf(question)) {
        anchors.insert(anchorOf(strId, row.strId));
        for (const Input& column : question.columns) {
          anchors.insert(anchorOf(strId, row.strId, column.strId));
        }
      }
    }
  }
  return anchors;
}

bool FormWriter::writeErrors(const ViewElement& element, const std::string& strAnchor,
                             Listed place) {
  const auto found = errors_.find(strAnchor);
  if (found == errors_.end()) return false;
  place.strAnchor = strAnchor;
  for (const FormError* const error : found->second) {
    const bool blnNarrower = (!error->strRow.empty() && place.strRow.empty()) ||
                             (!error->strColumn.empty() && place.strColumn.empty());
    place.strMessage = blnNarrower ? error->strInFull : error->strMessage;
    element.add("error", place.strMessage);
    listed_.push_back(place);
  }
  return true;
}

void FormWriter::writeInput(const ViewElement& element, const Input& input,
                            const std::string& strName, const std::string& strAnchor,
                            const Listed& place) {
  const std::string_view strValue = answerTo(view_.answers, strName);
  const bool blnOutput = input.blnOutput;
  const std::string strKind = blnOutput ? "output" : input.strKind;
  const bool blnPlain = isPlain(strKind);
  element.set("anchor", strAnchor)
      .set("name", strName)
      .set("kind", strKind)
      .setFlag("plain", blnPlain)
      .set("label", input.strLabel)
      .set("of", place.strRow)
      .set("hint", input.strHint)
      .set("maxlength", input.strMaxLength)
      .setFlag("required", input.blnRequired)
      .setFlag("must", input.blnRequired && strKind != "radio" && strKind != "check")
      .set("value", blnOutput && strValue.empty() ? input.strOutput : strValue);
  if (blnPlain) element.set("width", widthOf(input)).set("inputmode", inputModeOf(strKind));
  // The help for a cell stands at the head of its column.
  const bool blnHelp = !input.strHelp.empty() && place.strColumn.empty();
  if (blnHelp) element.add("help", input.strHelp);
  if (input.strKind == "check") element.setFlag("checked", !strValue.empty());
  bool blnKnown = strValue.empty();
  for (const Choice& choice : input.choices) {
    const bool blnChosen = choice.strValue == strValue && !blnKnown;
    element.add("choice", choice.strLabel)
        .set("value", choice.strValue)
        .setFlag("chosen", blnChosen);
    blnKnown = blnKnown || blnChosen;
  }
  // An answer that is no choice stays as it was given.
  if (!blnKnown && !input.choices.empty()) {
    element.add("choice", strValue).set("value", strValue).setFlag("chosen", true);
  }
  bool blnStored = false;
  if (view_.strNotice == "conflict" && !blnOutput) {
    const std::string_view strStored = answerTo(view_.stored, strName);
    blnStored = strStored != strValue;
    if (blnStored) {
      // Shown in the words of the choices where there are any.
      const auto choice = std::ranges::find(input.choices, strStored, &Choice::strValue);
      element.add("stored", choice == input.choices.end() ? strStored : choice->strLabel);
      Listed other = place;
      other.strAnchor = strAnchor;
      listed_.push_back(other);
    }
  }
  const bool blnWrong = writeErrors(element, strAnchor, place);
  // What stands around the input and tells of it, in the order in which it is to be heard.
  std::string strDescribed;
  const auto describe = [&](bool blnThere, const char* ending) {
    if (blnThere) strDescribed += (strDescribed.empty() ? "" : " ") + strAnchor + ending;
  };
  describe(blnWrong, "-error");
  describe(blnStored, "-stored");
  describe(blnHelp, "-help");
  describe(!input.strHint.empty(), "-hint");
  element.set("described", strDescribed)
      .set("marks", std::string(blnWrong ? " wrong" : "") + (blnStored ? " differs" : ""));
}

void FormWriter::writeTable(const ViewElement& element, const Question& table) {
  const std::string& strId = table.input.strId;
  const std::vector<TableRow> rows = rowsOf(table);
  element.set("anchor", anchorOf(strId))
      .set("id", strId)
      .set("label", table.input.strLabel)
      .set("count-name", fieldNameOf(strId) + "_rowCount")
      .set("count", std::to_string(rows.size()))
      .set("add", table.strAdd)
      .setFlag("dynamic", table.blnDynamic);
  if (!table.input.strHelp.empty()) element.add("help", table.input.strHelp);
  writeErrors(element, anchorOf(strId), {.strLabel = table.input.strLabel});
  for (const Input& column : table.columns) {
    const ViewElement head = element.add("column");
    head.set("label", column.strLabel)
        .set("hint", column.strHint)
        .setFlag("required", column.blnRequired);
    if (!column.strHelp.empty()) head.add("help", column.strHelp);
  }
  const auto writeRow = [&](const ViewElement& row, const TableRow& each) {
    row.set("number", each.strId).set("label", each.strLabel);
    const std::int64_t lngRow = rowNumber(each.strId, INT32_MAX);
    const std::string strRow = each.strLabel.empty() ? "row " + each.strId : each.strLabel;
    writeErrors(row, anchorOf(strId, each.strId),
                {.strLabel = table.input.strLabel, .strRow = strRow});
    for (const Input& column : table.columns) {
      writeInput(
          row.add("cell"), column, cellName(table, column, lngRow),
          anchorOf(strId, each.strId, column.strId),
          {.strLabel = table.input.strLabel, .strRow = strRow, .strColumn = column.strLabel});
    }
  };
  for (const TableRow& row : rows) writeRow(element.add("row"), row);
}

void FormWriter::writeQuestion(const ViewElement& section, const Question& question) {
  if (question.blnTable) {
    writeTable(section.add("table"), question);
    return;
  }
  const std::string& strId = question.input.strId;
  writeInput(section.add("field"), question.input, fieldNameOf(strId), anchorOf(strId),
             {.strLabel = question.input.strLabel});
}

void FormWriter::writeSections(const ViewElement& root) {
  for (const Section& section : view_.page->sections) {
    const ViewElement element = root.add("section");
    element.set("id", section.strId).set("title", section.strTitle);
    if (!section.strHelp.empty()) element.add("help", section.strHelp);
    for (const Question& question : section.questions) writeQuestion(element, question);
  }
}

void FormWriter::writeSummary(const ViewElement& root) const {
  const auto write = [&](const Listed& each) {
    root.add("problem", each.strMessage)
        .set("anchor", each.strAnchor)
        .set("label", each.strLabel)
        .set("row", each.strRow)
        .set("column", each.strColumn);
  };
  for (const Listed& each : listed_) write(each);
  const auto unplaced = errors_.find("");
  if (unplaced == errors_.end()) return;
  for (const FormError* const error : unplaced->second) {
    const ViewElement problem = root.add("problem", error->strInFull);
    problem.setFlag("unmendable", error->strQuestion.empty());
  }
}

void FormWriter::writeHidden(const ViewElement& root) const {
  for (const HiddenField& field : view_.page->hidden) {
    if (field.isFixed()) continue;
    std::string strValue(answerTo(view_.answers, field.strId));
    if (strValue.empty())
      strValue = answerTo(view_.answers, std::string(kHiddenPrefix) + field.strOutput);
    if (strValue.empty() && field.strValue == "{now}") strValue = localMomentText();
    root.add("hidden").set("name", field.strId).set("value", strValue);
  }
}

}  // namespace

ViewDocument viewOf(const FormView& view) {
  ViewDocument document("form");
  const ViewElement root = document.root();
  const PageModel& page = *view.page;
  root.set("form", view.strForm)
      .set("title", page.strTitle)
      .set("lang", page.strLanguage)
      .set("action", view.strAction)
      .set("id", view.strId)
      .set("state", view.strState)
      .set("notice", view.strNotice)
      .set("saved", view.strSaved)
      .setFlag("unsaved", view.blnUnsaved)
      .set("version", std::to_string(view.lngVersion))
      .set("token", view.strToken);
  if (!page.strIntro.empty()) root.add("intro", page.strIntro);
  FormWriter writer(view);
  writer.writeHidden(root);
  writer.writeSections(root);
  writer.writeSummary(root);
  return document;
}
