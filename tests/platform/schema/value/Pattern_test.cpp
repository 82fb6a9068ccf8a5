#include "platform/schema/value/Pattern.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string times(std::size_t lngTimes, std::string_view strText) {
  std::string strAll;
  strAll.reserve(lngTimes * strText.size());
  while (lngTimes-- > 0) strAll += strText;
  return strAll;
}

TEST(Pattern, MatchesWholeTexts) {
  const struct {
    const char *says, *pattern, *text;
    bool blnMatches;
  } cases[] = {
      {"the whole text", "abc", "abc", true},
      {"not a part of it", "b", "abc", false},
      {"nothing matches nothing", "", "", true},
      {"a branch may be empty", "a|", "", true},
      {"all branches are anchored", "a|bc", "ab", false},
      {"case counts", "abc", "ABC", false},
      {"a caret is a character", "^a$", "^a$", true},
      {"and no anchor", "^a$", "a", false},
      {"other languages' marks are characters", "/a\"b'<>&;:,!@#%=~`", "/a\"b'<>&;:,!@#%=~`", true},
      {"a brace that closes nothing", "a}", "a}", true},
      {"a point is no line end", ".", "\n", false},
      {"nor a carriage return", ".", "\r", false},
      {"a point in a class is one", "[.]", "a", false},
      {"a point is a whole character", ".{2}", "\xc3\xa4\xf0\x9f\x98\x80", true},
      {"escapes", "\\n\\r\\t\\\\\\|\\.\\?\\*\\+\\(\\)\\{\\}\\-\\[\\]\\^", "\n\r\t\\|.?*+(){}-[]^",
       true},
      {"an exact count", "a{3}", "aaa", true},
      {"one too many", "a{3}", "aaaa", false},
      {"a least count", "(ab){2,}", "ababab", true},
      {"a count of nothing", "a{0}", "", true},
      {"a count between", "a{2,3}", "aaaa", false},
      {"bounds that nothing is between", "a{3,2}", "aaa", false},
      {"a class", "[a-c_]+", "cab_", true},
      {"a class of all others", "[^a-c]+", "xyz\n", true},
      {"a class without another", "[a-z-[aeiou]]+", "bcd", true},
      {"it really is without", "[a-z-[aeiou]]+", "bad", false},
      {"what is taken away has something taken away", "[a-z-[a-y-[b]]]+", "bz", true},
      {"so only that is left", "[a-z-[a-y-[b]]]+", "a", false},
      {"others, less some", "[^a-c-[x]]", "x", false},
      {"a hyphen first", "[-a]+", "a-", true},
      {"a hyphen last", "[a-]+", "-a", true},
      {"a hyphen between ranges", "[a-c-x]+", "b-x", true},
      {"a range of escaped ends", "[\\--\\.]+", "-.", true},
      {"no range, for its ends are the wrong way round", "[\\]-+]+", "+-]", true},
      {"a class in a class is only taken away", "[\\d-[5]]", "5", false},
      {"an empty class is of nothing", "[]", "a", false},
      {"digits of all scripts", "\\d+", "1\xd9\xa3", true},
      {"no digits", "\\D", "1", false},
      {"white space is XML's", "\\s{4}", " \t\r\n", true},
      {"a no-break space is none", "\\s", "\xc2\xa0", false},
      {"word characters are all but marks, separators and others", "\\w+", "a1+\xc3\xa4", true},
      {"punctuation is no word character", "\\w", "-", false},
      {"nor is what is not assigned", "\\w", "\xcd\xb8", false},
      {"a name", "\\i\\c*", "_a-1.b:c", true},
      {"a digit begins none", "\\i", "1", false},
      {"not a name's character", "\\C\\I", " 1", true},
      {"a category", "\\p{Lu}\\p{Ll}", "\xc3\x84\xc3\xa4", true},
      {"a group of categories", "\\p{L}+", "a\xc3\x84\xce\xb1", true},
      {"not of a category", "\\P{L}", "a", false},
      {"private use", "\\p{Co}", "\xee\x80\x85", true},
      {"a block", "\\p{IsBasicLatin}+", "a~", true},
      {"another", "\\p{IsBasicLatin}", "\xc3\xa4", false},
      {"a block whose name has a hyphen", "\\p{IsLatin-1Supplement}", "\xc3\xa4", true},
      {"a block by its old name", "\\p{IsGreek}", "\xce\xb1", true},
      {"not in a block", "\\P{IsCyrillic}", "\xd0\x96", false},
      {"a block with two places", "\\p{IsSpecials}", "\xef\xbb\xbf", true},
      {"whatever is in a block that is not known", "\\p{IsTomorrow}\\P{IsTomorrow}", "ab", true},
      {"blocks and categories in a class", "[\\p{IsGreek}\\p{Nd}-[\\P{L}]]", "1", false},
      {"counts above a thousand", "x{2500}", "x", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.says) + ": " + c.pattern);
    EXPECT_EQ(Pattern(c.pattern).matches(c.text), c.blnMatches);
  }
}

