#include <gtest/gtest.h>
#include <libxml/xmlregexp.h>

#include <functional>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/value/Pattern.h"
#include "platform/xml/XmlLibrary.h"

// Patterns made by chance, on texts made by chance: compared with what the definition of regular
// expressions says of them, followed literally, and with the library's own matcher.

namespace Varnel_Tolv_XML_Creation {
namespace {

using Places = std::set<std::size_t>;

/// A regular expression, and where in a text it can end when it begins at some places of it.
struct Expression {
  std::string strPattern;
  std::function<Places(std::string_view strText, const Places& begins)> ends;
};

Expression character(const char* pattern, std::function<bool(char)> isIn) {
  return {pattern, [isIn](std::string_view strText, const Places& begins) {
            Places ends;
            for (const std::size_t at : begins) {
              if (at < strText.size() && isIn(strText[at])) ends.insert(at + 1);
            }
            return ends;
          }};
}

Expression oneOf(const char* pattern, const char* characters) {
  return character(pattern, [characters](char letter) {
    return std::string_view(characters).find(letter) != std::string_view::npos;
  });
}

Expression noneOf(const char* pattern, const char* characters) {
  return character(pattern, [characters](char letter) {
    return std::string_view(characters).find(letter) == std::string_view::npos;
  });
}

Expression choice(const Expression& left, const Expression& right) {
  return {left.strPattern + "|" + right.strPattern,
          [left, right](std::string_view strText, const Places& begins) {
            Places ends = left.ends(strText, begins);
            ends.merge(right.ends(strText, begins));
            return ends;
          }};
}

Expression sequence(const Expression& left, const Expression& right) {
  return {left.strPattern + right.strPattern,
          [left, right](std::string_view strText, const Places& begins) {
            return right.ends(strText, left.ends(strText, begins));
          }};
}

Expression group(const Expression& inner) { return {"(" + inner.strPattern + ")", inner.ends}; }

Expression repeated(const Expression& one, const char* mark, int least, int most) {
  return {one.strPattern + mark, [=](std::string_view strText, const Places& begins) {
            Places now = begins;
            for (int time = 0; time < least; ++time) now = one.ends(strText, now);
            Places all = now;
            for (int time = least; time < most && !now.empty(); ++time) {
              now = one.ends(strText, now);
              const std::size_t before = all.size();
              all.insert(now.begin(), now.end());
              if (all.size() == before) break;
            }
            return all;
          }};
}

class Chance {
 public:
  std::string text() {
    constexpr std::string_view kLetters = "abc1-._^ \n$ab";
    std::string strText;
    for (std::size_t left = below(9); left > 0; --left) strText += kLetters[below(kLetters.size())];
    return below(10) == 0 ? strText + strText + strText + strText + strText : strText;
  }

  Expression expression(int depth) {
    Expression result = branch(depth);
    while (below(4) == 0) result = choice(result, branch(depth));
    return result;
  }

 private:
  std::size_t below(std::size_t lngEnd) { return random_() % lngEnd; }

  Expression branch(int depth) {
    Expression result = piece(depth);
    for (std::size_t left = below(3); left > 0; --left) result = sequence(result, piece(depth));
    return result;
  }

  Expression piece(int depth) {
    const struct {
      const char* mark;
      int least, most;
    } quantifiers[] = {{"?", 0, 1},     {"*", 0, 9999},    {"+", 1, 9999}, {"{2}", 2, 2},
                       {"{1,2}", 1, 2}, {"{2,}", 2, 9999}, {"{0}", 0, 0},  {"{0,33}", 0, 33}};
    const Expression one = depth > 0 && below(3) == 0 ? group(expression(depth - 1)) : atom();
    if (below(2) == 0) return one;
    const auto& quantifier = quantifiers[below(std::size(quantifiers))];
    return repeated(one, quantifier.mark, quantifier.least, quantifier.most);
  }

