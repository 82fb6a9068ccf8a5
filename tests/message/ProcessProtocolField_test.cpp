#include "message/ProcessProtocolField.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Fields.h"

// How a field finds its entry, and its plain placement. Whether it is sent at all stands in
// ProcessProtocolFieldConditions_test.cpp; what actions and the extra path write, in
// ProcessProtocolFieldActions_test.cpp.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kSent = "<m:a questionId=\"q\">v</m:a>";

std::string noMapper(std::string_view strId) {
  return "object mapper not found for object=" + std::string(strId);
}

// --- Preparation ---

TEST(ProcessProtocolField, FailsWithoutAField) {
  FieldStory story(field("q", "v"), sentEntry());
  EXPECT_TRUE(
      FailedWith(ProcessProtocolField(story.session, story.objSendXML, {}, story.objObjectMapper,
                                      story.objSchemaTypeMapper, story.objParkXML),
                 SVC_RET_XML_CREATION_PRT_FLDS_SELECTION_FAILED,
                 "The selection of the protocol fields has failed", "default message"));
  EXPECT_THAT(story.host.traceLines(), IsEmpty());
}

TEST(ProcessProtocolField, WritesTheValueAtTheNodePath) {
  FieldStory story(field("q", "v"), sentEntry());
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.sent(), kSent);
}

TEST(ProcessProtocolField, LowersTheIdForTheMappingAndTheQuestion) {
  FieldStory story(field("Q-\xC3\x84", "v"), "<messageitem id='q-\xC3\xA4' toschema='true'>" +
                                                 std::string(kPlace) + "</messageitem>");
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.sent(), "<m:a questionId=\"q-\xC3\xA4\">v</m:a>");
}

TEST(ProcessProtocolField, FindsTheEntryOfADynamicFieldByItsGroup) {
  const std::string strPlace(kPlace);
  const std::string strEntries =
      "<messageitem id='q' toschema='false'/>"
      "<messageitem id='Grp' type='other' toschema='false'/>"
      "<messageitem id='Grp' type='group' toschema='true'>" +
      strPlace + "</messageitem>";
  const struct {
    const char *says, *attributes, *sent;
  } cases[] = {
      {"of the type group", "dynamic='true' group='Grp'", kSent},
      {"the word is a Boolean word", "dynamic='TRUE' group='Grp'", kSent},
      {"or a number", "dynamic='-1' group='Grp'", kSent},
      {"a field that is not dynamic has its own", "dynamic='false' group='Grp'", ""},
      {"also by number", "dynamic='0' group='Grp'", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", "v", c.attributes), strEntries);
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent(), c.sent);
  }
}

TEST(ProcessProtocolField, TakesTheGroupAsItIsWritten) {
  FieldStory story(field("q", "v", "dynamic='true' group='Grp'"),
                   "<messageitem id='grp' type='group' toschema='true'/>");
  EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_NOMAPPERFOROBJECT, noMapper("q"),
                         "An error occurred while processing the protocol fields"));
  EXPECT_THAT(story.host.traceLines(),
              ElementsAre("ProcessProtocolField: strMapperPath=//message/messageitem[@id='Grp' and "
                          "@type='group']"));
}

TEST(ProcessProtocolField, TakesTheFirstEntryWhateverItsType) {
  FieldStory story(field("q", "v"), "<messageitem id='q' type='tablegroup' toschema='true'>" +
                                        std::string(kPlace) + "</messageitem>" +
                                        entry("toschema='false'"));
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.sent(), kSent);
}

TEST(ProcessProtocolField, FailsWithoutAnEntry) {
  const struct {
    const char *says, *object, *entries, *id;
  } cases[] = {
      {"none at all", "Q9", "", "q9"},
      {"an id in upper case is never found", "Q", "<messageitem id='Q' toschema='true'/>", "q"},
      {"an empty id", "", "<messageitem id='q' toschema='true'/>", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field(c.object, ""), c.entries);
    EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_NOMAPPERFOROBJECT, noMapper(c.id),
                           "An error occurred while processing the protocol fields"));
    EXPECT_EQ(story.sent(), "");
    EXPECT_THAT(story.host.traceLines(),
                ElementsAre("ProcessProtocolField: strMapperPath=//message/messageitem[@id='" +
                            std::string(c.id) + "']"));
  }
}

TEST(ProcessProtocolField, NeedsABooleanWordForDynamic) {
  for (const char* strMore : {"", "dynamic=''", "dynamic='yes'", "dynamic=' '"}) {
    SCOPED_TRACE(strMore);
    FieldStory story(field("q", "v", strMore), sentEntry());
    EXPECT_TRUE(FailedWithRuntimeError(story.process(), kTypeMismatch, "ProcessProtocolField",
                                       "Type mismatch"));
    EXPECT_THAT(story.host.traceLines(), IsEmpty());
  }
}

