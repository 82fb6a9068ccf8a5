#include "message/AddRowInfoToSingleNode.h"

#include <gtest/gtest.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kUserMessage = "An error occurred adding row info to a single node";

/// A cell of column `strId`, whose label is its id.
std::string cell(std::string_view strId, std::string_view strValue) {
  return "<column id='" + std::string(strId) + "' columnlabel='" + std::string(strId) +
         "' value='" + std::string(strValue) + "'/>";
}

std::string row(std::string_view strId, std::string_view strLabel, std::string_view strCells) {
  return "<row id='" + std::string(strId) + "' rowlabel='" + std::string(strLabel) + "'>" +
         std::string(strCells) + "</row>";
}

std::string sentRow(std::string_view strRow, std::string_view strColumn, std::string_view strText) {
  return "<info questionId=\"Tab\" rowIndex=\"" + std::string(strRow) + "\" columnId=\"" +
         std::string(strColumn) + "\">" + std::string(strText) + "</info>";
}

/// A parked table, labelled T unless told otherwise, and an empty message.
struct Story {
  Document objSendXML;
  Node objTable;

  explicit Story(std::string_view strRows, std::string_view strLabel = "T",
                 const DocumentSettings& tableSettings = {},
                 const DocumentSettings& messageSettings = {})
      : objSendXML(message("", messageSettings)),
        objTable(parsed("<prtobjct id='Tab' tablelabel='" + std::string(strLabel) + "'>" +
                            std::string(strRows) + "</prtobjct>",
                        tableSettings)
                     .documentElement()) {}

  Acknowledge add(std::string_view strNode = "info") const {
    return AddRowInfoToSingleNode({}, objSendXML, objSendXML.documentElement(), objTable, strNode);
  }
  std::string sent() const { return content(objSendXML); }
};

