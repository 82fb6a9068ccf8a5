#include "platform/schema/value/PatternRisk.h"

#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(PatternRisk, TellsWhichPatternsCanBeReadInExponentiallyManyWays) {
  const struct {
    const char *says, *pattern;
    bool blnExponential;
  } cases[] = {
      {"a repetition of nothing but a repetition", "(a+)+", true},
      {"the same with stars", "(a*)*b", true},
      {"the same behind something", "x-([a-z]+)*", true},
      {"a separator that may be missing", "([A-Z]+ ?)+", true},
      {"a separator in between", "([A-Z]+-)*[A-Z]+", false},
      {"two optional parts", "(a?b?)*", true},
      {"alternatives of the same letters", "(\\d|[0-9])+", true},
      {"alternatives of other letters", "(\\d|[a-z])+", false},
      {"one and two of the same", "(a|aa)+", true},
      {"alternatives that begin alike", "(ab|ac)+", false},
      {"a class without its letters in the other", "([a-z-[aeiou]]|[aeiou])*", false},
      {"a large count in a large count", "([a-z]{1,50}){1,50}", true},
      {"a count in an exact one", "([a-z]{4})*", false},
      {"small counts", "([0-9]{1,3}){1,3}", false},
      {"no repetition of a group", "[A-Z]{2}-[0-9]+\\.[0-9]*", false},
      {"an address", "[^@ ]+@[^@ ]+", false},
      {"parentheses as letters", "\\(a+\\)+", false},
      {"letters beyond ASCII", "(\xC3\xA4|\xC3\xB6)+", false},
      {"nothing at all", "", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    PatternExaminer examiner;
    EXPECT_EQ(examiner.examine(c.pattern),
              c.blnExponential ? PatternRisk::exponential : PatternRisk::none);
  }
}

TEST(PatternRisk, TellsOfPatternsThatTheLibraryGivesUp) {
  EXPECT_EQ(PatternExaminer().examine("((([a-z]{1,1000}x){1,1000}y){1,1000}z){1,1000}"),
            PatternRisk::tooHeavy);
}

TEST(PatternRisk, EndsSoonWhateverThePatterns) {
  PatternExaminer examiner;
  std::string strAlternatives = "(a0";
  for (int at = 1; at < 90; ++at) strAlternatives += "|[a-z][0-9]";
  std::size_t lngNotExamined = 0;
  for (int at = 0; at < 2000; ++at) {
    const std::string strPattern = strAlternatives + "|x" + std::to_string(at % 10) + ")";
    if (examiner.examine(strPattern + "*") == PatternRisk::notExamined) ++lngNotExamined;
  }
  EXPECT_EQ(examiner.examine(std::string(5000, 'a')), PatternRisk::notExamined);
  EXPECT_GT(lngNotExamined, 0U);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
