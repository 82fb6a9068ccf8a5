#include "message/AddInfoToNode.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

constexpr const char* kUserMessage = "An error occurred adding information to the node";
constexpr const char* kValueUserMessage =
    "An error occurred retrieving the value from the parameter object";
constexpr const char* kNothing = "Object variable or With block variable not set";

constexpr const char* kLabelAndValue = "<parameter formlabel='1'/><parameter formvalue='1'/>";

/// One call for the object `Q1` of a form with label L and value V, into `/r` under `m:a`.
struct Scene {
  explicit Scene(std::string_view strParameters, std::string_view strAttributes = "")
      : objAction(parsed("<action id='addinfotonode' " + std::string(strAttributes) + ">" +
                         std::string(strParameters) + "</action>")
                      .documentElement()) {}

  Acknowledge add() {
    return AddInfoToNode(session, prtobjct, objSendXML, strParentXPath, objParkXML, strNode,
                         strFieldLabel, strValue, objAction);
  }

  TestHost host;
  Session session = withNamespaces(host);
  Document objParkXML = parsed(
      "<prtobjcts><prtobjct id='Q1' value='own'/><prtobjct id='p2' value='other'/>"
      "<prtobjct id='none'/><prtobjct id='lines' value='a&#13;&#10;b'/></prtobjcts>");
  Node prtobjct = objParkXML.documentElement().childNodes()->item(0);
  Document objSendXML = message("");
  std::string strParentXPath = "/r";
  std::string strNode = "m:a";
  std::string strFieldLabel = "L";
  std::string strValue = "V";
  Node objAction;
};

TEST(AddInfoToNode, JoinsTwoValues) {
  const struct {
    const char *says, *separator, *parameters, *text;
  } cases[] = {
      {"label and value", "separator='-'", kLabelAndValue, "L-V"},
      {"in the order of the parameters", "separator='-'",
       "<parameter formvalue='1'/><parameter formlabel='1'/>", "V-L"},
      {"the same one twice", "separator='-'",
       "<parameter formvalue='1'/><parameter formvalue='1'/>", "V-V"},
      {"another object's value", "separator='-'",
       "<parameter item='p2'/><parameter formvalue='1'/>", "other-V"},
      {"without a separator there is one blank", "", kLabelAndValue, "L V"},
      {"with an empty one too", "separator=''", kLabelAndValue, "L V"},
      {"a blank separator of any length is one blank", "separator='   '", kLabelAndValue, "L V"},
      {"blanks around a separator stay", "separator=' - '", kLabelAndValue, "L - V"},
      {"a tab is no blank", "separator='&#9;'", kLabelAndValue, "L\tV"},
      {"an empty first value gets no separator", "separator='-'",
       "<parameter item='none'/><parameter formvalue='1'/>", "V"},
      {"an empty second value gets one nevertheless", "separator='-'",
       "<parameter formvalue='1'/><parameter item='none'/>", "V-"},
      {"two empty values give nothing, for nothing stands before the second", "separator='-'",
       "<parameter/><parameter item='none'/>", ""},
      {"only child elements of that name count", "separator='-'",
       "<!--c--><other/><parameter formvalue='1'><parameter/></parameter>t"
       "<parameter formlabel='1'/>",
       "V-L"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(c.parameters, c.separator);
    EXPECT_TRUE(Succeeded(scene.add()));
    const Node objNode = scene.objSendXML.selectSingleNode("/r/m:a");
    ASSERT_TRUE(objNode);
    EXPECT_EQ(objNode.text(), c.text);
    EXPECT_EQ(objNode.getAttribute("questionId"), "Q1");
  }
}

TEST(AddInfoToNode, TakesLineEndsOutOfLabelAndValueOnly) {
  Scene scene(kLabelAndValue, "separator='|'");
  scene.strFieldLabel = "a\r\nb\rc\nd";
  scene.strValue = "\r\n\r\ne\n\rf\r\n";
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.objSendXML.selectSingleNode("/r/m:a").text(), "ab\rc\nd|e\n\rf");

  Scene item("<parameter item='lines'/><parameter formvalue='1'/>", "separator='|'");
  EXPECT_TRUE(Succeeded(item.add()));
  EXPECT_EQ(item.objSendXML.selectSingleNode("/r/m:a").text(), "a\r\nb|V");
}

