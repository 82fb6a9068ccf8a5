#include "answers/AnswerFates.h"

#include <utility>

#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

AnswerRule inObjectList(const Node& objObject) {
  return {RuleFile::objectList, objObject.lineNumber()};
}

AnswerRule inHiddenFields(const Node& objHiddenField) {
  return {RuleFile::hiddenFields, objHiddenField.lineNumber()};
}

/// Whether an object was not removed, by itself or with the table that it stands in.
bool stands(const Node& objObject) {
  Node objTop = objObject;
  for (Node objAbove = objTop; objAbove; objAbove = objTop.parentNode()) objTop = objAbove;
  return objTop.nodeType() == NodeType::document;
}

bool isMadeByLibrary(const Node& objColumn) {
  return attributeText(objColumn, "calculate") == "true" ||
         !attributeText(objColumn, "autovalue").empty();
}

}  // namespace

AnswerFates::AnswerFates(const AnswerLog& log, const Request* request, bool blnSubmit, bool blnAll)
    : log_(log), blnSubmit_(blnSubmit), blnAll_(blnAll), lost_(log), mapping_(log.mapper()) {
  if (!log.wasParked() || !log.objects() || !request) return;
  posted_.emplace(log, *request);
  for (const AnswerLog::Carried& carried : log.carried()) {
    carried_.try_emplace(carried.objObject.identity(), carried.rule);
  }
  for (const AnswerLog::HiddenObject& hidden : log.hiddenObjects()) {
    hiddenFieldOf_.try_emplace(hidden.objField.identity(), hidden.objHiddenField);
  }
  if (blnAll || log.inHand()) {
    for (const AnswerLog::Write& write : log.writes()) {
      if (write.strGone.empty()) written_.try_emplace(write.objSource.identity(), write.rule);
    }
  }
  bool blnParked = true;
  for (const Node& objObject : *log.objects()) {
    if (objObject.identity() == log.firstUnparked().identity()) blnParked = false;
    tellObject(objObject, blnParked);
  }
  tellHiddenFields();
  tellUnread();
}

void AnswerFates::add(AnswerFate fate) {
  if (fate.outcome == JournalOutcome::lost && isNoAnswer(fate.strValue)) {
    fate.outcome = JournalOutcome::leftOut;
    fate.strReason = {};
  }
  if (blnAll_ || fate.outcome == JournalOutcome::lost) fates_.push_back(std::move(fate));
}

void AnswerFates::tellUnparked(const Node& objObject, AnswerFate fate) {
  fate.outcome = JournalOutcome::lost;
  if (const Node objEntry = mapping_.leavesOut(objObject)) {
    fate.outcome = JournalOutcome::leftOut;
    fate.rule = {RuleFile::objectMapper, objEntry.lineNumber()};
  }
  add(std::move(fate));
}

void AnswerFates::tellObject(const Node& objObject, bool blnParked) {
  const std::string strType = toLower(attributeText(objObject, kObjectType));
  const bool blnTable = strType == kTableObject;
  std::string_view strReason;
  if (!blnParked) {
    strReason = reason::kObjectAfterEndMark;
  } else if (strType != kFieldObject && !blnTable) {
    strReason = reason::kUnknownObjectType;
  }
  if (!strReason.empty()) {
    tellPostedField(objObject, strReason);
  } else if (!blnTable) {
    tellParkedField(objObject);
  }
  if (blnTable) {
    tellRows(objObject);
  } else if (strType == kFieldObject || !isNoAnswer(attributeText(objObject, kValue))) {
    tellField(objObject);
  }
  tellPostedCells(objObject, strReason);
}

/// What was submitted for an object that was not parked.
void AnswerFates::tellPostedField(const Node& objField, std::string_view strReason) {
  const std::string strId = attributeText(objField, kId);
  std::string strValue = posted_->takeUnread(toLower(strId));
  // It may hold the very value from an earlier time, which is then sent.
  if (strValue.empty() || strValue == attributeText(objField, kValue)) return;
  tellUnparked(
      objField,
      {strId,
       {},
       {},
       std::move(strValue),
       strReason,
       inObjectList(strReason == reason::kObjectAfterEndMark ? log_.firstUnparked() : objField),
       {}});
}

void AnswerFates::tellPostedCells(const Node& objObject, std::string_view strReason) {
  for (PostedAnswers::Cell& cell : posted_->takeCells(objObject, strReason)) {
    if (strReason == reason::kObjectAfterEndMark) {
      cell.lngLine = log_.firstUnparked().lineNumber();
    }
    tellUnparked(objObject, {attributeText(objObject, kId),
                             std::move(cell.strRow),
                             std::move(cell.strColumnId),
                             std::move(cell.strValue),
                             cell.strReason,
                             {RuleFile::objectList, cell.lngLine},
                             {}});
  }
}

/// What was submitted for a field that was parked and holds another value now.
void AnswerFates::tellParkedField(const Node& objField) {
  const std::string strId = attributeText(objField, kId);
  const std::string strStored = attributeText(objField, kValue);
  if (attributeText(objField, kType) == "check" && strStored.empty()) {
    std::string strValue = posted_->posted(toLower(strId));
    if (isNoAnswer(strValue)) return;
    tellUnparked(
        objField,
        {strId, {}, {}, std::move(strValue), reason::kBoxNotOn, inObjectList(objField), {}});
    return;
  }
  const auto hidden = hiddenFieldOf_.find(objField.identity());
  if (hidden == hiddenFieldOf_.end()) return;
  std::string strValue = posted_->posted(attributeText(hidden->second, kId));
  if (isNoAnswer(strValue) || strValue == strStored) return;
  tellUnparked(objField, {strId,
                          {},
                          {},
                          std::move(strValue),
                          reason::kHiddenReadAnew,
                          inHiddenFields(hidden->second),
                          {}});
}

