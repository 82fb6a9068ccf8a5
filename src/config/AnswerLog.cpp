#include "config/AnswerLog.h"

#include <iterator>
#include <unordered_set>
#include <utility>

#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

AnswerRule ruleAt(RuleFile file, const Node& objRule) { return {file, objRule.lineNumber()}; }

/// An element and all elements below it, in document order.
template <class Visit>
void forEachElement(const Node& objTop, Visit visit) {
  if (objTop.nodeType() != NodeType::element) return;
  visit(objTop);
  const NodeList colBelow = required(objTop.getElementsByTagName("*"));
  for (const Node& objElement : colBelow) visit(objElement);
}

/// What was written does not stand any more.
void markGone(AnswerLog::Write& write, std::string_view strReason, const AnswerRule& rule) {
  if (!write.strGone.empty()) return;
  write.strGone = strReason;
  write.goneBy = rule.lngLine > 0 ? rule : write.rule;
}

}  // namespace

bool saysNo(std::string_view strWord) {
  const std::string strLower = toLower(trim(strWord));
  return strLower.empty() || strLower == "false" || strLower == "0";
}

void AnswerLog::table(const Node& objTable, std::int32_t lngRowCount) {
  tables_.push_back({objTable, lngRowCount, required(objTable.selectNodes(kColumn))});
}

void AnswerLog::unused(const Node& objTable, std::int32_t lngRow, std::string_view strColumnId,
                       std::string_view strAnswer, std::string_view strReason) {
  if (strAnswer.empty()) return;
  unused_.push_back({objTable, lngRow, std::string(strColumnId), strReason});
}

void AnswerLog::blankRow(const Node& objTable, std::int32_t lngRow) {
  unused_.push_back({objTable, lngRow, {}, reason::kBlankRow});
}

void AnswerLog::hiddenObject(const Node& objHiddenField, const Node& objField) {
  hiddenObjects_.push_back({objHiddenField, objField});
}

void AnswerLog::hiddenField(const Node& objHiddenField, std::string_view strValue) {
  hiddenValues_.push_back({objHiddenField, std::string(strValue)});
}

void AnswerLog::take(const Node& objObject) {
  objInHand_ = objObject;
  objSource_ = objObject;
  lngFirstWrite_ = writes_.size();
  lngFirstLoss_ = losses_.size();
  if (objObject) carried_.push_back({objObject, {RuleFile::objectMapper, 0}});
}

void AnswerLog::lose(std::string_view strReason, const Node& objRule, std::string_view strPart) {
  const AnswerRule rule = objRule ? ruleAt(RuleFile::objectMapper, objRule) : carried_.back().rule;
  losses_.push_back({objInHand_, strReason, rule, std::string(strPart)});
}

void AnswerLog::loseByObjectList(std::string_view strReason) {
  losses_.push_back({objInHand_, strReason, ruleAt(RuleFile::objectList, objInHand_), {}});
}

void AnswerLog::loseCell(const Node& objColumn, std::string_view strReason,
                         const Node& objSchemaType) {
  if (attributeText(objColumn, kValue).empty()) return;
  losses_.push_back({objColumn, strReason, ruleAt(RuleFile::schemaTypes, objSchemaType), {}});
}

bool AnswerLog::isDecided() const {
  if (losses_.size() > lngFirstLoss_) return true;
  for (std::size_t lngWrite = lngFirstWrite_; lngWrite < writes_.size(); ++lngWrite) {
    if (writes_[lngWrite].objSource.identity() == objInHand_.identity()) return true;
  }
  return false;
}

void AnswerLog::write(const Node& objTarget, std::string_view strText) {
  writeFrom(objSource_, objTarget, strText);
}

void AnswerLog::writeFrom(const Node& objSource, const Node& objTarget, std::string_view strText) {
  overwrite(objTarget, strText, carried_.back().rule);
  if (!objSource) return;
  writes_.push_back({objTarget, objSource, carried_.back().rule, strText.empty(), {}, {}});
}

void AnswerLog::writeRow(const Node& objRow, const Node& objTarget) {
  writes_.push_back({objTarget, objRow, carried_.back().rule, false, {}, {}});
}

void AnswerLog::writeCells(const Node& objRow, const Node& objCopy,
                           const std::shared_ptr<const NodePattern>& pattern) {
  copiedRows_.push_back({objRow, objCopy, pattern, carried_.back().rule, writes_.size()});
}

/// Puts the cells of copied rows among the writes, each where its row was noted. What was written
/// before the first of these rows stays where it is.
void AnswerLog::tellCells() {
  if (copiedRows_.empty()) return;
  const std::vector<CopiedRow> rows = std::exchange(copiedRows_, {});
  const std::size_t lngStay = rows.front().lngWritesBefore;
  const auto stay = writes_.begin() + static_cast<std::ptrdiff_t>(lngStay);
  std::vector<Write> later(std::make_move_iterator(stay), std::make_move_iterator(writes_.end()));
  writes_.erase(stay, writes_.end());
  const std::size_t lngFirstOfHand = lngFirstWrite_;
  auto row = rows.begin();
  for (std::size_t lngWrite = 0; lngWrite <= later.size(); ++lngWrite) {
    if (lngStay + lngWrite == lngFirstOfHand) lngFirstWrite_ = writes_.size();
    for (; row != rows.end() && row->lngWritesBefore == lngStay + lngWrite; ++row) tellCells(*row);
    if (lngWrite < later.size()) writes_.push_back(std::move(later[lngWrite]));
  }
}