TEST(Pattern, RefusesWhatIsNoExpression) {
  for (const char* pattern : {"(",
                              ")",
                              "a)",
                              "(a",
                              "[",
                              "[a",
                              "[a-",
                              "[a-[b]",
                              "]",
                              "*",
                              "+a",
                              "a**",
                              "a{",
                              "a{x}",
                              "a{1",
                              "a{1,",
                              "a{,2}",
                              "\\",
                              "\\q",
                              "\\p",
                              "\\p{",
                              "\\p{}",
                              "\\p{Lx}",
                              "\\p{L",
                              "\\p{LuL}",
                              "[z-a]",
                              "[a[b]]",
                              "[a-\\d]",
                              "(?:a)",
                              "(|*)",
                              "a{99999999999999999999}"}) {
    SCOPED_TRACE(pattern);
    try {
      const Pattern refused(pattern);
      ADD_FAILURE() << "taken";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), kXmlFailure);
      EXPECT_EQ(error.description(),
                "The pattern '" + std::string(pattern) + "' is no regular expression.");
    }
  }
}

TEST(Pattern, IsExactWhateverTheCounts) {
  for (const std::size_t lngMost : {29u, 30u, 31u, 59u, 60u, 900u, 1000u, 1001u, 2500u, 32000u}) {
    SCOPED_TRACE(lngMost);
    const std::string strMost = std::to_string(lngMost);
    const Pattern upTo("x{0," + strMost + "}");
    const Pattern exactly("x{" + strMost + "}");
    const Pattern between("[\\w-[\\d]]{20," + strMost + "}");
    for (const std::size_t lngLength :
         {std::size_t{0}, std::size_t{1}, lngMost / 2, lngMost - 1, lngMost, lngMost + 1}) {
      const std::string strText = times(lngLength, "x");
      EXPECT_EQ(upTo.matches(strText), lngLength <= lngMost);
      EXPECT_EQ(exactly.matches(strText), lngLength == lngMost);
      EXPECT_EQ(between.matches(strText), lngLength >= 20 && lngLength <= lngMost);
    }
  }
  EXPECT_TRUE(Pattern("((ab?){500}){3}").matches(times(1500, "a")));
  EXPECT_FALSE(Pattern("((ab?){500}){3}").matches(times(1499, "a")));
  EXPECT_TRUE(Pattern("(x{0,600}){0,4}").matches(times(2400, "x")));
  EXPECT_FALSE(Pattern("(x{0,600}){0,4}").matches(times(2401, "x")));
  EXPECT_TRUE(Pattern("[\\s\\S]{1,1000000}").matches(times(10000, "\xc3\xa4\n")));
}

/// Each of these takes a matcher that goes back and tries again more steps than it will ever make,
/// so that an answer at all is an answer in linear time.
TEST(Pattern, AnswersInLinearTime) {
  const std::string strDigits = times(2000, "7");
  EXPECT_FALSE(Pattern(".*a.*b.*c.*d").matches(times(1333, "abc") + "x"));
  EXPECT_TRUE(Pattern(".*a.*b.*c.*d").matches(times(1333, "abc") + "d"));
  EXPECT_FALSE(Pattern("(a|aa)+b").matches(times(41, "a")));
  EXPECT_TRUE(Pattern("(a|aa)+b").matches(times(100000, "a") + "b"));
  EXPECT_FALSE(Pattern("[0-9]*[0-9]*[0-9]*x").matches(strDigits));
  EXPECT_TRUE(Pattern("[0-9]*[0-9]*[0-9]*x").matches(strDigits + "x"));
  const std::string strLong = times(5'000'000, "a1");
  EXPECT_FALSE(Pattern("([a-z]|[0-9]+)*-").matches(strLong));
  EXPECT_TRUE(Pattern("([a-z]|[0-9]+)*-").matches(times(50'000, "a1") + "-"));
}

TEST(Pattern, TakesNoMoreMemoryThanItMay) {
  const std::string tooMuch[] = {"((a{1,1000}){1,1000}){1,1000}",
                                 "a{99999999999}",
                                 "a{1,99999999999999}",
                                 times(1000, "(") + "a" + times(1000, ")"),
                                 times(1000, "[a-") + "[b]" + times(1000, "]"),
                                 "[" + times(100000, "\\w") + "]"};
  for (const std::string& strPattern : tooMuch) {
    SCOPED_TRACE(strPattern.substr(0, 40));
    const Pattern pattern(strPattern);
    try {
      pattern.matches("a");
      ADD_FAILURE() << "answered";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), kXmlFailure);
      EXPECT_NE(error.description().find("takes too much memory"), std::string::npos);
    }
  }
}

TEST(Pattern, HasAsManyLettersAsItNeeds) {
  // Each character is a letter of its own: more than one byte can tell apart.
  std::string strCharacters;
  for (int lngPoint = 0x4E00; lngPoint < 0x4E00 + 700; ++lngPoint) {
    strCharacters += static_cast<char>(0xE0 | (lngPoint >> 12));
    strCharacters += static_cast<char>(0x80 | ((lngPoint >> 6) & 0x3F));
    strCharacters += static_cast<char>(0x80 | (lngPoint & 0x3F));
  }
  const Pattern pattern(strCharacters + "[\xe4\xb8\x80-\xe5\x82\xbb]*[^a]");
  EXPECT_TRUE(pattern.matches(strCharacters + strCharacters + "b"));
  EXPECT_FALSE(pattern.matches(strCharacters + strCharacters + "a"));
  EXPECT_FALSE(pattern.matches(strCharacters.substr(3) + strCharacters + "b"));
}

TEST(Pattern, MayBeAskedByManyThreadsAtOnce) {
  const Pattern pattern("(\\p{L}|\\d){1,50}");
  std::vector<int> answers(4);
  std::vector<std::thread> threads;
  for (int& answer : answers) {
    threads.emplace_back([&] {
      for (int time = 0; time < 100; ++time) answer += pattern.matches("abc123") ? 1 : 0;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(answers, std::vector<int>(4, 100));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
