#include "message/addData.h"

#include <gmock/gmock.h>

#include "message/buildXPath.h"
#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;

constexpr std::string_view kUserMessage = "An error occurred adding data to the message xml";

struct Scene {
  explicit Scene(std::string_view strContent) : objXml(message(strContent)) {}

  Acknowledge add(std::string_view strValue, std::string_view strPath,
                  std::string_view strQuestionId = "q") {
    return addData(session, objXml, strValue, strPath, strQuestionId);
  }

  TestHost host;
  Session session = withNamespaces(host);
  Document objXml;
};

TEST(addData, WritesTheValueAndTheQuestion) {
  const struct {
    const char *says, *before, *value, *after;
  } cases[] = {
      {"into an empty element", "<m:a/>", "v", "<m:a questionId=\"q\">v</m:a>"},
      {"in place of all content", "<m:a>x<m:b/><!--c--></m:a>", "v",
       "<m:a questionId=\"q\">v</m:a>"},
      {"in place of another question", "<m:a questionId='p' b='1'/>", "v",
       "<m:a questionId=\"q\" b=\"1\">v</m:a>"},
      {"an empty value still marks its element", "<m:a/>", "", "<m:a questionId=\"q\"></m:a>"},
      {"an empty value empties", "<m:a>x</m:a>", "", "<m:a questionId=\"q\"></m:a>"},
      {"blanks stay", "<m:a/>", "  v ", "<m:a questionId=\"q\">  v </m:a>"},
      {"markup is text", "<m:a/>", "<b>&amp;]]>", nullptr},
      {"line ends stay", "<m:a/>", "1\r\n2\r3\n", nullptr},
      {"characters beyond the basic plane", "<m:a/>", "\xF0\x9F\x98\x80", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(c.before);
    EXPECT_TRUE(Succeeded(scene.add(c.value, "/r/m:a")));
    const Node objElement = scene.objXml.selectSingleNode("/r/m:a");
    EXPECT_EQ(objElement.text(), c.value);
    EXPECT_EQ(objElement.getAttribute("questionId"), "q");
    if (c.after) {
      EXPECT_EQ(content(scene.objXml), c.after);
    }
  }
}

TEST(addData, WritesAValueOfAMegabyte) {
  Scene scene("<m:a/>");
  const std::string strValue(1 << 20, '<');
  EXPECT_TRUE(Succeeded(scene.add(strValue, "/r/m:a")));
  EXPECT_EQ(scene.objXml.selectSingleNode("/r/m:a").text(), strValue);
}

TEST(addData, WritesAnEmptyQuestionToo) {
  Scene scene("<m:a/>");
  EXPECT_TRUE(Succeeded(scene.add("v", "/r/m:a", "")));
  EXPECT_EQ(content(scene.objXml), "<m:a questionId=\"\">v</m:a>");
}

TEST(addData, WritesIntoTheFirstElementThoughASecondWasJustMade) {
  Scene scene("");
  Node objCurrentNode;
  EXPECT_TRUE(Succeeded(buildXPath(scene.session, "/r", "m:a", scene.objXml, objCurrentNode)));
  EXPECT_TRUE(Succeeded(scene.add("one", "/r/m:a", "q1")));
  EXPECT_TRUE(Succeeded(buildXPath(scene.session, "/r", "m:a", scene.objXml, objCurrentNode)));
  EXPECT_TRUE(Succeeded(scene.add("two", "/r/m:a", "q2")));
  EXPECT_EQ(content(scene.objXml), "<m:a questionId=\"q2\">two</m:a><m:a/>");
}

TEST(addData, SelectsFromTheNodeItIsGiven) {
  Scene scene("<m:p/><m:p><m:a/></m:p>");
  const Node objSecond = scene.objXml.selectSingleNode("/r/m:p[2]");
  EXPECT_TRUE(Succeeded(addData(scene.session, objSecond, "v", "m:a", "q")));
  EXPECT_EQ(content(scene.objXml), "<m:p/><m:p><m:a questionId=\"q\">v</m:a></m:p>");
}

TEST(addData, FailsWithoutTheNode) {
  Scene scene("<m:b/>");
  EXPECT_TRUE(FailedWith(scene.add("v", "/r/m:a"), SVC_RET_XML_CREATION_NODE_MISSING,
                         "Selecting the node failed", kUserMessage));
  EXPECT_EQ(content(scene.objXml), "<m:b/>");
  EXPECT_THAT(scene.host.traceLines(),
              ElementsAre("addData: Set objElement = objXmlNode.selectSingleNode(/r/m:a)",
                          "addData: objElement Is Nothing"));
}

TEST(addData, FailsWhenTheSelectionGivesNothing) {
  FaultAt fault(DomOperation::select);
  fault.disarm();
  Scene scene("");
  scene.objXml = message("<m:a/>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(scene.add("v", "/r/m:a"), SVC_RET_XML_CREATION_NODE_MISSING,
                         "Selecting the node failed", kUserMessage));
  EXPECT_TRUE(fault.struck());
}

