#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Date.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

template <class Find>
void forEachColumn(const ParsedDeployment& deployment, const Find& find) {
  for (const FormObject& object : deployment.objects) {
    if (object.kind != ObjectKind::table) continue;
    for (const TableColumn& column : object.columns) find(object, column);
  }
}

/// Whether a column says all that a computed one has to say, but for `calculate`.
bool looksComputed(const Node& objColumn) {
  for (const std::string_view attribute : {kFirstColumn, kSecondColumn, kDataType, kInterval}) {
    if (attributeText(objColumn, attribute).empty()) return false;
  }
  // One that is written otherwise is what has the slip, and a rule of its own.
  return std::ranges::none_of(objColumn.attributes(), [](const NodeAttribute& attribute) {
    return isSlipOf(attribute.strName, kCalculate);
  });
}

void findWrongFlags(const ParsedDeployment& deployment, Findings& findings) {
  forEachColumn(deployment, [&](const FormObject& object, const TableColumn& column) {
    const std::string strWord = attributeText(column.objNode, kCalculate);
    const bool blnNo = strWord.empty() || strWord == "false";
    if (strWord == "true" || (blnNo && !looksComputed(column.objNode))) return;
    findings.add(*object.file, column.objNode, kCalculate, column.strId,
                 (blnNo ? "The column says from what the cell is computed, and calculate="
                        : "The word calculate=") +
                     inQuotes(strWord) + " is not \"true\": the cell is not computed.",
                 std::string("Write calculate=\"true\"") +
                     (blnNo ? ", or take the other attributes out." : " in lower case."));
  });
}

void findWrongComputations(const ParsedDeployment& deployment, Findings& findings) {
  forEachColumn(deployment, [&](const FormObject& object, const TableColumn& column) {
    const std::string strDataType = attributeText(column.objNode, kDataType);
    if (!column.isComputed() || strDataType == "date") return;
    findings.add(*object.file, column.objNode, kDataType, column.strId,
                 "The computed cell has datatype=" + inQuotes(strDataType) +
                     ", and only \"date\" computes anything: it stays empty.",
                 "Write datatype=\"date\".");
  });
}

void findUnknownIntervals(const ParsedDeployment& deployment, Findings& findings) {
  forEachColumn(deployment, [&](const FormObject& object, const TableColumn& column) {
    if (!column.isComputed() || attributeText(column.objNode, kDataType) != "date") return;
    const std::string strInterval = attributeText(column.objNode, kInterval);
    constexpr std::string_view kIntervals[] = {"yyyy", "q",  "m", "y", "d",
                                               "w",    "ww", "h", "n", "s"};
    if (std::ranges::find(kIntervals, toLower(strInterval)) != std::end(kIntervals)) return;
    findings.add(*object.file, column.objNode, kInterval, column.strId,
                 "The interval timedimabbr=" + inQuotes(strInterval) +
                     " is none: a form with both dates fails.",
                 "Write one of yyyy, q, m, y, d, w, ww, h, n, s.");
  });
}

void findWrongOperands(const ParsedDeployment& deployment, Findings& findings) {
  for (const FormObject& object : deployment.objects) {
    if (object.kind != ObjectKind::table) continue;
    std::unordered_map<std::string, const TableColumn*> columns;
    for (const TableColumn& column : object.columns) columns.emplace(column.strId, &column);
    for (const TableColumn& column : object.columns) {
      if (!column.isComputed()) continue;
      for (const std::string_view attribute : {kFirstColumn, kSecondColumn}) {
        const std::string strOperand = attributeText(column.objNode, attribute);
        const auto found = columns.find(strOperand);
        std::string strWrong;
        if (strOperand.empty()) {
          strWrong = "The computed cell has no " + std::string(attribute);
        } else if (found == columns.end()) {
          strWrong =
              std::string(attribute) + "=" + inQuotes(strOperand) + " names no column of the table";
        } else if (found->second->isComputed() ||
                   !attributeText(found->second->objNode, kAutoValue).empty()) {
          strWrong = std::string(attribute) + "=" + inQuotes(strOperand) +
                     " names a column that no form posts";
        }
        if (strWrong.empty()) continue;
        findings.add(*object.file, column.objNode, attribute, column.strId,
                     strWrong + ": the cell stays empty.",
                     "Name a column whose cells people fill in; capitals count.");
      }
    }
  }
}