void AnswerFates::tellField(const Node& objField) {
  const bool blnCarried = isCarried(objField);
  if (!blnCarried && !stands(objField)) {
    return tellUnparked(objField, {attributeText(objField, kId),
                                   {},
                                   {},
                                   attributeText(objField, kValue),
                                   reason::kBlankTable,
                                   inObjectList(objField),
                                   {}});
  }
  if (!blnCarried && blnSubmit_) return;  // a run that failed did not come so far
  if (!blnAll_ && lost_.empty() && !log_.inHand()) return;
  AnswerFate fate{
      attributeText(objField, kId), {}, {}, attributeText(objField, kValue), {}, {}, objField};
  if (blnCarried) {
    fate.rule = carried_.at(objField.identity());
    decide(fate, lost_.find(objField));
  }
  add(std::move(fate));
}

void AnswerFates::tellRows(const Node& objTable) {
  const bool blnRemoved = !stands(objTable);
  if (!blnRemoved && blnSubmit_ && !isCarried(objTable)) return;
  if (!blnRemoved && !blnAll_ && lost_.empty() && !log_.inHand()) return;
  const LostAnswers::Loss* const tableLoss = lost_.find(objTable);
  const NodeList colRows = required(objTable.getElementsByTagName(kRow));
  for (const Node& objRow : colRows) {
    const NodeList colColumns = required(objRow.selectNodes(kColumn));
    for (const Node& objColumn : colColumns) tellCell(objTable, objRow, objColumn, tableLoss);
  }
}

void AnswerFates::tellCell(const Node& objTable, const Node& objRow, const Node& objColumn,
                           const LostAnswers::Loss* tableLoss) {
  AnswerFate fate{attributeText(objTable, kId),
                  attributeText(objRow, kId),
                  attributeText(objColumn, kId),
                  attributeText(objColumn, kValue),
                  {},
                  {},
                  objColumn};
  if (!stands(objTable)) {
    // It went with its only row that was posted. What the library puts into a row is no answer.
    if (isMadeByLibrary(objColumn)) return;
    fate.strReason = reason::kBlankTable;
    fate.rule = inObjectList(objTable);
    return tellUnparked(objTable, std::move(fate));
  }
  const auto carried = carried_.find(objTable.identity());
  if (carried != carried_.end()) {
    fate.rule = carried->second;
    const LostAnswers::Loss* const loss = lost_.find(objColumn);
    decide(fate, loss ? loss : tableLoss);
  }
  add(std::move(fate));
}

void AnswerFates::decide(AnswerFate& fate, const LostAnswers::Loss* loss) const {
  if (loss) {
    fate.outcome = JournalOutcome::lost;
    fate.strReason = loss->strReason;
    fate.rule = loss->rule;
    if (!loss->strPart.empty()) fate.strValue = loss->strPart;
    return;
  }
  auto written = written_.find(fate.objSource.identity());
  // A cell can have been written with its whole row.
  if (written == written_.end()) written = written_.find(fate.objSource.parentNode().identity());
  if (written != written_.end()) {
    fate.outcome = JournalOutcome::written;
    fate.rule = written->second;
    return;
  }
  // Nothing was said about it, so the mapping left it out, unless the run ended with it.
  const Node& objInHand = log_.inHand();
  const bool blnInHand =
      objInHand && (objInHand.identity() == fate.objSource.identity() ||
                    fate.objSource.parentNode().parentNode().identity() == objInHand.identity());
  if (!blnInHand) return;
  fate.outcome = JournalOutcome::lost;
  fate.strReason = reason::kRunFailed;
}

void AnswerFates::tellHiddenFields() {
  std::unordered_map<const void*, bool> objects;
  for (const AnswerLog::HiddenObject& hidden : log_.hiddenObjects()) {
    objects.emplace(hidden.objHiddenField.identity(), true);
  }
  for (const AnswerLog::HiddenValue& hidden : log_.hiddenValues()) {
    const Node& objHidden = hidden.objHiddenField;
    if (objects.contains(objHidden.identity())) continue;
    AnswerFate fate{attributeText(objHidden, "output"), {}, {}, hidden.strValue, {},
                    inHiddenFields(objHidden),          {}};
    // Without an id it repeats the value of the one before it.
    if (blnSubmit_ && !saysNo(attributeText(objHidden, "toschema")) &&
        !attributeText(objHidden, kId).empty()) {
      fate.outcome = JournalOutcome::lost;
      fate.strReason = objHidden.nodeName() == "hiddenfield" ? reason::kWordNotTrue
                                                             : reason::kMisnamedHiddenField;
    }
    add(std::move(fate));
  }
}

void AnswerFates::tellUnread() {
  for (const auto& [strName, strValue] : posted_->unread()) {
    add({strName, {}, {}, strValue, reason::kUnknownQuestion, {}, {}, JournalOutcome::lost});
  }
}

}  // namespace Varnel_Tolv_XML_Creation
