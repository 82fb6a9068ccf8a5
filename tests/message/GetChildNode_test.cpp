#include "message/GetChildNode.h"

#include <gmock/gmock.h>

#include "SchemaTypes.h"
#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

constexpr const char* kUserMessage = "An error occurred building the child node";
constexpr const char* kNothing = "Object variable or With block variable not set";

/// The five lines of an address of three, for slots 1 to 5.
const AddressLines kFiveLines = {"A", "B", "C", "", ""};

/// One call for the object `Q1` of a form, with label L and value V, an action `t` and a type `t`.
struct Scene {
  explicit Scene(std::string_view strType, std::string_view strParameters = "",
                 const DocumentSettings& settings = {})
      : objSchemaTypeMapper(
            schemaTypes("<schematype id='t'>" + std::string(strType) + "</schematype>", settings)),
        objAction(parsed("<action id='T'>" + std::string(strParameters) + "</action>")
                      .documentElement()) {}

  Acknowledge get() {
    return GetChildNode(session, prtobjct, objSchemaTypeMapper, objAction, "L", strValue,
                        objChildNode, arrValues, std::nullopt, std::nullopt, std::nullopt,
                        blnMultiValue);
  }

  Acknowledge getLines(const AddressLines& lines) {
    arrValues = lines;
    blnMultiValue = true;
    return get();
  }

  /// The filled type without the element `schematype` itself.
  std::string filled() const {
    if (!objChildNode) return "Nothing";
    std::string strXml;
    const auto colNodes = objChildNode.childNodes();  // outlives the loop over it
    for (const Node& objNode : *colNodes) strXml += objNode.xml();
    return strXml;
  }

  TestHost host;
  Session session = withNamespaces(host);
  Document objParkXML = parsed(
      "<prtobjcts><prtobjct id='Q1' value='own'/>"
      "<prtobjct id='p2' value=' other '/><prtobjct id='none'/>"
      "<prtobjct id='d' type='date' value='5/3/2012'/><prtobjct id='D' type='Date' "
      "value='5/3/2012'/>"
      "<prtobjct id='t' type='time' value='5/3/2012 10:11'/>"
      "<prtobjct id='T' type='Time' value='5/3/2012'/>"
      "<prtobjct id='nodate' type='date' value='soon'/></prtobjcts>");
  Node prtobjct = objParkXML.documentElement().childNodes()->item(0);
  Document objSchemaTypeMapper;
  Node objAction;
  std::string strValue = "V";
  Node objChildNode;
  std::optional<AddressLines> arrValues;
  bool blnMultiValue = false;
};

// --- Single values ---