TEST(AddInfoToNode, MakesANewElementEachTime) {
  Scene scene(kLabelAndValue);
  scene.objSendXML = message("<m:a>old</m:a><m:z/>");
  EXPECT_TRUE(Succeeded(scene.add()));
  scene.strNode = "m:z/n:b";
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(content(scene.objSendXML),
            "<m:a>old</m:a><m:z><n:b questionId=\"Q1\">L V</n:b></m:z>"
            "<m:a questionId=\"Q1\">L V</m:a>");
}

TEST(AddInfoToNode, MarksWithTheIdAsWritten) {
  Scene scene(kLabelAndValue);
  scene.prtobjct.setAttribute("id", " QuEst ");
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.objSendXML.selectSingleNode("/r/m:a").getAttribute("questionId"), " QuEst ");
}

TEST(AddInfoToNode, PassesOverAFailedNamespaceLookup) {
  // deliberate: the path's own result does not count when it gave an element.
  Scene scene(kLabelAndValue);
  scene.strNode = "unknown";
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(content(scene.objSendXML), "<unknown questionId=\"Q1\">L V</unknown>");
}

TEST(AddInfoToNode, TracesNothingItself) {
  Scene scene(kLabelAndValue);
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_THAT(linesOf(scene.host, "AddInfoToNode"), IsEmpty());
  EXPECT_THAT(linesOf(scene.host, "GetValueFromParameter"), IsEmpty());
  EXPECT_EQ(linesOf(scene.host, "buildXPath").size(), scene.host.traceLines().size());
}

// --- Failures ---

TEST(AddInfoToNode, NeedsAnObject) {
  Scene scene(kLabelAndValue);
  scene.prtobjct = Node();
  scene.objAction = Node();  // asked for later
  EXPECT_TRUE(FailedWith(scene.add(), SVC_RET_XML_CREATION_PRT_FLD_MISSING,
                         "The protocol field object is not an object", "default message"));
  EXPECT_EQ(content(scene.objSendXML), "");
}

TEST(AddInfoToNode, NeedsAnIdentifier) {
  for (const char* strObject : {"<prtobjct/>", "<prtobjct id=''/>", "<prtobjct id='  '/>"}) {
    SCOPED_TRACE(strObject);
    Scene scene(kLabelAndValue);
    scene.prtobjct = parsed(strObject).documentElement();
    scene.objAction = Node();  // asked for later
    EXPECT_TRUE(FailedWith(scene.add(), SVC_RET_XML_CREATION_QUESTION_ID_MISSING,
                           "The protocol field does not have an identifier. Context=AddInfoToNode",
                           "default message"));
    EXPECT_EQ(content(scene.objSendXML), "");
  }
}

TEST(AddInfoToNode, EndsWithARunTimeErrorWithoutAnAction) {
  // deliberate: the separator is read before the action is asked for.
  Scene scene(kLabelAndValue);
  scene.objAction = Node();
  EXPECT_TRUE(FailedWithRuntimeError(scene.add(), kObjectNotSet, "AddInfoToNode", kNothing));
  EXPECT_EQ(content(scene.objSendXML), "");
}

TEST(AddInfoToNode, FailsWithoutAParameterList) {
  FaultAt fault(DomOperation::select);
  Scene scene("");
  scene.objAction =
      parsed("<action>" + std::string(kLabelAndValue) + "</action>", {.faults = &fault})
          .documentElement();
  fault.arm();
  EXPECT_TRUE(FailedWith(scene.add(), SVC_RET_XML_CREATION_PRM_LST_MISSING,
                         "The parameter list is missing", kUserMessage));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(content(scene.objSendXML), "");
}

