#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <random>
#include <tuple>

#include "ParkTesting.h"
#include "park/ParkProtTable.h"
#include "platform/text/Text.h"
#include "support/Documents.h"
#include "support/Host.h"
#include "support/Results.h"

// Random small tables against a model that visits every row number and keeps its rows as plain
// data, without any document.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

enum class Kind { fixedGrid, dynamic, other };

struct Column {
  std::string id, calculate, datatype, interval, autovalue, first, second;
};

struct Table {
  std::string id, type;
  Kind kind = Kind::other;
  std::vector<std::string> rows;  // the ids of the rows that it has from the start
  std::vector<Column> columns;
  std::map<std::string, std::string> form;  // without the row count
};

struct Cell {
  std::string id, value;
  bool operator==(const Cell&) const = default;
};

struct Row {
  std::string id;  // empty where it has none
  std::vector<Cell> cells;
  bool operator==(const Row&) const = default;
};

struct Outcome {
  std::int32_t code = 0;
  bool removed = false;
  std::vector<Row> rows;
  std::size_t definitions = 0;
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << "code " << outcome.code << (outcome.removed ? ", removed" : "") << ", "
       << outcome.definitions << " definitions";
  for (const Row& row : outcome.rows) {
    *out << "\n  row '" << row.id << "':";
    for (const Cell& cell : row.cells) *out << " " << cell.id << "='" << cell.value << "'";
  }
}

// The texts that stand for dates, each with its day, and some that do not.
const std::map<std::string, int> kDays = {
    {"2012-01-01", 0}, {"2012-01-31", 30}, {"2011-12-31", -1}, {" 1 March 2012", 60}};

/// What the row's cells are, up to the first failure.
std::int32_t fillRow(const Table& table, int r, std::vector<Cell>& cells, bool& blnBlank) {
  const auto submitted = [&](const std::string& strColumn) -> std::string {
    const auto found = table.form.find(table.id + "___" + strColumn + "_" + std::to_string(r));
    return found == table.form.end() ? "" : found->second;
  };

  bool blnInvalidOperand = false;
  for (const Column& column : table.columns) {
    std::string strValue;
    if (column.calculate != "true") {
      if (column.autovalue.empty()) {
        strValue = submitted(column.id);
        if (!strValue.empty()) blnBlank = false;
      } else {
        strValue = column.autovalue;
      }
    } else {
      const std::string strFirst = column.first.empty() ? "" : submitted(column.first);
      const std::string strSecond = column.second.empty() ? "" : submitted(column.second);
      if (column.datatype == "date") {
        if (strFirst.empty() || strSecond.empty()) {
          blnInvalidOperand = true;
        } else if (kDays.contains(strFirst) && kDays.contains(strSecond)) {
          if (column.interval != "d") return kInvalidArgument;
          strValue = std::to_string(kDays.at(strSecond) - kDays.at(strFirst));
        }
      }
    }
    if (column.id == "timedimension" && blnInvalidOperand) strValue.clear();
    cells.push_back({column.id, strValue});
  }
  return 0;
}

Outcome expectedOutcome(const Table& table, int lngRowCount) {
  Outcome outcome;
  for (const std::string& strId : table.rows) outcome.rows.push_back({strId, {}});
  outcome.definitions = table.columns.size();
  if (lngRowCount < 1) return outcome;

  bool blnOnlyRowIsBlank = false;
  for (int r = 1; r <= lngRowCount; ++r) {
    bool blnBlank = true;
    Row newRow;
    if (table.kind == Kind::dynamic) newRow.id = std::to_string(r);
    Row* row = &newRow;
    if (table.kind == Kind::fixedGrid) {
      row = nullptr;
      for (Row& candidate : outcome.rows) {
        if (row == nullptr && std::stoi(candidate.id) == r) row = &candidate;
      }
      if (row == nullptr) {
        outcome.code = SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING;
        return outcome;
      }
    }
    outcome.code = fillRow(table, r, row->cells, blnBlank);
    if (outcome.code != 0) return outcome;
    blnOnlyRowIsBlank = lngRowCount == 1 && blnBlank;
    if (row == &newRow && !blnBlank) outcome.rows.push_back(newRow);
  }
  outcome.removed = blnOnlyRowIsBlank;
  outcome.definitions = 0;
  return outcome;
}

