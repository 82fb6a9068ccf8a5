#include "check/Words.h"

#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(Words, TellSlipsFromOtherWords) {
  const struct {
    const char *word, *known;
    bool slip;
  } cases[] = {
      {"feild", "field", true},
      {"Field", "field", true},
      {" field", "field", true},
      {"field", "field", false},
      {"fields", "field", true},
      {"label", "table", false},
      {"dat", "date", true},
      {"radio", "date", false},
      {"dynatabel", "dynatable", true},
      {"text", "time", false},
      {"m", "n", false},
      {"", "field", false},
      {"chekedvalu", "checkedvalue", true},
      {"seperator", "separator", true},
      {"separator", "seperator", true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(isSlipOf(c.word, c.known), c.slip) << c.word << ", " << c.known;
  }
  EXPECT_FALSE(isSlipOf(std::string(100'000, 'x'), "field"));
}

TEST(Words, FindTheFirstThatIsMeant) {
  const std::vector<std::string> known = {"end", "line1", "line2"};
  ASSERT_NE(firstMeant(known, "line9"), nullptr);
  EXPECT_EQ(*firstMeant(known, "line9"), "line1");
  EXPECT_EQ(firstMeant(known, "line1"), &known[2]) << "a word is no slip of itself";
  EXPECT_EQ(firstMeant(known, "table"), nullptr);
  EXPECT_EQ(intendedWord("tabel", {"field", "table"}), "table");
  EXPECT_EQ(intendedWord("text", {"field", "table"}), "");
}

// How many letters may differ depends on the length of the known one.
TEST(Words, FindTheFirstThatIsASlip) {
  const std::vector<std::string> words = {"tables", "fiel", "fild"};
  EXPECT_EQ(firstSlip(words, "fields"), &words[1]);
  EXPECT_EQ(firstMeant(words, "fields"), nullptr);
}

TEST(Words, HaveCapitalsWhereLowerCaseDiffers) {
  EXPECT_TRUE(hasCapitals("aB"));
  EXPECT_TRUE(hasCapitals("\xC3\x84"));  // an A with two dots
  EXPECT_FALSE(hasCapitals("a-b1"));
  EXPECT_FALSE(hasCapitals(""));
}

TEST(Words, ReadSmallNumbersOfDigitsAlone) {
  EXPECT_EQ(smallNumber("0"), 0u);
  EXPECT_EQ(smallNumber("007"), 7u);
  EXPECT_EQ(smallNumber("999999999"), 999'999'999u);
  for (const char* const other : {"", "1000000000", "-1", "+1", " 1", "1.0", "one"}) {
    EXPECT_EQ(smallNumber(other), std::nullopt) << other;
  }
}

TEST(Words, CutALongTextBetweenCharacters) {
  EXPECT_EQ(Varnel_Tolv_XML_Creation::inQuotes("a"), "\"a\"");
  const std::string strLong = std::string(119, 'a') + "\xC3\xA4" + std::string(100, 'b');
  EXPECT_EQ(Varnel_Tolv_XML_Creation::inQuotes(strLong), '"' + std::string(119, 'a') + "...\"");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
