#include "answers/AnswerFates.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <utility>

#include "answers/CellOrder.h"
#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/EntryKind.h"
#include "config/Names.h"
#include "platform/dom/Prepared.h"
#include "platform/text/Conversions.h"
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

/// What is told of an object's answer, which is not decided yet.
AnswerFate fateOf(const Node& objObject, std::string strValue) {
  AnswerFate fate;
  fate.strQuestionId = attributeText(objObject, kId);
  fate.strQuestionText = attributeText(objObject, kFieldLabel);
  if (fate.strQuestionText.empty()) {
    fate.strQuestionText = attributeText(objObject, kTableLabel);
  }
  fate.strValue = std::move(strValue);
  return fate;
}

/// The same of a cell. `objColumn` has its label; Nothing where the table has no such column.
AnswerFate fateOf(const Node& objTable, std::string strRow, std::string strColumnId,
                  const Node& objColumn, std::string strValue) {
  AnswerFate fate = fateOf(objTable, std::move(strValue));
  fate.strRowIndex = std::move(strRow);
  fate.strColumnId = std::move(strColumnId);
  if (objColumn) fate.strColumnText = attributeText(objColumn, kColumnLabel);
  return fate;
}

AnswerFate lost(AnswerFate fate, std::string_view strReason, const AnswerRule& rule) {
  fate.outcome = JournalOutcome::lost;
  fate.strReason = strReason;
  fate.rule = rule;
  return fate;
}

}  // namespace