std::string attribute(const char* strName, const std::string& strValue) {
  return strValue.empty() ? "" : std::string(" ") + strName + "='" + strValue + "'";
}

std::string xmlOf(const Table& table) {
  std::string strXml = "<prtobjct id='" + table.id + "' type='" + table.type + "'>";
  for (const std::string& strId : table.rows) strXml += "<row id='" + strId + "'/>";
  for (const Column& column : table.columns) {
    strXml += "<column" + attribute("id", column.id) + attribute("calculate", column.calculate) +
              attribute("datatype", column.datatype) + attribute("timedimabbr", column.interval) +
              attribute("autovalue", column.autovalue) + attribute("firstcolumn", column.first) +
              attribute("secondcolumn", column.second) + "/>";
  }
  return strXml + "</prtobjct>";
}

void submitForm(TestHost& host, const Table& table, int lngRowCount) {
  host.submit(toLower(table.id) + "_rowCount", std::to_string(lngRowCount));
  for (const auto& [strName, strValue] : table.form) host.submit(strName, strValue);
}

Outcome parkedOutcome(const Session& session, const Table& table) {
  const Document objList = objectList(xmlOf(table));
  const Node objTable = firstObject(objList);

  Outcome outcome;
  outcome.code = ParkProtTable(session, objTable).ErrorCode();
  outcome.removed = !firstObject(objList);
  outcome.definitions = objTable.selectNodes("column").value().length();
  const NodeList colRows = objTable.selectNodes("row").value();
  for (const Node& objRow : colRows) {
    Row row{objRow.getAttribute("id").value_or(""), {}};
    const NodeList colCells = objRow.selectNodes("column").value();
    for (const Node& objCell : colCells) {
      row.cells.push_back({objCell.getAttribute("id").value_or(""),
                           objCell.getAttribute("value").value_or("none")});
    }
    outcome.rows.push_back(row);
  }
  return outcome;
}

Outcome observedOutcome(const Table& table, int lngRowCount) {
  TestHost host;
  submitForm(host, table, lngRowCount);
  return parkedOutcome(host.session(), table);
}

/// Whether a cell holds a number of days: nothing that is submitted looks like one.
bool holdsADifference(const Outcome& outcome) {
  for (const Row& row : outcome.rows) {
    for (const Cell& cell : row.cells) {
      if (!cell.value.empty() && cell.value.find_first_not_of("-0123456789") == std::string::npos &&
          cell.value.size() <= 3)
        return true;
    }
  }
  return false;
}

/// Makes tables that are small, odd and the same in every run.
class TableMaker {
 public:
  int upTo(int lngLast) { return static_cast<int>(random_() % static_cast<unsigned>(lngLast + 1)); }

  Table table() {
    static const std::vector<std::pair<Kind, std::string>> kTypes = {
        {Kind::fixedGrid, "table"},   {Kind::fixedGrid, "TABLE"}, {Kind::dynamic, "dynatable"},
        {Kind::dynamic, "DynaTable"}, {Kind::other, "list"},      {Kind::other, ""}};
    Table table;
    table.id = oneOf({"t", "T1", "t_", "t___a"});
    std::tie(table.kind, table.type) = kTypes[static_cast<std::size_t>(upTo(5))];
    if (table.kind == Kind::fixedGrid || upTo(5) == 0) table.rows = rows();
    for (int n = upTo(4); n >= 0; --n) table.columns.push_back(column());
    for (int n = upTo(12) * upTo(3); n > 0; --n) {
      const std::string strRow = upTo(7) == 0 ? oneOf({"0", "01", "-1", "+2", "2 ", "x", ""})
                                              : std::to_string(1 + upTo(5));
      table.form[table.id + "___" + columnId() + "_" + strRow] = value();
    }
    return table;
  }

 private:
  std::string oneOf(std::initializer_list<const char*> texts) {
    return texts.begin()[upTo(static_cast<int>(texts.size()) - 1)];
  }

  std::string columnId() { return oneOf({"a", "a", "b", "b", "a_1", "1", "", "timedimension"}); }

  std::string value() {
    return upTo(1) == 0 ? oneOf({"", "x", " ", "soon"})
                        : oneOf({"2012-01-01", "2012-01-31", "2011-12-31", " 1 March 2012"});
  }

  std::vector<std::string> rows() {
    std::vector<std::string> colIds;
    for (int n = 1, lngLast = upTo(8); n <= lngLast; ++n)
      colIds.push_back((upTo(5) == 0 ? "0" : "") + std::to_string(n));
    std::shuffle(colIds.begin(), colIds.end(), random_);
    return colIds;
  }

