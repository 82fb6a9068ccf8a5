#include "host/FormView.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <utility>

#include "host/FormAnswers.h"
#include "host/Moment.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"

using Varnel_Tolv_XML_Creation::fieldNameOf;

namespace {

constexpr std::size_t kMostListed = 200;  // in the summary

std::string anchorOf(const std::string& strQuestion) { return "q-" + strQuestion; }
std::string anchorOf(const std::string& strQuestion, const std::string& strRow) {
  return anchorOf(strQuestion) + '-' + strRow;
}
std::string anchorOf(const std::string& strQuestion, const std::string& strRow,
                     const std::string& strColumn) {
  return anchorOf(strQuestion, strRow) + '-' + strColumn;
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

/// What an input tells of the texts around it to those who do not see them.
struct Described {
  std::string strBy = {};  // the ids of the texts, in the order in which they are to be heard
  bool blnWrong = false;
  bool blnMust = false;

  void setOn(const ViewElement& control) const {
    control.set("aria-describedby", strBy)
        .setFlag("aria-invalid", blnWrong)
        .setFlag("aria-required", blnMust);
  }
};

struct Control {
  std::string_view strName;
  const std::string& strAnchor;
  std::string_view strKind;
  std::string_view strValue;
  Described described;
};

/// Calls `use` with the value and the label of each choice, and whether it is chosen. An answer
/// that is no choice stays as it was given.
template <class Use>
void forEachChoice(const Input& input, std::string_view strValue, Use use) {
  bool blnKnown = strValue.empty();
  for (const Choice& choice : input.choices) {
    const bool blnChosen = choice.strValue == strValue && !blnKnown;
    use(choice.strValue, choice.strLabel, blnChosen);
    blnKnown = blnKnown || blnChosen;
  }
  if (!blnKnown && !input.choices.empty()) use(strValue, strValue, true);
}

// The inputs are elements of HTML, which a stylesheet need only copy: their many attributes cost it
// ten times as much, one by one, as they cost here. None is of a type that would change or hide an
// answer which does not fit.

void writeRadios(const ViewElement& parent, const Input& input, const Control& control) {
  int lngNumber = 0;
  forEachChoice(input, control.strValue,
                [&](std::string_view strValue, std::string_view strLabel, bool blnChosen) {
                  const std::string strId = control.strAnchor + '-' + std::to_string(++lngNumber);
                  const ViewElement tick = parent.add("tick");
                  tick.add("input")
                      .set("type", "radio")
                      .set("id", strId)
                      .setAlways("name", control.strName)
                      .setAlways("value", strValue)
                      .set("checked", blnChosen ? "checked" : "");
                  tick.add("label", strLabel).set("for", strId);
                });
}

void writeSelect(const ViewElement& parent, const Input& input, const Control& control) {
  const ViewElement select = parent.add("select");
  select.set("id", control.strAnchor).setAlways("name", control.strName);
  control.described.setOn(select);
  select.add("option").setAlways("value", "");
  forEachChoice(input, control.strValue,
                [&](std::string_view strValue, std::string_view strLabel, bool blnChosen) {
                  select.add("option", strLabel)
                      .setAlways("value", strValue)
                      .set("selected", blnChosen ? "selected" : "");
                });
}

void writeControl(const ViewElement& parent, const Input& input, const Control& control) {
  const auto element = [&](const char* name, std::string_view strText = {}) {
    const ViewElement made = parent.add(name, strText);
    made.set("id", control.strAnchor);
    return made;
  };
  const std::string_view strKind = control.strKind;
  if (strKind == "radio") {
    writeRadios(parent, input, control);
  } else if (strKind == "select") {
    writeSelect(parent, input, control);
  } else if (strKind == "output") {
    const ViewElement output =
        element("output", control.strValue.empty() ? input.strOutput : control.strValue);
    if (!control.described.blnWrong) return;
    output.set("tabindex", "-1").set("aria-describedby", control.strAnchor + "-error");
  } else if (strKind == "textarea") {
    const ViewElement area = element("textarea", control.strValue);
    area.setAlways("name", control.strName).set("rows", "4");
    control.described.setOn(area);
  } else {
    const bool blnCheck = strKind == "check";
    const ViewElement made = parent.add("input");
    made.set("type", blnCheck ? "checkbox" : "text")
        .set("id", control.strAnchor)
        .setAlways("name", control.strName)
        .setAlways("value", blnCheck ? "on" : control.strValue);
    if (!blnCheck) {
      made.set("class", "width-" + widthOf(input)).set("inputmode", inputModeOf(strKind));
    }
    control.described.setOn(made);
    if (blnCheck && !control.strValue.empty()) made.set("checked", "checked");
  }
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
  void writeStoredCount(const ViewElement& element, const Question& table);
  void writeInput(const ViewElement& element, const Input& input, const std::string& strName,
                  const std::string& strAnchor, const Listed& place);
  bool writeStored(const ViewElement& element, const Input& input, const std::string& strName,
                   const std::string& strAnchor, const Listed& place);
  /// False when there is none.
  bool writeErrors(const ViewElement& element, const std::string& strAnchor, Listed place,
                   bool blnOutput = false);

  const FormView& view_;
  std::map<std::string, std::vector<const FormError*>> errors_;  // by anchor; "": without a place
  std::vector<Listed> listed_;                                   // in the order of the page
  std::size_t lngErrors_ = 0;
};

/// The rows that the page shows of a table.
std::vector<TableRow> FormWriter::rowsOf(const Question& table) const {
  if (!table.blnDynamic) return table.rows;
  const std::string strCount = fieldNameOf(table.input.strId) + "_rowCount";
  const bool blnNew = view_.strId.empty() && view_.answers.find(strCount) == view_.answers.end();
  std::int64_t lngRows =
      blnNew ? table.lngFirstRows : rowCount(table, view_.answers, view_.lngMostRows);
  if (view_.isConflict()) {
    lngRows = std::max(lngRows, rowCount(table, view_.stored, view_.lngMostRows));
  }
  lngRows = std::min(lngRows, view_.lngMostRows);
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

bool FormWriter::writeErrors(const ViewElement& element, const std::string& strAnchor, Listed place,
                             bool blnOutput) {
  const auto found = errors_.find(strAnchor);
  if (found == errors_.end()) return false;
  place.strAnchor = strAnchor;
  const ViewElement errors = element.add("errors");
  errors.set("id", strAnchor + "-error");
  for (const FormError* const error : found->second) {
    const bool blnNarrower = (!error->strRow.empty() && place.strRow.empty()) ||
                             (!error->strColumn.empty() && place.strColumn.empty());
    place.strMessage = blnNarrower ? error->strInFull : error->strMessage;
    const ViewElement entry = errors.add("error", place.strMessage);
    if (blnOutput) entry.add("computed");
    listed_.push_back(place);
    ++lngErrors_;
  }
  return true;
}

/// Of a conflict: the answer that somebody else saved, where it is another one.
bool FormWriter::writeStored(const ViewElement& element, const Input& input,
                             const std::string& strName, const std::string& strAnchor,
                             const Listed& place) {
  if (!view_.isConflict() || input.blnOutput) return false;
  const std::string_view strStored = answerTo(view_.stored, strName);
  if (strStored == answerTo(view_.answers, strName)) return false;
  // Shown in the words of the choices where there are any.
  const auto choice = std::ranges::find(input.choices, strStored, &Choice::strValue);
  element.add("stored", choice == input.choices.end() ? strStored : choice->strLabel)
      .set("id", strAnchor + "-stored")
      .setFlag("tick", input.strKind == "check");
  Listed other = place;
  other.strAnchor = strAnchor;
  listed_.push_back(other);
  return true;
}

/// A label, what tells of the input, and the input itself: as the page has them, from top to
/// bottom.
void FormWriter::writeInput(const ViewElement& element, const Input& input,
                            const std::string& strName, const std::string& strAnchor,
                            const Listed& place) {
  const std::string_view strValue = answerTo(view_.answers, strName);
  const std::string_view strKind = input.blnOutput ? "output" : std::string_view(input.strKind);
  const bool blnCell = !place.strRow.empty();
  const bool blnGroup = strKind == "radio" && !blnCell;
  const bool blnTick = strKind == "check" && !blnCell;
  const ViewElement around = blnGroup ? element.add("group") : element;
  const auto writeLabel = [&](const ViewElement& parent) {
    const ViewElement label = parent.add(blnGroup ? "legend" : "label", input.strLabel);
    if (!blnGroup) label.set("for", strAnchor);
    if (blnCell) label.add("of", place.strRow);
    if (!blnCell && input.blnRequired) label.add("required");
  };
  if (!blnTick) writeLabel(around);

  Described described;
  const auto describe = [&](const char* ending) {
    described.strBy += (described.strBy.empty() ? "" : " ") + strAnchor + ending;
  };
  // The help for a cell stands at the head of its column.
  const bool blnHelp = !input.strHelp.empty() && !blnCell;
  if (blnHelp) around.add("help", input.strHelp).set("id", strAnchor + "-help");
  if (!input.strHint.empty()) around.add("hint", input.strHint).set("id", strAnchor + "-hint");
  described.blnWrong = writeErrors(around, strAnchor, place, input.blnOutput);
  const bool blnStored = writeStored(around, input, strName, strAnchor, place);
  if (described.blnWrong) describe("-error");
  if (blnStored) describe("-stored");
  if (blnHelp) describe("-help");
  if (!input.strHint.empty()) describe("-hint");
  described.blnMust = input.blnRequired && strKind != "radio" && strKind != "check";

  element.set("class", "kind-" + std::string(strKind) + (described.blnWrong ? " wrong" : "") +
                           (blnStored ? " differs" : ""));
  if (blnGroup) described.setOn(around.set("id", strAnchor).set("tabindex", "-1"));
  const ViewElement inside = blnTick ? element.add("tick") : around;
  writeControl(inside, input, {strName, strAnchor, strKind, strValue, std::move(described)});
  if (blnTick) writeLabel(inside);
}

/// Of a conflict: how many rows were saved elsewhere, where these are not as many as here. The page
/// shows all of both.
void FormWriter::writeStoredCount(const ViewElement& element, const Question& table) {
  if (!view_.isConflict() || !table.blnDynamic) return;
  const std::int64_t lngStored = rowCount(table, view_.stored, view_.lngMostRows);
  const std::int64_t lngHere = rowCount(table, view_.answers, view_.lngMostRows);
  if (lngStored == lngHere) return;
  const std::string strAnchor = anchorOf(table.input.strId);
  element
      .add("stored", std::to_string(lngStored) + (lngStored == 1 ? " row" : " rows") + ", here " +
                         std::to_string(lngHere))
      .set("id", strAnchor + "-stored")
      .setFlag("count", true);
  listed_.push_back({.strAnchor = strAnchor, .strLabel = table.input.strLabel});
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
      .setFlag("dynamic", table.blnDynamic)
      .setFlag("wide", table.columns.size() > 5);
  writeErrors(element, anchorOf(strId), {.strLabel = table.input.strLabel});
  writeStoredCount(element, table);
  if (!table.input.strHelp.empty()) element.add("help", table.input.strHelp);
  for (const Input& column : table.columns) {
    const ViewElement head = element.add("column", column.strLabel);
    if (column.blnRequired) head.add("required");
    if (!column.strHint.empty()) head.add("hint", column.strHint);
    if (!column.strHelp.empty()) head.add("help", column.strHelp);
  }
  for (const TableRow& each : rows) {
    const ViewElement row = element.add("row");
    const std::string strAnchor = anchorOf(strId, each.strId);
    row.set("anchor", strAnchor).set("number", each.strId).set("label", each.strLabel);
    const std::int64_t lngRow = rowNumber(each.strId, INT32_MAX);
    const std::string strRow = each.strLabel.empty() ? "row " + each.strId : each.strLabel;
    writeErrors(row, strAnchor, {.strLabel = table.input.strLabel, .strRow = strRow});
    for (const Input& column : table.columns) {
      writeInput(
          row.add("cell"), column, cellName(table, column, lngRow),
          anchorOf(strId, each.strId, column.strId),
          {.strLabel = table.input.strLabel, .strRow = strRow, .strColumn = column.strLabel});
    }
  }
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
    const std::size_t lngBefore = lngErrors_;
    element.set("id", section.strId).set("title", section.strTitle);
    if (!section.strHelp.empty()) element.add("help", section.strHelp);
    for (const Question& question : section.questions) writeQuestion(element, question);
    if (lngErrors_ > lngBefore) element.set("wrong", std::to_string(lngErrors_ - lngBefore));
  }
}

/// All of them stand at their places; the list of very many would only be longer than the page.
void FormWriter::writeSummary(const ViewElement& root) const {
  std::size_t lngListed = std::min(listed_.size(), kMostListed);
  for (const Listed& each : std::span(listed_).first(lngListed)) {
    const ViewElement problem = root.add("problem");
    const ViewElement place = problem.add("place", each.strLabel);
    place.set("anchor", each.strAnchor);
    if (!each.strRow.empty()) place.add("part", each.strRow);
    if (!each.strColumn.empty()) place.add("part", each.strColumn);
    if (!each.strMessage.empty()) problem.add("message", each.strMessage);
  }
  const auto unplaced = errors_.find("");
  const std::size_t lngUnplaced = unplaced == errors_.end() ? 0 : unplaced->second.size();
  for (std::size_t at = 0; at < lngUnplaced && lngListed < kMostListed; ++at, ++lngListed) {
    const FormError& error = *unplaced->second[at];
    root.add("problem", error.strInFull).setFlag("unmendable", error.strQuestion.empty());
  }
  const std::size_t lngProblems = listed_.size() + lngUnplaced;
  if (lngProblems > 0) root.set("problems", std::to_string(lngProblems));
  if (lngProblems > lngListed) root.set("listed", std::to_string(lngListed));
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
      .setFlag("conflict", view.isConflict())
      .set("version", std::to_string(view.lngVersion))
      .set("token", view.strToken);
  if (!page.strIntro.empty()) root.add("intro", page.strIntro);
  FormWriter writer(view);
  writer.writeHidden(root);
  writer.writeSections(root);
  writer.writeSummary(root);
  return document;
}
