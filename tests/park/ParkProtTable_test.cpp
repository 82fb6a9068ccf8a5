#include "park/ParkProtTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParkTesting.h"
#include "support/Documents.h"
#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

constexpr const char* kDynamicTable = "<prtobjct id=\"t1\" type=\"dynatable\">";
constexpr const char* kFixedGrid = "<prtobjct id=\"t1\" type=\"table\">";

/// Parks the table and gives its text afterwards.
std::string parkedXml(const TestHost& host, std::string_view strTable) {
  const Document objList = objectList(strTable);
  const Node objTable = firstObject(objList);
  EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), objTable)));
  return objTable.xml();
}

TEST(ParkProtTable, FillsTheRowsOfAFixedGrid) {
  TestHost host({{"t1_rowCount", "2"}, {"t1___a_1", "a1"}, {"t1___b_1", "b1"}, {"t1___b_2", "b2"}});
  EXPECT_EQ(parkedXml(host, std::string(kFixedGrid) +
                                "<row id='1' label='one'/><row id='2'/>"
                                "<column id='a' name='A'/><column id='b'/></prtobjct>"),
            std::string(kFixedGrid) +
                "<row id=\"1\" label=\"one\"><column id=\"a\" name=\"A\" value=\"a1\"/>"
                "<column id=\"b\" value=\"b1\"/></row>"
                "<row id=\"2\"><column id=\"a\" name=\"A\" value=\"\"/>"
                "<column id=\"b\" value=\"b2\"/></row></prtobjct>");
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(ParkProtTable, KeepsABlankRowOfAFixedGrid) {
  TestHost host({{"t1_rowCount", "2"}});
  EXPECT_EQ(parkedXml(host, std::string(kFixedGrid) +
                                "<row id='1'/><row id='2'/><column id='a'/></prtobjct>"),
            std::string(kFixedGrid) +
                "<row id=\"1\"><column id=\"a\" value=\"\"/></row>"
                "<row id=\"2\"><column id=\"a\" value=\"\"/></row></prtobjct>");
}

TEST(ParkProtTable, ComparesTheRowOfAFixedGridAsANumber) {
  const struct {
    const char *says, *rows, *filled;
  } cases[] = {
      {"a leading zero", "<row id='01' n='x'/>", "x"},
      {"a fraction of nothing", "<row id='1.0' n='x'/>", "x"},
      {"white space", "<row id=' 1&#10;' n='x'/>", "x"},
      {"the first of several", "<row id='1' n='x'/><row id='01' n='y'/>", "x"},
      {"not by its position", "<row id='2' n='x'/><row id='1' n='y'/>", "y"},
      {"only among the table's own children", "<g><row id='1' n='x'/></g><row id='1' n='y'/>", "y"},
      {"a text that is none",
       "<row id='x' n='x'/><row id='' n='z'/><row n='z'/><row id='1' n='y'/>", "y"},
      {"a plus sign is no number there", "<row id='+1' n='x'/><row id='1' n='y'/>", "y"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"t1_rowCount", "1"}, {"t1___a_1", "v"}});
    const Document objList =
        objectList(std::string(kFixedGrid) + c.rows + "<column id='a'/></prtobjct>");
    EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
    ASSERT_EQ(objList.selectNodes("//row/column")->length(), 1U);
    EXPECT_EQ(objList.selectSingleNode("//row[column]").getAttribute("n"), c.filled);
  }
}