TEST(ProcessProtocolField, ConvertsDatesAndTimesInAnyCaseOfTheType) {
  const struct {
    const char *says, *type, *value, *sent;
  } cases[] = {
      {"a date", "date", "5/3/2012", "2012-03-05"},
      {"in any case", "DATE", "5/3/2012", "2012-03-05"},
      {"a time", "time", "5/3/2012 10:30", "2012-03-05T00:00:00"},
      {"another case of it is only a date", "Time", "5/3/2012 10:30", "2012-03-05"},
      {"blanks around the value do not matter", "date", "  5/3/2012 ", "2012-03-05"},
      {"what is no date stays", "date", "soon", "soon"},
      {"another type stays", "text", "5/3/2012", "5/3/2012"},
      {"the type is not trimmed", " date", "5/3/2012", "5/3/2012"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", c.value, "dynamic='false' type='" + std::string(c.type) + "'"),
                     sentEntry());
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent(), "<m:a questionId=\"q\">" + std::string(c.sent) + "</m:a>");
  }
}

TEST(ProcessProtocolField, ReturnsWhatReadingTheEntryReports) {
  FaultAt fault(DomOperation::cloneNode, Fault::error);
  fault.disarm();
  FieldStory story(field("q", "v"), "");
  story.objObjectMapper =
      parsed("<message>" + sentEntry(std::string(kPlace) + "<action id='a'/>") + "</message>",
             {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(story.process(), kXmlFailure, "GetObjectMapperInfo",
                                     "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(story.sent(), "");
}

// --- Placement without action ---

TEST(ProcessProtocolField, FailsWithoutAParentPath) {
  const struct {
    const char *says, *children, *parent;
  } cases[] = {
      {"no element", "<node>m:a</node>", ""},
      {"an empty one", "<parentxpath/><node>m:a</node>", ""},
      {"blanks", "<parentxpath xml:space='preserve'>  </parentxpath><node>m:a</node>", "  "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("Q", "v"), sentEntry(c.children));
    EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_PARENT_PATH_MISSING,
                           "parent path missing object=q,parent=" + std::string(c.parent),
                           "default message"));
    EXPECT_EQ(story.sent(), "");
  }
}

TEST(ProcessProtocolField, TakesPairsOfReturnAndLineFeedOutOfTheValue) {
  const struct {
    const char *says, *value, *sent;
  } cases[] = {
      {"a pair", "a&#13;&#10;b", "ab"},
      {"several", "a&#13;&#10;&#13;&#10;b&#13;&#10;", "ab"},
      {"a lone line feed stays", "a&#10;b", "a\nb"},
      {"a lone return stays", "a&#13;b", "a\rb"},
      {"as does what is left of a broken pair", "a&#13;&#13;&#10;&#10;b", "a\r\nb"},
      {"markup is text", "&lt;b&gt;&amp;amp;", "<b>&amp;"},
      {"blanks at the ends are trimmed before", "  a&#13;&#10; ", "a"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", c.value), sentEntry());
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.objSendXML.selectSingleNode("/r/m:a").text(), c.sent);
  }
}

TEST(ProcessProtocolField, ReturnsWhatMakingThePathReports) {
  for (const ImpossiblePlace& c : kImpossiblePlaces) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", "v"), sentEntry(c.place));
    EXPECT_TRUE(FailedWith(story.process(), c.lngErrorCode, c.detail, "default message"));
    EXPECT_EQ(story.sent(), c.left);
    EXPECT_THAT(linesOf(story.host, "addData"), IsEmpty());
  }
}

TEST(ProcessProtocolField, WritesTheValueOfTheItemInPlaceOfItsOwn) {
  const struct {
    const char *says, *value, *item, *sent;
  } cases[] = {
      {"though it has none itself", "", "<prtobjct id='Item' value='w'/>", "w"},
      {"and though it has one", "v", "<prtobjct id='Item' value='w'/>", "w"},
      {"untrimmed", "v", "<prtobjct id='Item' value='  w '/>", "  w "},
      {"with its line ends", "v", "<prtobjct id='Item' value='w&#13;&#10;w'/>", "w\r\nw"},
      {"nothing when the object is missing", "v", "", ""},
      {"nothing when it has no value", "v", "<prtobjct id='Item'/>", ""},
      {"its id counts as written", "v", "<prtobjct id='item' value='w'/>", ""},
      {"wherever it stands", "v", "<g><prtobjct id='Item' value='w'/></g>", "w"},
      {"a date is converted", "v", "<prtobjct id='Item' type='date' value='5/3/2012'/>",
       "2012-03-05"},
      {"only in this case of the word", "v", "<prtobjct id='Item' type='Date' value='5/3/2012'/>",
       "5/3/2012"},
      {"a time is not", "v", "<prtobjct id='Item' type='time' value='5/3/2012'/>", "5/3/2012"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", c.value) + c.item,
                     sentEntry("<parentxpath>/r</parentxpath><node item='Item'>m:a</node>"));
    EXPECT_TRUE(Succeeded(story.process()));
    const Node objElement = story.objSendXML.selectSingleNode("/r/m:a");
    ASSERT_TRUE(objElement);
    EXPECT_EQ(objElement.text(), c.sent);
    EXPECT_EQ(objElement.getAttribute("questionId"), "q") << "the field is the question";
  }
}

