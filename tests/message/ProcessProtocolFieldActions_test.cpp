#include <gmock/gmock.h>

#include "platform/text/Text.h"
#include "support/Faults.h"
#include "support/Fields.h"

// The second half of ProcessProtocolField: placement with an action, and the extra path.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string withAction(std::string_view strAction, std::string_view strPlace = kPlace) {
  return sentEntry(std::string(strPlace) + std::string(strAction));
}

constexpr std::string_view kPersonType =
    "<schematype id='person'><m:name><value id='name'/></m:name><m:kind>k</m:kind></schematype>";
constexpr std::string_view kPersonAction =
    "<action id='person'><parameter id='name' formvalue='true'/></action>";
constexpr std::string_view kAddressType =
    "<schematype id='structured_address_type'>"
    "<m:l1><value id='line1'/></m:l1><m:l2><value id='line2'/></m:l2>"
    "<m:l3><value id='line3'/></m:l3><m:l4><value id='line4'/></m:l4>"
    "<m:whole><value id='whole'/></m:whole></schematype>";
constexpr std::string_view kAddressParameters = "<parameter id='whole' formvalue='true'/></action>";

std::string addressAction(std::string_view strId = "structured_address_type") {
  return "<action id='" + std::string(strId) + "'>" + std::string(kAddressParameters);
}

constexpr std::string_view kJoin =
    "<action id='addinfotonode' separator='-'><parameter formlabel='1'/><parameter formvalue='1'/>"
    "</action>";

// --- Complex types ---

TEST(ProcessProtocolFieldActions, PlaceAComplexTypeInANewElement) {
  FieldStory story(field("Q", "v"), withAction(kPersonAction), "<m:a/>");
  story.types(kPersonType);
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(
      story.sent(),
      "<m:a/><m:a questionId=\"q\"><m:name questionId=\"Q\">v</m:name><m:kind>k</m:kind></m:a>")
      << "inside the type the id stands as written";
}

TEST(ProcessProtocolFieldActions, PlaceTheLabelAndTheTrimmedAndConvertedValue) {
  FieldStory story(field("q", " 5/3/2012 ", "dynamic='false' type='date' fieldlabel='Born'"),
                   withAction("<action id='Person'><parameter id='label' formlabel='true'/>"
                              "<parameter id='name' formvalue='true'/></action>"));
  story.types(
      "<schematype id='person'><m:label><value id='label'/></m:label>"
      "<m:name><value id='name'/></m:name></schematype>");
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.objSendXML.selectSingleNode("/r/m:a/m:label").text(), "Born");
  EXPECT_EQ(story.objSendXML.selectSingleNode("/r/m:a/m:name").text(), "2012-03-05");
}

TEST(ProcessProtocolFieldActions, LeaveLineEndsInTheValueOfAComplexType) {
  FieldStory story(field("q", "a&#13;&#10;b"), withAction(kPersonAction));
  story.types(kPersonType);
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.objSendXML.selectSingleNode("/r/m:a/m:name").text(), "a\r\nb");
}

TEST(ProcessProtocolFieldActions, LeaveTheMapperAndTheTypesAsTheyWere) {
  FieldStory story(field("q", "v"), withAction(kPersonAction));
  story.types(kPersonType);
  const std::string strMapper = story.objObjectMapper.xml();
  const std::string strTypes = story.objSchemaTypeMapper.xml();
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.objObjectMapper.xml(), strMapper);
  EXPECT_EQ(story.objSchemaTypeMapper.xml(), strTypes);
}

TEST(ProcessProtocolFieldActions, MarkFrontPageInformation) {
  const struct {
    const char *says, *id, *attribute;
  } cases[] = {
      {"an id that is it", "fpadmin", "true"},
      {"holds it anywhere, in any case", "x_FpAdmin9", "true"},
      {"does not hold it", "fp_admin", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field(c.id, "v"), "<messageitem id='" + toLower(c.id) + "' toschema='true'>" +
                                           std::string(kPlace) + std::string(kPersonAction) +
                                           "</messageitem>");
    story.types(kPersonType);
    EXPECT_TRUE(Succeeded(story.process()));
    const Node objCurrentNode = story.objSendXML.selectSingleNode("/r/m:a");
    EXPECT_EQ(objCurrentNode.getAttribute("questionId"), toLower(c.id));
    if (c.attribute) {
      EXPECT_EQ(objCurrentNode.getAttribute("FrontPageInformation"), c.attribute);
    } else {
      EXPECT_FALSE(objCurrentNode.getAttribute("FrontPageInformation"));
    }
  }
}