TEST(ParkProtTable, AppendsOnlyTheFilledRowsOfADynamicTable) {
  TestHost host({{"t1_rowCount", "3"}, {"t1___a_1", "x"}, {"t1___a_2", ""}, {"t1___b_3", "y"}});
  EXPECT_EQ(parkedXml(host, std::string(kDynamicTable) +
                                "<column id='a'/><note/><column id='b'/></prtobjct>"),
            std::string(kDynamicTable) +
                "<note/>"
                "<row id=\"1\"><column id=\"a\" value=\"x\"/><column id=\"b\" value=\"\"/></row>"
                "<row id=\"3\"><column id=\"a\" value=\"\"/><column id=\"b\" value=\"y\"/></row>"
                "</prtobjct>");
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(ParkProtTable, TakesItsKindFromTheTypeInAnyCase) {
  const struct {
    const char *says, *type, *row;
  } cases[] = {
      {"dynamic", "DynaTable", "<row id=\"1\"><column id=\"a\" value=\"x\"/></row>"},
      {"a new row of another kind has no id", "list", "<row><column id=\"a\" value=\"x\"/></row>"},
      {"an empty type is another kind", "", "<row><column id=\"a\" value=\"x\"/></row>"},
      {"the word is not trimmed", "table ", "<row><column id=\"a\" value=\"x\"/></row>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"t1_rowCount", "2"}, {"t1___a_1", "x"}});
    const std::string strHead = std::string("<prtobjct id=\"t1\" type=\"") + c.type + "\">";
    EXPECT_EQ(parkedXml(host, strHead + "<column id='a'/></prtobjct>"),
              strHead + c.row + "</prtobjct>");
  }

  TestHost host({{"t1_rowCount", "1"}, {"t1___a_1", "x"}});
  EXPECT_EQ(parkedXml(host,
                      "<prtobjct id=\"t1\" type=\"TABLE\"><row id='1'/><column id='a'/>"
                      "</prtobjct>"),
            "<prtobjct id=\"t1\" type=\"TABLE\"><row id=\"1\"><column id=\"a\" value=\"x\"/></row>"
            "</prtobjct>");
}

TEST(ParkProtTable, LeavesTheOldRowsOfADynamicTableAlone) {
  TestHost host({{"t1_rowCount", "1"}, {"t1___a_1", "x"}});
  EXPECT_EQ(parkedXml(host, std::string(kDynamicTable) +
                                "<row id='1'><column id='old'/></row><column id='a'/></prtobjct>"),
            std::string(kDynamicTable) +
                "<row id=\"1\"><column id=\"old\"/></row>"
                "<row id=\"1\"><column id=\"a\" value=\"x\"/></row></prtobjct>");
}

TEST(ParkProtTable, LowerCasesTheTablesIdForTheRowCountOnly) {
  TestHost host({{"ta_rowCount", "1"},
                 {"TA_rowCount", "0"},
                 {"TA___Col_1", "x"},
                 {"ta___Col_1", "never"},
                 {"TA___col_1", "never"}});
  EXPECT_EQ(parkedXml(host, "<prtobjct id='TA' type='dynatable'><column id='Col'/></prtobjct>"),
            "<prtobjct id=\"TA\" type=\"dynatable\"><row id=\"1\"><column id=\"Col\" value=\"x\"/>"
            "</row></prtobjct>");
}

TEST(ParkProtTable, TellsCellsApartWhoseNamesLookAlike) {
  TestHost host({{"t_rowCount", "2"},
                 {"t___a_1_2", "a_1 of row 2"},
                 {"t___a_01", "no row"},
                 {"t___a_ 1", "no row"},
                 {"t___a_+1", "no row"},
                 {"t___a_3", "beyond the row count"},
                 {"t___a_0", "no row"},
                 {"t___a_-1", "no row"},
                 {"t___a_99999999999999999999", "no row"},
                 {"t___b_1", "no column"},
                 {"t___", "no cell"},
                 {"t___1", "no cell"},
                 {"t____1", "no id"},
                 {"u___a_1", "another table"}});
  EXPECT_EQ(parkedXml(host,
                      "<prtobjct id='t' type='dynatable'><column id='a'/><column id='a_1'/>"
                      "<column/></prtobjct>"),
            "<prtobjct id=\"t\" type=\"dynatable\">"
            "<row id=\"1\"><column id=\"a\" value=\"\"/><column id=\"a_1\" value=\"\"/>"
            "<column value=\"no id\"/></row>"
            "<row id=\"2\"><column id=\"a\" value=\"\"/><column id=\"a_1\" value=\"a_1 of row 2\"/>"
            "<column value=\"\"/></row></prtobjct>");
}

TEST(ParkProtTable, CopiesDefinitionsWholeAndReplacesAnOldValue) {
  TestHost host({{"t1_rowCount", "1"}, {"t1___a_1", "new"}});
  EXPECT_EQ(parkedXml(host, std::string(kDynamicTable) +
                                "<column value='old' id='a'><choice v='1'>One</choice></column>"
                                "</prtobjct>"),
            std::string(kDynamicTable) +
                "<row id=\"1\"><column value=\"new\" id=\"a\"><choice v=\"1\">One</choice></column>"
                "</row></prtobjct>");
}

TEST(ParkProtTable, RemovesEveryDirectChildWhoseBaseNameIsColumn) {
  TestHost host({{"t1_rowCount", "1"}, {"t1___a_1", "x"}});
  EXPECT_EQ(parkedXml(host, std::string(kDynamicTable) +
                                "<column id='a'/><p:column xmlns:p='urn:p' id='b'/>"
                                "<columns/><Column/><g><column id='c'/></g></prtobjct>"),
            std::string(kDynamicTable) +
                "<columns/><Column/><g><column id=\"c\"/></g>"
                "<row id=\"1\"><column id=\"a\" value=\"x\"/></row></prtobjct>");
}

TEST(ParkProtTable, GivesACellItsFixedValue) {
  const struct {
    const char *says, *column, *value;
  } cases[] = {
      {"instead of the form's", "<column id='b' autovalue='fixed'/>", "fixed"},
      {"a blank is one", "<column id='b' autovalue=' '/>", " "},
      {"an empty one is none", "<column id='b' autovalue=''/>", "sent"},
      {"not for a computed cell", "<column id='b' autovalue='fixed' calculate='true'/>", ""},
      {"computed is an exact word", "<column id='b' calculate='True'/>", "sent"},
      {"and not 1", "<column id='b' calculate='1'/>", "sent"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"t1_rowCount", "1"}, {"t1___a_1", "x"}, {"t1___b_1", "sent"}});
    const Document objList =
        objectList(std::string(kDynamicTable) + "<column id='a'/>" + c.column + "</prtobjct>");
    EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
    EXPECT_EQ(objList.selectSingleNode("//row/column[@id='b']").getAttribute("value"), c.value);
  }
}