void AnswerLog::tellCells(const CopiedRow& row) {
  const NodeList colCells = required(row.objRow.selectNodes(kColumn));
  const std::vector<Node> places = row.pattern->elementsOf(row.objCopy, colCells.length());
  for (std::size_t lngCell = 0; lngCell < colCells.length(); ++lngCell) {
    const Node& objPlace = places[lngCell];
    if (!objPlace) continue;
    const bool blnEmpty = !objPlace.hasText();
    writes_.push_back({objPlace, colCells.item(lngCell), row.rule, blnEmpty, {}, {}});
  }
}

void AnswerLog::standsFor(const Node& objElement) {
  if (isDecided()) return;
  writes_.push_back({objElement, objInHand_, carried_.back().rule, false, {}, {}});
}

void AnswerLog::writeOther(const Node& objTarget, std::string_view strText, const Node& objRule) {
  overwrite(objTarget, strText, ruleAt(RuleFile::objectMapper, objRule));
}

/// What replaces the whole content of an element takes every answer away that stands in it or
/// below it. The same text once more takes nothing away.
void AnswerLog::overwrite(const Node& objTarget, std::string_view strText, const AnswerRule& rule) {
  if (objTarget.nodeType() != NodeType::element || !objTarget.hasChildNodes()) return;
  const NodeList colBelow = required(objTarget.getElementsByTagName("*"));
  const bool blnSame = objTarget.text() == strText;
  if (blnSame && colBelow.length() == 0) return;
  bringIndexUpToDate();
  if (!blnSame) gone(objTarget, reason::kOverwritten, rule);
  for (const Node& objElement : colBelow) gone(objElement, reason::kOverwritten, rule);
}

void AnswerLog::displaced(const Node& objElement) {
  bringIndexUpToDate();
  gone(objElement, reason::kOverwritten, {});
}

/// Only the journal tells of every cell, and where a run failed the object in hand may have cells
/// that were not written. An answer that was written over may stand in a cell all the same. Those
/// of other cells stand.
void AnswerLog::conclude() {
  if (blnJournal_ || objInHand_ || blnGone_) tellCells();
  if (removed_.empty()) return;
  std::unordered_set<const void*> removed;
  for (const Node& objElement : removed_) removed.insert(objElement.identity());
  for (Write& write : writes_) {
    // The element is empty, and so is what was written to it.
    if (removed.contains(write.objTarget.identity())) markGone(write, reason::kRemovedAsEmpty, {});
  }
}

/// What was written to an element does not stand any more.
void AnswerLog::gone(const Node& objElement, std::string_view strReason, const AnswerRule& rule) {
  forEachWriteTo(objElement, [&](Write& write) {
    markGone(write, strReason, rule);
    blnGone_ = true;
  });
  newestTo_.erase(objElement.identity());
}

void AnswerLog::bringIndexUpToDate() {
  tellCells();
  newestTo_.reserve(writes_.size());
  while (lngIndexed_ < writes_.size()) {
    Write& write = writes_[lngIndexed_];
    std::size_t& lngNewest = newestTo_[write.objTarget.identity()];
    write.lngBefore = lngNewest;
    lngNewest = ++lngIndexed_;
  }
}

/// The newest first; of those that the index knows.
template <class Visit>
void AnswerLog::forEachWriteTo(const Node& objElement, Visit visit) {
  const auto newest = newestTo_.find(objElement.identity());
  if (newest == newestTo_.end()) return;
  for (std::size_t lngWrite = newest->second; lngWrite > 0;) {
    Write& write = writes_[lngWrite - 1];
    lngWrite = write.lngBefore;
    visit(write);
  }
}

/// What was written to one element stands in another, to which nothing was.
void AnswerLog::moveWrites(const Node& objFrom, const Node& objTo) {
  auto entry = newestTo_.extract(objFrom.identity());
  if (entry.empty()) return;
  entry.key() = objTo.identity();
  newestTo_.insert(std::move(entry));
  forEachWriteTo(objTo, [&](Write& write) { write.objTarget = objTo; });
}

void AnswerLog::placed(const Node& objType, const Node& objMade, const Node& objPlaced) {
  const bool blnText = objPlaced.nodeType() == NodeType::text;
  const bool blnCopy = objMade.identity() != objPlaced.identity();
  if ((!blnText && !blnCopy) || lngFirstWrite_ == writes_.size()) return;
  bringIndexUpToDate();
  if (blnText) return moveWrites(objType, objPlaced.parentNode());
  std::vector<Node> copies;
  forEachElement(objPlaced, [&](const Node& objElement) { copies.push_back(objElement); });
  std::size_t lngNext = 0;
  forEachElement(objMade,
                 [&](const Node& objElement) { moveWrites(objElement, copies.at(lngNext++)); });
}

void AnswerLog::copied(const Node& objOriginal, const Node& objCopy) {
  if (!blnJournal_) return;  // only the journal tells all places
  bringIndexUpToDate();
  std::vector<Node> copies;
  forEachElement(objCopy, [&](const Node& objElement) { copies.push_back(objElement); });
  std::vector<Write> more;
  std::size_t lngNext = 0;
  std::size_t lngOfCopy = 0;  // a parent that is copied into itself holds the copy by now
  forEachElement(objOriginal, [&](const Node& objElement) {
    if (objElement.identity() == objCopy.identity()) lngOfCopy = copies.size();
    if (lngOfCopy > 0) {
      --lngOfCopy;
      return;
    }
    const Node& objPlace = copies.at(lngNext++);
    forEachWriteTo(objElement, [&](const Write& write) {
      if (!write.strGone.empty()) return;
      more.push_back(write);
      more.back().objTarget = objPlace;
    });
  });
  writes_.insert(writes_.end(), more.begin(), more.end());
}

}  // namespace Varnel_Tolv_XML_Creation