TEST(ProcessProtocolFieldActions, AreNeededForTheFrontPageMark) {
  FieldStory story(field("fpadmin", "v"), "<messageitem id='fpadmin' toschema='true'>" +
                                              std::string(kPlace) + "</messageitem>");
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.sent(), "<m:a questionId=\"fpadmin\">v</m:a>");
}

TEST(ProcessProtocolFieldActions, FailWithoutAChild) {
  const struct {
    const char *says, *action;
  } cases[] = {
      {"no such type", "<action id='none'/>"},
      {"an empty action id", "<action id=''/>"},
      {"no action id", "<action/>"},
      {"an action id that breaks its expression", "<action id=\"it's\"/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("Q", "v"), withAction(c.action));
    story.types(kPersonType);
    EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_CHILD_NODE_MISSING,
                           "child node missing (q)", "default message"));
    EXPECT_EQ(story.sent(), "");
    EXPECT_THAT(linesOf(story.host, "ProcessProtocolField"),
                ElementsAre("strMapperPath=//message/messageitem[@id='q']"));
  }
}

TEST(ProcessProtocolFieldActions, FailWhenTheTypeGivesNoCopy) {
  FaultAt fault(DomOperation::cloneNode);
  fault.disarm();
  FieldStory story(field("q", "v"), withAction(kPersonAction));
  story.objSchemaTypeMapper =
      parsed("<SchemaTypeMapperDocument xmlns:m='urn:m'><schematypes>" + std::string(kPersonType) +
                 "</schematypes></SchemaTypeMapperDocument>",
             {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_CHILD_NODE_MISSING,
                         "child node missing (q)", "default message"));
  EXPECT_TRUE(fault.struck());
}

TEST(ProcessProtocolFieldActions, ReturnWhatMakingThePathReports) {
  for (const ImpossiblePlace& c : kImpossiblePlaces) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", "v"), withAction(kPersonAction, c.place));
    story.types(kPersonType);
    EXPECT_TRUE(FailedWith(story.process(), c.lngErrorCode, c.detail, "default message"));
    EXPECT_EQ(story.sent(), c.left);
  }
}

TEST(ProcessProtocolFieldActions, DoNotTestTheParentPathThemselves) {
  FieldStory story(field("q", "v"), withAction(kPersonAction, "<node>m:a</node>"));
  story.types(kPersonType);
  EXPECT_TRUE(FailedWithNumber(story.process(), kXmlFailure, "buildXPath"));
}

TEST(ProcessProtocolFieldActions, ReturnWhatAddingTheTypeReports) {
  FaultAt fault(DomOperation::appendChild, Fault::nothing, 2);  // the path takes the first
  fault.disarm();
  FieldStory story(
      field("q", "v"),
      withAction(kPersonAction, std::string(kPlace) + "<extrapath>/r</extrapath><extranode>m:x"
                                                      "</extranode>"));
  story.objSendXML = message("", {.faults = &fault});
  story.types(kPersonType);
  fault.arm();
  EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_ADD_CHILD_NODE_FAILED,
                         "Adding the child node failed",
                         "An error occurred adding complex type to parent"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(story.sent(), "<m:a questionId=\"q\"/>") << "nor is the extra path taken";
}

TEST(ProcessProtocolFieldActions, TraceAComplexType) {
  FieldStory story(field("q", "v"), withAction(kPersonAction));
  story.types(kPersonType);
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_THAT(
      story.host.traceLines(),
      ElementsAre(
          "ProcessProtocolField: strMapperPath=//message/messageitem[@id='q']",
          "ProcessProtocolField: Set objAck = buildXPath(/r, m:a, objXmlDocument, objCurrentNode)",
          "buildXPath: arrNodes = Split(m:a, ' / ')", "buildXPath: strNodePath = /m:a",
          "buildXPath: arrSchema = Split(m:a, ':')",
          "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,m:a, urn:m)"));
}

// --- Addresses ---