TEST(AddInfoToNode, NeedsExactlyTwoParameters) {
  for (const char* strParameters :
       {"", "<parameter formvalue='1'/>", "<other><parameter/><parameter/></other>",
        "<parameter formvalue='1'/><parameter formvalue='1'/><parameter formvalue='1'/>"}) {
    SCOPED_TRACE(strParameters);
    Scene scene(strParameters);
    EXPECT_TRUE(FailedWith(scene.add(), SVC_RET_XML_CREATION_PRM_LST_LNGTH_INCORRECT,
                           "The length of the parameter list is invalid", kUserMessage));
    EXPECT_EQ(content(scene.objSendXML), "");
  }
}

TEST(AddInfoToNode, FailsAsItsParametersDo) {
  for (const char* strParameters : {"<parameter item='gone'/><parameter formvalue='1'/>",
                                    "<parameter formvalue='1'/><parameter item='gone'/>"}) {
    SCOPED_TRACE(strParameters);
    Scene scene(strParameters);
    EXPECT_TRUE(FailedWith(scene.add(), SVC_RET_XML_CREATION_PRT_FLD_MISSING,
                           "An error occurred because the protocol field object is missing",
                           kValueUserMessage));
    EXPECT_EQ(content(scene.objSendXML), "");
  }
}

TEST(AddInfoToNode, FailsWhereThePathGivesNoElement) {
  const struct {
    const char *says, *parent, *node, *left;
  } cases[] = {
      {"the parent is missing", "/r/m:gone", "m:a", ""},
      {"the path is empty", "/r", "", ""},
      {"the parent is no XPath", "/r[", "m:a", ""},
      {"the path ends in the middle", "/r", "m:a/", "<m:a/>"},
      {"the parent has an unknown prefix", "/u:r", "m:a", ""},
      {"the last step is no name", "/r", "m:a/m:1", "<m:a/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(kLabelAndValue);
    scene.strParentXPath = c.parent;
    scene.strNode = c.node;
    EXPECT_TRUE(FailedWith(scene.add(), SVC_RET_XML_CREATION_CREATE_NODE_FAILED,
                           "An error occurred creating the node for the information",
                           kUserMessage));
    EXPECT_EQ(content(scene.objSendXML), c.left);
  }
}

TEST(AddInfoToNode, ReportsWhatTheElementRefuses) {
  for (const char* strValue : {"\x01", "\xFF", "\xC3"}) {
    Scene scene(kLabelAndValue);
    scene.strValue = strValue;
    EXPECT_TRUE(FailedWithRuntimeError(scene.add(), kXmlFailure, "AddInfoToNode",
                                       "An invalid character was found in text content."));
    EXPECT_EQ(content(scene.objSendXML), "<m:a/>") << "made, but neither filled nor marked";
  }
}

TEST(AddInfoToNode, NeedsElements) {
  const Document objOther = parsed("<a><!--c--></a>");
  const Node objComment = objOther.documentElement().childNodes()->item(0);
  Scene object(kLabelAndValue);
  object.prtobjct = objComment;
  EXPECT_TRUE(FailedWithNumber(object.add(), kXmlFailure, "AddInfoToNode"));
  Scene action(kLabelAndValue);
  action.objAction = objComment;
  EXPECT_TRUE(FailedWithNumber(action.add(), kXmlFailure, "AddInfoToNode"));
}

TEST(AddInfoToNode, WritesAValueOfAnySize) {
  Scene scene(kLabelAndValue);
  scene.strValue = std::string(5'000'000, '&');
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.objSendXML.selectSingleNode("/r/m:a").text(), "L " + scene.strValue);
}

// --- GetValueFromParameter ---

Acknowledge valueOf(std::string_view strParameter, std::string& strResult) {
  const Scene scene("");
  return GetValueFromParameter(parsed(strParameter).documentElement(), scene.objParkXML, "L", "V",
                               strResult);
}

