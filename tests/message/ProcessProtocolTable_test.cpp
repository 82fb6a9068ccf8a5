#include "message/ProcessProtocolTable.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

constexpr const char* kUserMessage = "An error occurred while processing the protocol tables";
constexpr std::string_view kPlace = "<parentxpath>/r</parentxpath><node>row</node>";
constexpr std::string_view kRowTexts = "<action id='rowinfotovalue'/>";
constexpr std::string_view kRow =
    "<row id='1' rowlabel='R'><column id='c' columnlabel='C' value='x'/></row>";

/// An entry of the object mapper with these attributes and children.
std::string entry(std::string_view strAttributes, std::string_view strChildren) {
  return "<messageitem " + std::string(strAttributes) + ">" + std::string(strChildren) +
         "</messageitem>";
}

std::string placed(std::string_view strAttributes) {
  return entry(strAttributes, std::string(kPlace) + std::string(kRowTexts));
}

/// A parked table of one row on its way into an empty message.
struct Story {
  TestHost host;
  Session session = withNamespaces(host);
  Document objSendXML = message("");
  Node objTable;
  Document objMapper;
  Document objTypes = parsed("<SchemaTypeMapperDocument/>");

  Story(std::string_view strTable, std::string_view strEntries)
      : objTable(parsed("<prtobjct objecttype='table' tablelabel='T' " + std::string(strTable) +
                        ">" + std::string(kRow) + "</prtobjct>")
                     .documentElement()),
        objMapper(parsed("<message>" + std::string(strEntries) + "</message>")) {}

  Acknowledge process() {
    return ProcessProtocolTable(session, objSendXML, objTable, objMapper, objTypes);
  }
  std::string sent() const { return content(objSendXML); }
};

std::string sentRow(std::string_view strId) {
  return "<row questionId=\"" + std::string(strId) +
         "\" rowIndex=\"1\" columnId=\"c\">T - R [C:x]</row>";
}

TEST(ProcessProtocolTable, FindsTheEntryOfATable) {
  const struct {
    const char *says, *table, *entry;
    std::string sent;
  } cases[] = {
      {"a fixed table", "id='t' dynamic='false'", "id='t' type='table'", sentRow("t")},
      {"a table that grows", "id='t' dynamic='false'", "id='t' type='dynatable'", sentRow("t")},
      {"by its id in lower case, which is written as it is", "id='Tab' dynamic='false'",
       "id='tab' type='table'", sentRow("Tab")},
      {"a group plays no part", "id='t' dynamic='false' group='g'", "id='t' type='table'",
       sentRow("t")},
      {"a dynamic table by its group", "id='t' dynamic='true' group='g'",
       "id='g' type='tablegroup'", sentRow("t")},
      {"as the group is written", "id='t' dynamic='true' group='Gr'", "id='Gr' type='tablegroup'",
       sentRow("t")},
      {"dynamic in capitals", "id='t' dynamic='TRUE' group='g'", "id='g' type='tablegroup'",
       sentRow("t")},
      {"dynamic as a number", "id='t' dynamic='2' group='g'", "id='g' type='tablegroup'",
       sentRow("t")},
      {"not dynamic as a number", "id='t' dynamic='0'", "id='t' type='table'", sentRow("t")},
      {"a dynamic table without a group", "id='t' dynamic='true'", "id='' type='tablegroup'",
       sentRow("t")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(c.table, placed(c.entry));
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent(), c.sent);
    EXPECT_THAT(story.host.traceLines(), IsEmpty());
  }
}

TEST(ProcessProtocolTable, TakesTheFirstEntryThatFits) {
  Story story(
      "id='t' dynamic='false'",
      placed("id='t' type='field'") +
          entry("id='t' type='dynatable'",
                "<parentxpath>/r</parentxpath><node>first</node>" + std::string(kRowTexts)) +
          placed("id='t' type='table'"));
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.sent(),
            "<first questionId=\"t\" rowIndex=\"1\" columnId=\"c\">T - R [C:x]</first>");
}