TEST(ParkProtTable, TakesARowForBlankThatHasNothingFromTheForm) {
  const struct {
    const char *says, *columns;
    bool blank;
  } cases[] = {
      {"nothing at all", "<column id='a'/>", true},
      {"no columns", "", true},
      {"a fixed value does not count", "<column id='a'/><column id='b' autovalue='f'/>", true},
      {"nor the form's value behind a fixed one", "<column id='sent' autovalue='f'/>", true},
      {"nor a computed value",
       "<column id='a'/><column id='c' calculate='true' datatype='date' timedimabbr='d' "
       "firstcolumn='from' secondcolumn='to'/>",
       true},
      {"a value from the form does", "<column id='a'/><column id='sent'/>", false},
      {"a blank is a value", "<column id='blank'/>", false},
      {"also when the cell is emptied later",
       "<column id='c' calculate='true' datatype='date'/><column id='timedimension'/>", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"t1_rowCount", "2"},
                   {"t1___sent_2", "x"},
                   {"t1___blank_2", " "},
                   {"t1___from_2", "2012-01-01"},
                   {"t1___to_2", "2012-01-31"},
                   {"t1___timedimension_2", "days"}});
    const Document objList = objectList(std::string(kDynamicTable) + c.columns + "</prtobjct>");
    EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
    EXPECT_EQ(objList.selectNodes("//row")->length(), c.blank ? 0U : 1U);
    EXPECT_EQ(objList.selectNodes("//prtobjct/column")->length(), 0U);
  }
}

TEST(ParkProtTable, ComputesADateDifference) {
  constexpr const char* kColumns =
      "<column id='from'/><column id='to'/>"
      "<column id='unit' autovalue='u'/><column id='timedimension'/>"
      "<column id='len' calculate='true' datatype='date' timedimabbr='d' firstcolumn='from' "
      "secondcolumn='to'/><column id='timedimension'/><column id='Timedimension'/></prtobjct>";
  const struct {
    const char *says, *from, *to, *length, *unitAfterwards;
  } cases[] = {
      {"two dates", "2012-01-01", "2012-01-31", "30", "days"},
      {"backwards", "2012-01-31", "2012-01-01", "-30", "days"},
      {"the same day", "2012-01-01", "2012-01-01", "0", "days"},
      {"the first is missing: no unit either", "", "2012-01-31", "", ""},
      {"the second is missing", "2012-01-01", "", "", ""},
      {"both are missing", "", "", "", ""},
      {"no date: the unit stays", "soon", "2012-01-31", "", "days"},
      {"no date either", "2012-01-01", "later", "", "days"},
      {"a blank is no date, but not empty", " ", "2012-01-31", "", "days"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"t1_rowCount", "1"},
                   {"t1___from_1", c.from},
                   {"t1___to_1", c.to},
                   {"t1___timedimension_1", "days"},
                   {"t1___Timedimension_1", "days"}});
    const std::string strFrom = c.from, strTo = c.to, strLength = c.length;
    EXPECT_EQ(parkedXml(host, std::string(kDynamicTable) + kColumns),
              std::string(kDynamicTable) + "<row id=\"1\"><column id=\"from\" value=\"" + strFrom +
                  "\"/><column id=\"to\" value=\"" + strTo +
                  "\"/><column id=\"unit\" autovalue=\"u\" value=\"u\"/>"
                  // in front of the computed cell: not emptied
                  "<column id=\"timedimension\" value=\"days\"/>"
                  "<column id=\"len\" calculate=\"true\" datatype=\"date\" timedimabbr=\"d\" "
                  "firstcolumn=\"from\" secondcolumn=\"to\" value=\"" +
                  strLength + "\"/><column id=\"timedimension\" value=\"" + c.unitAfterwards +
                  "\"/><column id=\"Timedimension\" value=\"days\"/></row></prtobjct>");
  }
}

