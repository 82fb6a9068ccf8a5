#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParkTesting.h"
#include "park/ParkProtTable.h"
#include "support/Documents.h"
#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

// How parking a table fails, and what is left behind.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

constexpr const char* kGrid =
    "<prtobjct id=\"t\" type=\"table\"><row id=\"1\"/><row id=\"2\"/><column id=\"a\"/>"
    "<column id=\"b\"/></prtobjct>";
constexpr const char* kDynamic =
    "<prtobjct id=\"t\" type=\"dynatable\"><column id=\"a\"/></prtobjct>";
constexpr const char* kNotSet = "Object variable or With block variable not set";

/// Parks the first table of a list of which, and of every document made for it, one operation
/// fails.
struct FaultyRun {
  FaultyRun(TestHost& host, std::string_view strTable, DomOperation operation, int lngCall,
            Fault kind = Fault::nothing)
      : fault(operation, kind, lngCall) {
    fault.disarm();
    host.withFaults(fault);
    objList = objectList(strTable, {.faults = &fault});
    const Node objTable = firstObject(objList);
    fault.arm();
    objAck = ParkProtTable(host.session(), objTable);
    fault.disarm();
  }

  FaultAt fault;
  Document objList;
  Acknowledge objAck;
};

TEST(ParkProtTable, FailsForNothing) {
  TestHost host;
  EXPECT_TRUE(FailedWith(
      ParkProtTable(host.session(), Node()), SVC_RET_XML_CREATION_PROT_TBL_LIST_MISSING,
      "The protocol table list is missing", "An error occurred selecting the protocol table list"));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(ParkProtTable, FailsWithoutAnIdOrAType) {
  for (const char* strTable : {"<prtobjct type='table'/>", "<prtobjct id='t'/>", "<prtobjct/>"}) {
    SCOPED_TRACE(strTable);
    TestHost host;
    host.withoutContext();  // not even the row count is read
    const Document objList = objectList(strTable);
    EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(host.session(), firstObject(objList)), 91,
                                       "ParkProtTable", kNotSet));
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(ParkProtTable, FailsForANodeThatIsNoElement) {
  TestHost host;
  const Document objList = objectList("<!--a comment-->");
  EXPECT_TRUE(
      FailedWithRuntimeError(ParkProtTable(host.session(), objList.selectSingleNode("//comment()")),
                             kXmlFailure, "ParkProtTable", "Only an element has attributes."));
}

TEST(ParkProtTable, FailsWhereAFixedGridLacksAPostedRow) {
  TestHost host({{"t_rowCount", "2"}, {"t___a_1", "x"}, {"t___a_2", "y"}});
  const Document objList =
      objectList("<prtobjct id='t' type='table'><row id='1'/><column id='a'/></prtobjct>");
  EXPECT_TRUE(FailedWith(ParkProtTable(host.session(), firstObject(objList)),
                         SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING,
                         "The protocol table row is missing",
                         "An error occurred because the protocol table row is missing"));
  EXPECT_EQ(objList.xml(),
            objectListXml("<prtobjct id=\"t\" type=\"table\"><row id=\"1\">"
                          "<column id=\"a\" value=\"x\"/></row><column id=\"a\"/></prtobjct>"));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(ParkProtTable, FailsWhereAFixedGridHasNoRowsAtAll) {
  TestHost host({{"t_rowCount", "1"}});
  const Document objList = objectList("<prtobjct id='t' type='table'><column id='a'/></prtobjct>");
  EXPECT_TRUE(FailedWith(ParkProtTable(host.session(), firstObject(objList)),
                         SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING,
                         "The protocol table row is missing",
                         "An error occurred because the protocol table row is missing"));
  EXPECT_EQ(objList.xml(),
            objectListXml("<prtobjct id=\"t\" type=\"table\"><column id=\"a\"/></prtobjct>"));
}

TEST(ParkProtTable, FailsWhereAnOperationGivesNothing) {
  const struct {
    const char *says, *table;
    std::int32_t lngRows;
    bool blnFilled;
    DomOperation operation;
    int lngCall;
    std::int32_t lngErrorCode;
    const char *detail, *userMessage, *left;
  } cases[] = {
      {"no new row can be made", kDynamic, 1, true, DomOperation::createElement, 1,
       SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING, "The protocol table row is missing",
       "An error occurred because the protocol table row is missing", kDynamic},
      {"the row of a fixed grid is not found", kGrid, 1, true, DomOperation::select, 1,
       SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING, "The protocol table row is missing",
       "An error occurred because the protocol table row is missing", kGrid},
      {"there is no list of columns", kDynamic, 1, true, DomOperation::select, 1,
       SVC_RET_XML_CREATION_PROT_TBL_CLMN_MISSING, "The protocol table column is missing",
       "An error occurred because the protocol table column is missing", kDynamic},
      {"nor in a fixed grid, whose row is selected first", kGrid, 1, true, DomOperation::select, 2,
       SVC_RET_XML_CREATION_PROT_TBL_CLMN_MISSING, "The protocol table column is missing",
       "An error occurred because the protocol table column is missing", kGrid},
      {"a column cannot be copied; the copies made before it stay", kGrid, 1, true,
       DomOperation::cloneNode, 2, SVC_RET_XML_CREATION_CLONE_CLMN_NODE_FAILED,
       "Cloning the column node failed", "An error occurred cloning the column node",
       "<prtobjct id=\"t\" type=\"table\"><row id=\"1\"><column id=\"a\" value=\"x\"/></row>"
       "<row id=\"2\"/><column id=\"a\"/><column id=\"b\"/></prtobjct>"},
      {"a copy cannot be appended to its row", kGrid, 1, true, DomOperation::appendChild, 1,
       SVC_RET_XML_CREATION_APPEND_CLMN_NODE_FAILED, "Appending the column node to the row failed",
       "An error occurred appending the column node to the row failed", kGrid},
      {"a new row cannot be appended; each appends its one cell, then itself", kDynamic, 2, true,
       DomOperation::appendChild, 4, SVC_RET_XML_CREATION_APPEND_ROW_NODE_FAILED,
       "Appending the row node to the table failed",
       "An error occurred appending the row node to the table failed",
       "<prtobjct id=\"t\" type=\"dynatable\"><column id=\"a\"/>"
       "<row id=\"1\"><column id=\"a\" value=\"x\"/></row></prtobjct>"},
      {"a blank table cannot be removed", kDynamic, 1, false, DomOperation::removeChild, 1,
       SVC_RET_XML_CREATION_REMOVE_TABLE_NODE_FAILED, "Removing the table node failed",
       "An error occurred removing the table node", kDynamic},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"t_rowCount", std::to_string(c.lngRows)}});
    for (std::int32_t lngRow = 1; c.blnFilled && lngRow <= c.lngRows; ++lngRow) {
      host.submit("t___a_" + std::to_string(lngRow), "x");
    }
    const FaultyRun run(host, c.table, c.operation, c.lngCall);
    EXPECT_TRUE(FailedWith(run.objAck, c.lngErrorCode, c.detail, c.userMessage));
    EXPECT_TRUE(run.fault.struck());
    EXPECT_EQ(run.objList.xml(), objectListXml(c.left));
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(ParkProtTable, FailsWhenABlankTableStandsNowhere) {
  TestHost host({{"t_rowCount", "1"}});
  const Node objTable = firstObject(objectList(kDynamic)).cloneNode(true);
  EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(host.session(), objTable), 91, "ParkProtTable",
                                     kNotSet));
  EXPECT_EQ(objTable.xml(), kDynamic);
}

