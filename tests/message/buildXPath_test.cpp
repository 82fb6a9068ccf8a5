#include "message/buildXPath.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// One call: the message `objXml`, what came back in `objCurrentNode`, and the host it ran in.
struct Scene {
  explicit Scene(std::string_view strContent = "") : objXml(message(strContent)) {}

  Acknowledge build(std::string_view strParentXPath, std::string_view strNodePath) {
    return buildXPath(session, strParentXPath, strNodePath, objXml, objCurrentNode);
  }

  TestHost host;
  Session session = withNamespaces(host);
  Document objXml;
  Node objCurrentNode;
};

constexpr std::string_view kNoParent =
    "Unable to select the parent xpath from the message template xml. - Context=buildXPath";

std::string unknownPrefix(std::string_view strPrefix) {
  return "The schema reference information for schema id=" + std::string(strPrefix) +
         " could not be selected. Context:getSchemaReference";
}

TEST(buildXPath, MakesWhatIsMissingAndReusesWhatIsThere) {
  const struct {
    const char *says, *before, *path, *after;
  } cases[] = {
      {"one step is made below the parent", "", "m:a", "<m:a/>"},
      {"and made again beside one of its name", "<m:a>1</m:a>", "m:a", "<m:a>1</m:a><m:a/>"},
      {"a step on the way is reused", "<m:a><m:c/></m:a>", "m:a/m:b", "<m:a><m:c/><m:b/></m:a>"},
      {"the last one is new even there", "<m:a><m:b>1</m:b></m:a>", "m:a/m:b",
       "<m:a><m:b>1</m:b><m:b/></m:a>"},
      {"the last one becomes the last child", "<m:a/><m:z/>", "m:a", "<m:a/><m:z/><m:a/>"},
      {"the first of several is reused", "<m:a/><m:a/>", "m:a/m:b", "<m:a><m:b/></m:a><m:a/>"},
      {"all steps may be missing", "", "m:a/n:b/m:c", "<m:a><n:b><m:c/></n:b></m:a>"},
      {"only the second may be missing", "<m:a/>", "m:a/n:b/m:c", "<m:a><n:b><m:c/></n:b></m:a>"},
      {"the same name in another namespace is another step", "<n:a/>", "m:a/m:b",
       "<n:a/><m:a><m:b/></m:a>"},
      {"a step may repeat the one before", "", "m:a/m:a", "<m:a><m:a/></m:a>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(c.before);
    EXPECT_TRUE(Succeeded(scene.build("/r", c.path)));
    EXPECT_EQ(content(scene.objXml), c.after);
  }
}

TEST(buildXPath, TakesOnlyAnElementForAStepOnTheWay) {
  Scene scene("<m:a id='1'/>");
  // The attribute that the step selects is passed over; an element of that name cannot be made.
  EXPECT_TRUE(FailedWithNumber(scene.build("/r", "m:a/@id/m:b"), kInvalidName, "buildXPath"));
  EXPECT_EQ(content(scene.objXml), "<m:a id=\"1\"/>");
}

TEST(buildXPath, GivesBackTheElementOfTheLastStep) {
  Scene scene("<m:a><m:b/></m:a>");
  EXPECT_TRUE(Succeeded(scene.build("/r", "m:a/m:b")));
  EXPECT_TRUE(scene.objCurrentNode == scene.objXml.selectSingleNode("/r/m:a/m:b[2]"));
  EXPECT_TRUE(scene.objCurrentNode);
}

TEST(buildXPath, PutsElementsIntoTheNamespaceOfTheirPrefix) {
  Scene scene;
  EXPECT_TRUE(Succeeded(scene.build("/r", "m:a/n:b")));
  EXPECT_TRUE(
      scene.objXml.selectSingleNode("/r/*[local-name()='a' and namespace-uri()='urn:m']"
                                    "/*[local-name()='b' and namespace-uri()='urn:n']"));
}

// The parent only tells where missing steps begin; steps on the way are found in the whole message.
TEST(buildXPath, ReusesAStepBelowAnotherParentThatMatchesToo) {
  Scene scene("<m:p/><m:p><m:a/></m:p>");
  EXPECT_TRUE(Succeeded(scene.build("//m:p", "m:a/m:b")));
  EXPECT_EQ(content(scene.objXml), "<m:p/><m:p><m:a><m:b/></m:a></m:p>");
}

TEST(buildXPath, LooksAStepWithoutPrefixUpUnderItsWholeName) {
  Scene registered;
  EXPECT_TRUE(Succeeded(registered.build("/r", "plain/other")));
  EXPECT_EQ(content(registered.objXml), "<plain><other/></plain>");

  Scene unknown;
  EXPECT_TRUE(FailedWith(unknown.build("/r", "mm"),
                         SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING,
                         unknownPrefix("mm"), "default message"));
  EXPECT_EQ(content(unknown.objXml), "<mm/>");
}

TEST(buildXPath, FailsWithoutAParent) {
  Scene scene("<m:a/>");
  EXPECT_TRUE(FailedWith(scene.build("/r/m:none", "m:a/m:b"),
                         SVC_RET_XML_CREATION_PARENT_NODE_MISSING, kNoParent, "default message"));
  EXPECT_EQ(content(scene.objXml), "<m:a/>");
  EXPECT_THAT(scene.host.traceLines(), IsEmpty());
}

TEST(buildXPath, TestsTheParentBeforeTheNodePath) {
  Scene scene;
  EXPECT_TRUE(FailedWith(scene.build("/none", ""), SVC_RET_XML_CREATION_PARENT_NODE_MISSING,
                         kNoParent, "default message"));
}

TEST(buildXPath, FailsWithoutANodePath) {
  Scene scene;
  EXPECT_TRUE(FailedWith(scene.build("/r", ""), SVC_RET_XML_CREATION_NODE_PATH_MISSING,
                         "No node path supplied to buildXPath. - Context=buildXPath",
                         "default message"));
  EXPECT_EQ(content(scene.objXml), "");
  EXPECT_THAT(scene.host.traceLines(), IsEmpty());
}

TEST(buildXPath, FailsWhenTheNodePathGivesNoList) {
  FaultAt fault(DomOperation::split);
  Scene scene;
  scene.host.withFaults(fault);
  scene.session = withNamespaces(scene.host);
  EXPECT_TRUE(FailedWith(scene.build("/r", "m:a"), SVC_RET_XML_CREATION_NODE_PATH_ERROR,
                         "Error in node path supplied to buildXPath. - Context=buildXPath",
                         "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(content(scene.objXml), "");
  EXPECT_THAT(scene.host.traceLines(), ElementsAre("buildXPath: arrNodes = Split(m:a, ' / ')"));
}

TEST(buildXPath, FailsWhenAnElementCannotBeAdded) {
  const struct {
    const char* says;
    int lngCall;
    const char *detail, *left;
  } cases[] = {
      {"the first step", 1,
       "Unable to add the newly created node m:a to /r/m:a. - "
       "Context=buildXPath",
       ""},
      {"the last step", 2,
       "Unable to add the newly created node n:b to /r/m:a/n:b. - "
       "Context=buildXPath",
       "<m:a/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FaultAt fault(DomOperation::appendChild, Fault::nothing, c.lngCall);
    fault.disarm();
    Scene scene;
    scene.objXml = message("", {.faults = &fault});
    fault.arm();
    const Acknowledge objAck = scene.build("/r", "m:a/n:b");
    fault.disarm();
    EXPECT_TRUE(FailedWith(objAck, SVC_RET_XML_CREATION_APPEND_NODE_TO_PARENT_FAILED, c.detail,
                           "default message"));
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(content(scene.objXml), c.left);
    EXPECT_FALSE(scene.objCurrentNode);
  }
}

TEST(buildXPath, HasTheResultOfTheLastNamespaceLookup) {
  const struct {
    const char *says, *path, *unknown, *after;
  } cases[] = {
      {"an unknown prefix makes its element and fails", "x:a", "x", "<x:a/>"},
      {"a later lookup that succeeds hides it", "x:a/m:b", nullptr, "<x:a><m:b/></x:a>"},
      {"an earlier one does not", "m:b/x:a", "x", "<m:b><x:a/></m:b>"},
      {"of two failures the later one is told", "x:a/what", "what", "<x:a><what/></x:a>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene;
    const Acknowledge objAck = scene.build("/r", c.path);
    if (c.unknown) {
      EXPECT_TRUE(FailedWith(objAck, SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING,
                             unknownPrefix(c.unknown), "default message"));
    } else {
      EXPECT_TRUE(Succeeded(objAck));
    }
    EXPECT_EQ(content(scene.objXml), c.after);
    EXPECT_TRUE(scene.objCurrentNode);
  }
}

TEST(buildXPath, MakesElementsOfAnUnknownPrefixInNoNamespace) {
  Scene scene;
  EXPECT_TRUE(FailedWith(scene.build("/r", "m:a/x:b"),
                         SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING, unknownPrefix("x"),
                         "default message"));
  EXPECT_EQ(scene.objXml.selectNodes("/r/m:a/*[namespace-uri()='']")->length(), 1U);
}

TEST(buildXPath, LooksNothingUpWhenEveryStepOnTheWayIsThere) {
  Scene scene("<m:a/>");
  scene.session.objNamespaceXML = {};
  EXPECT_TRUE(FailedWith(
      scene.build("/r", "m:a/m:b"), SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_MISSING,
      "The schema reference xml object is nothing. Context:getSchemaReference", "default message"));
  EXPECT_THAT(linesOf(scene.host, "getSchemaReference").size(), 1U);
  EXPECT_EQ(content(scene.objXml), "<m:a><m:b/></m:a>");
}

// A step that begins with ":" is no name, so its element is never made; the trace tells which URI
// it would have had.
TEST(buildXPath, CarriesTheUriOverToAStepThatBeginsWithAColon) {
  const struct {
    const char *says, *path, *created, *left;
  } cases[] = {
      {"that of the step before", "m:a/:b",
       "Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,:b, urn:m)", "<m:a/>"},
      {"none for the first step", ":b",
       "Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,:b, )", ""},
      {"none after an unknown prefix, which clears it", "m:a/x:b/:c",
       "Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,:c, )", "<m:a><x:b/></m:a>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene;
    EXPECT_TRUE(FailedWithNumber(scene.build("/r", c.path), kInvalidName, "buildXPath"));
    ASSERT_FALSE(scene.host.traceLines().empty());
    EXPECT_EQ(scene.host.traceLines().back(), "buildXPath: " + std::string(c.created));
    EXPECT_THAT(linesOf(scene.host, "getSchemaReference"),
                ::testing::Contains("The schema reference id was not supplied"));
    EXPECT_EQ(content(scene.objXml), c.left);
    EXPECT_FALSE(scene.objCurrentNode);
  }
}

TEST(buildXPath, CarriesNoUriOverFromAStepThatWasReused) {
  Scene scene("<m:a/>");
  EXPECT_TRUE(FailedWithNumber(scene.build("/r", "m:a/:b"), kInvalidName, "buildXPath"));
  EXPECT_EQ(scene.host.traceLines().back(),
            "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,:b, )");
}

TEST(buildXPath, EndsWithASubscriptErrorAtAnEmptyLastStep) {
  Scene scene;
  EXPECT_TRUE(FailedWithRuntimeError(scene.build("/r", "m:a/n:b/"), kSubscriptOutOfRange,
                                     "buildXPath", "Subscript out of range"));
  EXPECT_EQ(content(scene.objXml), "<m:a><n:b/></m:a>");
  EXPECT_FALSE(scene.objCurrentNode);
}

TEST(buildXPath, RefusesAStepThatIsNoElementName) {
  const struct {
    const char *says, *path, *left;
  } cases[] = {
      {"a digit first", "m:1", ""},
      {"without a prefix", "1", ""},
      {"two colons", "m:a:b", ""},
      {"no local name", "m:", ""},
      {"a blank, which is not trimmed", "m:a/ m:b", "<m:a/>"},
      {"a predicate", "m:a/m:b[1]", "<m:a/>"},
      {"an attribute", "m:a/@b", "<m:a/>"},
      {"markup", "m:<b>", ""},
      {"an apostrophe", "it's", ""},
      {"bytes that are no UTF-8", "m:a/m:\xFF", "<m:a/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene;
    EXPECT_TRUE(FailedWithNumber(scene.build("/r", c.path), kInvalidName, "buildXPath"));
    EXPECT_EQ(content(scene.objXml), c.left);
    EXPECT_FALSE(scene.objCurrentNode);
  }
}

TEST(buildXPath, TakesAStepOnTheWayForTheXPathThatItIs) {
  const struct {
    const char *says, *path, *after;
  } cases[] = {
      {"a predicate finds its element", "m:a[2]/m:b", "<m:a/><m:a><m:b/></m:a>"},
      {"so does a wildcard", "*/m:b", "<m:a><m:b/></m:a><m:a/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene("<m:a/><m:a/>");
    EXPECT_TRUE(Succeeded(scene.build("/r", c.path)));
    EXPECT_EQ(content(scene.objXml), c.after);
  }
}

TEST(buildXPath, ReportsWhatTheSelectionRefuses) {
  const struct {
    const char *says, *parent, *path;
  } cases[] = {
      {"a malformed parent", "//*[", "m:a"},
      {"an empty parent", "", "m:a"},
      {"a parent that is no set of nodes", "count(/r)", "m:a"},
      {"an empty step on the way", "/r", "m:a//m:b"},
      {"an empty first step", "/r", "/m:a"},
      {"an apostrophe on the way", "/r", "it's/m:b"},
      {"a parent that ends in a slash", "/r/", "m:a/m:b"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene;
    EXPECT_TRUE(FailedWithNumber(scene.build(c.parent, c.path), kXmlFailure, "buildXPath"));
    EXPECT_FALSE(scene.objCurrentNode);
  }
}

TEST(buildXPath, ReportsAPrefixThatTheMessageDoesNotDeclare) {
  Scene scene;
  EXPECT_TRUE(FailedWithRuntimeError(scene.build("/r", "zz:a/m:b"), kXmlFailure, "buildXPath",
                                     "Reference to undeclared namespace prefix: 'zz'."));
  EXPECT_EQ(content(scene.objXml), "");
}

TEST(buildXPath, ReportsAParentThatIsNoElement) {
  Scene scene("<m:a b='1'/>");
  EXPECT_TRUE(FailedWithNumber(scene.build("/r/m:a/@b", "m:c"), kXmlFailure, "buildXPath"));
  EXPECT_EQ(content(scene.objXml), "<m:a b=\"1\"/>");
}

TEST(buildXPath, ReportsAMissingMessage) {
  Scene scene;
  scene.objXml = {};
  EXPECT_TRUE(FailedWithRuntimeError(scene.build("/r", "m:a"), kObjectNotSet, "buildXPath",
                                     "Object variable or With block variable not set"));
}

TEST(buildXPath, FindsNoParentInAnEmptyMessage) {
  Scene scene;
  scene.objXml = Document::create();
  EXPECT_TRUE(FailedWith(scene.build("/r", "m:a"), SVC_RET_XML_CREATION_PARENT_NODE_MISSING,
                         kNoParent, "default message"));
}

TEST(buildXPath, ReportsAnUnexpectedFailureAndKeepsWhatWasMade) {
  FaultAt fault(DomOperation::createNode, Fault::error, 2);
  fault.disarm();
  Scene scene;
  scene.objXml = message("", {.faults = &fault});
  fault.arm();
  const Acknowledge objAck = scene.build("/r", "m:a/m:b");
  EXPECT_TRUE(FailedWithRuntimeError(objAck, kXmlFailure, "buildXPath", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(content(scene.objXml), "<m:a/>");
}

TEST(buildXPath, TracesEveryStep) {
  Scene scene("<m:a/>");
  EXPECT_TRUE(Succeeded(scene.build("/r", "m:a/n:b/m:c")));
  EXPECT_THAT(
      scene.host.traceLines(),
      ElementsAre(
          "buildXPath: arrNodes = Split(m:a/n:b/m:c, ' / ')", "buildXPath: strNodePath = /m:a",
          "buildXPath: Set objCurrentNode = objXmlDocument.selectSingleNode(/r/m:a)",
          "buildXPath: strNodePath = /m:a/n:b",
          "buildXPath: Set objCurrentNode = objXmlDocument.selectSingleNode(/r/m:a/n:b)",
          "buildXPath: arrSchema = Split(n:b, ':')",
          "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,n:b, urn:n)",
          "buildXPath: strNodePath = /m:a/n:b/m:c", "buildXPath: arrSchema = Split(m:c, ':')",
          "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,m:c, urn:m)"));
}

TEST(buildXPath, TracesAFailedLookupBeforeTheElementItIsFor) {
  Scene scene;
  EXPECT_TRUE(FailedWith(scene.build("/r", "x:a"),
                         SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING, unknownPrefix("x"),
                         "default message"));
  EXPECT_THAT(
      scene.host.traceLines(),
      ElementsAre(
          "buildXPath: arrNodes = Split(x:a, ' / ')", "buildXPath: strNodePath = /x:a",
          "getSchemaReference: " + unknownPrefix("x"), "buildXPath: arrSchema = Split(x:a, ':')",
          "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,x:a, )"));
}

TEST(buildXPath, EndsAPathOfAHundredThousandStepsSoonAndLeavesADocumentThatLoads) {
  std::string strNodePath = "m:a";
  for (int i = 1; i < 100'000; ++i) strNodePath += "/m:a";
  constexpr std::size_t kFewPerLevel = 4 * 256;
  CountedOperations operations(kFewPerLevel);
  Scene scene;
  scene.objXml = message("", {.faults = &operations});
  EXPECT_TRUE(FailedWithRuntimeError(scene.build("/r", strNodePath), kXmlFailure, "buildXPath",
                                     "The document is deeper than 256 elements."));
  EXPECT_EQ(scene.objXml.selectNodes("//m:a")->length(), 255U);  // and the root
  EXPECT_TRUE(Document::create().loadXML(scene.objXml.xml()));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
