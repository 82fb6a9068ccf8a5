#include "message/removeIdentifiers.h"

#include <gmock/gmock.h>

#include "config/Names.h"
#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(removeIdentifiers, RemovesTheListedAttributesFromEveryElement) {
  const struct {
    const char *says, *list, *delimiter, *before, *after;
  } cases[] = {
      {"the three of a message", "questionId~rowIndex~columnId", "~",
       "<m:a questionId='1' rowIndex='2' columnId='3' b='4'><n:b rowIndex='5'/></m:a><c "
       "columnId=''/>",
       "<m:a b=\"4\"><n:b/></m:a><c/>"},
      {"a single one", "questionId", "~", "<m:a questionId='1' rowIndex='2'/>",
       "<m:a rowIndex=\"2\"/>"},
      {"in exactly this spelling", "questionId", "~", "<a questionid='1'/>",
       "<a questionid=\"1\"/>"},
      {"a delimiter of two characters", "p::q", "::", "<a p='1' q='2' z='3'/>", "<a z=\"3\"/>"},
      {"a delimiter is matched in its case", "pXq", "x", "<a p='1' q='2' pXq='3'/>",
       "<a p=\"1\" q=\"2\"/>"},
      {"an empty delimiter takes the list for one name", "pq", "", "<a p='1' pq='2'/>",
       "<a p=\"1\"/>"},
      {"one name twice", "p~p", "~", "<a p='1'/>", "<a/>"},
      {"a message without any", "questionId", "~", "<a b='1'>t</a><!--questionId-->",
       "<a b=\"1\">t</a><!--questionId-->"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const TestHost host;
    const Document objXml = message(c.before);
    EXPECT_TRUE(Succeeded(removeIdentifiers(host.session(), objXml, c.list, c.delimiter)));
    EXPECT_EQ(content(objXml), c.after);
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(removeIdentifiers, KnowsTheListOfTheRun) {
  EXPECT_EQ(kIdentifiers, "questionId~rowIndex~columnId");
  EXPECT_EQ(kIdentifierDelimiter, "~");
}

TEST(removeIdentifiers, RemovesThemFromTheRootToo) {
  const TestHost host;
  const Document objXml = parsed("<r questionId='1'/>");
  EXPECT_TRUE(Succeeded(removeIdentifiers(host.session(), objXml, "questionId", "~")));
  EXPECT_EQ(objXml.documentElement().xml(), "<r/>");
}

TEST(removeIdentifiers, CleansTheWholeDocumentOfTheNodeItIsGiven) {
  const TestHost host;
  const Document objXml = message("<a q='1'/><b q='2'/>");
  EXPECT_TRUE(
      Succeeded(removeIdentifiers(host.session(), objXml.selectSingleNode("/r/b"), "q", "~")));
  EXPECT_EQ(content(objXml), "<a/><b/>");
}

TEST(removeIdentifiers, LeavesAnEmptyDocumentAlone) {
  const TestHost host;
  const Document objXml = Document::create();
  EXPECT_TRUE(Succeeded(removeIdentifiers(host.session(), objXml, "q", "~")));
  EXPECT_EQ(objXml.xml(), "");
}

TEST(removeIdentifiers, FailsWhenTheListGivesNoNames) {
  FaultAt fault(DomOperation::split);
  TestHost host;
  host.withFaults(fault);
  const Document objXml = message("<a q='1'/>");
  EXPECT_TRUE(FailedWith(removeIdentifiers(host.session(), objXml, "q", "~"),
                         SVC_RET_XML_CREATION_ARRAYLIST_SPLIT_FAILED,
                         "the attributelist could not be converted to an array.",
                         "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(content(objXml), "<a q=\"1\"/>");
  EXPECT_THAT(host.traceLines(),
              ElementsAre("removeIdentifiers: the attributelist could not be converted to an "
                          "array."));
}

TEST(removeIdentifiers, ReportsAListThatMakesNoCondition) {
  const struct {
    const char *says, *list;
  } cases[] = {
      {"an empty list", ""},
      {"an empty name at the end", "q~"},
      {"an empty name between", "q~~p"},
      {"a name that is none", "q~1"},
      {"an apostrophe", "q'"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const TestHost host;
    const Document objXml = message("<a q='1'/>");
    EXPECT_TRUE(FailedWithNumber(removeIdentifiers(host.session(), objXml, c.list, "~"),
                                 -2147467259, "removeIdentifiers"));
    EXPECT_EQ(content(objXml), "<a q=\"1\"/>");
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(removeIdentifiers, ReportsAMissingMessage) {
  const TestHost host;
  EXPECT_TRUE(FailedWithRuntimeError(removeIdentifiers(host.session(), {}, "q", "~"), kObjectNotSet,
                                     "removeIdentifiers",
                                     "Object variable or With block variable not set"));
}

TEST(removeIdentifiers, ReportsAMissingList) {
  FaultAt fault(DomOperation::select);
  fault.disarm();
  const TestHost host;
  const Document objXml = message("<a q='1'/>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(removeIdentifiers(host.session(), objXml, "q", "~"),
                                     kObjectNotSet, "removeIdentifiers",
                                     "Object variable or With block variable not set"));
  EXPECT_TRUE(fault.struck());
}

TEST(removeIdentifiers, TakesNameAfterNameFromElementAfterElement) {
  FaultAt fault(DomOperation::removeAttribute, Fault::error, 4);
  fault.disarm();
  const TestHost host;
  const Document objXml = message("<a p='1' q='2'/><b p='3' q='4'/>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(removeIdentifiers(host.session(), objXml, "p~q", "~"),
                                     kXmlFailure, "removeIdentifiers", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(content(objXml), "<a/><b q=\"4\"/>");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