TEST(ParkProtTable, TellsTheFirstOfTwoFailuresInARow) {
  const struct {
    const char *says, *columns;
  } cases[] = {
      {"a read that is refused", "<column id='a'/><column id='b'/>"},
      {"an operand that is refused",
       "<column id='a'/><column id='c' calculate='true' firstcolumn='b'/>"},
      {"a unit that is none",
       "<column id='a'/><column id='c' calculate='true' datatype='date' timedimabbr='fortnight' "
       "firstcolumn='f' secondcolumn='s'/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    for (const char* strType : {"table", "dynatable"}) {
      SCOPED_TRACE(strType);
      TestHost host({{"t_rowCount", "1"},
                     {"t___a_1", "x\x01"},
                     {"t___f_1", "2012-01-01"},
                     {"t___s_1", "2012-01-02"}});
      const Refusal refusal(host, {"t___b_1"});
      const Document objList = objectList(std::string("<prtobjct id='t' type='") + strType +
                                          "'><row id='1'/>" + c.columns + "</prtobjct>");
      EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(host.session(), firstObject(objList)),
                                         kXmlFailure, "ParkProtTable",
                                         "An invalid character was found in text content."));
    }
  }
}

TEST(ParkProtTable, HandsUpARefusedReadUnchanged) {
  const struct {
    const char *says, *columns;
    std::vector<std::string> refused;
    const char* description;
  } cases[] = {
      {"a cell", "<column id='a'/><column id='b'/>", {"t___b_1"}, "refused: t___b_1"},
      {"in the order of the columns",
       "<column id='a'/><column id='b'/>",
       {"t___b_1", "t___a_1"},
       "refused: t___a_1"},
      {"the first operand",
       "<column id='c' calculate='true' firstcolumn='f' secondcolumn='s'/>",
       {"t___s_1", "t___f_1"},
       "refused: t___f_1"},
      {"the second operand",
       "<column id='c' calculate='true' firstcolumn='f' secondcolumn='s'/>",
       {"t___s_1"},
       "refused: t___s_1"},
      {"the second operand alone",
       "<column id='c' calculate='true' secondcolumn='s'/>",
       {"t___s_1"},
       "refused: t___s_1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    for (const char* strType : {"table", "dynatable"}) {
      SCOPED_TRACE(strType);
      TestHost host({{"t_rowCount", "1"}});
      const Refusal refusal(host, c.refused);
      const Document objList = objectList(std::string("<prtobjct id='t' type='") + strType +
                                          "'><row id='1'/>" + c.columns + "</prtobjct>");
      EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(host.session(), firstObject(objList)),
                                         Refusal::kNumber, "GetFormCollectionItem", c.description));
      EXPECT_THAT(host.traceLines(), IsEmpty());
    }
  }
}

