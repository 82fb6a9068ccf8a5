#include "message/RemoveEmptyElements.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "OfferedElements.h"
#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A message offered for clean-up from its document node, as a build does it.
struct Story {
  TestHost host;
  Document objReference;
  Document objMessage;

  Story(std::string_view strReference, std::string_view strMessage,
        const DocumentSettings& settings = {})
      : objReference(parsed(strReference)), objMessage(parsed(strMessage, settings)) {}

  bool clean() const {
    return RemoveEmptyElements(host.session(), objMessage.selectSingleNode("/"), objReference, "");
  }
  std::string left() const {
    const Node objRoot = objMessage.documentElement();
    return objRoot ? objRoot.xml() : "";
  }
};

TEST(RemoveEmptyElements, RemovesWhatIsEmptyAndWhatBecomesSo) {
  const struct {
    const char *says, *message, *left;
  } cases[] = {
      {"nothing is empty", "<r><a>x</a></r>", "<r><a>x</a></r>"},
      {"an empty element", "<r>x<a/></r>", "<r>x</r>"},
      {"and its parent in the same pass", "<r>x<a><b/></a></r>", "<r>x</r>"},
      {"attributes are no content", "<r>x<a b='1'/></r>", "<r>x</r>"},
      {"blanks are", "<r>x<a xml:space='preserve'> </a></r>",
       "<r>x<a xml:space=\"preserve\"> </a></r>"},
      {"every one of several", "<r><a/><b/>x<c/><d/><e/></r>", "<r>x</r>"},
      {"none of what holds text further down", "<r><a><b><c>x</c></b></a></r>",
       "<r><a><b><c>x</c></b></a></r>"},
      {"a comment is a child that stays", "<r>x<a><!--c--><b/></a></r>", "<r>x<a><!--c--></a></r>"},
      {"an instruction with content too", "<r>x<a><?p c?></a></r>", "<r>x<a><?p c?></a></r>"},
      {"an instruction without content is offered like an element", "<r>x<?p?></r>", "<r>x</r>"},
      {"the whole message", "<r><a/><b><c/></b></r>", ""},
      {"an empty root", "<r/>", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story("<other/>", c.message);
    EXPECT_FALSE(story.clean() && story.objMessage.hasChildNodes());
    EXPECT_EQ(story.left(), c.left);
  }
}

TEST(RemoveEmptyElements, OffersChildrenBeforeTheirParent) {
  const Story story("<other/>", "<top><a><b/></a><m:c xmlns:m='urn:m'/>x</top>");
  story.objReference.setSelectionNamespaces("xmlns:m='urn:m'");
  EXPECT_FALSE(story.clean());
  EXPECT_THAT(offered(story.host), ElementsAre("/top/a/b", "/top/a", "/top/m:c"));
}

TEST(RemoveEmptyElements, KeepsWhatTheReferenceCallsMandatory) {
  const struct {
    const char *says, *reference, *message, *left;
  } cases[] = {
      {"a mandatory element beside text", "<r><a mandatory='true'/></r>", "<r>x<a/><b/></r>",
       "<r>x<a/></r>"},
      {"its parent is then no longer empty",
       "<r mandatory='true'><a mandatory='true'><b mandatory='true'/></a></r>",
       "<r><a><b/></a></r>", "<r><a><b/></a></r>"},
      {"but not below an empty optional one",
       "<r mandatory='true'><a><b mandatory='true'/></a></r>", "<r><a><b/></a><c>x</c></r>",
       "<r><c>x</c></r>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story(c.reference, c.message);
    EXPECT_FALSE(story.clean());
    EXPECT_EQ(story.left(), c.left);
  }
}

TEST(RemoveEmptyElements, LeavesAnEmptyElementToItsParent) {
  const Story story("<other/>", "<r><a b='1'/></r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  EXPECT_TRUE(RemoveEmptyElements(story.host.session(), objA, story.objReference, "/r"));
  EXPECT_EQ(story.left(), "<r><a b=\"1\"/></r>");
  EXPECT_THAT(story.host.traceLines(), IsEmpty());
}

TEST(RemoveEmptyElements, OffersAHollowElementItself) {
  const Story story("<r><a/></r>", "<r><a/>x</r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  objA.setText("");
  EXPECT_FALSE(RemoveEmptyElements(story.host.session(), objA, story.objReference, "/r"));
  EXPECT_THAT(offered(story.host), ElementsAre("/r/a"));
  EXPECT_EQ(story.left(), "<r>x</r>");
}

TEST(RemoveEmptyElements, OffersAMandatoryHollowElementOnce) {
  const Story story("<r><a mandatory='true'/></r>", "<r><a/>x</r>");
  story.objMessage.selectSingleNode("/r/a").setText("");
  EXPECT_FALSE(story.clean());
  EXPECT_THAT(offered(story.host), ElementsAre("/r/a"));
  EXPECT_EQ(story.left(), "<r><a></a>x</r>");
}

TEST(RemoveEmptyElements, OffersAnElementThatBecomesHollowItself) {
  const Story story("<other/>", "<r><a/>x</r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  objA.setText("");
  objA.appendChild(story.objMessage.createElement("b"));
  EXPECT_FALSE(RemoveEmptyElements(story.host.session(), objA, story.objReference, "/r"));
  EXPECT_THAT(offered(story.host), ElementsAre("/r/a/b", "/r/a"));
  EXPECT_EQ(story.left(), "<r>x</r>");
}

TEST(RemoveEmptyElements, KeepsAnElementOfTwoEmptyTexts) {
  const Story story("<other/>", "<r><a/><b/>x</r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  const Node objB = story.objMessage.selectSingleNode("/r/b");
  objA.setText("");
  objB.setText("");
  objA.appendChild(objB.childNodes()->item(0));
  EXPECT_FALSE(story.clean());
  EXPECT_THAT(offered(story.host), ElementsAre("/r/b"));
  EXPECT_EQ(story.left(), "<r><a></a>x</r>") << "no text is offered, and it has two";
}

TEST(RemoveEmptyElements, StartsFromThePathGiven) {
  const Story story("<other/>", "<r><a><b/></a></r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  EXPECT_TRUE(RemoveEmptyElements(story.host.session(), objA, story.objReference, "/from/here"));
  EXPECT_THAT(offered(story.host), ElementsAre("/from/here/a/b"));
}

TEST(RemoveEmptyElements, KeepsTheDeclaration) {
  const Story story("<other/>", "<?xml version=\"1.0\"?><r>x<a/></r>");
  EXPECT_FALSE(story.clean());
  EXPECT_EQ(story.objMessage.xml(), "<?xml version=\"1.0\"?>\r\n<r>x</r>\r\n");
  EXPECT_THAT(offered(story.host), ElementsAre("/r/a"));
}

TEST(RemoveEmptyElements, LooksAtNothingForNothing) {
  const Story story("<other/>", "<r/>");
  EXPECT_FALSE(RemoveEmptyElements(story.host.session(), {}, {}, ""));
}

TEST(RemoveEmptyElements, CallsAnEmptyDocumentEmpty) {
  const TestHost host;
  EXPECT_TRUE(RemoveEmptyElements(host.session(), Document::create(), Document::create(), ""));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(RemoveEmptyElements, KeepsAMandatoryRootWithoutContent) {
  // The walk up reaches the top of the reference document through mandatory elements only.
  const Story story("<r mandatory='true'/>", "<r><a/></r>");
  EXPECT_FALSE(story.clean());
  EXPECT_EQ(story.left(), "<r/>");
}

TEST(RemoveEmptyElements, RaisesForAnEmptyCommentWhoseNameIsNoPath) {
  const Story story("<r/>", "<r><a/><!----><b/></r>");
  const auto error = raisedBy([&] { (void)story.clean(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kXmlFailure);
  EXPECT_EQ(story.left(), "<r><!----><b/></r>") << "what was removed before stays removed";
}

TEST(RemoveEmptyElements, LetsFailuresPassToItsCaller) {
  const struct {
    const char *says, *reference;
    std::int32_t number;
  } cases[] = {
      {"a prefix that the reference does not register", "<r/>", kXmlFailure},
      {"a word that is no Boolean", "<r xmlns:m='urn:m'><m:a mandatory='x'/></r>", kTypeMismatch},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story(c.reference, "<r xmlns:m='urn:m'><m:a/></r>");
    if (c.number == kTypeMismatch) story.objReference.setSelectionNamespaces("xmlns:m='urn:m'");
    const auto error = raisedBy([&] { (void)story.clean(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), c.number);
  }
}

TEST(RemoveEmptyElements, LetsAFailingRemovalPassToItsCaller) {
  FaultAt fault(DomOperation::removeChild, Fault::error, 2);
  fault.disarm();
  const Story story("<other/>", "<r><a/><b/>x</r>", {.faults = &fault});
  fault.arm();
  const auto error = raisedBy([&] { (void)story.clean(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kXmlFailure);
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(story.left(), "<r><b/>x</r>");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