  Column column() {
    Column column;
    column.id = columnId();
    switch (upTo(4)) {
      case 0:
        column.autovalue = oneOf({"fixed", " ", "2012-01-01"});
        break;
      case 1:
      case 2:
        column.calculate = oneOf({"true", "true", "true", "True", "false"});
        column.datatype = oneOf({"date", "date", "date", "Date", "number", ""});
        column.interval = upTo(2) == 0 ? oneOf({"", "days"}) : "d";
        column.autovalue = oneOf({"", "", "fixed"});
        column.first = oneOf({"a", "a", "b", "1", ""});
        column.second = oneOf({"b", "b", "a", "1", ""});
        break;
      default:
        break;
    }
    return column;
  }

  std::mt19937 random_{20260305};
};

TEST(ParkProtTable, DoesWhatAVisitOfEveryRowDoes) {
  TableMaker maker;
  int lngRemoved = 0, lngRowMissing = 0, lngBadInterval = 0, lngSkipped = 0, lngUntouched = 0,
      lngDifferences = 0;
  for (int n = 0; n < 3000 && !testing::Test::HasFailure(); ++n) {
    const Table table = maker.table();
    const int lngRowCount = maker.upTo(3) == 0 ? 1 : maker.upTo(9) - 1;
    SCOPED_TRACE("row count " + std::to_string(lngRowCount) + ", form " +
                 testing::PrintToString(table.form) + "\n" + xmlOf(table));
    const Outcome expected = expectedOutcome(table, lngRowCount);
    EXPECT_EQ(observedOutcome(table, lngRowCount), expected);

    lngRemoved += expected.removed ? 1 : 0;
    lngRowMissing += expected.code == SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING ? 1 : 0;
    lngBadInterval += expected.code == kInvalidArgument ? 1 : 0;
    lngDifferences += holdsADifference(expected) ? 1 : 0;
    lngUntouched += lngRowCount < 1 ? 1 : 0;
    lngSkipped += table.kind != Kind::fixedGrid && lngRowCount > 1 && expected.code == 0 &&
                          expected.rows.size() > table.rows.size() &&
                          expected.rows.size() < static_cast<std::size_t>(lngRowCount)
                      ? 1
                      : 0;
  }
  // All that can become of a table was met.
  EXPECT_GT(lngRemoved, 100);
  EXPECT_GT(lngRowMissing, 100);
  EXPECT_GT(lngBadInterval, 10);
  EXPECT_GT(lngDifferences, 20);
  EXPECT_GT(lngUntouched, 100);
  EXPECT_GT(lngSkipped, 100);
}

TEST(ParkProtTable, DoesTheSameForLaterTablesOfOneId) {
  TableMaker maker;
  int lngLaterRows = 0;
  for (int n = 0; n < 1500 && !testing::Test::HasFailure(); ++n) {
    std::vector<Table> tables = {maker.table(), maker.table(), maker.table()};
    const int lngRowCount = maker.upTo(9);
    for (Table& table : tables) {
      table.id = tables.front().id;
      table.form = tables.front().form;
    }
    TestHost host;
    submitForm(host, tables.front(), lngRowCount);
    const Session session = host.session();
    for (const Table& table : tables) {
      SCOPED_TRACE("row count " + std::to_string(lngRowCount) + ", form " +
                   testing::PrintToString(table.form) + "\n" + xmlOf(table));
      const Outcome expected = expectedOutcome(table, lngRowCount);
      EXPECT_EQ(parkedOutcome(session, table), expected);
      if (&table != &tables.front() && table.kind != Kind::fixedGrid) {
        lngLaterRows += static_cast<int>(expected.rows.size() - table.rows.size());
      }
    }
  }
  EXPECT_GT(lngLaterRows, 1000);
}

TEST(ParkProtTable, DoesTheSameForAHugeRowCountAsForOneBeyondTheFilledRows) {
  TableMaker maker;
  for (int n = 0; n < 1500 && !testing::Test::HasFailure(); ++n) {
    const Table table = maker.table();
    SCOPED_TRACE(testing::PrintToString(table.form) + "\n" + xmlOf(table));
    EXPECT_EQ(observedOutcome(table, 2147483647), expectedOutcome(table, 20));
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