TEST(ProcessProtocolFieldActions, SpreadAnAddressOverItsLines) {
  const struct {
    const char *says, *value, *lines, *whole;
  } cases[] = {
      {"each kind of line end is a comma", "A&#13;&#10;B&#10;C&#13;D", "A|B|C|D", "A,B,C,D"},
      {"lines without a part are taken out", "A&#13;&#10;B", "A|B", "A,B"},
      {"what is beyond four parts shares the first line", "A,B,C,D,E", "A, B|C|D|E", "A,B,C,D,E"},
      {"nothing but a comma is an address without lines", ",", "", ","},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", c.value), withAction(addressAction()));
    story.types(kAddressType);
    EXPECT_TRUE(Succeeded(story.process()));
    std::string strLines;
    const auto colLines = story.objSendXML.selectNodes("/r/m:a/*[starts-with(local-name(), 'l')]");
    for (const Node& objLine : *colLines) {
      EXPECT_EQ(objLine.getAttribute("questionId"), "q");
      strLines += (strLines.empty() ? "" : "|") + objLine.text();
    }
    EXPECT_EQ(strLines, c.lines);
    EXPECT_EQ(story.objSendXML.selectSingleNode("/r/m:a/m:whole").text(), c.whole)
        << "the value itself has commas for its line ends";
  }
}

TEST(ProcessProtocolFieldActions, SpreadNoAddressUnderAnotherCaseOfTheName) {
  FieldStory story(field("q", "A&#10;B"), withAction(addressAction("Structured_Address_Type")));
  story.types(kAddressType);
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.objSendXML.selectSingleNode("/r/m:a/m:whole").text(), "A\nB");
  EXPECT_EQ(story.objSendXML.selectNodes("//value")->length(), 4U) << "the lines' places stay";
}

TEST(ProcessProtocolFieldActions, MakeNoLinesOfAnEmptyAddress) {
  FieldStory story(field("q", ""), withAction(addressAction(),
                                              "<parentxpath>/r</parentxpath><node item='i'>m:a"
                                              "</node>"));
  story.types(kAddressType);
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.objSendXML.selectNodes("//value")->length(), 4U);
}

// --- addinfotonode ---

TEST(ProcessProtocolFieldActions, JoinInformationInANewElement) {
  for (const char* strName : {"addinfotonode", "AddInfoToNode"}) {
    SCOPED_TRACE(strName);
    FieldStory story(field("Q", "a&#13;&#10;b", "dynamic='false' fieldlabel='Label'"),
                     withAction("<action id='" + std::string(strName) +
                                "' separator=': '><parameter formlabel='1'/>"
                                "<parameter formvalue='1'/></action>"),
                     "<m:a/>");
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent(), "<m:a/><m:a questionId=\"Q\">Label: ab</m:a>");
  }
}

TEST(ProcessProtocolFieldActions, ReturnWhatJoiningReportsAndLeaveTheExtraPathOut) {
  FieldStory story(
      field("q", "v"),
      withAction("<action id='addinfotonode'><parameter formvalue='1'/></action>",
                 std::string(kPlace) + "<extrapath>/r</extrapath><extranode>m:x</extranode>"));
  EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_PRM_LST_LNGTH_INCORRECT,
                         "The length of the parameter list is invalid",
                         "An error occurred adding information to the node"));
  EXPECT_EQ(story.sent(), "");
  EXPECT_THAT(linesOf(story.host, "ProcessProtocolField"),
              ElementsAre("strMapperPath=//message/messageitem[@id='q']", "addinfotonode"));
}

TEST(ProcessProtocolFieldActions, TraceJoining) {
  FieldStory story(field("q", "v"), withAction(kJoin));
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_THAT(
      story.host.traceLines(),
      ElementsAre(
          "ProcessProtocolField: strMapperPath=//message/messageitem[@id='q']",
          "ProcessProtocolField: addinfotonode", "buildXPath: arrNodes = Split(m:a, ' / ')",
          "buildXPath: strNodePath = /m:a", "buildXPath: arrSchema = Split(m:a, ':')",
          "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,m:a, urn:m)"));
}

// --- The extra path ---

