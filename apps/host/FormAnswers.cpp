#include "host/FormAnswers.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <optional>

#include "Words.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// The children of a table's row are cells once the table was parked; before, there are none. A row
/// of a grid may have an id like "01": its inputs have its number.
template <class IsWanted>
void readTable(const Node& objTable, const std::string& strId, const IsWanted& isWanted,
               Answers& answers) {
  const std::optional<NodeList> colRows = objTable.childNodes();
  for (const Node& objRow : *colRows) {
    if (objRow.nodeName() != "row") continue;
    const std::string strRowId = objRow.getAttribute("id").value_or("");
    const std::int64_t lngRow = rowNumber(strRowId, INT64_MAX);
    const std::string strRow = lngRow == 0 ? strRowId : std::to_string(lngRow);
    const std::optional<NodeList> colCells = objRow.childNodes();
    for (const Node& objCell : *colCells) {
      if (objCell.nodeName() != "column") continue;
      const std::string strColumn = objCell.getAttribute("id").value_or("");
      if (!isWanted(strColumn)) continue;
      answers.insert_or_assign(cellNameOf(strId, strColumn, strRow),
                               objCell.getAttribute("value").value_or(""));
    }
  }
}

/// The number that a text is, 0 where it is none; more than `lngMost`, also more than 64 bits hold,
/// is told as `lngMost + 1`.
std::int64_t numberUpTo(std::string_view strText, std::int64_t lngMost) {
  std::uint64_t lngNumber = 0;
  const char* const end = strText.data() + strText.size();
  const auto [last, problem] = std::from_chars(strText.data(), end, lngNumber);
  if (last != end) return 0;
  const auto lngTooMany = static_cast<std::uint64_t>(lngMost) + 1;
  const bool blnBeyond = problem == std::errc::result_out_of_range;
  return static_cast<std::int64_t>(blnBeyond ? lngTooMany : std::min(lngNumber, lngTooMany));
}

}  // namespace

std::string cellName(const Question& table, const Input& column, std::int64_t lngRow) {
  return cellNameOf(table.input.strId, column.strId, std::to_string(lngRow));
}

std::int64_t rowCount(const Question& table, const Answers& answers, std::int64_t lngMost) {
  if (!table.blnDynamic) return static_cast<std::int64_t>(table.rows.size());
  std::int64_t lngCount = numberUpTo(answerTo(answers, rowCountNameOf(table.input.strId)), lngMost);
  const std::string strPrefix = cellPrefixOf(table.input.strId);
  for (auto each = answers.lower_bound(strPrefix);
       each != answers.end() && each->first.starts_with(strPrefix); ++each) {
    if (each->second.empty()) continue;
    const std::string_view strName = each->first;
    const std::string_view strRow = strName.substr(strName.rfind('_') + 1);
    lngCount = std::max(lngCount, numberUpTo(strRow, lngMost));
  }
  return lngCount;
}

std::int64_t mostColumns(const PageModel& page) {
  std::size_t lngMost = 0;
  for (const Section& section : page.sections) {
    for (const Question& question : section.questions) {
      if (question.blnDynamic) lngMost = std::max(lngMost, question.columns.size());
    }
  }
  return static_cast<std::int64_t>(lngMost);
}

std::int64_t cellCount(const PageModel& page, const Answers& answers, std::int64_t lngMost) {
  std::int64_t lngCells = 0;
  for (const Section& section : page.sections) {
    for (const Question& question : section.questions) {
      if (!question.blnDynamic) continue;
      lngCells +=
          rowCount(question, answers, lngMost) * static_cast<std::int64_t>(question.columns.size());
    }
  }
  return lngCells;
}

std::int64_t postedVersion(const Answers& answers) {
  return rowNumber(answerTo(answers, "_version"), INT64_MAX);
}

void completeAnswers(const PageModel& page, Answers& answers, std::int64_t lngMost) {
  for (const HiddenField& field : page.hidden) {
    if (field.isFixed()) answers.insert_or_assign(field.strId, field.strValue);
  }
  for (const Section& section : page.sections) {
    for (const Question& question : section.questions) {
      const std::string strLabel = labelNameOf(question.input.strId);
      if (question.input.blnLabelGiven) {
        answers.insert_or_assign(strLabel, question.input.strLabel);
      } else {
        answers.try_emplace(strLabel, question.input.strLabel);
      }
      if (!question.blnTable) continue;
      answers.insert_or_assign(rowCountNameOf(question.input.strId),
                               std::to_string(rowCount(question, answers, lngMost)));
    }
  }
}