TEST(AddRowInfoToSingleNode, WritesEachRowAsOneText) {
  const struct {
    std::string says, rows, sent;
  } cases[] = {
      {"no rows", "", ""},
      {"a row",
       row("1", "Row 1",
           "<column id='d' columnlabel='Drug' value='X'/><column id='e' columnlabel='Dose'/>"),
       sentRow("1", "e", "T - Row 1 [Drug:X] [Dose:]")},
      {"every row of its own", row("1", "R", cell("a", "x")) + row("2", "S", cell("a", "y")),
       sentRow("1", "a", "T - R [a:x]") + sentRow("2", "a", "T - S [a:y]")},
      {"the last column's id, whichever is filled in",
       row("1", "R", cell("a", "x") + cell("b", "") + cell("c", " ")),
       sentRow("1", "c", "T - R [a:x] [b:] [c: ]")},
      {"values as they are", row("1", "R", cell("a", "  x  ") + cell("b", "]&lt;&amp;&#10;")),
       sentRow("1", "b", "T - R [a:  x  ] [b:]&lt;&amp;\n]")},
      {"a tab is a value", row("1", "R", cell("a", "&#9;")), sentRow("1", "a", "T - R [a:\t]")},
      {"a label of blanks is a label", row("1", " ", cell("a", "x")),
       sentRow("1", "a", "T -   [a:x]")},
      {"rows at any depth, columns of the row alone",
       "<part>" + row("1", "R", cell("a", "x") + "<more>" + cell("b", "y") + "</more>") + "</part>",
       sentRow("1", "a", "T - R [a:x]")},
      {"a row within a row after it", row("1", "R", cell("a", "x") + row("2", "S", cell("b", "y"))),
       sentRow("1", "a", "T - R [a:x]") + sentRow("2", "b", "T - S [b:y]")},
      {"missing ids are empty", "<row rowlabel='R'><column columnlabel='a' value='x'/></row>",
       sentRow("", "", "T - R [a:x]")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story(c.rows);
    EXPECT_TRUE(Succeeded(story.add()));
    EXPECT_EQ(story.sent(), c.sent);
  }
}

TEST(AddRowInfoToSingleNode, LeavesOutRowsWhoseCellsAreAllBlank) {
  const struct {
    std::string says, rows, sent;
  } cases[] = {
      {"empty cells", row("1", "R", cell("a", "") + cell("b", "")), ""},
      {"blanks", row("1", "R", cell("a", "   ")), ""},
      {"cells without value", "<row id='1' rowlabel='R'><column columnlabel='a'/></row>", ""},
      {"beside a filled one",
       row("1", "R", cell("a", "")) + row("2", "S", cell("a", "x")) + row("3", "U", cell("a", " ")),
       sentRow("2", "a", "T - S [a:x]")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story(c.rows);
    EXPECT_TRUE(Succeeded(story.add()));
    EXPECT_EQ(story.sent(), c.sent);
  }
}

TEST(AddRowInfoToSingleNode, CarriesTheTextOfTheRowBeforeIntoARowWithoutLabels) {
  const struct {
    std::string says, tableLabel, rows, sent;
  } cases[] = {
      {"a table without label", "",
       row("1", "R", cell("a", "x")) + row("2", "S", cell("a", "y")) + row("3", "", cell("a", "z")),
       sentRow("1", "a", " [a:x]") + sentRow("2", "a", " [a:x] [a:y]") +
           sentRow("3", "a", " [a:x] [a:y] [a:z]")},
      {"rows without label", "T", row("1", "", cell("a", "x")) + row("2", "", cell("a", "y")),
       sentRow("1", "a", " [a:x]") + sentRow("2", "a", " [a:x] [a:y]")},
      {"a row without label after one with", "T",
       row("1", "R", cell("a", "x")) + row("2", "", cell("a", "y")) + row("3", "S", cell("a", "z")),
       sentRow("1", "a", "T - R [a:x]") + sentRow("2", "a", "T - R [a:x] [a:y]") +
           sentRow("3", "a", "T - S [a:z]")},
      {"the text of a blank row too", "T",
       row("1", "R", cell("a", "")) + row("2", "", cell("a", "y")),
       sentRow("2", "a", "T - R [a:] [a:y]")},
      {"a blank row without label adds its cells", "T",
       row("1", "R", cell("a", "x")) + row("2", "", cell("b", "")) + row("3", "", cell("a", "y")),
       sentRow("1", "a", "T - R [a:x]") + sentRow("3", "a", "T - R [a:x] [b:] [a:y]")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story(c.rows, c.tableLabel);
    EXPECT_TRUE(Succeeded(story.add()));
    EXPECT_EQ(story.sent(), c.sent);
  }
}

TEST(AddRowInfoToSingleNode, WritesElementsInNoNamespace) {
  const Document objSendXML = parsed("<r xmlns='urn:d'><p/></r>");
  const Story story(row("1", "R", cell("a", "x")));
  EXPECT_TRUE(Succeeded(AddRowInfoToSingleNode(
      {}, objSendXML, objSendXML.documentElement().childNodes()->item(0), story.objTable, "info")));
  EXPECT_TRUE(objSendXML.documentElement().xml().find("<p><info xmlns=\"\" questionId=\"Tab\"") !=
              std::string::npos)
      << objSendXML.documentElement().xml();

  const Story prefixed(row("1", "R", cell("a", "x")));
  EXPECT_TRUE(Succeeded(prefixed.add("m:info")));
  EXPECT_FALSE(prefixed.objSendXML.selectSingleNode("/r/m:info"));
  EXPECT_EQ(prefixed.objSendXML.selectSingleNode("/r/*").nodeName(), "m:info");
}

TEST(AddRowInfoToSingleNode, PutsRowsBehindWhatTheParentHolds) {
  const Story story(row("1", "R", cell("a", "x")));
  EXPECT_TRUE(Succeeded(story.add("one")));
  EXPECT_TRUE(Succeeded(story.add("two")));
  EXPECT_EQ(story.objSendXML.documentElement().childNodes()->item(1).nodeName(), "two");
}

TEST(AddRowInfoToSingleNode, FailsWithoutATable) {
  Story story("");
  story.objTable = {};
  EXPECT_TRUE(FailedWith(story.add(), SVC_RET_XML_CREATION_PRT_TBL_MISSING,
                         "The protocol table object is missing", kUserMessage));
}

TEST(AddRowInfoToSingleNode, StopsAtARowThatCannotBeTold) {
  const struct {
    std::string says, row;
    std::int32_t code;
    const char* detail;
  } cases[] = {
      {"no columns", row("2", "S", ""), SVC_RET_XML_CREATION_CELL_INFO_MISSING,
       "The cell information is missing"},
      {"columns further down only", row("2", "S", "<more>" + cell("a", "y") + "</more>"),
       SVC_RET_XML_CREATION_CELL_INFO_MISSING, "The cell information is missing"},
      {"a column without label", row("2", "S", "<column id='a' value='y'/>"),
       SVC_RET_XML_CREATION_CLMN_LBL_FAILED, "Selecting the column label has failed"},
      {"a column with an empty one", row("2", "S", "<column id='a' columnlabel='' value='y'/>"),
       SVC_RET_XML_CREATION_CLMN_LBL_FAILED, "Selecting the column label has failed"},
      {"a blank column needs one too", row("2", "S", cell("a", "y") + "<column id='b' value=''/>"),
       SVC_RET_XML_CREATION_CLMN_LBL_FAILED, "Selecting the column label has failed"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story(row("1", "R", cell("a", "x")) + c.row + row("3", "U", cell("a", "z")));
    EXPECT_TRUE(FailedWith(story.add(), c.code, c.detail, kUserMessage));
    EXPECT_EQ(story.sent(), sentRow("1", "a", "T - R [a:x]")) << "rows written before stay";
  }
}

TEST(AddRowInfoToSingleNode, FailsWithoutAList) {
  const struct {
    const char* says;
    DomOperation operation;
    int call;
    std::int32_t code;
    const char* detail;
    std::string sent;
  } cases[] = {
      {"of rows", DomOperation::getElementsByTagName, 1, SVC_RET_XML_CREATION_ROWS_SELECTION_FAILED,
       "Selecting the rows from the protocol table object failed", ""},
      {"of columns", DomOperation::select, 2, SVC_RET_XML_CREATION_CLMN_SELECTION_FAILED,
       "Selecting the columns from the row", sentRow("1", "a", "T - R [a:x]")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FaultAt fault(c.operation, Fault::nothing, c.call);
    fault.disarm();
    const Story story(row("1", "R", cell("a", "x")) + row("2", "S", cell("a", "y")), "T",
                      {.faults = &fault});
    fault.arm();
    EXPECT_TRUE(FailedWith(story.add(), c.code, c.detail, kUserMessage));
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(story.sent(), c.sent);
  }
}

TEST(AddRowInfoToSingleNode, FailsWhereTheMessageRefuses) {
  const struct {
    const char* says;
    DomOperation operation;
    std::int32_t code;
    const char* detail;
  } cases[] = {
      {"the element", DomOperation::createElement, SVC_RET_XML_CREATION_CREATE_NODE_FAILED,
       "Creating the node for the row info failed"},
      {"its text", DomOperation::readText, SVC_RET_XML_CREATION_SETTING_TEXT_FAILED,
       "Setting the text for the single node has failed"},
      {"its place", DomOperation::appendChild, SVC_RET_XML_CREATION_APPEND_SNGL_NODE_FAILED,
       "Appending the single node to the parent node failed"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FaultAt fault(c.operation, Fault::nothing, 2);
    fault.disarm();
    const Story story(row("1", "R", cell("a", "x")) + row("2", "S", cell("a", "y")), "T", {},
                      {.faults = &fault});
    fault.arm();
    EXPECT_TRUE(FailedWith(story.add(), c.code, c.detail, kUserMessage));
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(story.sent(), sentRow("1", "a", "T - R [a:x]"));
  }
}

TEST(AddRowInfoToSingleNode, ReportsANameThatIsNone) {
  for (const char* strName : {"", "a/b", "1", "a b"}) {
    SCOPED_TRACE(strName);
    const Story story(row("1", "R", cell("a", "x")));
    EXPECT_TRUE(FailedWithNumber(story.add(strName), kInvalidName, "AddRowInfoToSingleNode"));
    EXPECT_EQ(story.sent(), "");

    const Story blank(row("1", "R", cell("a", " ")));
    EXPECT_TRUE(Succeeded(blank.add(strName))) << "a blank row needs no element";
  }
}

TEST(AddRowInfoToSingleNode, ReportsRunTimeErrors) {
  FaultAt fault(DomOperation::setAttribute, Fault::error, 3);
  fault.disarm();
  const Story story(row("1", "R", cell("a", "x")), "T", {}, {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(story.add(), kXmlFailure, "AddRowInfoToSingleNode",
                                     "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(story.sent(), "") << "an element is placed when it is complete";
}

TEST(AddRowInfoToSingleNode, ReportsAMissingParent) {
  const Story story(row("1", "R", cell("a", "x")));
  EXPECT_TRUE(FailedWithRuntimeError(
      AddRowInfoToSingleNode({}, story.objSendXML, {}, story.objTable, "info"), kObjectNotSet,
      "AddRowInfoToSingleNode", "Object variable or With block variable not set"));
}

TEST(AddRowInfoToSingleNode, FailsBeforeTheTextThatCarriesOverOutgrowsADocument) {
  std::string strRows;
  for (int lngRow = 1; lngRow <= 200; ++lngRow) {
    strRows += row(std::to_string(lngRow), "", cell("c", "twenty characters..."));
  }
  const Story story(strRows, "T", {}, {.lngMaxBytes = 100'000});
  EXPECT_TRUE(FailedWithRuntimeError(story.add(), kXmlFailure, "AddRowInfoToSingleNode",
                                     "The document is larger than 100000 bytes."));
  EXPECT_LT(story.objSendXML.xml().size(), 120'000u);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