TEST(ProcessProtocolFieldActions, AndPlainPlacementWriteTheValueAgainAtTheExtraPath) {
  constexpr std::string_view kExtra =
      "<extrapath>/r/m:e</extrapath><extranode>m:x/m:y</extranode><extravalue>no</extravalue>";
  const struct {
    const char *says, *value, *node;
    std::string_view action;
    const char* extra;
  } cases[] = {
      {"plainly placed", "v", "<node>m:a</node>", "", "v"},
      {"without its line ends", "a&#13;&#10;b", "<node>m:a</node>", "", "ab"},
      {"the item's value", "v", "<node item='i'>m:a</node>", "", " w "},
      {"beside joined information, without line ends", "a&#13;&#10;b", "<node>m:a</node>", kJoin,
       "ab"},
      {"beside a complex type, as it is", "a&#13;&#10;b", "<node>m:a</node>", kPersonAction,
       "a\r\nb"},
      {"the item is not asked beside a complex type", "v", "<node item='i'>m:a</node>",
       kPersonAction, "v"},
      {"beside an address, with commas", "a&#13;&#10;b", "<node>m:a</node>",
       "<action id='structured_address_type'/>", "a,b"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("Q", c.value) + "<prtobjct id='i' value=' w '/>",
                     withAction(c.action, "<parentxpath>/r</parentxpath>" + std::string(c.node) +
                                              std::string(kExtra)),
                     "<m:e/>");
    story.types(std::string(kPersonType) + std::string(kAddressType));
    EXPECT_TRUE(Succeeded(story.process()));
    const Node objExtra = story.objSendXML.selectSingleNode("/r/m:e/m:x/m:y");
    ASSERT_TRUE(objExtra);
    EXPECT_EQ(objExtra.text(), c.extra);
    EXPECT_EQ(objExtra.getAttribute("questionId"), "q");
    EXPECT_TRUE(story.objSendXML.selectSingleNode("/r/m:a[@questionId]"));
  }
}

TEST(ProcessProtocolFieldActions, AndPlainPlacementFailWithoutTheExtraPath) {
  const struct {
    const char *says, *extra, *detail, *left;
  } cases[] = {
      {"no parent", "<extrapath>/none</extrapath><extranode>m:x</extranode>",
       "extra path missing object=q,extrapath=/none/m:x", ""},
      {"no node path", "<extrapath>/r</extrapath>", "extra path missing object=q,extrapath=/r/",
       ""},
      {"a malformed parent", "<extrapath>it's</extrapath><extranode>m:x</extranode>",
       "extra path missing object=q,extrapath=it's/m:x", ""},
      {"an unknown prefix, whose element stays",
       "<extrapath>/r</extrapath><extranode>x:x</extranode>",
       "extra path missing object=q,extrapath=/r/x:x", "<x:x/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("Q", "v"), sentEntry(std::string(kPlace) + c.extra));
    EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_EXTRA_PATH_MISSING, c.detail,
                           "default message"));
    EXPECT_EQ(story.sent(), "<m:a questionId=\"q\">v</m:a>" + std::string(c.left));
    EXPECT_EQ(linesOf(story.host, "addData").size(), 1U);
  }
}

TEST(ProcessProtocolFieldActions, AndPlainPlacementLeaveAnEmptyExtraPathAlone) {
  FieldStory story(field("q", "v"),
                   sentEntry(std::string(kPlace) + "<extrapath/><extranode>m:x</extranode>"));
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.sent(), "<m:a questionId=\"q\">v</m:a>");
}

TEST(ProcessProtocolFieldActions, AndPlainPlacementTraceTheExtraPath) {
  FieldStory story(
      field("q", "v"),
      sentEntry(std::string(kPlace) + "<extrapath>/r</extrapath><extranode>m:x</extranode>"));
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_THAT(
      story.host.traceLines(),
      ElementsAre(
          "ProcessProtocolField: strMapperPath=//message/messageitem[@id='q']",
          "buildXPath: arrNodes = Split(m:a, ' / ')", "buildXPath: strNodePath = /m:a",
          "buildXPath: arrSchema = Split(m:a, ':')",
          "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,m:a, urn:m)",
          "ProcessProtocolField: Set objAck = addData(objXmlDocument,v, /r/m:a, q)",
          "addData: Set objElement = objXmlNode.selectSingleNode(/r/m:a)",
          "ProcessProtocolField: Processing strExtraPath",
          "buildXPath: arrNodes = Split(m:x, ' / ')", "buildXPath: strNodePath = /m:x",
          "buildXPath: arrSchema = Split(m:x, ':')",
          "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,m:x, urn:m)",
          "ProcessProtocolField: Set objAck = addData(objXmlDocument,v, /r / m:x, q)",
          "addData: Set objElement = objXmlNode.selectSingleNode(/r/m:x)"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