TEST(ParkProtTable, ForgetsAnInvalidOperandAtTheNextRow) {
  TestHost host({{"t1_rowCount", "3"},
                 {"t1___from_1", "2012-01-01"},
                 {"t1___to_1", ""},
                 {"t1___from_2", "2012-01-01"},
                 {"t1___to_2", "2012-01-03"},
                 {"t1___from_3", ""},
                 {"t1___to_3", "2012-01-03"}});
  const Document objList = objectList(
      std::string(kDynamicTable) +
      "<column id='from'/><column id='to'/><column id='len' calculate='true' datatype='date' "
      "timedimabbr='d' firstcolumn='from' secondcolumn='to'/>"
      "<column id='timedimension' autovalue='days'/></prtobjct>");
  EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
  const NodeList colEnds =
      objList.selectNodes("//column[@id='len' or @id='timedimension']").value();
  std::vector<std::string> colCells;
  for (const Node& objCell : colEnds) colCells.push_back(objCell.getAttribute("value").value());
  EXPECT_THAT(colCells, ::testing::ElementsAre("", "", "2", "days", "", ""));
}

TEST(ParkProtTable, ReadsOperandsFromTheFormAlsoWhereNoColumnHasTheirName) {
  TestHost host({{"t1_rowCount", "1"},
                 {"t1___x_1", "2012-01-01"},
                 {"t1___fixed_1", "2012-02-01"},
                 {"t1___a_1", "x"}});
  const Document objList = objectList(
      std::string(kDynamicTable) +
      "<column id='a'/><column id='fixed' autovalue='2012-01-02'/>"
      "<column id='len' calculate='true' datatype='date' timedimabbr='d' firstcolumn='x' "
      "secondcolumn='fixed'/></prtobjct>");
  EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
  EXPECT_EQ(objList.selectSingleNode("//row/column[@id='len']").getAttribute("value"), "31");
}

TEST(ParkProtTable, RemovesATableWhoseOnlyRowIsBlank) {
  const struct {
    const char *says, *table;
  } cases[] = {
      {"a dynamic table", "<prtobjct id='t1' type='dynatable'><column id='a'/></prtobjct>"},
      {"a fixed grid", "<prtobjct id='t1' type='table'><row id='1'/><column id='a'/></prtobjct>"},
      {"a fixed grid with more rows than were posted",
       "<prtobjct id='t1' type='table'><row id='1'/><row id='2'/><column id='a'/></prtobjct>"},
      {"another kind", "<prtobjct id='t1' type='list'><column id='a'/></prtobjct>"},
      {"a fixed value alone",
       "<prtobjct id='t1' type='table'><row id='1'/><column id='a' autovalue='f'/></prtobjct>"},
      {"without columns", "<prtobjct id='t1' type='dynatable'/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"t1_rowCount", "1"}});
    const Document objList = objectList(c.table + std::string("<prtobjct id='next'/>"));
    const Node objTable = firstObject(objList);
    EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), objTable)));
    EXPECT_EQ(objList.xml(), objectListXml("<prtobjct id=\"next\"/>"));
    EXPECT_EQ(objTable.selectNodes("column")->length(), 0U);  // what was removed is finished too
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(ParkProtTable, KeepsABlankTableOfSeveralRowsWithoutItsDefinitions) {
  TestHost host({{"t1_rowCount", "2"}});
  EXPECT_EQ(parkedXml(host, std::string(kDynamicTable) + "<column id='a'/></prtobjct>"),
            "<prtobjct id=\"t1\" type=\"dynatable\"/>");
}

TEST(ParkProtTable, TakesHostileNamesAsTheyStand) {
  TestHost host({{"t'\"1_rowCount", "1"}, {"t'\"1___a']_1", "<&\"'\t>"}});
  const Document objList =
      objectList("<prtobjct id='t&apos;&quot;1' type='dynatable'><column id=\"a']\"/></prtobjct>");
  EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
  const Document objAgain = parsed(objList.xml());
  EXPECT_EQ(objAgain.selectSingleNode("//row/column").getAttribute("value"), "<&\"'\t>");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
