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
      {"separator", "seperator", true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(isSlipOf(c.word, c.known), c.slip) << c.word << ", " << c.known;
  }
  EXPECT_FALSE(isSlipOf(std::string(100'000, 'x'), "field"));
}

TEST(Words, CutALongTextBetweenCharacters) {
  EXPECT_EQ(Varnel_Tolv_XML_Creation::inQuotes("a"), "\"a\"");
  const std::string strLong = std::string(119, 'a') + "\xC3\xA4" + std::string(100, 'b');
  EXPECT_EQ(Varnel_Tolv_XML_Creation::inQuotes(strLong), '"' + std::string(119, 'a') + "...\"");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
