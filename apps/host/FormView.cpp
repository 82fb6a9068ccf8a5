#include "host/FormView.h"

#include <algorithm>
#include <map>

#include "host/FormAnswers.h"
#include "host/FormControl.h"
#include "host/Moment.h"
#include "host/PageTexts.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"

using Varnel_Tolv_XML_Creation::fieldNameOf;
using Varnel_Tolv_XML_Creation::rowCountNameOf;

namespace {

std::string anchorOf(const std::string& strQuestion) { return "q-" + strQuestion; }
std::string anchorOf(const std::string& strQuestion, const std::string& strRow) {
  return anchorOf(strQuestion) + '-' + strRow;
}
std::string anchorOf(const std::string& strQuestion, const std::string& strRow,
                     const std::string& strColumn) {
  return anchorOf(strQuestion, strRow) + '-' + strColumn;
}

/// Writes the questions, with each error at its cell or question; at the row or the table where the
/// page has no such cell or row.
class FormWriter {
 public:
  FormWriter(const FormView& form, ViewText& view)
      : form_(form), view_(view), texts_(PageTexts::of(form.page->strLanguage)) {
    for (const FormError& error : form.errors) errors_[placeOf(error)].push_back(&error);
  }

  void writeHidden();
  void writeSections();
  void writeSummary();

 private:
  struct Listed {
    std::string strAnchor = {};
    std::string strLabel = {};
    std::string strRow = {};
    bool blnRowNumber = false;  // that is its number, for it has no label
    std::string strColumn = {};
    std::string strMessage = {};
  };

  std::string placeOf(const FormError& error);
  std::int64_t rowsOn(const Question& table);
  void writeTable(const Question& table);
  void writeRow(const Question& table, const TableRow& row);
  void writeStoredCount(const Question& table);
  void writePart(const char* element, const Input& input, const std::string& strName,
                 const std::string& strAnchor, const Listed& place);
  void writeErrors(const std::string& strAnchor, const Listed& at, bool blnOutput = false);
  bool isStoredOtherwise(const Input& input, const std::string& strName) const;
  void writeStored(const Input& input, const std::string& strName, const std::string& strAnchor,
                   const Listed& place);
  bool hasErrors(const std::string& strAnchor) const { return errors_.contains(strAnchor); }
  void addHelp(const std::string& strHelp, const std::string& strId = "");