TEST(ParkProtTable, HandsUpARefusedReadOfALaterTableOfOneIdToo) {
  TestHost host({{"t_rowCount", "3"}, {"t___a_2", "x"}, {"t___b_2", "y"}});
  const Refusal refusal(host, {"t___b_3"});
  const Document objList = objectList(
      "<prtobjct id='t' type='dynatable'><column id='a'/></prtobjct>"
      "<prtobjct id='t' type='dynatable'><column id='b'/></prtobjct>");
  const Session session = host.session();
  const NodeList colTables = objList.selectNodes("//prtobjct").value();
  EXPECT_TRUE(Succeeded(ParkProtTable(session, colTables.item(0))));
  EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(session, colTables.item(1)), Refusal::kNumber,
                                     "GetFormCollectionItem", "refused: t___b_3"));
  EXPECT_EQ(objList.selectNodes("//prtobjct[2]/row")->length(), 1U);
}

TEST(ParkProtTable, ReadsNeitherTheCellsOfFixedNorOfComputedColumns) {
  TestHost host({{"t_rowCount", "1"}, {"t___a_1", "x"}});
  const Refusal refusal(host, {"t___f_1", "t___c_1"});
  const Document objList = objectList(
      "<prtobjct id='t' type='table'><row id='1'/><column id='a'/>"
      "<column id='f' autovalue='v'/><column id='c' calculate='true'/></prtobjct>");
  EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objList))));
}