TEST(ProcessProtocolField, WritesIntoTheFirstElementOfItsPath) {
  FieldStory story(field("q", "one") + field("q", "two"), sentEntry());
  EXPECT_TRUE(Succeeded(story.process(0)));
  EXPECT_TRUE(Succeeded(story.process(1)));
  EXPECT_EQ(story.sent(), "<m:a questionId=\"q\">two</m:a><m:a/>");
}

TEST(ProcessProtocolField, ReturnsWhatWritingTheValueReports) {
  FieldStory story(field("q", "v"), sentEntry());
  FaultAt fault(DomOperation::writeText, Fault::error);
  fault.disarm();
  story.objSendXML = message("", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(story.process(), kXmlFailure, "addData", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(story.sent(), "<m:a/>");
}

TEST(ProcessProtocolField, TracesPlainPlacement) {
  FieldStory story(field("Q", "v"), sentEntry());
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_THAT(
      story.host.traceLines(),
      ElementsAre(
          "ProcessProtocolField: strMapperPath=//message/messageitem[@id='q']",
          "buildXPath: arrNodes = Split(m:a, ' / ')", "buildXPath: strNodePath = /m:a",
          "buildXPath: arrSchema = Split(m:a, ':')",
          "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,m:a, urn:m)",
          "ProcessProtocolField: Set objAck = addData(objXmlDocument,v, /r/m:a, q)",
          "addData: Set objElement = objXmlNode.selectSingleNode(/r/m:a)"));
}

TEST(ProcessProtocolField, TracesTheValueThatIsWritten) {
  FieldStory story(field("q", "v") + "<prtobjct id='i' type='date' value='5/3/2012'/>",
                   sentEntry("<parentxpath>/r</parentxpath><node item='i'>m:a</node>"));
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(linesOf(story.host, "ProcessProtocolField").back(),
            "Set objAck = addData(objXmlDocument,2012-03-05, /r/m:a, q)");
}

// --- The compiled object mapper ---

TEST(ProcessProtocolField, DoesTheSameWithAMapperThatIsNotCompiled) {
  const std::string strPlace(kPlace);
  const std::string strAction =
      "<action id='addinfotonode'><parameter formlabel='1'/><parameter formvalue='1'/></action>";
  const struct {
    std::string says, object, entries;
  } cases[] = {
      {"a plain place", field("q", "v"), sentEntry()},
      {"a place further down, of which a part is there", field("q", "v"),
       sentEntry("<parentxpath>/r</parentxpath><node>m:p/m:o/m:a</node>")},
      {"the same with an extra path", field("q", "v"),
       sentEntry("<parentxpath>/r/m:p</parentxpath><node>m:a</node><extrapath>/r/m:p</extrapath>"
                 "<extranode>m:b</extranode>")},
      {"a place that is there already", field("q", "v"),
       entry("toschema='true' checkexists='true'",
             "<parentxpath>/r</parentxpath><node>m:p</node>")},
      {"one that is not", field("q", "v"), entry("toschema='true' checkexists='true'")},
      {"a parent with a condition", field("q", "v"),
       sentEntry("<parentxpath>/r/m:p[2]</parentxpath><node>m:a</node>")},
      {"several parents", field("q", "v"),
       sentEntry("<parentxpath>//m:p</parentxpath><node>m:o/m:a</node>")},
      {"no parent", field("q", "v"), sentEntry("<parentxpath>/none</parentxpath><node>m:a</node>")},
      {"no place", field("q", "v"), sentEntry("")},
      {"a prefix that nobody knows", field("q", "v"),
       sentEntry("<parentxpath>/r</parentxpath><node>x:p/m:a</node>")},
      {"a parent that is no element", field("q", "v"),
       sentEntry("<parentxpath>/r/text()</parentxpath><node>m:a</node>")},
      {"an empty step", field("q", "v"),
       sentEntry("<parentxpath>/r</parentxpath><node>m:p//m:a</node>")},
      {"a group", field("q", "v", "dynamic='true' group='g'"),
       "<messageitem id='g' toschema='true'/><messageitem id='g' type='group' toschema='true'>" +
           strPlace + "</messageitem>"},
      {"an action", field("q", "v", "dynamic='false' fieldlabel='l'"),
       sentEntry(strPlace + strAction)},
      {"a type that is missing", field("q", "v"), sentEntry(strPlace + "<action id='none'/>")},
      {"no entry", field("q", "v"), ""},
      {"an id that changes its expression", field("q' or @id='r", "v"),
       "<messageitem id='r' toschema='true'>" + strPlace + "</messageitem>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strMessage = "<m:p/><m:p><m:o/></m:p>t";
    FieldStory compiled(c.object, c.entries, strMessage);
    FieldStory selected(c.object, c.entries, strMessage);
    selected.objObjectMapper = FieldStory::mapper(c.entries, false);
    const Acknowledge objAck = compiled.process();
    const Acknowledge objExpected = selected.process();
    EXPECT_EQ(objAck.ErrorCode(), objExpected.ErrorCode());
    EXPECT_EQ(objAck.ErrorDetail(), objExpected.ErrorDetail());
    EXPECT_EQ(objAck.UserMessage(), objExpected.UserMessage());
    EXPECT_EQ(compiled.sent(), selected.sent());
    EXPECT_EQ(compiled.host.traceLines(), selected.host.traceLines());
  }
}

// --- Unexpected failures and hostile input ---

TEST(ProcessProtocolField, ReportsAnIdThatBreaksItsExpression) {
  const struct {
    const char *says, *objects, *entries, *left;
  } cases[] = {
      {"the field's", "<prtobjct id=\"o'q\" dynamic='false' value='v'/>", "", ""},
      {"the group's", "<prtobjct id='q' group=\"o'q\" dynamic='true' value='v'/>", "", ""},
      {"the absent object's", "<prtobjct id='q' dynamic='false' value='v'/>",
       "<messageitem id='q' toschema='true' absent=\"o'q\"><parentxpath>/r</parentxpath>"
       "<node>m:a</node></messageitem>",
       ""},
      {"the item's, once the path is made", "<prtobjct id='q' dynamic='false' value='v'/>",
       "<messageitem id='q' toschema='true'><parentxpath>/r</parentxpath>"
       "<node item=\"o'q\">m:a</node></messageitem>",
       "<m:a/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(c.objects, c.entries);
    EXPECT_TRUE(FailedWithNumber(story.process(), -2147467259, "ProcessProtocolField"));
    EXPECT_EQ(story.sent(), c.left);
  }
}

// Ids go into expressions as they are.
TEST(ProcessProtocolField, TakesAnIdThatMakesAnotherExpressionForThatExpression) {
  FieldStory story(field("x' or @type='any", "v"),
                   "<messageitem id='other' type='any' toschema='true'>" + std::string(kPlace) +
                       "</messageitem>");
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.sent(), "<m:a questionId=\"x' or @type='any\">v</m:a>");
}

TEST(ProcessProtocolField, ReportsAFieldThatIsNoElement) {
  FieldStory story("<!-- prtobjct -->", sentEntry());
  EXPECT_TRUE(FailedWithNumber(story.process(), kXmlFailure, "ProcessProtocolField"));
}

TEST(ProcessProtocolField, ReportsMissingDocuments) {
  FieldStory noMapperDocument(field("q", "v"), "");
  noMapperDocument.objObjectMapper = {};
  EXPECT_TRUE(FailedWithRuntimeError(noMapperDocument.process(), kObjectNotSet,
                                     "ProcessProtocolField",
                                     "Object variable or With block variable not set"));

  FieldStory noMessage(field("q", "v"), sentEntry());
  noMessage.objSendXML = {};
  EXPECT_TRUE(FailedWithRuntimeError(noMessage.process(), kObjectNotSet, "buildXPath",
                                     "Object variable or With block variable not set"));
}

TEST(ProcessProtocolField, FindsNoEntryInAnEmptyMapper) {
  FieldStory story(field("q", "v"), "");
  story.objObjectMapper = Document::create();
  EXPECT_TRUE(FailedWith(story.process(), SVC_RET_XML_CREATION_NOMAPPERFOROBJECT, noMapper("q"),
                         "An error occurred while processing the protocol fields"));
}

TEST(ProcessProtocolField, CarriesAValueOfAMegabyte) {
  const std::string strValue(1 << 20, 'v');
  FieldStory story(field("q", strValue), sentEntry());
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.objSendXML.selectSingleNode("/r/m:a").text(), strValue);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