  const FormView& form_;
  ViewText& view_;
  const PageTexts& texts_;
  std::map<std::string, std::vector<const FormError*>> errors_;  // by anchor; "": without a place
  std::map<const Question*, std::int64_t> rows_;                 // of dynamic tables
  std::vector<Listed> listed_;                                   // in the order of the page
  std::size_t lngErrors_ = 0;
};

/// How many rows the page shows of a dynamic table.
std::int64_t FormWriter::rowsOn(const Question& table) {
  const auto [known, blnNew] = rows_.try_emplace(&table);
  if (!blnNew) return known->second;
  const std::string strCount = rowCountNameOf(table.input.strId);
  const bool blnNewForm = form_.strId.empty() && !form_.answers->contains(strCount);
  std::int64_t lngRows = blnNewForm ? 1 : rowCount(table, *form_.answers, form_.lngMostRows);
  if (form_.isConflict()) {
    lngRows = std::max(lngRows, rowCount(table, form_.stored, form_.lngMostRows));
  }
  return known->second = std::min(lngRows, form_.lngMostRows);
}

/// The anchor of the nearest place that the page has for an error: its cell, row, table or
/// question. Empty when it has none.
std::string FormWriter::placeOf(const FormError& error) {
  const Question* const question = form_.page->find(error.strQuestion);
  if (question == nullptr) return "";
  const bool blnRow =
      question->blnTable &&
      (question->blnDynamic
           ? std::to_string(rowNumber(error.strRow, rowsOn(*question))) == error.strRow
           : std::ranges::find(question->rows, error.strRow, &TableRow::strId) !=
                 question->rows.end());
  if (!blnRow) return anchorOf(error.strQuestion);
  const bool blnColumn = std::ranges::find(question->columns, error.strColumn, &Input::strId) !=
                         question->columns.end();
  return blnColumn ? anchorOf(error.strQuestion, error.strRow, error.strColumn)
                   : anchorOf(error.strQuestion, error.strRow);
}

/// The errors at a place; none without any.
void FormWriter::writeErrors(const std::string& strAnchor, const Listed& at, bool blnOutput) {
  const auto found = errors_.find(strAnchor);
  if (found == errors_.end()) return;
  Listed place = at;
  place.strAnchor = strAnchor;
  view_.begin("errors").set("id", strAnchor + "-error");
  for (const FormError* const error : found->second) {
    const bool blnNarrower = (!error->strRow.empty() && place.strRow.empty()) ||
                             (!error->strColumn.empty() && place.strColumn.empty());
    place.strMessage = blnNarrower ? error->inFull() : error->strMessage;
    view_.begin("error").set("lang", texts_.language()).textPlace(place.strMessage);
    if (blnOutput) view_.add("computed");
    view_.end();
    listed_.push_back(place);
    ++lngErrors_;
  }
  view_.end();
}

/// Of a conflict: whether somebody else saved another answer.
bool FormWriter::isStoredOtherwise(const Input& input, const std::string& strName) const {
  return form_.isConflict() && !input.blnOutput &&
         answerTo(form_.stored, strName) != answerTo(*form_.answers, strName);
}

void FormWriter::writeStored(const Input& input, const std::string& strName,
                             const std::string& strAnchor, const Listed& place) {
  const std::string_view strStored = answerTo(form_.stored, strName);
  const bool blnNone = strStored.empty();
  view_.begin("stored").set("id", strAnchor + "-stored");
  view_.setFlag("sent", form_.strState == "accepted");
  if (input.strKind == "check") {
    view_.set("as", blnNone ? "not-ticked" : "ticked");
  } else {
    // Shown in the words of the choices where there are any.
    const auto choice = std::ranges::find(input.choices, strStored, &Choice::strValue);
    view_.set("as", blnNone ? "none" : "answer");
    view_.textPlace(choice == input.choices.end() ? strStored : choice->strLabel);
  }
  view_.end();
  Listed other = place;
  other.strAnchor = strAnchor;
  listed_.push_back(other);
}

void FormWriter::addHelp(const std::string& strHelp, const std::string& strId) {
  if (!strHelp.empty()) view_.begin("help").set("id", strId).text(strHelp).end();
}

/// An element with a label, what tells of the input, and the input itself: as the page has them,
/// from top to bottom.
void FormWriter::writePart(const char* element, const Input& input, const std::string& strName,
                           const std::string& strAnchor, const Listed& place) {
  const std::string_view strKind = input.blnOutput ? "output" : std::string_view(input.strKind);
  const bool blnCell = !place.strRow.empty();
  const bool blnGroup = strKind == "radio" && !blnCell;
  const bool blnTick = strKind == "check" && !blnCell;
  const bool blnStored = isStoredOtherwise(input, strName);
  // The help for a cell stands at the head of its column.
  const bool blnHelp = !input.strHelp.empty() && !blnCell;

  Described described;
  described.blnWrong = hasErrors(strAnchor);
  described.blnMust = input.blnRequired && strKind != "radio" && strKind != "check";
  const auto describe = [&](bool blnThere, const char* ending) {
    if (blnThere) described.strBy += (described.strBy.empty() ? "" : " ") + strAnchor + ending;
  };
  describe(described.blnWrong, "-error");
  describe(blnStored, "-stored");
  describe(blnHelp, "-help");
  describe(!input.strHint.empty(), "-hint");

  const auto writeLabel = [&] {
    view_.begin(blnGroup ? "legend" : "label").set("for", blnGroup ? "" : strAnchor);
    view_.text(input.strLabel);
    if (blnCell) view_.begin("of").setFlag("number", place.blnRowNumber).text(place.strRow).end();
    if (!blnCell && input.blnRequired) view_.add("required");
    view_.end();
  };

  view_.beginPart();
  view_.begin(element).set("class", "kind-" + std::string(strKind) +
                                        (described.blnWrong ? " wrong" : "") +
                                        (blnStored ? " differs" : ""));
  if (blnGroup) {
    view_.begin("group").set("id", strAnchor).set("tabindex", "-1");
    described.setOn(view_);
  }
  if (!blnTick) writeLabel();
  if (blnHelp) addHelp(input.strHelp, strAnchor + "-help");
  if (!input.strHint.empty()) {
    view_.begin("hint").set("id", strAnchor + "-hint").set("lang", input.strHintLanguage);
    view_.text(input.strHint).end();
  }
  writeErrors(strAnchor, place, input.blnOutput);
  if (blnStored) writeStored(input, strName, strAnchor, place);
  if (blnTick) view_.begin("tick");
  writeControl(view_, input,
               {strName, strAnchor, strKind, answerTo(*form_.answers, strName), described});
  if (blnTick) writeLabel();
  if (blnTick || blnGroup) view_.end();
  view_.end();
  view_.endPart();
}

/// Of a conflict: how many rows were saved elsewhere, where these are not as many as here. The page
/// shows all of both.
void FormWriter::writeStoredCount(const Question& table) {
  if (!form_.isConflict() || !table.blnDynamic) return;
  const std::int64_t lngStored = rowCount(table, form_.stored, form_.lngMostRows);
  const std::int64_t lngHere = rowCount(table, *form_.answers, form_.lngMostRows);
  if (lngStored == lngHere) return;
  const std::string strAnchor = anchorOf(table.input.strId);
  view_.begin("stored").set("id", strAnchor + "-stored");
  view_.setFlag("sent", form_.strState == "accepted").set("as", "count");
  view_.set("lang", texts_.language());
  view_.textPlace(
      texts_(lngStored == 1 ? "1 row, here {here}" : "{stored} rows, here {here}",
             {{"stored", std::to_string(lngStored)}, {"here", std::to_string(lngHere)}}));
  view_.end();
  listed_.push_back({.strAnchor = strAnchor, .strLabel = table.input.strLabel});
}

void FormWriter::writeTable(const Question& table) {
  const std::string& strId = table.input.strId;
  std::vector<TableRow> rows = table.rows;
  if (table.blnDynamic) {
    rows.clear();
    for (std::int64_t lngRow = 1; lngRow <= rowsOn(table); ++lngRow) {
      rows.push_back({std::to_string(lngRow), ""});
    }
  }
  view_.begin("table")
      .set("anchor", anchorOf(strId))
      .set("id", strId)
      .set("label", table.input.strLabel)
      .set("count-name", rowCountNameOf(strId))
      .set("count", std::to_string(rows.size()))
      .set("add", table.strAdd)
      .setFlag("dynamic", table.blnDynamic)
      .setFlag("wide", table.columns.size() > 5);
  writeErrors(anchorOf(strId), {.strLabel = table.input.strLabel});
  writeStoredCount(table);
  addHelp(table.input.strHelp);
  for (const Input& column : table.columns) {
    view_.begin("column").text(column.strLabel);
    if (column.blnRequired) view_.add("required");
    if (!column.strHint.empty()) {
      view_.begin("hint").set("lang", column.strHintLanguage).text(column.strHint).end();
    }
    addHelp(column.strHelp);
    view_.end();
  }
  for (const TableRow& row : rows) writeRow(table, row);
  view_.end();
}

void FormWriter::writeRow(const Question& table, const TableRow& row) {
  const std::string& strId = table.input.strId;
  const std::string strAnchor = anchorOf(strId, row.strId);
  const std::int64_t lngRow = rowNumber(row.strId, INT32_MAX);
  const bool blnNumber = row.strLabel.empty();
  Listed place{.strLabel = table.input.strLabel,
               .strRow = blnNumber ? row.strId : row.strLabel,
               .blnRowNumber = blnNumber};
  view_.begin("row").set("anchor", strAnchor).set("number", row.strId).set("label", row.strLabel);
  writeErrors(strAnchor, place);
  for (const Input& column : table.columns) {
    place.strColumn = column.strLabel;
    writePart("cell", column, cellName(table, column, lngRow),
              anchorOf(strId, row.strId, column.strId), place);
  }
  view_.end();
}

void FormWriter::writeSections() {
  for (const Section& section : form_.page->sections) {
    const std::size_t lngBefore = lngErrors_;
    view_.begin("section").set("id", section.strId).set("title", section.strTitle);
    addHelp(section.strHelp);
    for (const Question& question : section.questions) {
      const std::string& strId = question.input.strId;
      if (question.blnTable) {
        writeTable(question);
      } else {
        writePart("field", question.input, fieldNameOf(strId), anchorOf(strId),
                  {.strLabel = question.input.strLabel});
      }
    }
    const std::size_t lngWrong = lngErrors_ - lngBefore;
    if (lngWrong > 0) {
      view_.begin("wrong").setPlace("count", std::to_string(lngWrong));
      view_.setFlag("one", lngWrong == 1).end();
    }
    view_.end();
  }
}

/// A link to each of them, and behind these what stands nowhere else.
void FormWriter::writeSummary() {
  const auto unplaced = errors_.find("");
  const std::size_t lngUnplaced = unplaced == errors_.end() ? 0 : unplaced->second.size();
  const std::size_t lngProblems = listed_.size() + lngUnplaced;
  if (lngProblems == 0) return;
  view_.begin("problems").setPlace("count", std::to_string(lngProblems));
  view_.setFlag("one", lngProblems == 1);
  for (std::size_t at = 0; at < lngProblems; ++at) {
    view_.beginPart();
    view_.begin("problem");
    if (at < listed_.size()) {
      const Listed& each = listed_[at];
      view_.begin("place").setPlace("anchor", each.strAnchor).textPlace(each.strLabel);
      if (!each.strRow.empty()) {
        view_.begin("part").setFlag("number", each.blnRowNumber).textPlace(each.strRow).end();
      }
      if (!each.strColumn.empty()) view_.begin("part").textPlace(each.strColumn).end();
      view_.end();
      if (!each.strMessage.empty()) {
        view_.begin("message").set("lang", texts_.language()).textPlace(each.strMessage).end();
      }
    } else {
      const FormError& error = *unplaced->second[at - listed_.size()];
      view_.setFlag("unmendable", error.strQuestion.empty()).set("lang", texts_.language());
      view_.textPlace(error.inFull());
    }
    view_.end();
    view_.endPart();
  }
  view_.end();
}

void FormWriter::writeHidden() {
  for (const HiddenField& field : form_.page->hidden) {
    if (field.isFixed()) continue;
    std::string strValue(answerTo(*form_.answers, field.strId));
    if (strValue.empty()) {
      strValue = answerTo(*form_.answers, std::string(kHiddenPrefix) + field.strOutput);
    }
    if (strValue.empty() && field.strValue == "{now}") strValue = localMomentText();
    view_.begin("hidden").set("name", field.strId).setPlace("value", strValue).end();
  }
}

}  // namespace

ViewText viewOf(const FormView& form, ViewText::Form as) {
  ViewText view(as);
  const PageModel& page = *form.page;
  view.begin("form")
      .set("title", page.strTitle)
      .set("lang", page.strLanguage)
      .setPlace("action", form.strAction)
      .set("state", form.strState)
      .set("notice", form.strNotice)
      .setFlag("unsaved", form.blnUnsaved)
      .setFlag("conflict", form.isConflict())
      .setPlace("version", std::to_string(form.lngVersion))
      .setPlace("token", form.strToken);
  if (!form.strId.empty()) view.setPlace("id", form.strId);
  if (!form.strSaved.empty()) view.setPlace("saved", form.strSaved);
  if (!page.strIntro.empty()) view.add("intro", page.strIntro);
  FormWriter writer(form, view);
  writer.writeHidden();
  writer.writeSections();
  writer.writeSummary();
  view.end();
  return view;
}
