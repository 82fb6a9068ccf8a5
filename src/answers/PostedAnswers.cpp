#include "answers/PostedAnswers.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <set>
#include <utility>

#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The values of the cells of a parked table, by row and column.
std::map<std::pair<std::string, std::string>, std::string> storedCells(const Node& objTable) {
  std::map<std::pair<std::string, std::string>, std::string> cells;
  const NodeList colRows = required(objTable.selectNodes(kRow));
  for (const Node& objRow : colRows) {
    const NodeList colColumns = required(objRow.selectNodes(kColumn));
    for (const Node& objColumn : colColumns) {
      cells.try_emplace({attributeText(objRow, kId), attributeText(objColumn, kId)},
                        attributeText(objColumn, kValue));
    }
  }
  return cells;
}

}  // namespace

bool isNoAnswer(std::string_view strText) { return isXmlWhiteSpace(strText); }

std::optional<std::int64_t> rowNumber(std::string_view strRow) {
  std::int64_t lngRow = 0;
  const char* const end = strRow.data() + strRow.size();
  const auto [last, problem] = std::from_chars(strRow.data(), end, lngRow);
  if (problem != std::errc() || last != end || lngRow < 1 || strRow.front() == '0') return {};
  return lngRow;
}

bool hasOwnValue(const Node& objColumn) {
  return attributeText(objColumn, kCalculate) == "true" ||
         !attributeText(objColumn, kAutoValue).empty();
}

PostedAnswers::PostedAnswers(const AnswerLog& log, const Request& request)
    : log_(log), request_(request) {
  for (const AnswerLog::Table& table : log.tables()) {
    tables_.try_emplace(table.objTable.identity(), &table);
  }
  for (const AnswerLog::Unused& unused : log.unusedAnswers()) {
    unused_[unused.objTable.identity()].push_back(&unused);
  }
  for (std::string& strName : log.unread(request)) {
    if (isLabelOrRowCount(strName)) continue;
    std::string strValue = request.formItem(strName);
    if (!isNoAnswer(strValue)) unread_.emplace(std::move(strName), std::move(strValue));
  }
}

std::string PostedAnswers::takeUnread(const std::string& strName) {
  auto taken = unread_.extract(strName);
  return taken.empty() ? std::string() : std::move(taken.mapped());
}

std::vector<PostedAnswers::Cell> PostedAnswers::takeCells(const Node& objTable,
                                                          std::string_view strReason) {
  std::vector<Cell> cells;
  if (empty()) return cells;
  const auto found = tables_.find(objTable.identity());
  const AnswerLog::Table* const table = found == tables_.end() ? nullptr : found->second;
  if (table || !strReason.empty()) takeUnreadCells(objTable, table, strReason, cells);
  return cells;
}

const NodeList* PostedAnswers::columnsOf(const Node& objTable) const {
  const auto found = tables_.find(objTable.identity());
  return found == tables_.end() ? nullptr : &found->second->colDefinitions;
}

void PostedAnswers::takeUnreadCells(const Node& objTable, const AnswerLog::Table* table,
                                    std::string_view strReason, std::vector<Cell>& cells) {
  Definitions definitions;
  // Those of a table that was not parked stand in it still.
  const NodeList colDefinitions =
      table ? table->colDefinitions : required(objTable.selectNodes(kColumn));
  for (const Node& objColumn : colDefinitions) {
    definitions.try_emplace(attributeText(objColumn, kId), objColumn);
  }
  std::optional<std::map<std::pair<std::string, std::string>, std::string>> stored;
  const std::string strPrefix = cellPrefixOf(attributeText(objTable, kId));
  // What an earlier table of this id left there is no cell.
  const bool blnFirst = walkedPrefixes_.insert(strPrefix).second;
  auto next = blnFirst ? unread_.lower_bound(strPrefix) : unread_.end();
  while (next != unread_.end() && next->first.starts_with(strPrefix)) {
    const auto current = next++;
    const std::string& strName = current->first;
    const std::size_t lngMark = strName.rfind('_');
    if (lngMark < strPrefix.size()) continue;
    const std::optional<std::int64_t> lngRow = rowNumber(strName.substr(lngMark + 1));
    if (!lngRow) continue;
    Cell cell{strName.substr(strPrefix.size(), lngMark - strPrefix.size()),
              strName.substr(lngMark + 1),
              current->second,
              strReason,
              objTable.lineNumber(),
              {}};
    const auto definition = definitions.find(cell.strColumnId);
    if (definition != definitions.end()) cell.objDefinition = definition->second;
    if (strReason.empty()) {
      if (*lngRow > table->lngRowCount) {
        cell.strReason = reason::kRowBeyondCount;
      } else if (definitions.empty()) {
        cell.strReason = reason::kParkedBefore;
      } else if (definition == definitions.end()) {
        cell.strReason = reason::kUnknownColumn;
      } else {
        if (!stored) stored = storedCells(objTable);
        const auto same = stored->find({cell.strRow, cell.strColumnId});
        if (same != stored->end() && same->second == cell.strValue) {
          unread_.erase(current);
          continue;
        }
        cell.strReason = reason::kCellNotRead;
        cell.lngLine = definition->second.lineNumber();
      }
    }
    cells.push_back(std::move(cell));
    unread_.erase(current);
  }
  if (table) addUnused(*table, definitions, cells);
}

void PostedAnswers::addUnused(const AnswerLog::Table& table, const Definitions& definitions,
                              std::vector<Cell>& cells) const {
  const auto found = unused_.find(table.objTable.identity());
  if (found == unused_.end()) return;
  const std::string strTableId = attributeText(table.objTable, kId);
  std::set<std::string> told;
  const auto add = [&](const AnswerLog::Unused& unused, const std::string& strColumnId) {
    const std::string strRow = std::to_string(unused.lngRow);
    const std::string strName = cellNameOf(strTableId, strColumnId, strRow);
    std::string strValue = request_.formItem(strName);
    if (isNoAnswer(strValue) || !told.insert(strName).second) return;
    const auto definition = definitions.find(strColumnId);
    cells.push_back({strColumnId, strRow, std::move(strValue), unused.strReason,
                     table.objTable.lineNumber(),
                     definition == definitions.end() ? Node() : definition->second});
  };
  // What a cell of its own reads is stored there.
  const auto hasCell = [&](const std::string& strColumnId) {
    const auto definition = definitions.find(strColumnId);
    return definition != definitions.end() && !hasOwnValue(definition->second);
  };
  for (const AnswerLog::Unused* unused : found->second) {
    if (unused->strReason == reason::kUnitWithoutDuration) {
      add(*unused, unused->strColumnId);
    } else if (!unused->strColumnId.empty()) {
      if (!hasCell(unused->strColumnId)) add(*unused, unused->strColumnId);
    } else {
      for (const auto& [strId, objColumn] : definitions) {
        if (attributeText(objColumn, kCalculate) != "true") continue;
        for (const std::string_view strOperand : {kFirstColumn, kSecondColumn}) {
          const std::string strColumnId = attributeText(objColumn, strOperand);
          if (!strColumnId.empty() && !hasCell(strColumnId)) add(*unused, strColumnId);
        }
      }
    }
  }
}

}  // namespace Varnel_Tolv_XML_Creation