TEST(ProcessProtocolTable, FailsWithoutAnEntry) {
  const struct {
    const char *says, *table, *entry, *expression;
  } cases[] = {
      {"none of this id", "id='Tab' dynamic='false'", "id='other' type='table'",
       "//message/messageitem[@id='tab' and (@type='dynatable' or @type='table')]"},
      {"an entry in capitals is not found", "id='Tab' dynamic='false'", "id='Tab' type='table'",
       "//message/messageitem[@id='tab' and (@type='dynatable' or @type='table')]"},
      {"an entry of another type", "id='t' dynamic='false'", "id='t' type='tablegroup'",
       "//message/messageitem[@id='t' and (@type='dynatable' or @type='table')]"},
      {"a table without id", "dynamic='false'", "id='t' type='table'",
       "//message/messageitem[@id='' and (@type='dynatable' or @type='table')]"},
      {"the id of a dynamic table", "id='t' dynamic='true' group='g'", "id='t' type='tablegroup'",
       "//message/messageitem[@id='g' and @type='tablegroup']"},
      {"the group in another case", "id='t' dynamic='true' group='G'", "id='g' type='tablegroup'",
       "//message/messageitem[@id='G' and @type='tablegroup']"},
      {"a group of another type", "id='t' dynamic='true' group='g'", "id='g' type='table'",
       "//message/messageitem[@id='g' and @type='tablegroup']"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(c.table, placed(c.entry));
    EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_OBJECTMAPPER_MISSING,
                           "no object mapper found=" + std::string(c.expression), kUserMessage));
    EXPECT_EQ(story.sent(), "");
  }
}

TEST(ProcessProtocolTable, FailsWithoutATable) {
  Story story("", "");
  story.objTable = {};
  EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_PRT_TBL_LIST_MISSING,
                         "The protocol tables could not be selected from the parked xml",
                         kUserMessage));
}

TEST(ProcessProtocolTable, ReportsADynamicThatIsNoBooleanWord) {
  for (const char* strDynamic : {"", "dynamic=''", "dynamic='yes'", "dynamic=' true'"}) {
    SCOPED_TRACE(strDynamic);
    Story story("id='t' " + std::string(strDynamic), "");
    EXPECT_TRUE(FailedWithRuntimeError(story.process(), kTypeMismatch, "ProcessProtocolTable",
                                       "Type mismatch"))
        << "before the entry is looked for";
  }
}

TEST(ProcessProtocolTable, FailsWithoutAnAction) {
  const struct {
    const char *says, *children;
  } cases[] = {
      {"a place alone", "<parentxpath>/r</parentxpath><node>row</node>"},
      {"not even a place", ""},
      {"a place that the message lacks", "<parentxpath>/none</parentxpath><node>row</node>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story("id='Tab' dynamic='false'", entry("id='tab' type='table'", c.children));
    EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_ACTION_MISSING,
                           "no action found=tab", kUserMessage));
  }
}

TEST(ProcessProtocolTable, NamesTheIdOfADynamicTableWithoutAnAction) {
  Story story("id='Tab' dynamic='true' group='G'", entry("id='G' type='tablegroup'", kPlace));
  EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_ACTION_MISSING,
                         "no action found=tab", kUserMessage));
}

TEST(ProcessProtocolTable, SkipsATableThatIsMappedToNoPlace) {
  for (const char* strPlace :
       {"", "<parentxpath>/r</parentxpath>", "<node>row</node>", "<parentxpath/><node>row</node>",
        "<parentxpath>/r</parentxpath><node/>", "<parentxpath>/none</parentxpath>"}) {
    SCOPED_TRACE(strPlace);
    Story story("id='t' dynamic='false'",
                entry("id='t' type='table'", strPlace + std::string(kRowTexts)));
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent(), "");
    EXPECT_THAT(story.host.traceLines(), IsEmpty());
  }
}

TEST(ProcessProtocolTable, FailsWithoutTheParentInTheMessage) {
  Story story(
      "id='t' dynamic='false'",
      entry("id='t' type='table'",
            "<parentxpath>/r/m:none</parentxpath><node>m:row</node>" + std::string(kRowTexts)));
  EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_PARENT_NODE_MISSING,
                         "node error/r/m:none/m:row", kUserMessage));
}