void findUnitsBeforeDurations(const ParsedDeployment& deployment, Findings& findings) {
  for (const FormObject& object : deployment.objects) {
    const TableColumn* unit = nullptr;
    for (const TableColumn& column : object.columns) {
      if (column.strId == "timedimension" && !unit) unit = &column;
      if (!unit || !column.isComputed()) continue;
      findings.add(*object.file, unit->objNode, kId, unit->strId,
                   "The unit stands before the computed column " + inQuotes(column.strId) +
                       ", so it is written also where nothing could be computed.",
                   "Move the column timedimension behind it.");
      break;
    }
  }
}

void findAutoComputed(const ParsedDeployment& deployment, Findings& findings) {
  forEachColumn(deployment, [&](const FormObject& object, const TableColumn& column) {
    if (!column.isComputed() || attributeText(column.objNode, kAutoValue).empty()) return;
    findings.add(*object.file, column.objNode, kAutoValue, column.strId,
                 "The column is computed and has a fixed value, which does not count.",
                 "Leave one of calculate and autovalue out.");
  });
}

void findUnknownColumnTypes(const ParsedDeployment& deployment, Findings& findings) {
  forEachColumn(deployment, [&](const FormObject& object, const TableColumn& column) {
    const std::string strType = attributeText(column.objNode, kColumnType);
    const std::string strLower = toLower(strType);
    if (strLower == "date" || strLower == "time") return;
    const std::string_view strMeant = intendedWord(strType, {"date", "time"});
    if (strMeant.empty()) return;
    findings.add(*object.file, column.objNode, kColumnType, column.strId,
                 "The columntype " + inQuotes(strType) + " is not " + inQuotes(strMeant) +
                     ": the cells are not converted, and the schema refuses them.",
                 "Write columntype=\"" + std::string(strMeant) + "\".");
  });
}

bool isDateColumn(const TableColumn& column) {
  const std::string strType = toLower(attributeText(column.objNode, kColumnType));
  return strType == "date" || strType == "time";
}

/// The constants that a run reads as dates: fixed values of date columns, preset answers.
template <class Find>
void forEachDateConstant(const ParsedDeployment& deployment, const Find& find) {
  forEachColumn(deployment, [&](const FormObject& object, const TableColumn& column) {
    if (isDateColumn(column) && !column.isComputed()) {
      find(object, column.objNode, kAutoValue, column.strId);
    }
  });
  for (const FormObject& object : deployment.objects) {
    const std::string strType = toLower(object.strType);
    if (!object.blnHidden && object.kind == ObjectKind::field &&
        (strType == "date" || strType == "time")) {
      find(object, object.objNode, "value", object.strId);
    }
  }
}

void findAmbiguousDates(const ParsedDeployment& deployment, Findings& findings) {
  forEachDateConstant(deployment, [&](const FormObject& object, const Node& objNode,
                                      std::string_view attribute, const std::string& strId) {
    const std::string strText = attributeText(objNode, attribute);
    const auto one = parseDate(strText, DateOrder::dayMonthYear);
    const auto other = parseDate(strText, DateOrder::monthDayYear);
    const auto third = parseDate(strText, DateOrder::yearMonthDay);
    if (!one || (one == other && one == third)) return;
    findings.add(*object.file, objNode, attribute, strId,
                 "The date " + inQuotes(strText) + " can be read in more than one way.",
                 "Write it year first: 2026-03-05.");
  });
}

void findNoDates(const ParsedDeployment& deployment, Findings& findings) {
  forEachDateConstant(deployment, [&](const FormObject& object, const Node& objNode,
                                      std::string_view attribute, const std::string& strId) {
    const std::string strText = attributeText(objNode, attribute);
    if (strText.empty() || parseDate(strText, deployment.files.dateOrder)) return;
    findings.add(*object.file, objNode, attribute, strId,
                 "The text " + inQuotes(strText) +
                     " is no date: it goes into the message as it "
                     "stands.",
                 "Write a date, year first: 2026-03-05.");
  });
}

constexpr auto kRules = std::to_array<Rule>({
    {"calculate-not-true", Severity::error, findWrongFlags},
    {"computes-nothing", Severity::error, findWrongComputations},
    {"unknown-interval", Severity::error, findUnknownIntervals},
    {"operand-names-nothing", Severity::error, findWrongOperands},
    {"unit-before-duration", Severity::warning, findUnitsBeforeDurations},
    {"autovalue-computed", Severity::warning, findAutoComputed},
    {"unknown-columntype", Severity::error, findUnknownColumnTypes},
    {"ambiguous-date", Severity::warning, findAmbiguousDates},
    {"no-date", Severity::error, findNoDates},
});

}  // namespace

std::span<const Rule> columnRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
