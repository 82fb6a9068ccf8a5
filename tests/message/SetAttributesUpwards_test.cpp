#include "message/SetAttributesUpwards.h"

#include <array>
#include <string_view>

#include "support/Documents.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// A fragment that stands alone.
Node fragment(std::string_view strText) {
  return parsed(strText).documentElement().cloneNode(true);
}

TEST(SetAttributesUpwards, SetsAllOnTheElementAndTheFirstTwoAbove) {
  const Node objTop = fragment("<t><a><b><c/></b></a><z/></t>");
  SetAttributesUpwards(objTop.selectSingleNode("//b"), "questionId~rowIndex~columnId", "q~1~c");
  EXPECT_EQ(objTop.xml(),
            "<t questionId=\"q\" rowIndex=\"1\"><a questionId=\"q\" rowIndex=\"1\">"
            "<b questionId=\"q\" rowIndex=\"1\" columnId=\"c\"><c/></b></a><z/></t>");
}

TEST(SetAttributesUpwards, TakesAnyNames) {
  const struct {
    const char *says, *names, *values, *after;
  } cases[] = {
      {"two names are the same everywhere", "x~y", "1~2",
       "<t x=\"1\" y=\"2\"><b x=\"1\" y=\"2\"/></t>"},
      {"the fourth stays below too", "x~y~z~u", "1~2~3~4",
       "<t x=\"1\" y=\"2\"><b x=\"1\" y=\"2\" z=\"3\" u=\"4\"/></t>"},
      {"values beyond the names are not read", "x~y", "1~2~3~4",
       "<t x=\"1\" y=\"2\"><b x=\"1\" y=\"2\"/></t>"},
      {"values may be empty", "x~y~z", "~~", "<t x=\"\" y=\"\"><b x=\"\" y=\"\" z=\"\"/></t>"},
      {"blanks stay", "x~y", " ~ 2", "<t x=\" \" y=\" 2\"><b x=\" \" y=\" 2\"/></t>"},
      {"markup is text", "x~y", "<~&", "<t x=\"&lt;\" y=\"&amp;\"><b x=\"&lt;\" y=\"&amp;\"/></t>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Node objTop = fragment("<t><b/></t>");
    SetAttributesUpwards(objTop.selectSingleNode("//b"), c.names, c.values);
    EXPECT_EQ(objTop.xml(), c.after);
  }
}

TEST(SetAttributesUpwards, ReplacesWhatWasThere) {
  const Node objTop = fragment("<t x='old' z='old'><b y='old'/></t>");
  SetAttributesUpwards(objTop.selectSingleNode("//b"), "x~y~z", "1~2~3");
  EXPECT_EQ(objTop.xml(), "<t x=\"1\" z=\"old\" y=\"2\"><b y=\"2\" x=\"1\" z=\"3\"/></t>");
}

TEST(SetAttributesUpwards, LeavesTheTopOfAFragmentAtThat) {
  const Node objTop = fragment("<t/>");
  SetAttributesUpwards(objTop, "x~y~z", "1~2~3");
  EXPECT_EQ(objTop.xml(), "<t x=\"1\" y=\"2\" z=\"3\"/>");
}

TEST(SetAttributesUpwards, EndsBeforeWhatIsMarkedAlready) {
  const std::array<std::string_view, 3> names = {"x", "y", "z"};
  const std::array<std::string_view, 3> values = {"1", "2", "3"};
  const std::array<std::string_view, 3> others = {"4", "5", "6"};
  const Node objTop = fragment("<t><a><b/></a></t>");
  const Node objElement = objTop.selectSingleNode("//b");
  SetAttributesUpwards(objElement, names, values, objTop);
  EXPECT_EQ(objTop.xml(), "<t><a x=\"1\" y=\"2\"><b x=\"1\" y=\"2\" z=\"3\"/></a></t>");
  SetAttributesUpwards(objTop, names, values, objTop);
  EXPECT_EQ(objTop.getAttribute("z"), "3") << "the element itself is never left out";
  SetAttributesUpwards(objElement, names, others, {});
  EXPECT_EQ(objTop.getAttribute("y"), "5");
}

TEST(SetAttributesUpwards, DoesNothingWithoutANode) {
  EXPECT_FALSE(raisedBy([] { SetAttributesUpwards(Node(), "x~y", "1~2"); }));
  EXPECT_FALSE(raisedBy([] { SetAttributesUpwards(Node(), "x~y", ""); }));
}

TEST(SetAttributesUpwards, RaisesWhereTheValuesEnd) {
  const struct {
    const char *says, *values, *after;
  } cases[] = {
      {"the third is missing", "1~2", "<t><b x=\"1\" y=\"2\"/></t>"},
      {"only the first is there", "1", "<t><b x=\"1\"/></t>"},
      {"none is there", "", "<t><b/></t>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Node objTop = fragment("<t><b/></t>");
    const auto error =
        raisedBy([&] { SetAttributesUpwards(objTop.selectSingleNode("//b"), "x~y~z", c.values); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), kSubscriptOutOfRange);
    EXPECT_EQ(error->description(), "Subscript out of range");
    EXPECT_EQ(objTop.xml(), c.after);
  }
}

TEST(SetAttributesUpwards, PassesOnWhatTheElementRefuses) {
  const struct {
    const char *says, *names, *values;
    std::int32_t number;
  } cases[] = {
      {"no name", "~y", "1~2", kInvalidName},
      {"a name with a blank", "a b~y", "1~2", kInvalidName},
      {"a control character", "x~y", "\x01~2", kXmlFailure},
      {"bytes that are not UTF-8", "x~y", "\xFF~2", kXmlFailure},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Node objTop = fragment("<t><b/></t>");
    const auto error =
        raisedBy([&] { SetAttributesUpwards(objTop.selectSingleNode("//b"), c.names, c.values); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), c.number);
    EXPECT_EQ(objTop.xml(), "<t><b/></t>");
  }
}

TEST(SetAttributesUpwards, NeedsAnElement) {
  const Node objTop = fragment("<t><!--c--></t>");
  const auto error =
      raisedBy([&] { SetAttributesUpwards(objTop.selectSingleNode("//comment()"), "x~y", "1~2"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kXmlFailure);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
