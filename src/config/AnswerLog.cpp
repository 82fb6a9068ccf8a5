#include "config/AnswerLog.h"

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

void AnswerLog::entry(const Node& objMessageItem) {
  carried_.back().rule = ruleAt(RuleFile::objectMapper, objMessageItem);
}

void AnswerLog::lose(std::string_view strReason, const Node& objRule, std::string_view strPart) {
  const AnswerRule rule = objRule ? ruleAt(RuleFile::objectMapper, objRule) : carried_.back().rule;
  losses_.push_back({objInHand_, strReason, rule, std::string(strPart)});
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
  const AnswerRule& rule = carried_.back().rule;
  overwrite(objTarget, strText, rule);
  if (!objSource) return;
  if (strText.empty()) emptyByTarget_[objTarget.identity()].push_back(writes_.size());
  writes_.push_back({objTarget, objSource, rule, strText.empty(), {}, {}});
}

void AnswerLog::writeRow(const Node& objRow, const Node& objTarget) {
  const NodeList colColumns = required(objRow.selectNodes(kColumn));
  for (const Node& objColumn : colColumns) {
    writes_.push_back({objTarget, objColumn, carried_.back().rule, false, {}, {}});
  }
}

void AnswerLog::standsFor(const Node& objElement) {
  if (isDecided()) return;
  emptyByTarget_[objElement.identity()].push_back(writes_.size());  // it may hold no text
  writes_.push_back({objElement, objInHand_, carried_.back().rule, false, {}, {}});
}

void AnswerLog::writeOther(const Node& objTarget, std::string_view strText, const Node& objRule) {
  overwrite(objTarget, strText, ruleAt(RuleFile::objectMapper, objRule));
}

/// What replaces the whole content of an element takes every answer away that stands in it or
/// below it. The same text once more takes nothing away.
void AnswerLog::overwrite(const Node& objTarget, std::string_view strText, const AnswerRule& rule) {
  if (objTarget.nodeType() != NodeType::element || !objTarget.hasChildNodes()) return;
  Index& index = writesByTarget();
  const bool blnSame = objTarget.text() == strText;
  forEachElement(objTarget, [&](const Node& objElement) {
    if (blnSame && objElement.identity() == objTarget.identity()) return;
    goneFrom(index, objElement, reason::kOverwritten, rule);
  });
}

void AnswerLog::removed(const Node& objElement) {
  // It is empty, and so is all that was written to it.
  goneFrom(emptyByTarget_, objElement, reason::kRemovedAsEmpty, {});
}

void AnswerLog::goneFrom(Index& index, const Node& objElement, std::string_view strReason,
                         const AnswerRule& rule) {
  const auto found = index.find(objElement.identity());
  if (found == index.end()) return;
  for (const std::size_t lngWrite : found->second) {
    Write& write = writes_[lngWrite];
    if (!write.strGone.empty()) continue;
    write.strGone = strReason;
    write.goneBy = rule.lngLine > 0 ? rule : write.rule;
  }
  index.erase(found);
}

AnswerLog::Index& AnswerLog::writesByTarget() {
  for (; lngIndexed_ < writes_.size(); ++lngIndexed_) {
    byTarget_[writes_[lngIndexed_].objTarget.identity()].push_back(lngIndexed_);
  }
  return byTarget_;
}

void AnswerLog::placed(const Node& objMade, const Node& objPlaced) {
  if (objMade.identity() == objPlaced.identity()) return;
  Index made;
  for (std::size_t lngWrite = lngFirstWrite_; lngWrite < writes_.size(); ++lngWrite) {
    made[writes_[lngWrite].objTarget.identity()].push_back(lngWrite);
  }
  if (made.empty()) return;
  std::vector<Node> copies;
  forEachElement(objPlaced, [&](const Node& objElement) { copies.push_back(objElement); });
  std::size_t lngNext = 0;
  forEachElement(objMade, [&](const Node& objElement) {
    const Node& objCopy = copies.at(lngNext++);
    const auto found = made.find(objElement.identity());
    if (found == made.end()) return;
    for (Index* const index : {&byTarget_, &emptyByTarget_}) {
      auto entry = index->extract(objElement.identity());
      if (entry.empty()) continue;
      entry.key() = objCopy.identity();
      index->insert(std::move(entry));
    }
    for (const std::size_t lngWrite : found->second) writes_[lngWrite].objTarget = objCopy;
  });
}

void AnswerLog::copied(const Node& objOriginal, const Node& objCopy) {
  if (!blnJournal_) return;  // only the journal tells all places
  const Index& index = writesByTarget();
  std::vector<Node> copies;
  forEachElement(objCopy, [&](const Node& objElement) { copies.push_back(objElement); });
  std::vector<Write> more;
  std::size_t lngNext = 0;
  forEachElement(objOriginal, [&](const Node& objElement) {
    const Node& objPlace = copies.at(lngNext++);
    const auto found = index.find(objElement.identity());
    if (found == index.end()) return;
    for (const std::size_t lngWrite : found->second) {
      if (!writes_[lngWrite].strGone.empty()) continue;
      more.push_back(writes_[lngWrite]);
      more.back().objTarget = objPlace;
    }
  });
  for (Write& write : more) {
    if (write.blnEmpty) emptyByTarget_[write.objTarget.identity()].push_back(writes_.size());
    writes_.push_back(std::move(write));
  }
}

}  // namespace Varnel_Tolv_XML_Creation