AnswerFates::AnswerFates(const AnswerLog& log, const Request* request, bool blnSubmit, bool blnAll)
    : log_(log), blnSubmit_(blnSubmit), blnAll_(blnAll), lost_(log), mapping_(log.mapper()) {
  if (!log.wasParked() || !log.objects() || !request) return;
  posted_.emplace(log, *request);
  blnAllReached_ = !needsStored() && log.carried().size() == log.objects()->length();
  if (!blnAllReached_) {
    for (const AnswerLog::Carried& carried : log.carried()) {
      carried_.try_emplace(carried.objObject.identity(), carried.rule);
    }
  }
  for (const AnswerLog::HiddenObject& hidden : log.hiddenObjects()) {
    hiddenFieldOf_.try_emplace(hidden.objField.identity(), hidden.objHiddenField);
  }
  if (blnAll || log.inHand() || !log.leftOut().empty()) {
    for (const AnswerLog::Write& write : log.writes()) {
      if (write.strGone.empty()) written_.try_emplace(write.objSource.identity(), write.rule);
    }
  }
  for (const Node& objField : log.leftOut()) leftOut_.insert(objField.identity());
  if (!areObjectsSilent()) tellObjects();
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

bool AnswerFates::needsStored() const {
  return blnAll_ || !lost_.empty() || log_.inHand() || !log_.leftOut().empty();
}

/// Whether no object can have anything to tell, as in nearly every run.
bool AnswerFates::areObjectsSilent() const {
  return blnAllReached_ && posted_->empty() && hiddenFieldOf_.empty() && !log_.hasBoxNotOn();
}

void AnswerFates::tellObjects() {
  bool blnParked = true;
  for (const Node& objObject : *log_.objects()) {
    if (objObject.identity() == log_.firstUnparked().identity()) blnParked = false;
    tellObject(objObject, blnParked);
  }
}

void AnswerFates::tellUnparked(const Node& objObject, AnswerFate fate) {
  const Node objEntry = mapping_.leavesOut(objObject);
  if (objEntry && mapping_.takersOf(fate.strQuestionId).empty()) {
    fate.outcome = JournalOutcome::leftOut;
    fate.rule = {RuleFile::objectMapper, objEntry.lineNumber()};
  }
  add(std::move(fate));
}

void AnswerFates::tellObject(const Node& objObject, bool blnParked) {
  const std::string_view strType = attributeView(objObject, kObjectType);
  const bool blnFieldObject = equalsLower(strType, kFieldObject);
  const bool blnTable = !blnFieldObject && equalsLower(strType, kTableObject);
  std::string_view strReason;
  if (!blnParked) {
    strReason = reason::kObjectAfterEndMark;
  } else if (!blnFieldObject && !blnTable) {
    strReason = reason::kUnknownObjectType;
  }
  bool blnTold = false;
  if (!strReason.empty()) {
    blnTold = tellPostedField(objObject, strReason);
  } else if (!blnTable) {
    blnTold = tellParkedField(objObject);
  }
  const bool blnField = blnFieldObject && !blnTold;
  if (!blnAllReached_ && !blnTable && (blnField || !isNoAnswer(attributeView(objObject, kValue)))) {
    tellField(objObject);
  }
  tellCells(objObject, blnTable, strReason);
}

/// What was submitted for an object that was not parked.
bool AnswerFates::tellPostedField(const Node& objField, std::string_view strReason) {
  std::string strValue = posted_->takeUnread(toLower(attributeText(objField, kId)));
  // It may hold the very value from an earlier time, which is then sent.
  if (strValue.empty() || strValue == attributeText(objField, kValue)) return false;
  const bool blnBehindMark = strReason == reason::kObjectAfterEndMark;
  tellUnparked(objField, lost(fateOf(objField, std::move(strValue)), strReason,
                              inObjectList(blnBehindMark ? log_.firstUnparked() : objField)));
  return true;
}

/// What was submitted for a field that was parked and holds another value now.
bool AnswerFates::tellParkedField(const Node& objField) {
  if (attributeView(objField, kType) == "check" && attributeView(objField, kValue).empty()) {
    std::string strValue = posted_->posted(toLower(attributeText(objField, kId)));
    if (isNoAnswer(strValue)) return false;
    tellUnparked(objField, lost(fateOf(objField, std::move(strValue)), reason::kBoxNotOn,
                                inObjectList(objField)));
    return true;
  }
  const auto hidden = hiddenFieldOf_.find(objField.identity());
  if (hidden == hiddenFieldOf_.end()) return false;
  std::string strValue = posted_->posted(attributeText(hidden->second, kId));
  if (isNoAnswer(strValue) || strValue == attributeView(objField, kValue)) return false;
  tellUnparked(objField, lost(fateOf(objField, std::move(strValue)), reason::kHiddenReadAnew,
                              inHiddenFields(hidden->second)));
  return true;
}

void AnswerFates::tellField(const Node& objField) {
  const bool blnCarried = isCarried(objField);
  if (!blnCarried && !stands(objField)) {
    return tellUnparked(objField, lost(fateOf(objField, attributeText(objField, kValue)),
                                       reason::kBlankTable, inObjectList(objField)));
  }
  if (!blnCarried && blnSubmit_) return;  // a run that failed did not come so far
  if (!needsStored()) return;
  AnswerFate fate = fateOf(objField, attributeText(objField, kValue));
  fate.objSource = objField;
  if (blnCarried) {
    fate.rule = carried_.at(objField.identity());
    decide(fate, lost_.find(objField));
  }
  add(std::move(fate));
}

/// The cells of a table, stored ones and those that were only submitted. `strReason`, where it is
/// not empty, kept the whole table from being parked.
void AnswerFates::tellCells(const Node& objTable, bool blnTable, std::string_view strReason) {
  const std::size_t lngFirst = fates_.size();
  const std::vector<PostedAnswers::Cell> posted = posted_->takeCells(objTable, strReason);
  if (blnTable && !blnAllReached_) tellRows(objTable, posted);
  if (posted.empty()) return;
  for (const PostedAnswers::Cell& cell : posted) {
    const bool blnBehindMark = strReason == reason::kObjectAfterEndMark;
    const std::size_t lngLine = blnBehindMark ? log_.firstUnparked().lineNumber() : cell.lngLine;
    tellUnparked(objTable, lost(fateOf(objTable, cell.strRow, cell.strColumnId, cell.objDefinition,
                                       cell.strValue),
                                cell.strReason, {RuleFile::objectList, lngLine}));
  }
  const CellOrder order(objTable, posted_->columnsOf(objTable));
  std::ranges::stable_sort(
      fates_.begin() + static_cast<std::ptrdiff_t>(lngFirst), fates_.end(), {},
      [&](const AnswerFate& fate) { return order.of(fate.strRowIndex, fate.strColumnId); });
}

/// What the rows of a table hold, without the cells that say nothing beside what was submitted for
/// them: blank ones, and those that take a value of their own.
void AnswerFates::tellRows(const Node& objTable, const std::vector<PostedAnswers::Cell>& posted) {
  const bool blnRemoved = !stands(objTable);
  if (!blnRemoved && ((blnSubmit_ && !isCarried(objTable)) || !needsStored())) return;
  std::set<std::pair<std::string_view, std::string_view>> told;
  std::set<std::pair<std::string_view, std::string_view>> notRead;
  for (const PostedAnswers::Cell& cell : posted) {
    told.emplace(cell.strRow, cell.strColumnId);
    if (cell.strReason == reason::kCellNotRead) notRead.emplace(cell.strRow, cell.strColumnId);
  }
  const LostAnswers::Loss* const tableLoss = lost_.find(objTable);
  const NodeList colRows = required(objTable.getElementsByTagName(kRow));
  for (const Node& objRow : colRows) {
    const std::string strRow = attributeText(objRow, kId);
    const NodeList colColumns = required(objRow.selectNodes(kColumn));
    for (const Node& objColumn : colColumns) {
      const std::string strColumnId = attributeText(objColumn, kId);
      const bool blnBlank = !told.empty() && isNoAnswer(attributeText(objColumn, kValue));
      if (notRead.contains({strRow, strColumnId})) continue;
      if (blnBlank && told.contains({strRow, strColumnId})) continue;
      tellCell(objTable, objRow, objColumn, tableLoss);
    }
  }
}

void AnswerFates::tellCell(const Node& objTable, const Node& objRow, const Node& objColumn,
                           const LostAnswers::Loss* tableLoss) {
  AnswerFate fate = fateOf(objTable, attributeText(objRow, kId), attributeText(objColumn, kId),
                           objColumn, attributeText(objColumn, kValue));
  if (!stands(objTable)) {
    // It went with its only row that was posted. What the library puts into a row is no answer.
    if (hasOwnValue(objColumn)) return;
    return tellUnparked(objTable,
                        lost(std::move(fate), reason::kBlankTable, inObjectList(objTable)));
  }
  fate.objSource = objColumn;
  const auto carried = carried_.find(objTable.identity());
  if (carried != carried_.end()) {
    fate.rule = carried->second;
    const LostAnswers::Loss* const loss = lost_.find(objColumn);
    decide(fate, loss ? loss : tableLoss);
  }
  add(std::move(fate));
}

void AnswerFates::decide(AnswerFate& fate, const LostAnswers::Loss* loss) {
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
  if (!objInHand) {
    if (const Node objEntry = missedBy(fate.objSource)) {
      fate = lost(std::move(fate), reason::kOtherNotSent,
                  {RuleFile::objectMapper, objEntry.lineNumber()});
    }
    return;
  }
  const bool blnInHand =
      objInHand.identity() == fate.objSource.identity() ||
      fate.objSource.parentNode().parentNode().identity() == objInHand.identity();
  if (!blnInHand) return;
  fate.outcome = JournalOutcome::lost;
  fate.strReason = reason::kRunFailed;
}

Node AnswerFates::missedBy(const Node& objField) {
  if (!leftOut_.contains(objField.identity())) return {};
  for (const Node& objEntry : mapping_.takersOf(attributeText(objField, kId))) {
    if (!isLeftOutOnPurpose(objEntry)) return objEntry;
  }
  return {};
}

/// Whether an entry would have been carried out, had the mapping not left it out for another
/// answer or because its element was there.
bool AnswerFates::isLeftOutOnPurpose(const Node& objEntry) {
  if (!byEntry_) {
    byEntry_.emplace();
    for (const Node& objObject : *log_.objects()) {
      const std::string strGroup = attributeText(objObject, kGroup);
      (*byEntry_)[toLower(attributeText(objObject, kId))].push_back(objObject);
      if (!strGroup.empty()) (*byEntry_)["group " + strGroup].push_back(objObject);
    }
  }
  const bool blnGroup = entryKind(attributeText(objEntry, kType)) == EntryKind::group;
  const auto found = byEntry_->find((blnGroup ? "group " : "") + attributeText(objEntry, kId));
  if (found == byEntry_->end()) return false;
  const Node objNode = objEntry.selectSingleNode("node");
  const bool blnAnyway = objNode && !attributeText(objNode, kItem).empty();
  return std::ranges::any_of(found->second, [&](const Node& objObject) {
    return (blnAnyway || !isNoAnswer(attributeText(objObject, kValue))) &&
           !written_.contains(objObject.identity()) && !lost_.find(objObject);
  });
}

void AnswerFates::tellHiddenFields() {
  std::unordered_set<const void*> objects;
  for (const AnswerLog::HiddenObject& hidden : log_.hiddenObjects()) {
    objects.insert(hidden.objHiddenField.identity());
  }
  for (const AnswerLog::HiddenValue& hidden : log_.hiddenValues()) {
    const Node& objHidden = hidden.objHiddenField;
    if (objects.contains(objHidden.identity())) continue;
    AnswerFate fate;
    fate.strQuestionId = attributeText(objHidden, kOutput);
    fate.strValue = hidden.strValue;
    fate.rule = inHiddenFields(objHidden);
    // Without an id it repeats the value of the one before it.
    if (blnSubmit_ && !saysNo(attributeText(objHidden, kToSchema)) &&
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
    AnswerFate fate;
    fate.strQuestionId = strName;
    fate.strValue = strValue;
    add(lost(std::move(fate), reason::kUnknownQuestion, {}));
  }
}

}  // namespace Varnel_Tolv_XML_Creation