TEST(ParkProtTable, KeepsTheRowsAndCellsDoneBeforeAFailure) {
  TestHost host({{"t_rowCount", "2"}, {"t___a_1", "x"}, {"t___b_1", "y"}, {"t___a_2", "z"}});
  const Refusal refusal(host, {"t___b_2"});
  const Document objGrid = objectList(kGrid);
  EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(host.session(), firstObject(objGrid)),
                                     Refusal::kNumber, "GetFormCollectionItem",
                                     "refused: t___b_2"));
  EXPECT_EQ(objGrid.xml(),
            objectListXml("<prtobjct id=\"t\" type=\"table\"><row id=\"1\"><column id=\"a\" "
                          "value=\"x\"/><column id=\"b\" value=\"y\"/></row><row id=\"2\">"
                          "<column id=\"a\" value=\"z\"/></row><column id=\"a\"/>"
                          "<column id=\"b\"/></prtobjct>"));

  const Document objDynamic =
      objectList("<prtobjct id='t' type='dynatable'><column id='a'/><column id='b'/></prtobjct>");
  EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(host.session(), firstObject(objDynamic)),
                                     Refusal::kNumber, "GetFormCollectionItem",
                                     "refused: t___b_2"));
  EXPECT_EQ(objDynamic.xml(),
            objectListXml("<prtobjct id=\"t\" type=\"dynatable\"><column id=\"a\"/>"
                          "<column id=\"b\"/><row id=\"1\"><column id=\"a\" value=\"x\"/>"
                          "<column id=\"b\" value=\"y\"/></row></prtobjct>"));
}

TEST(ParkProtTable, FailsForAnUnknownIntervalOnlyWhereTwoDatesAskForIt) {
  constexpr const char* kTable =
      "<prtobjct id='t' type='dynatable'><column id='a'/><column id='c' calculate='true' "
      "datatype='date' timedimabbr='fortnight' firstcolumn='f' secondcolumn='s'/></prtobjct>";
  TestHost host({{"t_rowCount", "3"},
                 {"t___a_1", "x"},
                 {"t___f_2", "2012-01-01"},
                 {"t___s_2", "soon"},
                 {"t___f_3", "2012-01-01"}});
  const Document objFine = objectList(kTable);
  EXPECT_TRUE(Succeeded(ParkProtTable(host.session(), firstObject(objFine))));
  EXPECT_EQ(objFine.selectNodes("//row")->length(), 1U);

  host.submit("t___s_3", "2012-01-02");  // row 3 is blank all the same, and yet it fails
  const Document objList = objectList(kTable);
  EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(host.session(), firstObject(objList)), 5,
                                     "ParkProtTable", "Invalid procedure call or argument"));
  EXPECT_EQ(objList.selectNodes("//row")->length(), 1U);
  EXPECT_EQ(objList.selectNodes("//prtobjct/column")->length(), 2U);
}

TEST(ParkProtTable, RefusesACellThatXmlCannotHold) {
  for (const char* strValue : {"a\x01", "\xFF", "\xED\xA0\x80"}) {
    SCOPED_TRACE(testing::PrintToString(strValue));
    TestHost host({{"t_rowCount", "1"}, {"t___a_1", strValue}});
    const Document objList = objectList(kGrid);
    EXPECT_TRUE(FailedWithRuntimeError(ParkProtTable(host.session(), firstObject(objList)),
                                       kXmlFailure, "ParkProtTable",
                                       "An invalid character was found in text content."));
    EXPECT_EQ(objList.xml(),  // the copy was in its row already
              objectListXml("<prtobjct id=\"t\" type=\"table\"><row id=\"1\"><column id=\"a\"/>"
                            "</row><row id=\"2\"/><column id=\"a\"/><column id=\"b\"/>"
                            "</prtobjct>"));
  }
}

TEST(ParkProtTable, ReportsARunTimeErrorUnderItsOwnName) {
  for (const DomOperation operation :
       {DomOperation::select, DomOperation::cloneNode, DomOperation::appendChild,
        DomOperation::setAttribute, DomOperation::removeChild, DomOperation::childNodes}) {
    SCOPED_TRACE(static_cast<int>(operation));
    TestHost host({{"t_rowCount", "1"}, {"t___a_1", "x"}});
    const FaultyRun run(host, kGrid, operation, 1, Fault::error);
    EXPECT_TRUE(
        FailedWithRuntimeError(run.objAck, kXmlFailure, "ParkProtTable", "Injected failure"));
    EXPECT_TRUE(run.fault.struck());
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