TEST(ProcessProtocolTable, ChoosesTheWriterByTheAction) {
  constexpr std::string_view kTypes =
      "<SchemaTypeMapperDocument xmlns:pbr='urn:pbr'><schematypes><schematype id='%'>"
      "<pbr:AdditionalInfo/></schematype></schematypes></SchemaTypeMapperDocument>";
  const struct {
    const char *says, *action;
    bool blnText;
  } cases[] = {
      {"row texts", "rowinfotovalue", true},
      {"in any case", "RowInfoToValue", true},
      {"a complex type", "rows", false},
      {"with a blank it is a complex type", "rowinfotovalue ", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(
        "id='t' dynamic='false'",
        entry("id='t' type='table'", std::string(kPlace) + "<action id='" + c.action + "'/>"));
    std::string strTypes(kTypes);
    strTypes.replace(strTypes.find('%'), 1, c.action);
    story.objTypes = parsed(strTypes);
    story.objTypes.setSelectionNamespaces("xmlns:pbr='urn:pbr'");
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent() == sentRow("t"), c.blnText);
    EXPECT_EQ(static_cast<bool>(story.objSendXML.selectSingleNode("/r/row/*[.='x']")), !c.blnText)
        << story.sent();
  }
}

TEST(ProcessProtocolTable, ReturnsWhatItsWritersReport) {
  Story texts("id='t' dynamic='false'", placed("id='t' type='table'"));
  texts.objTable.selectSingleNode("row/column").removeAttribute("columnlabel");
  EXPECT_TRUE(FailedWith(texts.process(), SVC_RET_XML_CREATION_CLMN_LBL_FAILED,
                         "Selecting the column label has failed",
                         "An error occurred adding row info to a single node"));

  Story types("id='t' dynamic='false'",
              entry("id='t' type='table'", std::string(kPlace) + "<action id='none'/>"));
  EXPECT_TRUE(FailedWith(types.process(), SVC_RET_XML_CREATION_CMPLX_TYPE_MISSING,
                         "The complex type is missing",
                         "An error occurred getting the complex type from the action"));

  Story empty("id='t' dynamic='false'",
              entry("id='t' type='table'", std::string(kPlace) + "<action/>"));
  EXPECT_TRUE(FailedWith(empty.process(), SVC_RET_XML_CREATION_ACTION_MISSING,
                         "The action is missing",
                         "An error occurred getting the complex type from the action"))
      << "an action without id is there, and names no type";
}

TEST(ProcessProtocolTable, ReturnsWhatTheReadingOfTheEntryReports) {
  FaultAt fault(DomOperation::cloneNode, Fault::error);
  fault.disarm();
  Story story("id='t' dynamic='false'", "");
  story.objMapper =
      parsed("<message>" + placed("id='t' type='table'") + "</message>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(story.process(), kXmlFailure, "GetObjectMapperInfo",
                                     "Injected failure"));
  EXPECT_TRUE(fault.struck());
}

TEST(ProcessProtocolTable, ReportsRunTimeErrorsOfItsOwn) {
  const struct {
    const char *says, *table, *place;
  } cases[] = {
      {"an id with an apostrophe", "id=\"t'\" dynamic='false'", ""},
      {"a group with an apostrophe", "id='t' dynamic='true' group=\"g'\"", ""},
      {"a parent that is no XPath", "id='t' dynamic='false'", "<parentxpath>/r[</parentxpath>"},
      {"a parent with an unknown prefix", "id='t' dynamic='false'",
       "<parentxpath>/r/p:a</parentxpath>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(c.table, entry("id='t' type='table'",
                               c.place + std::string("<node>row</node>") + std::string(kRowTexts)));
    EXPECT_TRUE(FailedWithNumber(story.process(), kXmlFailure, "ProcessProtocolTable"));
    EXPECT_EQ(story.sent(), "");
  }
}

TEST(ProcessProtocolTable, ReportsMissingDocuments) {
  const struct {
    const char* says;
    Document Story::*document;
  } cases[] = {{"the mapper", &Story::objMapper}, {"the message", &Story::objSendXML}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story("id='t' dynamic='false'", placed("id='t' type='table'"));
    story.*c.document = {};
    EXPECT_TRUE(FailedWithRuntimeError(story.process(), kObjectNotSet, "ProcessProtocolTable",
                                       "Object variable or With block variable not set"));
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