  Expression atom() {
    const Expression atoms[] = {
        oneOf("a", "a"),          oneOf("b", "b"),
        oneOf("-", "-"),          oneOf("^", "^"),
        oneOf("$", "$"),          oneOf("\\.", "."),
        noneOf(".", "\n\r"),      oneOf("\\d", "1"),
        noneOf("\\D", "1"),       oneOf("\\s", " \n"),
        noneOf("\\S", " \n"),     oneOf("\\w", "abc1^$"),
        noneOf("\\W", "abc1^$"),  oneOf("\\i", "abc_"),
        noneOf("\\I", "abc_"),    oneOf("\\c", "abc1_.-"),
        noneOf("\\C", "abc1_.-"), oneOf("\\p{Ll}", "abc"),
        noneOf("\\P{Ll}", "abc"), noneOf("\\P{IsBasicLatin}", "abc1-._^ \n$"),
        oneOf("[a-c]", "abc"),    noneOf("[^a-c]", "abc"),
        oneOf("[a-c-[b]]", "ac"), oneOf("[\\w-[a-c-[b]]]", "b1^$"),
        noneOf("[^a-[.]]", "a."), oneOf("[.b-]", ".b-"),
        oneOf("[-1]", "-1"),      noneOf("[^\\s\\d]", " \n1"),
    };
    return atoms[below(std::size(atoms))];
  }

  std::mt19937 random_{20};
};

using Compiled = std::unique_ptr<xmlRegexp, decltype(&xmlRegFreeRegexp)>;

const xmlChar* terminated(const std::string& strText) {
  return reinterpret_cast<const xmlChar*>(strText.c_str());
}

TEST(PatternAgreement, HoldsWithTheDefinitionAndMostlyWithTheLibrary) {
  prepareXmlLibrary();
  Chance chance;
  int lngMatches = 0;
  int lngDifferent = 0;
  for (int made = 0; made < 750; ++made) {
    const Expression expression = chance.expression(2);
    const Pattern pattern(expression.strPattern);
    const Compiled compiled(xmlRegexpCompile(terminated(expression.strPattern)), xmlRegFreeRegexp);
    ASSERT_TRUE(compiled) << expression.strPattern;
    for (int text = 0; text < 7; ++text) {
      const std::string strText = chance.text();
      const bool blnMatches = expression.ends(strText, {0}).count(strText.size()) > 0;
      EXPECT_EQ(pattern.matches(strText), blnMatches) << expression.strPattern << " on " << strText;
      lngMatches += blnMatches ? 1 : 0;
      const bool blnTheirs = xmlRegexpExec(compiled.get(), terminated(strText)) == 1;
      lngDifferent += blnMatches == blnTheirs ? 0 : 1;
    }
  }
  EXPECT_GT(lngMatches, 400);
  // Where the library differs it is wrong, as the definition shows; the next test has examples.
  EXPECT_LT(lngDifferent, 100);
  RecordProperty("different", lngDifferent);
}

TEST(PatternAgreement, IsWithTheDefinitionWhereTheLibraryGoesWrong) {
  const struct {
    const char *says, *pattern, *text;
    bool blnMatches;
  } cases[] = {
      {"twice nothing is nothing", "((\\.{0,2})*){2}", "", true},
      {"one character that is no hyphen, and before it none", "([^\\-]+)*[^.]", "a", true},
      {"a digit is a word's character; the other branch wants an a", "_*\\w|\\d?a", "1", true},
      {"a count is of its own atom", "_{2}(c?b)*|[ -~]{2}", "_-bbb", false},
  };
  prepareXmlLibrary();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strPattern = c.pattern;
    const Compiled compiled(xmlRegexpCompile(terminated(strPattern)), xmlRegFreeRegexp);
    EXPECT_EQ(Pattern(c.pattern).matches(c.text), c.blnMatches);
    EXPECT_EQ(xmlRegexpExec(compiled.get(), terminated(c.text)) == 1, !c.blnMatches)
        << "the library no longer goes wrong";
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
