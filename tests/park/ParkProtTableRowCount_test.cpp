#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParkTesting.h"
#include "park/ParkProtTable.h"
#include "support/Documents.h"
#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

// The posted row count: what is one, and that a large one costs nothing.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

constexpr const char* kTable =
    "<prtobjct id=\"t\" type=\"dynatable\"><column id=\"a\"/></prtobjct>";

/// Parks the table in a list and gives the list's text; fails when that takes more reads of the
/// form, or operations on documents, than a millionth of the rows that a count can name.
std::string parkedInFewSteps(TestHost& host, std::string_view strTable) {
  constexpr std::size_t kSteps = 2000;
  CountedOperations operations(kSteps);
  host.withFaults(operations);
  const LimitedRequest request(host, kSteps);
  const Document objList = objectList(strTable, {.faults = &operations});
  EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
  return objList.xml();
}

TEST(ParkProtTable, FailsForARowCountThatIsNoNumber) {
  for (const char* strCount : {"", " ", "abc", "1 2", "3 rows", "0x3", "1e", "--1", "true", "2, 2",
                               "1\t", "\xD9\xA3", "NaN", "inf"}) {
    SCOPED_TRACE(strCount);
    TestHost host({{"t_rowCount", strCount}, {"t___a_1", "x"}});
    const Document objList = objectList(kTable);
    EXPECT_TRUE(FailedWith(ParkProtTable(host.session(), firstObject(objList)),
                           SVC_RET_XML_CREATION_PROT_TBL_ROWCOUNT_INVALID,
                           "The object list is missing",
                           "An error occurred because object list is missing"));
    EXPECT_EQ(objList.xml(), objectListXml(kTable));
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(ParkProtTable, FailsForARowCountThatWasNotSubmitted) {
  TestHost host({{"t_rowcount", "1"}, {"T_rowCount", "1"}, {"t___a_1", "x"}});
  const Document objList = objectList(kTable);
  EXPECT_TRUE(FailedWith(ParkProtTable(host.session(), firstObject(objList)),
                         SVC_RET_XML_CREATION_PROT_TBL_ROWCOUNT_INVALID,
                         "The object list is missing",
                         "An error occurred because object list is missing"));
}

// deliberate: the failure of the read itself is not reported.
TEST(ParkProtTable, ReportsARowCountThatCannotBeReadAsInvalid) {
  const Document objList = objectList(kTable);
  TestHost outside;
  outside.withoutContext();
  TestHost withoutRequest;
  withoutRequest.withoutRequest();
  TestHost refusing({{"t_rowCount", "1"}});
  const Refusal refusal(refusing, {"t_rowCount"});
  for (const TestHost* host : {&outside, &withoutRequest, &refusing}) {
    EXPECT_TRUE(FailedWith(ParkProtTable(host->session(), firstObject(objList)),
                           SVC_RET_XML_CREATION_PROT_TBL_ROWCOUNT_INVALID,
                           "The object list is missing",
                           "An error occurred because object list is missing"));
    EXPECT_EQ(objList.xml(), objectListXml(kTable));
    EXPECT_THAT(host->traceLines(), IsEmpty());
  }
}

TEST(ParkProtTable, LeavesATableWithoutRowsUntouched) {
  for (const char* strCount : {"0", "-1", "0.5", "-0.6", "0.4999", "-2147483648", "1e-9", " 0 "}) {
    SCOPED_TRACE(strCount);
    TestHost host({{"t_rowCount", strCount}, {"t___a_1", "x"}, {"t___a_0", "x"}});
    const Document objList = objectList(kTable);
    EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
    EXPECT_EQ(objList.xml(), objectListXml(kTable));
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(ParkProtTable, RoundsTheRowCountWithAHalfToTheEvenNeighbour) {
  const struct {
    const char* count;
    std::size_t rows;
  } cases[] = {{"1", 1},   {"0.51", 1}, {"1.49", 1}, {"1.5", 2},   {"2.5", 2},  {"2.51", 3},
               {"3.5", 4}, {" 3 ", 3},  {"+3", 3},   {"1e1", 10},  {"1d1", 10}, {"1E+1", 10},
               {"03", 3},  {"3.", 3},   {"0,3", 3},  {"1,000", 12}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.count);
    TestHost host({{"t_rowCount", c.count}});
    for (int r = 1; r <= 11; ++r) host.submit("t___a_" + std::to_string(r), "x");
    host.submit("t___a_1000", "x");
    host.submit("t___a_1001", "x");
    const Document objList = objectList(kTable);
    EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
    EXPECT_EQ(objList.selectNodes("//row")->length(), c.rows);
  }
}

TEST(ParkProtTable, OverflowsForARowCountBeyond32Bits) {
  for (const char* strCount : {"2147483648", "2147483647.5", "-2147483649", "1e10", "1e400",
                               "99999999999999999999999999", "9,999,999,999"}) {
    SCOPED_TRACE(strCount);
    TestHost host({{"t_rowCount", strCount}, {"t___a_1", "x"}});
    const Document objList = objectList(kTable);
    EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(host.session(), firstObject(objList)), 6,
                                       "ParkProtTable", "Overflow"));
    EXPECT_EQ(objList.xml(), objectListXml(kTable));
  }
}

TEST(ParkProtTable, GivesTheSameForAHugeRowCountAsForThatOfTheFilledRows) {
  for (const char* strType : {"dynatable", "list"}) {
    SCOPED_TRACE(strType);
    const std::string strTable =
        std::string("<prtobjct id='t' type='") + strType +
        "'><column id='a'/><column id='f' autovalue='fixed'/><column id='from'/><column id='to'/>"
        "<column id='len' calculate='true' datatype='date' timedimabbr='d' firstcolumn='from' "
        "secondcolumn='to'/><column id='timedimension'/></prtobjct><prtobjct id='next'/>";
    std::vector<std::string> colResults;
    for (const char* strCount : {"3", "2147483647", "2147483646.7", "2,147,483,647"}) {
      TestHost host({{"t_rowCount", strCount},
                     {"t___a_1", "one"},
                     {"t___a_2", "two"},
                     {"t___from_2", "2012-01-01"},
                     {"t___to_2", "2012-01-31"},
                     {"t___timedimension_2", "d"},
                     {"t___to_3", "2012-01-31"},
                     {"t___timedimension_3", "d"}});
      colResults.push_back(parkedInFewSteps(host, strTable));
      EXPECT_EQ(colResults.back(), colResults.front()) << strCount;
      EXPECT_THAT(host.traceLines(), IsEmpty());
    }
    EXPECT_EQ(parsed(colResults.front()).selectNodes("//row[column[@id='f']/@value]")->length(),
              3U);
  }
}

TEST(ParkProtTable, FindsTheFilledRowsOfAHugeTable) {
  TestHost host({{"t_rowCount", "2147483647"},
                 {"t___a_2147483647", "last"},
                 {"t___a_2147483648", "beyond"},
                 {"t___a_4294967297", "beyond 32 bits"},
                 {"t___a_18446744073709551617", "beyond 64 bits"},
                 {"t___a_2", "two"},
                 {"t___a_1", "one"}});
  EXPECT_EQ(parkedInFewSteps(host, kTable),
            objectListXml("<prtobjct id=\"t\" type=\"dynatable\">"
                          "<row id=\"1\"><column id=\"a\" value=\"one\"/></row>"
                          "<row id=\"2\"><column id=\"a\" value=\"two\"/></row>"
                          "<row id=\"2147483647\"><column id=\"a\" value=\"last\"/></row>"
                          "</prtobjct>"));
}

TEST(ParkProtTable, PutsTheRowsInTheOrderOfTheirNumbersNotOfTheirNames) {
  TestHost host(
      {{"t_rowCount", "2147483647"}, {"t___a_10", "x"}, {"t___a_9", "y"}, {"t___a_100", "z"}});
  EXPECT_EQ(parkedInFewSteps(host, kTable),
            objectListXml("<prtobjct id=\"t\" type=\"dynatable\">"
                          "<row id=\"9\"><column id=\"a\" value=\"y\"/></row>"
                          "<row id=\"10\"><column id=\"a\" value=\"x\"/></row>"
                          "<row id=\"100\"><column id=\"a\" value=\"z\"/></row></prtobjct>"));
}

TEST(ParkProtTable, KeepsAHugeTableThatIsBlank) {
  TestHost host({{"t_rowCount", "2147483647"}});
  EXPECT_EQ(parkedInFewSteps(host, kTable),
            objectListXml("<prtobjct id=\"t\" type=\"dynatable\"/>"));
}

TEST(ParkProtTable, FailsAtOnceWhereAFixedGridLacksAHugeRow) {
  TestHost host({{"t_rowCount", "2147483647"}, {"t___a_1", "x"}, {"t___a_2147483647", "y"}});
  const Document objList = objectList(
      "<prtobjct id='t' type='table'><row id='1'/><row id='2147483647'/><column id='a'/>"
      "</prtobjct>");
  EXPECT_TRUE(FailedWith(ParkProtTable(host.session(), firstObject(objList)),
                         SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING,
                         "The protocol table row is missing",
                         "An error occurred because the protocol table row is missing"));
  EXPECT_EQ(objList.xml(),
            objectListXml("<prtobjct id=\"t\" type=\"table\"><row id=\"1\">"
                          "<column id=\"a\" value=\"x\"/></row><row id=\"2147483647\"/>"
                          "<column id=\"a\"/></prtobjct>"));
}

TEST(ParkProtTable, ReadsBlankRowsOnceForAllTablesOfOneId) {
  constexpr int kTables = 200;
  constexpr int kRows = 200;
  TestHost host({{"t_rowCount", std::to_string(kRows)}, {"t___a_100", "x"}});
  std::string strTables;
  for (int n = 0; n < kTables; ++n) strTables += kTable;
  for (int lngRow = 1; lngRow <= kRows; ++lngRow) {
    host.submit("t___other_" + std::to_string(lngRow), "x");  // no column of the tables
    host.submit("t___a_" + std::to_string(lngRow), "");
  }
  // Of each table the row count, the first row and the filled one; of the first table and of all
  // others together each row.
  const LimitedRequest limited(host, 3 * kTables + 2 * kRows);
  const Document objList = objectList(strTables);
  const Session session = host.session();
  const NodeList colTables = objList.selectNodes("//prtobjct").value();
  for (const Node& objTable : colTables) EXPECT_TRUE(Succeeded(ParkProtTable(session, objTable)));
  EXPECT_EQ(objList.selectNodes("//prtobjct/row[@id='100']")->length(),
            static_cast<std::size_t>(kTables));
}

TEST(ParkProtTable, MakesNothingOfRowsThatAreNamedAndNotFilledIn) {
  CountedOperations operations(100'000);
  const DocumentSettings settings{.faults = &operations};
  TestHost host({{"t_rowCount", "5000"}, {"t___a_5000", "x"}});
  host.withFaults(operations);
  for (int lngRow = 1; lngRow < 5000; ++lngRow) {
    host.submit("t___other_" + std::to_string(lngRow), "x");  // no column of the table
    host.submit("t___a_" + std::to_string(lngRow), "");
  }
  const Document objList = objectList(kTable, settings);
  EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
  EXPECT_EQ(objList.selectNodes("//row")->length(), 1u);
  EXPECT_LE(operations.of(DomOperation::createElement) + operations.of(DomOperation::cloneNode), 4u)
      << "the first row's element, the last row's and its one cell";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