TEST(GetChildNode, PutsValuesInThePlaceOfTheirPlaceholders) {
  const struct {
    const char *says, *parameter, *after;
  } cases[] = {
      {"the value", "<parameter id='x' formvalue='true'/>", "<a questionId=\"Q1\">V</a>"},
      {"the label", "<parameter id='x' formlabel='true'/>", "<a questionId=\"Q1\">L</a>"},
      {"value before label", "<parameter id='x' formlabel='true' formvalue='true'/>",
       "<a questionId=\"Q1\">V</a>"},
      {"a label that says no is none", "<parameter id='x' formlabel='no'>c</parameter>",
       "<a questionId=\"Q1\">c</a>"},
      {"nor one in capitals", "<parameter id='x' formlabel='True'>c</parameter>",
       "<a questionId=\"Q1\">c</a>"},
      {"nor with blanks", "<parameter id='x' formvalue=' true '>c</parameter>",
       "<a questionId=\"Q1\">c</a>"},
      {"a value in capitals leaves the label",
       "<parameter id='x' formvalue='TRUE' formlabel='true'/>", "<a questionId=\"Q1\">L</a>"},
      {"a constant", "<parameter id='x'> con<b>st</b>ant </parameter>",
       "<a questionId=\"Q1\"> constant </a>"},
      {"an empty constant", "<parameter id='x'/>", "<a questionId=\"Q1\"></a>"},
      {"blanks are no message item", "<parameter id='x' messageitem='  '>c</parameter>",
       "<a questionId=\"Q1\">c</a>"},
      {"value before message item", "<parameter id='x' formvalue='true' messageitem='p2'/>",
       "<a questionId=\"Q1\">V</a>"},
      {"label before message item", "<parameter id='x' formlabel='true' messageitem='p2'/>",
       "<a questionId=\"Q1\">L</a>"},
      {"a message item, untrimmed and with its own mark",
       "<parameter id='x' messageitem='p2'>c</parameter>", "<a questionId=\"p2\"> other </a>"},
      {"a message item without a value", "<parameter id='x' messageitem='none'/>",
       "<a questionId=\"none\"></a>"},
      {"a date", "<parameter id='x' messageitem='d'/>", "<a questionId=\"d\">2012-03-05</a>"},
      {"a time", "<parameter id='x' messageitem='t'/>",
       "<a questionId=\"t\">2012-03-05T00:00:00</a>"},
      {"no date in capitals", "<parameter id='x' messageitem='D'/>",
       "<a questionId=\"D\">5/3/2012</a>"},
      {"no time in capitals", "<parameter id='x' messageitem='T'/>",
       "<a questionId=\"T\">5/3/2012</a>"},
      {"a date that is none", "<parameter id='x' messageitem='nodate'/>",
       "<a questionId=\"nodate\">soon</a>"},
      {"a message item that is not there only takes the placeholder away",
       "<parameter id='x' messageitem='gone'>c</parameter>", "<a questionId=\"Q1\"/>"},
      {"a message item is not trimmed", "<parameter id='x' messageitem=' p2 '/>",
       "<a questionId=\"Q1\"/>"},
      {"an item is not read", "<parameter id='x' item='p2'>c</parameter>",
       "<a questionId=\"Q1\">c</a>"},
      {"the first of two parameters",
       "<parameter id='x'>1</parameter><parameter id='x'>2</parameter>",
       "<a questionId=\"Q1\">1</a>"},
      {"at any depth of the action", "<b><parameter id='x'>1</parameter></b>",
       "<a questionId=\"Q1\">1</a>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene("<a><value id='X'/></a>", c.parameter);
    EXPECT_TRUE(Succeeded(scene.get()));
    EXPECT_EQ(scene.filled(), c.after);
  }
}

TEST(GetChildNode, LeavesAPlaceholderWithoutAParameter) {
  const struct {
    const char *says, *type, *parameters, *after;
  } cases[] = {
      {"no parameters at all", "<a><value id='x'/></a>", "", "<a><value id=\"x\"/></a>"},
      {"none of its id", "<a><value id='x'>t</value></a>", "<parameter id='y'>c</parameter>",
       "<a><value id=\"x\">t</value></a>"},
      {"a parameter in capitals is never found", "<a><value id='X'/></a>",
       "<parameter id='X'>c</parameter>", "<a><value id=\"X\"/></a>"},
      {"no id", "<a><value/></a>", "<parameter>c</parameter><parameter id=''>d</parameter>",
       "<a><value/></a>"},
      {"an empty id", "<a><value id=''/></a>", "<parameter id=''>c</parameter>",
       "<a><value id=\"\"/></a>"},
      {"while others are filled", "<a><value id='x'/></a><b><value id='y'/></b>",
       "<parameter id='y'>c</parameter>", "<a><value id=\"x\"/></a><b questionId=\"Q1\">c</b>"},
      {"a type without placeholders is what it was", "<a k='v'>t</a><!--c-->",
       "<parameter id='x'>c</parameter>", "<a k=\"v\">t</a><!--c-->"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(c.type, c.parameters);
    EXPECT_TRUE(Succeeded(scene.get()));
    EXPECT_EQ(scene.filled(), c.after);
  }
}

TEST(GetChildNode, ReplacesAllThatStoodBesideAPlaceholder) {
  Scene scene("<a k='v'>before<b/><value id='x'/>after</a>", "<parameter id='x'>c</parameter>");
  EXPECT_TRUE(Succeeded(scene.get()));
  EXPECT_EQ(scene.filled(), "<a k=\"v\" questionId=\"Q1\">c</a>");

  // Without the object that it names, only the placeholder goes.
  Scene gone("<a>before<b/><value id='x'/>after</a>", "<parameter id='x' messageitem='gone'/>");
  EXPECT_TRUE(Succeeded(gone.get()));
  EXPECT_EQ(gone.filled(), "<a questionId=\"Q1\">before<b/>after</a>");
}

TEST(GetChildNode, MarksUpwardsOnlyWhenEveryParameterIsFreeOfAMessageItem) {
  const struct {
    const char *says, *parameters, *after;
  } cases[] = {
      {"all say that they have none",
       "<parameter id='x' messageitem=''>1</parameter><parameter id='y' messageitem=''>2"
       "</parameter>",
       "<schematype id=\"t\" questionId=\"Q1\"><a questionId=\"Q1\"><b questionId=\"Q1\">1</b>"
       "<c questionId=\"Q1\">2</c></a><d/></schematype>"},
      {"one does not say so",
       "<parameter id='x' messageitem=''>1</parameter><parameter id='y'>2</parameter>",
       "<schematype id=\"t\"><a><b questionId=\"Q1\">1</b><c questionId=\"Q1\">2</c></a><d/>"
       "</schematype>"},
      {"one that no placeholder uses does not say so",
       "<parameter id='x' messageitem=''>1</parameter><parameter id='unused'/>",
       "<schematype id=\"t\"><a><b questionId=\"Q1\">1</b><c><value id=\"y\"/></c></a><d/>"
       "</schematype>"},
      {"one has a blank one, which is not empty", "<parameter id='x' messageitem=' '>1</parameter>",
       "<schematype id=\"t\"><a><b questionId=\"Q1\">1</b><c><value id=\"y\"/></c></a><d/>"
       "</schematype>"},
      {"one has one",
       "<parameter id='x' messageitem=''>1</parameter><parameter id='y' messageitem='p2'/>",
       "<schematype id=\"t\"><a><b questionId=\"Q1\">1</b><c questionId=\"p2\"> other </c></a><d/>"
       "</schematype>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene("<a><b><value id='x'/></b><c><value id='y'/></c></a><d/>", c.parameters);
    EXPECT_TRUE(Succeeded(scene.get()));
    ASSERT_TRUE(scene.objChildNode);
    EXPECT_EQ(scene.objChildNode.xml(), c.after);
  }
}

TEST(GetChildNode, FillsThePlaceholdersOfOneNameAlike) {
  Scene scene("<a><value id='x'/></a><b><c><value id='X'/></c></b>",
              "<parameter id='x'>c</parameter>");
  EXPECT_TRUE(Succeeded(scene.get()));
  EXPECT_EQ(scene.filled(), "<a questionId=\"Q1\">c</a><b><c questionId=\"Q1\">c</c></b>");
}

TEST(GetChildNode, FillsACopy) {
  Scene scene("<a><value id='x'/></a>", "<parameter id='x' formvalue='true'/>");
  const std::string strTypes = scene.objSchemaTypeMapper.xml();
  const std::string strAction = scene.objAction.xml();
  const std::string strForm = scene.objParkXML.xml();
  EXPECT_TRUE(Succeeded(scene.get()));
  EXPECT_FALSE(scene.objChildNode.parentNode());
  EXPECT_EQ(scene.objSchemaTypeMapper.xml(), strTypes);
  EXPECT_EQ(scene.objAction.xml(), strAction);
  EXPECT_EQ(scene.objParkXML.xml(), strForm);
}

TEST(GetChildNode, TracesNothing) {
  Scene scene("<a><value id='x'/></a>", "<parameter id='x' messageitem='d'/>");
  EXPECT_TRUE(Succeeded(scene.get()));
  EXPECT_THAT(scene.host.traceLines(), IsEmpty());
}

TEST(GetChildNode, ReadsSlotsAsPlainPlaceholdersWithoutMultipleValues) {
  Scene scene("<a><value id='line1'/></a><b><value id='line9'/></b>",
              "<parameter id='line1' formvalue='true'/>");
  scene.arrValues = kFiveLines;
  EXPECT_TRUE(Succeeded(scene.get()));
  EXPECT_EQ(scene.filled(), "<a questionId=\"Q1\">V</a><b><value id=\"line9\"/></b>");
}

// --- Multiple values ---

TEST(GetChildNode, PutsLinesIntoSlots) {
  const struct {
    const char *says, *type;
    AddressLines lines;
    const char* after;
  } cases[] = {
      {"three lines into five slots: the parents of the last two go",
       "<l1><value id='l1'/></l1><l2><value id='l2'/></l2><l3><value id='l3'/></l3>"
       "<l4><value id='l4'/></l4><l5><value id='l5'/></l5><z/>",
       kFiveLines,
       "<l1 questionId=\"Q1\">A</l1><l2 questionId=\"Q1\">B</l2><l3 questionId=\"Q1\">C</l3><z/>"},
      {"empty lines first",
       "<l1><value id='l1'/></l1><l2><value id='l2'/></l2><l3><value id='l3'/></l3>"
       "<l4><value id='l4'/></l4>",
       {"", "", "A", "B"},
       "<l3 questionId=\"Q1\">A</l3><l4 questionId=\"Q1\">B</l4>"},
      {"the digit counts, not the place", "<a><value id='x3'/></a><b><value id='y1'/></b>",
       kFiveLines, "<a questionId=\"Q1\">C</a><b questionId=\"Q1\">A</b>"},
      {"only the last digit counts", "<a><value id='x12'/></a>", kFiveLines,
       "<a questionId=\"Q1\">B</a>"},
      {"the id may be the digit", "<a><value id='2'/></a>", kFiveLines,
       "<a questionId=\"Q1\">B</a>"},
      {"two slots of one line", "<a><value id='x1'/></a><b><value id='y1'/></b>", kFiveLines,
       "<a questionId=\"Q1\">A</a><b questionId=\"Q1\">A</b>"},
      {"a line of blanks is not empty",
       "<a><value id='x1'/></a>",
       {" "},
       "<a questionId=\"Q1\"> </a>"},
      {"the mark goes on the parent alone", "<a><b><value id='x1'/></b></a>", kFiveLines,
       "<a><b questionId=\"Q1\">A</b></a>"},
      {"an empty line leaves the parent's parent", "<a><b><value id='x4'/></b></a>", kFiveLines,
       "<a/>"},
      {"what stands beside the placeholder goes", "<a><b/>t<value id='x1'/></a>", kFiveLines,
       "<a questionId=\"Q1\">A</a>"},
      {"a list of nine",
       "<a><value id='x9'/></a>",
       {"", "", "", "", "", "", "", "", "I"},
       "<a questionId=\"Q1\">I</a>"},
      {"no slots need no lines", "<a/>", {}, "<a/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(c.type);
    EXPECT_TRUE(Succeeded(scene.getLines(c.lines)));
    EXPECT_EQ(scene.filled(), c.after);
  }
}

TEST(GetChildNode, FillsOtherPlaceholdersBesideTheSlots) {
  Scene scene(
      "<a><value id='line1'/></a><b><value id='whole'/></b><c><value id='1st'/></c>"
      "<d><value/></d>",
      "<parameter id='whole' formvalue='true'/><parameter id='line1'>not read</parameter>");
  EXPECT_TRUE(Succeeded(scene.getLines(kFiveLines)));
  EXPECT_EQ(scene.filled(),
            "<a questionId=\"Q1\">A</a><b questionId=\"Q1\">V</b><c><value id=\"1st\"/></c>"
            "<d><value/></d>");
}

TEST(GetChildNode, RaisesForASlotOutsideTheLines) {
  const struct {
    const char *says, *type;
    AddressLines lines;
  } cases[] = {
      {"slot 0", "<a><value id='x0'/></a>", kFiveLines},
      {"slot 0 after another digit", "<a><value id='x10'/></a>", kFiveLines},
      {"a slot beyond the list", "<a><value id='x6'/></a>", kFiveLines},
      {"a fifth of four", "<a><value id='x5'/></a>", {"A", "B", "C", "D"}},
      {"the first of none", "<a><value id='x1'/></a>", {}},
      {"after a slot that was filled", "<a><value id='x1'/></a><b><value id='x9'/></b>",
       kFiveLines},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(c.type);
    scene.objChildNode = scene.prtobjct;
    EXPECT_TRUE(FailedWithRuntimeError(scene.getLines(c.lines), kSubscriptOutOfRange,
                                       "GetChildNode", "Subscript out of range"));
    EXPECT_FALSE(scene.objChildNode);
  }
}

TEST(GetChildNode, RaisesWhereAnEmptyLineWouldRemoveTheTypeItself) {
  Scene scene("<value id='x4'/>");
  EXPECT_TRUE(
      FailedWithRuntimeError(scene.getLines(kFiveLines), kObjectNotSet, "GetChildNode", kNothing));
}

TEST(GetChildNode, ReadsTheFirstListOnly) {
  Scene scene("<a><value id='x1'/></a>");
  const AddressLines others = {"no"};
  EXPECT_TRUE(Succeeded(GetChildNode(scene.session, scene.prtobjct, scene.objSchemaTypeMapper,
                                     scene.objAction, "L", "V", scene.objChildNode, kFiveLines,
                                     others, others, others, true)));
  EXPECT_EQ(scene.filled(), "<a questionId=\"Q1\">A</a>");
}

// --- Failures ---

TEST(GetChildNode, NeedsTheLinesOfMultipleValues) {
  Scene scene("<a/>");
  scene.blnMultiValue = true;
  scene.objChildNode = scene.prtobjct;
  scene.objAction.setAttribute("id", "");  // asked for later
  EXPECT_TRUE(FailedWith(scene.get(), SVC_RET_XML_CREATION_MULTI_VALUE_MISSING,
                         "An error occurred because the multi value array is missing",
                         kUserMessage));
  EXPECT_FALSE(scene.objChildNode);
}

TEST(GetChildNode, NeedsAnActionWithAnId) {
  for (const char* strAction : {"<action/>", "<action id=''/>"}) {
    SCOPED_TRACE(strAction);
    Scene scene("<a/>");
    scene.objAction = parsed(strAction).documentElement();
    scene.objSchemaTypeMapper = Document();  // asked for later
    scene.objChildNode = scene.prtobjct;
    EXPECT_TRUE(FailedWith(scene.get(), SVC_RET_XML_CREATION_ACTION_MISSING,
                           "An error occurred because the action is missing", kUserMessage));
    EXPECT_FALSE(scene.objChildNode);
  }
}

TEST(GetChildNode, FailsAsTheLookupOfTheTypeDoes) {
  for (const char* strId : {"none", " "}) {
    Scene scene("<a/>");
    scene.objAction.setAttribute("id", strId);
    EXPECT_TRUE(FailedWith(scene.get(), SVC_RET_XML_CREATION_CMPLX_TYPE_MISSING,
                           "The complex type is missing",
                           "An error occurred getting the complex type from the action"));
    EXPECT_FALSE(scene.objChildNode);
  }
  Scene scene("<a/>");
  scene.objAction.setAttribute("id", "it's");
  EXPECT_TRUE(FailedWithNumber(scene.get(), kXmlFailure, "GetComplexTypeFromAction"));
}

TEST(GetChildNode, FailsWithoutAListOfPlaceholders) {
  FaultAt fault(DomOperation::getElementsByTagName);
  Scene scene("<a><value id='x'/></a>", "", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(scene.get(), SVC_RET_XML_CREATION_VALUE_NODES_MISSING,
                         "An error occurred retrieving the value nodes", kUserMessage));
  EXPECT_TRUE(fault.struck());
  EXPECT_FALSE(scene.objChildNode);
}

TEST(GetChildNode, FailsForAPlaceholderThatAnEarlierOneReplaced) {
  for (const char* strType : {"<a><value id='x'/><value id='y'/></a>", "<value id='x'/><value/>"}) {
    SCOPED_TRACE(strType);
    Scene scene(strType, "<parameter id='x'>1</parameter><parameter id='y'>2</parameter>");
    scene.objChildNode = scene.prtobjct;
    EXPECT_TRUE(FailedWith(scene.get(), SVC_RET_XML_CREATION_SCHEMA_NODE_MISSING,
                           "An error occurred selecting the schema node", kUserMessage));
    EXPECT_FALSE(scene.objChildNode);
  }
  Scene slots("<a><value id='x1'/><value id='x9'/></a>");
  EXPECT_TRUE(FailedWith(slots.getLines(kFiveLines), SVC_RET_XML_CREATION_SCHEMA_NODE_MISSING,
                         "An error occurred selecting the schema node", kUserMessage));
}

TEST(GetChildNode, MarksWithNoIdWithoutAnObject) {
  Scene scene("<a><value id='x'/></a>", "<parameter id='x' formvalue='true'/>");
  scene.prtobjct = Node();
  EXPECT_TRUE(Succeeded(scene.get()));
  EXPECT_EQ(scene.filled(), "<a questionId=\"\">V</a>");
}

TEST(GetChildNode, ReportsRunTimeErrors) {
  Scene action("<a/>");
  action.objAction = Node();
  EXPECT_TRUE(FailedWithRuntimeError(action.get(), kObjectNotSet, "GetChildNode", kNothing));

  Scene form("<a><value id='x'/></a>", "<parameter id='x' messageitem='p2'/>");
  form.prtobjct = form.prtobjct.cloneNode(true);  // has no parent
  EXPECT_TRUE(FailedWithRuntimeError(form.get(), kObjectNotSet, "GetChildNode", kNothing));

  Scene placeholder("<a><value id=\"it's\"/></a>", "<parameter id='x'/>");
  EXPECT_TRUE(FailedWithNumber(placeholder.get(), kXmlFailure, "GetChildNode"));
  EXPECT_FALSE(placeholder.objChildNode);

  Scene item("<a><value id='x'/></a>", "<parameter id='x' messageitem=\"it's\"/>");
  EXPECT_TRUE(FailedWithNumber(item.get(), kXmlFailure, "GetChildNode"));

  Scene object("<a/>");
  object.prtobjct = parsed("<a><!--c--></a>").selectSingleNode("/a/comment()");
  EXPECT_TRUE(FailedWithNumber(object.get(), kXmlFailure, "GetChildNode"));

  for (const char* strValue : {"\x01", "\xFF"}) {
    Scene text("<a><value id='x'/></a>", "<parameter id='x' formvalue='true'/>");
    text.strValue = strValue;
    EXPECT_TRUE(FailedWithRuntimeError(text.get(), kXmlFailure, "GetChildNode",
                                       "An invalid character was found in text content."));
  }
}

TEST(GetChildNode, TakesValuesOfAnyKindAndSize) {
  for (const std::string& strValue :
       {std::string("<a>&\"']]>"), std::string("a\r\nb"), std::string(5'000'000, 'x')}) {
    Scene scene("<a><value id='x'/></a>", "<parameter id='x' formvalue='true'/>");
    scene.strValue = strValue;
    EXPECT_TRUE(Succeeded(scene.get()));
    EXPECT_TRUE(scene.objChildNode.selectSingleNode("a").text() == strValue);
  }
}

// --- SetQuestionIdUpwards ---

TEST(SetQuestionIdUpwards, MarksTheNodeAloneOrAllAboveIt) {
  const Document objXml = parsed("<t><a questionId='old'><b><c/></b></a></t>");
  const Node objTop = objXml.documentElement().cloneNode(true);
  SetQuestionIdUpwards(objTop.selectSingleNode("a/b"), "q", objXml);
  EXPECT_EQ(objTop.xml(), "<t><a questionId=\"old\"><b questionId=\"q\"><c/></b></a></t>");
  SetQuestionIdUpwards(objTop.selectSingleNode("a/b"), "p", Node());
  EXPECT_EQ(objTop.xml(),
            "<t questionId=\"p\"><a questionId=\"p\"><b questionId=\"p\"><c/></b></a></t>");
}

TEST(SetQuestionIdUpwards, EndsAtTheRootOfADocument) {
  const Document objXml = parsed("<t><a/></t>");
  EXPECT_FALSE(
      raisedBy([&] { SetQuestionIdUpwards(objXml.selectSingleNode("/t/a"), "q", Node()); }));
  EXPECT_EQ(objXml.documentElement().xml(), "<t questionId=\"q\"><a questionId=\"q\"/></t>");
}

TEST(SetQuestionIdUpwards, DoesNothingWithoutANode) {
  const Document objXml = parsed("<t/>");
  EXPECT_FALSE(raisedBy([] { SetQuestionIdUpwards(Node(), "q", Node()); }));
  EXPECT_FALSE(raisedBy([&] { SetQuestionIdUpwards(Node(), "q", objXml); }));
}

TEST(SetQuestionIdUpwards, PassesRunTimeErrorsOn) {
  const Document objXml = parsed("<t><!--c--><a/></t>");
  const auto comment =
      raisedBy([&] { SetQuestionIdUpwards(objXml.selectSingleNode("/t/comment()"), "q", objXml); });
  ASSERT_TRUE(comment);
  EXPECT_EQ(comment->number(), kXmlFailure);
  const auto text =
      raisedBy([&] { SetQuestionIdUpwards(objXml.selectSingleNode("/t/a"), "\x01", Node()); });
  ASSERT_TRUE(text);
  EXPECT_EQ(text->number(), kXmlFailure);
  EXPECT_EQ(text->description(), "An invalid character was found in text content.");
  EXPECT_EQ(objXml.documentElement().xml(), "<t><!--c--><a/></t>");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
