#include "park/ComputedCell.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParkTesting.h"
#include "support/Documents.h"
#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

CellDefinition dateCell(std::string_view strInterval) {
  CellDefinition cell;
  cell.blnCalculated = true;
  cell.strDataType = "date";
  cell.strInterval = strInterval;
  return cell;
}

TEST(readCellDefinitions, ReadsAllAttributesWithMissingAsEmpty) {
  const Document objList = objectList(
      "<column id='c' calculate='true' datatype='date' timedimabbr='ww' autovalue='v' "
      "firstcolumn='f' secondcolumn='s'/><column/><column calculate='TRUE'/>");
  const NodeList colColumns = objList.selectNodes("//column").value();
  const std::vector<CellDefinition> cells = readCellDefinitions(colColumns);
  ASSERT_EQ(cells.size(), 3U);
  EXPECT_EQ(cells[0].objColumn, colColumns.item(0));
  EXPECT_EQ(cells[0].strId, "c");
  EXPECT_TRUE(cells[0].blnCalculated);
  EXPECT_EQ(cells[0].strDataType, "date");
  EXPECT_EQ(cells[0].strInterval, "ww");
  EXPECT_EQ(cells[0].strAutoValue, "v");
  EXPECT_EQ(cells[0].strFirstColumn, "f");
  EXPECT_EQ(cells[0].strSecondColumn, "s");
  EXPECT_EQ(cells[1].objColumn, colColumns.item(1));
  EXPECT_EQ(cells[1].strId, "");
  EXPECT_FALSE(cells[1].blnCalculated);
  EXPECT_EQ(cells[1].strAutoValue, "");
  EXPECT_FALSE(cells[2].blnCalculated);  // an exact word
}

TEST(computeCell, CountsTheIntervalsFromTheFirstDateToTheSecond) {
  const struct {
    const char *says, *interval, *first, *second, *value;
  } cases[] = {
      {"days", "d", "2012-01-01", "2012-01-31", "30"},
      {"the other word for days", "y", "2012-01-01", "2012-01-31", "30"},
      {"in any case", "D", "2012-01-01", "2012-01-31", "30"},
      {"backwards", "d", "2012-01-31", "2012-01-01", "-30"},
      {"nothing between", "d", "2012-01-31", "2012-01-31", "0"},
      {"months are boundaries", "m", "2012-01-31", "2012-02-01", "1"},
      {"years are boundaries", "yyyy", "2011-12-31", "2012-01-01", "1"},
      {"quarters", "q", "2012-03-31", "2012-04-01", "1"},
      {"calendar weeks begin on Sunday", "ww", "2012-01-07", "2012-01-08", "1"},
      {"not from a Sunday to its Saturday", "ww", "2012-01-08", "2012-01-14", "0"},
      {"whole weeks", "w", "2012-01-01", "2012-01-14", "1"},
      {"hours", "h", "2012-01-01 23:59", "2012-01-02 00:00", "1"},
      {"minutes", "n", "2012-01-01 10:00", "2012-01-01 11:30", "90"},
      {"seconds", "s", "10:00:00", "10:00:05", "5"},
      {"blanks around a date", "d", " 2012-01-01 ", "2012-01-02", "1"},
      {"a month's name", "d", "1 January 2012", "Mar 1, 2012", "60"},
      {"day before month", "d", "01/02/2012", "02/02/2012", "1"},
      {"over all of the calendar", "d", "100-01-01", "9999-12-31", "3615899"},
      {"more seconds than 32 bits hold", "s", "100-01-01", "9999-12-31", "312413673600"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const TestHost host;
    bool blnInvalidOperand = false;
    EXPECT_EQ(
        computeCell(host.session(), dateCell(c.interval), c.first, c.second, blnInvalidOperand),
        c.value);
    EXPECT_FALSE(blnInvalidOperand);
  }
}

TEST(computeCell, ReadsDatesInTheHostsOrder) {
  TestHost host;
  host.services().dateOrder = DateOrder::monthDayYear;
  bool blnInvalidOperand = false;
  EXPECT_EQ(
      computeCell(host.session(), dateCell("d"), "01/02/2012", "02/02/2012", blnInvalidOperand),
      "31");
}

TEST(computeCell, MarksADateDifferenceThatLacksAnOperand) {
  const struct {
    const char *says, *first, *second;
    bool marked;
  } cases[] = {
      {"the first", "", "2012-01-01", true},
      {"the second", "2012-01-01", "", true},
      {"both", "", "", true},
      {"the other is no date", "", "soon", true},
      {"one is no date", "soon", "2012-01-01", false},
      {"blanks", " ", "2012-01-01", false},
      {"neither is a date", "a", "b", false},
      {"a day that does not exist", "2012-02-30", "2012-01-01", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const TestHost host;
    bool blnInvalidOperand = false;
    EXPECT_EQ(computeCell(host.session(), dateCell("d"), c.first, c.second, blnInvalidOperand), "");
    EXPECT_EQ(blnInvalidOperand, c.marked);
  }
}

TEST(computeCell, LeavesTheMarkOfAnEarlierCell) {
  const TestHost host;
  bool blnInvalidOperand = true;
  EXPECT_EQ(
      computeCell(host.session(), dateCell("d"), "2012-01-01", "2012-01-02", blnInvalidOperand),
      "1");
  EXPECT_TRUE(blnInvalidOperand);
}

TEST(computeCell, ComputesNothingForOtherDataTypes) {
  for (const char* strDataType : {"", "Date", "date ", "number", "time"}) {
    SCOPED_TRACE(strDataType);
    const TestHost host;
    CellDefinition cell = dateCell("no interval");
    cell.strDataType = strDataType;
    bool blnInvalidOperand = false;
    EXPECT_EQ(computeCell(host.session(), cell, "2012-01-01", "2012-01-02", blnInvalidOperand), "");
    EXPECT_EQ(computeCell(host.session(), cell, "", "", blnInvalidOperand), "");
    EXPECT_FALSE(blnInvalidOperand);
  }
}

TEST(computeCell, RaisesForAnUnknownIntervalBetweenTwoDatesOnly) {
  for (const char* strInterval : {"", "days", "D ", "mm"}) {
    SCOPED_TRACE(strInterval);
    const TestHost host;
    bool blnInvalidOperand = false;
    const auto error = raisedBy([&] {
      computeCell(host.session(), dateCell(strInterval), "2012-01-01", "2012-01-02",
                  blnInvalidOperand);
    });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->number(), 5);
    EXPECT_EQ(error->description(), "Invalid procedure call or argument");
    EXPECT_EQ(
        computeCell(host.session(), dateCell(strInterval), "2012-01-01", "x", blnInvalidOperand),
        "");
    EXPECT_EQ(
        computeCell(host.session(), dateCell(strInterval), "", "2012-01-01", blnInvalidOperand),
        "");
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
