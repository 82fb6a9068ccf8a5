#include "platform/text/Conversions.h"

#include <gtest/gtest.h>

#include <clocale>
#include <optional>
#include <string>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kMegabyte = 1'000'000;

/// The number of the run-time error that `body` raises; none when it raises nothing.
template <class Body>
std::optional<std::int32_t> raisedBy(Body&& body) {
  try {
    body();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return std::nullopt;
}

TEST(IsNumeric, FollowsTheGrammar) {
  const struct {
    const char *says, *text;
    bool numeric;
  } cases[] = {
      {"digits", "12", true},
      {"nothing", "", false},
      {"blanks alone", "  ", false},
      {"blanks around", "  12  ", true},
      {"a blank inside", "1 2", false},
      {"a tab", "\t12", false},
      {"a line end", "12\n", false},
      {"a plus", "+12", true},
      {"a minus", "-12", true},
      {"two signs", "--12", false},
      {"a blank behind the sign", "- 12", false},
      {"a sign behind the digits", "12-", false},
      {"a sign alone", "-", false},
      {"a fraction", "1.5", true},
      {"no whole digits", ".5", true},
      {"no fraction digits", "5.", true},
      {"a point alone", ".", false},
      {"two points", "1.2.3", false},
      {"thousands marks", "1,234,567", true},
      {"marks between any digits", "1,2,34", true},
      {"a mark before the digits", ",1", false},
      {"a mark behind the digits", "1,", false},
      {"a mark before the point", "1,.5", false},
      {"two marks together", "1,,2", false},
      {"a mark in the fraction", "1.2,3", false},
      {"a mark behind the sign", "-,1", false},
      {"an exponent", "1e5", true},
      {"a capital E", "1E5", true},
      {"d for e", "1d5", true},
      {"a capital D", "1D5", true},
      {"an exponent with a plus", "1e+5", true},
      {"an exponent with a minus", "1e-5", true},
      {"an exponent behind a point", "1.e5", true},
      {"a fraction with an exponent", ".5e1", true},
      {"an exponent without digits", "1e", false},
      {"an exponent with a sign alone", "1e+", false},
      {"an exponent alone", "e5", false},
      {"a point and an exponent alone", ".e5", false},
      {"a fraction of an exponent", "1e1.5", false},
      {"a mark in an exponent", "1e1,0", false},
      {"a number too large for every type", "1e400", true},
      {"hexadecimal", "0x10", false},
      {"hexadecimal of another fashion", "&H10", false},
      {"infinity", "inf", false},
      {"not a number", "nan", false},
      {"a word", "abc", false},
      {"a Boolean word", "true", false},
      {"letters behind the digits", "12abc", false},
      {"a per cent sign", "12%", false},
      {"a currency sign", "$12", false},
      {"parentheses", "(12)", false},
      {"digits of another script", "\u0661\u0662", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(isNumeric(c.text), c.numeric);
    if (!c.numeric) {
      EXPECT_EQ(raisedBy([&] { toInt32(c.text); }), kTypeMismatch);
    }
  }
  EXPECT_FALSE(isNumeric(std::string_view("12\0", 3)));
}

TEST(ToInt32, RoundsToTheNearestWholeAndAHalfToTheEvenNeighbour) {
  const struct {
    const char *says, *text;
    std::int32_t number;
  } cases[] = {
      {"a whole number", "12", 12},
      {"zeros in front", "000000000000000000012", 12},
      {"blanks, a sign, marks", " -1,234 ", -1234},
      {"below a half", "2.4999", 2},
      {"above a half", "2.5001", 3},
      {"a half below an even number", "1.5", 2},
      {"a half above an even number", "2.5", 2},
      {"the smallest half", "0.5", 0},
      {"its negative", "-0.5", 0},
      {"a negative half", "-1.5", -2},
      {"another", "-2.5", -2},
      {"just above a half, beyond the digits of a double", "2.50000000000000000000000000000001", 3},
      {"just below a half, beyond the digits of a double", "1.49999999999999999999999999999999", 1},
      {"trailing zeros are no more than a half", "2.5000000", 2},
      {"no whole digits", ".75", 1},
      {"an exponent", "1e3", 1000},
      {"an exponent that moves the point", "1.2345d2", 123},
      {"a half made by an exponent", "25e-1", 2},
      {"the other half made by an exponent", "35e-1", 4},
      {"less than a half made by an exponent", "5e-2", 0},
      {"nearly one", "99e-2", 1},
      {"a nine followed by a nine far away", "9e-9", 0},
      {"an exponent that outweighs many zeros", "0.0000000000001e13", 1},
      {"many digits that an exponent takes away", "15000000000000000000e-19", 2},
      {"a zero times anything", "0e999999999999999999999", 0},
      {"almost nothing", "1e-999999999999999999999", 0},
      {"the largest", "2147483647", 2147483647},
      {"what rounds to the largest", "2147483647.49", 2147483647},
      {"what rounds to it from below", "2147483646.5", 2147483646},
      {"the smallest", "-2147483648", -2147483647 - 1},
      {"a half below it, whose even neighbour it is", "-2147483648.5", -2147483647 - 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(toInt32(c.text), c.number);
  }
}

TEST(ToInt32, RaisesOverflowOutside32Bits) {
  for (const char* text :
       {"2147483648", "2147483647.5", "-2147483649", "-2147483648.50000000000000000000001",
        "4294967296", "18446744073709551616", "1e10", "1e400", "-1e400", "1e99999999999999999999",
        "99999999999999999999999999", "123456789012e-1"}) {
    SCOPED_TRACE(text);
    EXPECT_TRUE(isNumeric(text));
    EXPECT_EQ(raisedBy([&] { toInt32(text); }), kOverflow);
  }
}

TEST(ToInt32, ReadsTextsOfAnyLength) {
  const std::string strZeros(kMegabyte, '0');
  const std::string strNines(kMegabyte, '9');
  EXPECT_EQ(toInt32(strZeros + "7"), 7);
  EXPECT_EQ(toInt32("2.5" + strZeros), 2);
  EXPECT_EQ(toInt32("2.5" + strZeros + "1"), 3);
  EXPECT_EQ(toInt32("0." + strZeros + "1e1000001"), 1);
  EXPECT_EQ(toInt32("1" + strZeros + "e-1000000"), 1);
  EXPECT_EQ(raisedBy([&] { toInt32(strNines); }), kOverflow);
  EXPECT_EQ(raisedBy([&] { toInt32("1e" + strNines); }), kOverflow);
  EXPECT_EQ(toInt32("1e-" + strNines), 0);
  EXPECT_FALSE(isNumeric(strNines + "x"));

  std::string strMarked = "1";
  for (std::size_t lngPair = 0; lngPair < kMegabyte / 2; ++lngPair) strMarked += ",1";
  EXPECT_TRUE(isNumeric(strMarked));
  EXPECT_FALSE(isNumeric(strMarked + ","));
}

TEST(ToInt32, DependsOnNoLocale) {
  const std::string strBefore = std::setlocale(LC_ALL, nullptr);
  // Either is enough for a comma as decimal point; a machine may have neither.
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8"}) {
    if (std::setlocale(LC_ALL, name) != nullptr) break;
  }
  EXPECT_EQ(toInt32("1,234.6"), 1235);
  EXPECT_FALSE(isNumeric("1.234,6"));
  std::setlocale(LC_ALL, strBefore.c_str());
}

TEST(ToBoolean, KnowsTwoWordsAndTheNumbers) {
  const struct {
    const char *says, *text;
    std::optional<bool> value;
  } cases[] = {
      {"the word", "true", true},
      {"the other word", "false", false},
      {"any case", "TrUe", true},
      {"any case of the other", "FALSE", false},
      {"one", "1", true},
      {"zero", "0", false},
      {"minus one", "-1", true},
      {"any number", "17.5", true},
      {"a number that rounds to zero is not zero", "0.25", true},
      {"however small it is", "1e-400", true},
      {"however large it is", "1e400", true},
      {"zero in another form", "-0,0.00e7", false},
      {"blanks around a number", " 0 ", false},
      {"blanks around a word", " true", std::nullopt},
      {"nothing", "", std::nullopt},
      {"a blank", " ", std::nullopt},
      {"yes", "yes", std::nullopt},
      {"on", "on", std::nullopt},
      {"a part of a word", "tru", std::nullopt},
      {"more than a word", "true1", std::nullopt},
      {"no number", "1,", std::nullopt},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    if (c.value) {
      EXPECT_EQ(toBoolean(c.text), *c.value);
    } else {
      EXPECT_EQ(raisedBy([&] { toBoolean(c.text); }), kTypeMismatch);
    }
  }
}

TEST(BooleanWord, IsTheWordInSmallLetters) {
  EXPECT_EQ(booleanWord(true), "true");
  EXPECT_EQ(booleanWord(false), "false");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