bool sameAnswers(const PageModel& page, const Answers& left, const Answers& right,
                 std::int64_t lngMost) {
  const auto same = [&](const std::string& strName) {
    return answerTo(left, strName) == answerTo(right, strName);
  };
  for (const Section& section : page.sections) {
    for (const Question& question : section.questions) {
      if (!question.blnTable && !same(fieldNameOf(question.input.strId))) return false;
      if (!question.blnTable) continue;
      const std::int64_t lngRows = rowCount(question, left, lngMost);
      if (lngRows != rowCount(question, right, lngMost)) return false;
      for (const Input& column : question.columns) {
        if (column.blnOutput) continue;
        for (std::int64_t lngRow = 1; lngRow <= lngRows; ++lngRow) {
          if (!same(cellName(question, column, lngRow))) return false;
        }
      }
    }
  }
  return true;
}

void takeComputed(const PageModel& page, const Document& objPark, Answers& answers) {
  const std::optional<NodeList> colObjects = objPark.getElementsByTagName("prtobjct");
  for (const Node& objItem : *colObjects) {
    const std::string strId = objItem.getAttribute("id").value_or("");
    const Question* const table = page.find(strId);
    if (table == nullptr || !table->blnTable) continue;
    const auto isComputed = [&](const std::string& strColumn) {
      return std::ranges::any_of(table->columns, [&](const Input& column) {
        return column.blnOutput && column.strId == strColumn;
      });
    };
    readTable(objItem, strId, isComputed, answers);
  }
}

void removeRow(const Question& table, std::int64_t lngRow, std::int64_t lngCount,
               Answers& answers) {
  for (const Input& column : table.columns) {
    for (std::int64_t at = lngRow; at <= lngCount; ++at) {
      const auto next = answers.find(cellName(table, column, at + 1));
      const std::string strName = cellName(table, column, at);
      if (next == answers.end()) {
        answers.erase(strName);
      } else {
        answers.insert_or_assign(strName, next->second);
      }
    }
  }
}

Answers answersIn(const std::string& strParkXml, const std::string& strRowCounts) {
  Answers answers;
  const Document objPark = Document::create();
  if (!objPark.loadXML(strParkXml)) return answers;
  const std::optional<NodeList> colObjects = objPark.getElementsByTagName("prtobjct");
  for (const Node& objItem : *colObjects) {
    const std::string strId = objItem.getAttribute("id").value_or("");
    if (lowerCase(objItem.getAttribute("objecttype").value_or("")) == "table") {
      readTable(
          objItem, strId, [](const std::string&) { return true; }, answers);
      continue;
    }
    const std::string strValue = objItem.getAttribute("value").value_or("");
    const bool blnTicked =
        objItem.getAttribute("type").value_or("") == "check" && !strValue.empty();
    answers.insert_or_assign(fieldNameOf(strId), blnTicked ? "on" : strValue);
  }
  const std::optional<NodeList> colHidden = objPark.getElementsByTagName("hdnfld");
  for (const Node& objItem : *colHidden) {
    // Under the name of the output; a page asks for it by that of the field.
    answers.insert_or_assign(std::string(kHiddenPrefix) + objItem.getAttribute("id").value_or(""),
                             objItem.getAttribute("value").value_or(""));
  }
  const auto counts = nlohmann::json::parse(strRowCounts, nullptr, false);
  if (counts.is_object()) {
    for (const auto& [strId, count] : counts.items()) {
      if (!count.is_number_integer()) continue;
      answers.insert_or_assign(rowCountNameOf(strId), std::to_string(count.get<std::int64_t>()));
    }
  }
  return answers;
}

std::string rowCountsOf(const PageModel& page, const Answers& answers, std::int64_t lngMost) {
  nlohmann::ordered_json counts = nlohmann::ordered_json::object();
  for (const Section& section : page.sections) {
    for (const Question& question : section.questions) {
      if (!question.blnDynamic) continue;
      counts[question.input.strId] = rowCount(question, answers, lngMost);
    }
  }
  return counts.dump();
}