TEST(addData, FailsOnANodeThatIsNoElement) {
  const struct {
    const char *says, *path;
  } cases[] = {
      {"an attribute", "/r/m:a/@b"},
      {"a text", "/r/m:a/text()"},
      {"a comment", "/r/comment()"},
      {"the document", "/"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene("<m:a b='1'>t</m:a><!--c-->");
    EXPECT_TRUE(FailedWith(scene.add("v", c.path), SVC_RET_XML_CREATION_INCORRECT_NODE_TYPE,
                           "The node type is invalid", kUserMessage));
    EXPECT_EQ(content(scene.objXml), "<m:a b=\"1\">t</m:a><!--c-->");
  }
}

TEST(addData, TracesItsSelection) {
  Scene scene("<m:a/>");
  EXPECT_TRUE(Succeeded(scene.add("v", "/r/m:a")));
  EXPECT_THAT(scene.host.traceLines(),
              ElementsAre("addData: Set objElement = objXmlNode.selectSingleNode(/r/m:a)"));
}

TEST(addData, RefusesAValueThatXmlCannotHoldAndWritesNothing) {
  const struct {
    const char *says, *value;
  } cases[] = {
      {"a control character", "a\x01z"},
      {"an escape", "\x1B[0m"},
      {"a lone continuation byte", "a\x80z"},
      {"a character cut short", "a\xC3"},
      {"an overlong form", "\xC0\xAF"},
      {"a surrogate", "\xED\xA0\x80"},
      {"a character that is none", "\xEF\xBF\xBF"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene("<m:a>old</m:a>");
    EXPECT_TRUE(FailedWithRuntimeError(scene.add(c.value, "/r/m:a"), -2147467259, "addData",
                                       "An invalid character was found in text content."));
    EXPECT_EQ(content(scene.objXml), "<m:a>old</m:a>");
  }
}

TEST(addData, RefusesAQuestionThatXmlCannotHoldAfterTheValueIsWritten) {
  Scene scene("<m:a/>");
  EXPECT_TRUE(FailedWithRuntimeError(scene.add("v", "/r/m:a", "\x02"), kXmlFailure, "addData",
                                     "An invalid character was found in text content."));
  EXPECT_EQ(content(scene.objXml), "<m:a>v</m:a>");
}

TEST(addData, RefusesAZeroByte) {
  Scene scene("<m:a/>");
  EXPECT_TRUE(FailedWithRuntimeError(scene.add(std::string_view("a\0b", 3), "/r/m:a"), kXmlFailure,
                                     "addData", "An invalid character was found in text content."));
}

TEST(addData, ReportsAMalformedPath) {
  const struct {
    const char *says, *path;
  } cases[] = {
      {"an open predicate", "/r/m:a["},
      {"no path at all", ""},
      {"an apostrophe", "it's"},
      {"a number", "count(/r)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene("<m:a/>");
    EXPECT_TRUE(FailedWithNumber(scene.add("v", c.path), kXmlFailure, "addData"));
    EXPECT_EQ(content(scene.objXml), "<m:a/>");
  }
}

TEST(addData, ReportsAPrefixThatTheMessageDoesNotDeclare) {
  Scene scene("<m:a/>");
  EXPECT_TRUE(FailedWithRuntimeError(scene.add("v", "/r/zz:a"), kXmlFailure, "addData",
                                     "Reference to undeclared namespace prefix: 'zz'."));
}

TEST(addData, ReportsAMissingMessage) {
  Scene scene("");
  scene.objXml = {};
  EXPECT_TRUE(FailedWithRuntimeError(scene.add("v", "/r"), kObjectNotSet, "addData",
                                     "Object variable or With block variable not set"));
}

TEST(addData, ReportsAnUnexpectedFailureAndKeepsTheValueThatWasWritten) {
  FaultAt fault(DomOperation::setAttribute, Fault::error);
  fault.disarm();
  Scene scene("");
  scene.objXml = message("<m:a/>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(
      FailedWithRuntimeError(scene.add("v", "/r/m:a"), kXmlFailure, "addData", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(content(scene.objXml), "<m:a>v</m:a>");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
