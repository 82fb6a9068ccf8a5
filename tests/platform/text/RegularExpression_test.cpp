#include "platform/text/RegularExpression.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kInvalidValue =
    "The element: '.*'  has an invalid value according to its data type.";
constexpr const char* kNotDeclared =
    "The element '(.*)' is used but not declared in the DTD/Schema.";

std::string repeated(std::string_view strPiece, std::size_t lngBytes) {
  std::string strText;
  while (strText.size() < lngBytes) strText += strPiece;
  return strText;
}

TEST(RegularExpression, IsSearchedAnywhereInTheText) {
  const struct {
    const char *says, *pattern, *text;
    bool found;
  } cases[] = {
      {"the whole text", "MaxLength constraint failed.", "MaxLength constraint failed.", true},
      {"in the middle", "constraint", "MaxLength constraint failed.", true},
      {"not at all", "MinLength", "MaxLength constraint failed.", false},
      {"capitals count", "maxlength", "MaxLength constraint failed.", false},
      {"a point stands for any character", "failed.", "failed!", true},
      {"but for one", "failed.", "failed", false},
      {"not for LF", "a.b", "a\nb", false},
      {"for CR", "a.b", "a\rb", true},
      {"for a byte that is not UTF-8", "a.b",
       "a\xFF"
       "b",
       true},
      {"for one byte of a character of two", "a.b", "aéb", false},
      {"characters beyond ASCII stand for themselves", "é", "café", true},
      {"two blanks are two blanks", kInvalidValue,
       "The element: 'a'  has an invalid value according to its data type.", true},
      {"one blank is not", kInvalidValue,
       "The element: 'a' has an invalid value according to its data type.", false},
      {"a name over a line end", kInvalidValue,
       "The element: 'a\nb'  has an invalid value according to its data type.", false},
      {"the second of two lines", kInvalidValue,
       "MaxLength constraint failed.\r\nThe element: 'a'  has an invalid value according to its "
       "data type.",
       true},
      {"the empty pattern is everywhere", "", "a", true},
      {"in the empty text too", "", "", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(RegularExpression(c.pattern).Test(c.text), c.found);
    EXPECT_EQ(RegularExpression(c.pattern).Execute(c.text).has_value(), c.found);
  }
  EXPECT_TRUE(RegularExpression("a.b").Test(std::string_view("a\0b", 3)));
}

TEST(RegularExpression, GivesTheLeftmostMatchWithItsGroups) {
  const auto match = RegularExpression(kNotDeclared)
                         .Execute(
                             "Well: The element 'pbr:Foo' is used but not declared in the "
                             "DTD/Schema. So it is.");
  ASSERT_TRUE(match);
  EXPECT_EQ(match->value, "The element 'pbr:Foo' is used but not declared in the DTD/Schema.");
  EXPECT_THAT(match->subMatches, ElementsAre("pbr:Foo"));

  const auto first = RegularExpression("b|abc|ab").Execute("xabc");
  ASSERT_TRUE(first);
  EXPECT_EQ(first->value, "abc") << "the leftmost, and there the first alternative";
  EXPECT_THAT(first->subMatches, IsEmpty());
}

TEST(RegularExpression, TakesAsMuchAsItCanInAGroup) {
  const auto match = RegularExpression("'(.*)'").Execute("'a' and 'b'");
  ASSERT_TRUE(match);
  EXPECT_THAT(match->subMatches, ElementsAre("a' and 'b"));
}

TEST(RegularExpression, GivesTheEmptyTextForAGroupThatTookNoPart) {
  const auto match = RegularExpression("(a)|(b)()").Execute("b");
  ASSERT_TRUE(match);
  EXPECT_THAT(match->subMatches, ElementsAre("", "b", ""));
}

TEST(RegularExpression, SearchesTheEmptyText) {
  const auto match = RegularExpression("(a*)").Execute(std::string_view());
  ASSERT_TRUE(match);
  EXPECT_EQ(match->value, "");
  EXPECT_THAT(match->subMatches, ElementsAre(""));
}

TEST(RegularExpression, KeepsItsPatternAsWritten) {
  EXPECT_EQ(RegularExpression(kNotDeclared).Pattern(), kNotDeclared);
  EXPECT_EQ(RegularExpression("é").Pattern(), "é");
}

TEST(RegularExpression, RaisesInvalidArgumentForAMalformedPattern) {
  for (const char* pattern : {"(", ")", "[", "a**", "*", "\\", "(?<", "x{2,1}"}) {
    SCOPED_TRACE(pattern);
    try {
      const RegularExpression expression(pattern);
      ADD_FAILURE() << "nothing was raised";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 5);
      EXPECT_EQ(error.description(), "Invalid procedure call or argument");
    }
  }
}

TEST(RegularExpression, CanBeMoved) {
  RegularExpression source("a(b)");
  RegularExpression target("x");
  target = std::move(source);
  EXPECT_TRUE(target.Test("ab"));
  EXPECT_EQ(RegularExpression(std::move(target)).Pattern(), "a(b)");
}

TEST(RegularExpression, MayBeUsedBySeveralThreads) {
  const RegularExpression expression(kNotDeclared);
  const std::string strText = "The element 'a' is used but not declared in the DTD/Schema.";
  std::vector<std::thread> colThreads;
  std::vector<int> colFound(4);
  for (int& lngFound : colFound) {
    colThreads.emplace_back([&] {
      for (int lngTime = 0; lngTime < 100; ++lngTime) lngFound += expression.Test(strText) ? 1 : 0;
    });
  }
  for (std::thread& thread : colThreads) thread.join();
  EXPECT_THAT(colFound, ElementsAre(100, 100, 100, 100));
}

// Names and values in a message come from outside and may be of any length and any content. A
// matcher that goes back and tries again needs hours for some of these, or all of the stack.
TEST(RegularExpression, AnswersForLongHostileTexts) {
  constexpr std::size_t kBytes = 100'000;
  const RegularExpression invalidValue(kInvalidValue);
  const RegularExpression notDeclared(kNotDeclared);
  const std::string strEnd = "'  has an invalid value according to its data type.";

  const std::string strLongName(kBytes, 'x');
  EXPECT_TRUE(invalidValue.Test("The element: '" + strLongName + strEnd));
  const auto match = notDeclared.Execute("The element '" + strLongName +
                                         "' is used but not declared in the DTD/Schema.");
  ASSERT_TRUE(match);
  EXPECT_THAT(match->subMatches, ElementsAre(strLongName));

  const std::string strHeads = repeated("The element: '", kBytes);
  EXPECT_FALSE(invalidValue.Test(strHeads));
  EXPECT_TRUE(invalidValue.Test(strHeads + strEnd));
  EXPECT_FALSE(notDeclared.Test(repeated("The element '", kBytes)));

  const std::string strNearMisses =
      repeated("The element: 'a' has an invalid value according to its data type.", kBytes);
  EXPECT_FALSE(invalidValue.Test(strNearMisses));
  EXPECT_TRUE(invalidValue.Test(strNearMisses + strEnd));
  EXPECT_FALSE(invalidValue.Test(
      repeated("The element: 'a' has an invalid value according to its data type.\n", kBytes)));

  EXPECT_FALSE(invalidValue.Test(repeated("No element at all. ", kBytes)));
  EXPECT_FALSE(invalidValue.Test(repeated("\xFF", kBytes)));
  EXPECT_FALSE(RegularExpression("(a*)*b").Test(repeated("a", kBytes)));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