TEST(GetValueFromParameter, TakesTheLastSourceThatIsNotBlank) {
  const struct {
    const char *says, *parameter, *value;
  } cases[] = {
      {"none gives nothing", "<parameter/>", ""},
      {"its text is not read", "<parameter>text</parameter>", ""},
      {"the label", "<parameter formlabel='true'/>", "L"},
      {"a label that says no counts too", "<parameter formlabel='no'/>", "L"},
      {"the value", "<parameter formvalue='true'/>", "V"},
      {"a value that says false counts too", "<parameter formvalue='false'/>", "V"},
      {"another object", "<parameter item='p2'/>", "other"},
      {"the field's own object", "<parameter item='Q1'/>", "own"},
      {"an object without a value reads as empty", "<parameter item='none'/>", ""},
      {"value over label", "<parameter formvalue='1' formlabel='1'/>", "V"},
      {"item over value over label", "<parameter item='p2' formvalue='1' formlabel='1'/>", "other"},
      {"an empty item still wins", "<parameter item='none' formvalue='1'/>", ""},
      {"item over label", "<parameter formlabel='1' item='p2'/>", "other"},
      {"blanks are no item", "<parameter item='  ' formvalue='1'/>", "V"},
      {"blanks are no value", "<parameter formvalue='  ' formlabel='1'/>", "L"},
      {"blanks are no label", "<parameter formlabel='  '/>", ""},
      {"empty is none of them", "<parameter formlabel='' formvalue='' item=''/>", ""},
      {"a tab is not blank", "<parameter formlabel='&#9;'/>", "L"},
      {"a message item is not read", "<parameter messageitem='p2'/>", ""},
      {"a parameter by another name does as well", "<x formvalue='1'/>", "V"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::string strResult = "left over";
    EXPECT_TRUE(Succeeded(valueOf(c.parameter, strResult)));
    EXPECT_EQ(strResult, c.value);
  }
}

TEST(GetValueFromParameter, NeedsAParameter) {
  std::string strResult = "left over";
  EXPECT_TRUE(FailedWith(GetValueFromParameter(Node(), parsed("<a/>"), "L", "V", strResult),
                         SVC_RET_XML_CREATION_PRM_OBJ_MISSING,
                         "An error occurred because the parameter object is missing",
                         kValueUserMessage));
  EXPECT_EQ(strResult, "");
}

TEST(GetValueFromParameter, FailsWithoutTheObjectItNames) {
  const struct {
    const char *says, *parameter;
  } cases[] = {
      {"no such object", "<parameter item='gone'/>"},
      {"not even with another source", "<parameter item='gone' formvalue='1' formlabel='1'/>"},
      {"ids are compared as written", "<parameter item='q1'/>"},
      {"and not trimmed", "<parameter item=' p2 '/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::string strResult;
    EXPECT_TRUE(FailedWith(valueOf(c.parameter, strResult), SVC_RET_XML_CREATION_PRT_FLD_MISSING,
                           "An error occurred because the protocol field object is missing",
                           kValueUserMessage));
  }
}

TEST(GetValueFromParameter, LooksForTheObjectAtAnyDepth) {
  const Document objParkXML =
      parsed("<a><b><prtobjct id='x' value='first'/></b><prtobjct id='x' value='second'/></a>");
  std::string strResult;
  EXPECT_TRUE(Succeeded(GetValueFromParameter(parsed("<parameter item='x'/>").documentElement(),
                                              objParkXML, "L", "V", strResult)));
  EXPECT_EQ(strResult, "first");
}

TEST(GetValueFromParameter, ReportsRunTimeErrors) {
  std::string strResult;
  EXPECT_TRUE(FailedWithNumber(valueOf("<parameter item=\"it's\"/>", strResult), kXmlFailure,
                               "GetValueFromParameter"));
  EXPECT_TRUE(FailedWithRuntimeError(
      GetValueFromParameter(parsed("<parameter item='x'/>").documentElement(), Document(), "L", "V",
                            strResult),
      kObjectNotSet, "GetValueFromParameter", kNothing));
  const Document objOther = parsed("<a><!--c--></a>");
  EXPECT_TRUE(FailedWithNumber(GetValueFromParameter(objOther.selectSingleNode("/a/comment()"),
                                                     objOther, "L", "V", strResult),
                               kXmlFailure, "GetValueFromParameter"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
