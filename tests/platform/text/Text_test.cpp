#include "platform/text/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation {
namespace {

using std::string_literals::operator""s;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Trim, TakesBlanksFromBothEndsAndNothingElse) {
  const struct {
    const char *says, *text, *trimmed;
  } cases[] = {
      {"nothing to trim", "a", "a"},
      {"blanks at both ends go", "  a  ", "a"},
      {"blanks inside stay", " a  b ", "a  b"},
      {"blanks alone leave nothing", "   ", ""},
      {"nothing stays nothing", "", ""},
      {"a tab is no blank", "\ta\t", "\ta\t"},
      {"a tab protects the blank behind it", " \t a ", "\t a"},
      {"line ends stay", "\r\na\r\n", "\r\na\r\n"},
      {"a no-break space is no blank", "\u00A0a\u00A0", "\u00A0a\u00A0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(trim(c.text), c.trimmed);
  }
}

TEST(IsBlank, IsTrueForBlanksAndNothingElse) {
  EXPECT_TRUE(isBlank(""));
  EXPECT_TRUE(isBlank("   "));
  EXPECT_FALSE(isBlank(" a "));
  EXPECT_FALSE(isBlank("\t"));
  EXPECT_FALSE(isBlank("\n"));
  EXPECT_FALSE(isBlank(" \r\n "));
  EXPECT_FALSE(isBlank("\u00A0"));
  EXPECT_FALSE(isBlank(std::string_view("\0", 1)));
}

TEST(ToLower, MapsEachCodePointByItself) {
  const struct {
    const char *says, *text, *lower;
  } cases[] = {
      {"ASCII", "MiXed 123 @[`{", "mixed 123 @[`{"},
      {"Latin letters with marks", "ÄÖÜ ÉÑ Ÿ", "äöü éñ ÿ"},
      {"Greek: a capital sigma at the end of a word is no final sigma", "ΟΔΟΣ", "οδοσ"},
      {"Cyrillic", "ПРИВЕТ", "привет"},
      {"beyond the basic plane", "\U00010400", "\U00010428"},
      {"I is i, in a Turkish setting too", "I", "i"},
      {"a dotted capital I is one plain i, without a loose dot", "\u0130", "i"},
      {"the Kelvin sign becomes a shorter letter", "\u212A", "k"},
      {"a letter whose lower case is longer", "\u023A", "\u2C65"},
      {"a capital sharp s", "\u1E9E", "ß"},
      {"letters without another case stay", "ß ª 文", "ß ª 文"},
      {"bytes that are not UTF-8 pass through",
       "A\xFF"
       "B\xC3",
       "a\xFF"
       "b\xC3"},
      {"an encoded surrogate passes through",
       "\xED\xA0\x80"
       "A",
       "\xED\xA0\x80"
       "a"},
      {"an overlong A is no A", "\xC1\x81", "\xC1\x81"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(toLower(c.text), c.lower);
  }
  EXPECT_EQ(toLower("A\0B"s), "a\0b"s);
}

TEST(CharacterCount, CountsCodePoints) {
  const struct {
    const char* says;
    std::string text;
    std::size_t count;
  } cases[] = {
      {"nothing", "", 0},
      {"ASCII", "abc", 3},
      {"two, three and four bytes are one character each", "é文\U0001F600", 3},
      {"a combining mark is a character of its own", "e\u0301", 2},
      {"a NUL counts", "a\0b"s, 3},
      {"a lone byte counts as one", "\xFF", 1},
      {"each byte of a character that is cut off counts", "\xE6\x96", 2},
      {"each byte of an encoded surrogate counts", "\xED\xA0\x80", 3},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(characterCount(c.text), c.count);
  }
}

TEST(ReplaceAll, ReplacesFromLeftToRight) {
  const struct {
    const char *says, *text, *find, *replacement, *result;
  } cases[] = {
      {"every one", "a&b&c", "&", "&amp;", "a&amp;b&amp;c"},
      {"what was put in is not searched again", "a", "a", "aa", "aa"},
      {"those that overlap are taken once", "aaa", "aa", "b", "ba"},
      {"by nothing", "a\r\nb\r\n", "\r\n", "", "ab"},
      {"nothing found", "abc", "x", "y", "abc"},
      {"the whole text", "abc", "abc", "", ""},
      {"in nothing", "", "a", "b", ""},
      {"nothing to look for replaces nothing", "abc", "", "x", "abc"},
      {"letter by letter", "aA", "A", "b", "ab"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(replaceAll(c.text, c.find, c.replacement), c.result);
  }
}

TEST(Split, GivesOnePieceMoreThanThereAreSeparators) {
  EXPECT_THAT(split("a,b,c", ","), ElementsAre("a", "b", "c"));
  EXPECT_THAT(split("abc", ","), ElementsAre("abc"));
  EXPECT_THAT(split(",a,,b,", ","), ElementsAre("", "a", "", "b", ""));
  EXPECT_THAT(split(",", ","), ElementsAre("", ""));
  EXPECT_THAT(split("a, b", ","), ElementsAre("a", " b"));
  EXPECT_THAT(split("a\r\nb\nc", "\r\n"), ElementsAre("a", "b\nc"));
  EXPECT_THAT(split("a||b", "|"), ElementsAre("a", "", "b"));
  EXPECT_THAT(split("aXbxc", "x"), ElementsAre("aXb", "c"));
}

TEST(Split, GivesNoPieceOfTheEmptyText) {
  EXPECT_THAT(split("", ","), IsEmpty());
  EXPECT_THAT(split("", ""), IsEmpty());
}

TEST(Split, GivesTheTextAsOnePieceWithoutASeparator) {
  EXPECT_THAT(split("a,b", ""), ElementsAre("a,b"));
}

TEST(BeginningOf, EndsWithAWholeCharacter) {
  const struct {
    std::string_view strText;
    std::size_t lngMost;
    std::string_view strBeginning;
  } cases[] = {
      {"", 3, ""},
      {"abc", 3, "abc"},
      {"abcd", 3, "abc"},
      {"ab\xC3\xA9", 4, "ab\xC3\xA9"},
      {"ab\xC3\xA9", 3, "ab"},
      {"\xF0\x9F\x98\x80", 3, ""},
      {"\x80\x80\x80\x80", 3, ""},
  };
  for (const auto& c : cases) EXPECT_EQ(beginningOf(c.strText, c.lngMost), c.strBeginning);
}

TEST(OneLine, PutsABlankForEachControlCharacter) {
  const struct {
    const char *says, *text, *line;
  } cases[] = {
      {"nothing", "", ""},
      {"one line stays", " a\u00e9 b", " a\u00e9 b"},
      {"white space at the end goes", "a\r\n\t \n", "a"},
      {"nothing but white space is nothing", "\n \t", ""},
      {"white space at the beginning becomes blanks", "\r\n\ta", "   a"},
      {"line ends inside become blanks, one each", "a\r\nb\tc\x1B[0m", "a  b c [0m"},
      {"the first that is no control character", "a\x7F", "a\x7F"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(oneLine(c.text), c.line);
  }
  EXPECT_EQ(oneLine("a\0b"s), "a b");
}

TEST(PercentDecoded, MakesAByteOfEachEscape) {
  const struct {
    const char *says, *encoded, *decoded;
  } cases[] = {
      {"nothing", "", ""},
      {"letters of either case", "%c3%A9", "\u00e9"},
      {"a plus is a plus", "a+b", "a+b"},
      {"what comes out is not decoded again", "%2541", "%41"},
      {"an escape that is cut off stays", "a%4", "a%4"},
      {"a lone sign stays", "100%", "100%"},
      {"no digits", "%zz%4g", "%zz%4g"},
      {"a sign before an escape", "%%41", "%A"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(percentDecoded(c.encoded), c.decoded);
  }
  EXPECT_EQ(percentDecoded("%00"), "\0"s);
}

TEST(ReplaceInvalidUtf8, PutsOneMarkForEachMaximalPartOfACharacter) {
  const struct {
    const char *says, *bytes, *text;
  } cases[] = {
      {"valid text stays", "aé文\U0001F600", "aé文\U0001F600"},
      {"the outermost characters stay", "\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF",
       "\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF"},
      {"a lone continuation byte",
       "a\x80"
       "b",
       "a\uFFFD"
       "b"},
      {"two of them", "\x80\xBF", "\uFFFD\uFFFD"},
      {"a lead byte before a letter",
       "\xC3"
       "a",
       "\uFFFD"
       "a"},
      {"a lead byte at the end", "a\xC3", "a\uFFFD"},
      {"two bytes of three are one part",
       "\xE6\x96"
       "a",
       "\uFFFD"
       "a"},
      {"three bytes of four are one part", "\xF0\x9F\x98", "\uFFFD"},
      {"a part, then a whole character", "\xF0\x9F\x98é", "\uFFFDé"},
      {"two lead bytes", "\xE6\xE6\x96\x87", "\uFFFD文"},
      {"an overlong solidus: neither byte begins a character", "\xC0\xAF", "\uFFFD\uFFFD"},
      {"an overlong form of three bytes", "\xE0\x80\xAF", "\uFFFD\uFFFD\uFFFD"},
      {"an overlong form of four bytes", "\xF0\x80\x80\xAF", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"the first surrogate", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
      {"the last surrogate", "\xED\xBF\xBF", "\uFFFD\uFFFD\uFFFD"},
      {"one above the last code point", "\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"a lead byte of nothing, well continued", "\xF5\x80\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"bytes that never occur", "\xF5\xFE\xFF", "\uFFFD\uFFFD\uFFFD"},
      {"the example of the Unicode Standard",
       "a\xF1\x80\x80\xE1\x80\xC2"
       "b\x80"
       "c\x80\xBF"
       "d",
       "a\uFFFD\uFFFD\uFFFD"
       "b\uFFFD"
       "c\uFFFD\uFFFD"
       "d"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(replaceInvalidUtf8(c.bytes), c.text);
  }
  EXPECT_EQ(replaceInvalidUtf8("a\0b"s), "a\0b"s);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
