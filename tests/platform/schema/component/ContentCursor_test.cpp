#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "ContentTesting.h"
#include "platform/schema/component/Components.h"
#include "platform/schema/component/ContentModel.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// A reading of children by their names, `<uri>` for one that only a wildcard may take.
struct Reading {
  Vocabulary& vocabulary;
  ContentModel model;
  ContentCursor cursor{model};

  Reading(Vocabulary& vocabulary_, const std::string& strModel)
      : vocabulary(vocabulary_), model(vocabulary_.parse(strModel)) {}

  Child child(const std::string& strChild) const {
    if (!strChild.starts_with('<')) return {vocabulary[strChild].name, ""};
    return {kNoName, strChild.substr(1, strChild.size() - 2)};
  }

  ContentMatch accept(const std::string& strChild) {
    const auto [name, strUri] = child(strChild);
    return cursor.accept(name, strUri);
  }

  /// The children that were taken, `!` behind each that was not, `.` at the end if they are enough.
  std::string read(const std::string& strChildren) {
    std::string strRead;
    std::istringstream children(strChildren);
    for (std::string strChild; children >> strChild;)
      strRead.append(strRead.empty() ? "" : " ")
          .append(strChild)
          .append(accept(strChild) ? "" : "!");
    return strRead + (cursor.complete() ? "." : "");
  }

  std::string expected() { return vocabulary.namesOf(cursor.expected()); }
};

/// Models with numbers of occurrences on everything, few of them as schemas would have them: one
/// name may stand in several places. `head` may be an element whose members are `one` and `two`.
class RandomModel {
 public:
  explicit RandomModel(std::mt19937& random) : random_(random) {}

  std::string text(std::size_t lngDepth) {
    const std::size_t lngTerm = random_() % 8;
    if (lngDepth == 0 || lngTerm < 3) {
      const auto names = std::to_array<const char*>({"a", "b", "c", "d", "head", "one", "<u>"});
      return names[random_() % names.size()] + occurrences();
    }
    const char* separator = lngTerm < 5 ? "," : lngTerm < 7 ? "|" : "&";
    std::string strText = "(";
    for (std::size_t lngChildren = 1 + random_() % 3; lngChildren > 0; --lngChildren)
      strText += text(lngDepth - 1) + separator;
    if (random_() % 40 == 0) strText = std::string("(") + separator;
    return strText + ")" + occurrences();
  }

 private:
  std::string occurrences() {
    const std::size_t lngLeast = random_() % 4;
    const std::size_t lngKind = random_() % 8;
    if (lngKind < 3) return "";
    if (lngKind < 5) return "?";
    if (lngKind < 6) return "{" + std::to_string(lngLeast) + ",}";
    return "{" + std::to_string(lngLeast) + "," +
           std::to_string(std::max<std::size_t>(lngLeast + random_() % 3, 1)) + "}";
  }

  std::mt19937& random_;
};

}  // namespace

TEST(ContentCursor, TakesTheChildrenThatTheModelAllows) {
  const struct {
    const char *says, *model, *children, *expected;
  } cases[] = {
      {"nothing in an empty sequence", "(,)", "a!.", ""},
      {"nothing in an empty choice, which nothing satisfies", "(|)", "a!", ""},
      {"unless it need not occur", "(|)?", "a!.", ""},
      {"an empty way out of a choice", "(a | (,))", ".", "a"},
      {"a sequence in its order", "(a, b?, c)", "b! a c b!.", ""},
      {"what comes up to the next that is needed", "(a?, b?, c, d?)", "", "a b c"},
      {"one of a choice", "(a | b)", "b a!.", ""},
      {"all in any order", "(a & b? & c)", "c a c! b.", ""},
      {"all without the optional", "(a & b? & c)", "c a.", "b"},
      {"all or nothing", "(a & b)?", "b", "a"},
      {"every occurrence of a group of all anew", "((a & b?){2}, c)", "a b a c.", ""},
      {"a repeated leaf", "a{2,3}", "a a a a!.", ""},
      {"four are two and two", "(a{2,3}){2,3}", "a a a a.", "a"},
      {"five are two and three", "(a{2,3}){2,3}", "a a a a a.", "a"},
      {"not ten", "(a{2,3}){2,3}", "a a a a a a a a a a!.", ""},
      {"totals with gaps: not five", "((a{3}){1,3})", "a a a a a", "a"},
      {"totals with gaps: six", "((a{3}){1,3})", "a a a a a a.", "a"},
      {"two occurrences of one, not one of two", "(a{1,2}, b?){2,4}", "a a.", "a b"},
      {"which leaves room for three more", "(a{1,2}, b?){2,4}", "a a b a a a a a a a!.", "b"},
      {"each way forward of an occurrence", "(a{2,3}, b?){2,3}", "a a a a b a a.", "a b"},
      {"another occurrence begins only when one may end", "(a{2,3}, b){2}", "a a a a! b a", "a"},
      {"an occurrence can be empty, so any number is reached", "(a?, b?){3,4}", "a.", "a b"},
      {"up to the greatest", "(a?, b?){3,4}", "b a b a b a b a!.", ""},
      {"one name in several places", "(a?, a?)", "a a a!.", ""},
      {"one name in several places, needed later", "(a?, a?, b)", "a b.", ""},
      {"either of two ways that begin alike", "((a, b) | (a, c))", "a", "b c"},
      {"without a limit", "(a | b)+", "a b b a.", "a b"},
      {"without a limit, but with a least number", "(a, b?){3,}", "a a b a a.", "a b"},
      {"a least number not reached", "(a, b?){3,}", "a b a", "a b"},
      {"nested repetition", "((a+, b?)*, c)", "a a b a c.", ""},
      {"a wildcard where no element fits", "(a?, <u>{2})", "a <v>! <u> <u> <u>!.", ""},
      {"a great number is only a number", "(a{1000000,2000000}, b){4000000000}", "a a", "a"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Vocabulary vocabulary;
    Reading reading(vocabulary, c.model);
    std::string strChildren = c.children;
    std::erase_if(strChildren, [](char sign) { return sign == '!' || sign == '.'; });
    EXPECT_EQ(reading.read(strChildren), c.children);
    EXPECT_EQ(reading.expected(), c.expected);
  }
}

TEST(ContentCursor, SaysTheSameAsTryingEverything) {
  std::mt19937 random(20261121);
  const std::vector<std::string> names = {"a", "b", "c", "d", "head", "one", "two", "<u>", "<v>"};
  std::size_t lngCompared = 0;
  std::size_t lngComplete = 0;
  for (int lngModel = 0; lngModel < 1'700 && !HasFailure(); ++lngModel) {
    Vocabulary vocabulary;
    vocabulary["head"].substitutes = {&vocabulary["one"], &vocabulary["two"]};
    vocabulary["two"].blnAbstract = random() % 4 == 0;
    const std::string strModel = RandomModel(random).text(1 + random() % 3);
    SCOPED_TRACE(strModel);
    Reading reading(vocabulary, strModel);
    std::vector<Child> children;
    std::string strChildren;
    for (int lngStep = 0; lngStep < 12 && !HasFailure(); ++lngStep) {
      SCOPED_TRACE(strChildren);
      ContentOracle oracle(reading.model.particle(), children);
      const auto next = oracle.next();
      EXPECT_EQ(reading.cursor.complete(), oracle.complete());
      EXPECT_EQ(reading.expected(), vocabulary.namesOf(oracle.expected(next)));
      lngComplete += reading.cursor.complete();

      // Mostly a child that is allowed.
      std::string strChild;
      bool blnAllowed = false;
      for (int lngTry = 0; lngTry < 5 && !blnAllowed; ++lngTry) {
        strChild = names[random() % names.size()];
        blnAllowed = std::any_of(next.begin(), next.end(), [&](const Particle* leaf) {
          return ContentOracle::fits(*leaf, reading.child(strChild));
        });
      }
      const ContentMatch match = reading.accept(strChild);
      EXPECT_EQ(bool(match), blnAllowed) << strChild;
      if (match.element) {
        EXPECT_EQ(vocabulary.nameOf(match.element), strChild);
      }
      if (blnAllowed) {
        children.push_back(reading.child(strChild));
        strChildren += strChild + " ";
      }
      ++lngCompared;
    }
  }
  EXPECT_GE(lngCompared, 20'000U);
  EXPECT_GE(lngComplete, lngCompared / 10);
}

TEST(ContentCursor, ListsWhatCouldStandHereOnceInTheOrderOfTheModel) {
  Vocabulary vocabulary;
  vocabulary["head"].substitutes = {&vocabulary["z"], &vocabulary["no"], &vocabulary["a"]};
  vocabulary["abstract"].substitutes = {&vocabulary["b"]};
  vocabulary["abstract"].blnAbstract = vocabulary["no"].blnAbstract = true;
  const struct {
    const char *says, *model, *children, *expected;
  } cases[] = {
      {"members behind their head, abstract ones left out", "(y | head | x)", "", "y head z a x"},
      {"no abstract head", "(abstract | x)", "", "b x"},
      {"each name once", "(x?, (y | x)?, head*, x?, head)", "", "x y head z a"},
      {"no wildcard", "(<u>? , x)", "", "x"},
      {"what repeats a group stands before what ends it", "((y?, x)*, a)", "y x", "y x a"},
      {"a repeated member stands for its head", "(head{2}, x)", "a", "head z a"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Reading reading(vocabulary, c.model);
    reading.read(c.children);
    EXPECT_EQ(reading.expected(), c.expected);
  }
}

TEST(ContentCursor, ListsNoMoreThanAreWanted) {
  Vocabulary vocabulary;
  vocabulary["head"].substitutes = {&vocabulary["z"], &vocabulary["a"]};
  const Reading reading(vocabulary, "(x?, head?, y)");
  const std::vector<std::string> lists = {
      "", "x", "x head", "x head z", "x head z a", "x head z a y", "x head z a y"};
  for (std::size_t most = 0; most < lists.size(); ++most) {
    EXPECT_EQ(vocabulary.namesOf(reading.cursor.expected(most)), lists[most]);
  }
}

TEST(ContentCursor, TellsAMemberOfASubstitutionGroupAndNotItsHead) {
  Vocabulary vocabulary;
  vocabulary["head"].substitutes = {&vocabulary["one"]};
  vocabulary["head"].blnAbstract = true;
  Reading reading(vocabulary, "(head{2}, one)");
  EXPECT_EQ(reading.accept("one").element, &vocabulary["one"]);
  EXPECT_EQ(reading.accept("head").element,
            &vocabulary["head"]);  // the caller tells it is abstract
  EXPECT_EQ(reading.accept("one").element, &vocabulary["one"]);
  EXPECT_TRUE(reading.cursor.complete());
}

TEST(ContentCursor, TakesADeclaredElementBeforeAWildcard) {
  Vocabulary vocabulary;
  Reading reading(vocabulary, "(<>*, a)");
  EXPECT_EQ(reading.accept("a").element, &vocabulary["a"]);
  Reading later(vocabulary, "(<>, a)");
  EXPECT_TRUE(later.accept("a").wildcard);  // `a` cannot stand here yet
  EXPECT_EQ(later.accept("a").element, &vocabulary["a"]);
}

TEST(ContentCursor, KeepsFewWaysWhateverTheNumbers) {
  const struct {
    std::string says, model;
    std::size_t lngTaken, lngWays;
  } cases[] = {
      {"a leaf", "a{2,400}", 400, 1},
      {"numbers without a gap are one", "((a{2,20}){2,20}){2,20}", 8'000, 1},
      {"and within others", "((a{2,20}){2,20}, b?){2,20}", 8'000, 2},
      {"two levels", "(a{2,20}, b?){2,20}", 400, 2},
      {"three levels", "((a{2,20}, b?){2,20}, c?){2,20}", 8'000, 4},
      {"least numbers far above one", "((a{10,20}, b?){10,20}, c?){10,20}", 8'000, 7},
      {"narrow ranges", "((a{20,21}, b?){20,21}, c?){20,21}", 9'261, 5},
      {"no limit", "((a{2,}, b?){2,}, c?){2,}", 10'000, 3},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Vocabulary vocabulary;
    Reading reading(vocabulary, c.model);
    std::size_t lngMost = 0;
    std::size_t lngTaken = 0;
    for (; lngTaken < 10'000 && reading.accept("a"); ++lngTaken)
      lngMost = std::max(lngMost, reading.cursor.ways());
    EXPECT_EQ(lngTaken, c.lngTaken);
    EXPECT_LE(lngMost, c.lngWays);
    EXPECT_TRUE(reading.cursor.complete());
  }
}

TEST(ContentCursor, KeepsOneWayThroughManyElements) {
  for (const std::size_t lngElements : {16U, 50U, 200U, 2'000U}) {
    SCOPED_TRACE(lngElements);
    const auto all = [&](const std::string& strOccurrences, const std::string& strSeparator) {
      std::string strModel = "(";
      for (std::size_t at = 0; at < lngElements; ++at)
        strModel += "e" + std::to_string(at) + strOccurrences + strSeparator;
      return strModel + ")";
    };
    const struct {
      const char* says;
      std::string model;
      std::size_t lngEach, lngTooMany;  // times that each child comes; children that are refused
    } cases[] = {
        {"a sequence", all("", ","), 1, 0},
        {"optional elements, one child too many of each", all("{0,2}", ","), 3, lngElements},
        {"a choice", all("", "|") + "*", 2, 0},
        {"all in any order, twice", all("?", "&"), 2, lngElements},
    };
    for (const auto& c : cases) {
      SCOPED_TRACE(c.says);
      Vocabulary vocabulary;
      Reading reading(vocabulary, c.model);
      std::size_t lngRefused = 0;
      for (std::size_t child = 0; child < lngElements * c.lngEach; ++child) {
        lngRefused += !reading.accept("e" + std::to_string(child / c.lngEach));
        EXPECT_EQ(reading.cursor.ways(), 1U);
      }
      EXPECT_EQ(lngRefused, c.lngTooMany);
      EXPECT_TRUE(reading.cursor.complete());
    }
  }
}

TEST(ContentCursor, CountsOneNameInManyPlaces) {
  for (const std::size_t lngPlaces : {16U, 40U}) {
    SCOPED_TRACE(lngPlaces);
    std::string strModel = "(";
    for (std::size_t at = 0; at < lngPlaces; ++at) strModel += "a{0,2},";
    Vocabulary vocabulary;
    Reading reading(vocabulary, strModel + "b)");
    for (std::size_t child = 0; child < 2 * lngPlaces; ++child) {
      EXPECT_TRUE(reading.accept("a"));
      EXPECT_LE(reading.cursor.ways(), lngPlaces);
    }
    EXPECT_FALSE(reading.accept("a"));
    EXPECT_EQ(reading.read("b"), "b.");
  }
}

TEST(ContentCursor, RefusesNothingThatIsValidWhenTheWaysAreTooMany) {
  std::string strModel = "(x, y?, ";
  for (int lngPlace = 0; lngPlace < 1'000; ++lngPlace) strModel += "a?,";
  Vocabulary vocabulary;
  Reading reading(vocabulary, strModel + "b)");
  EXPECT_EQ(reading.read("a x a a b"), "a! x a a b.");
  EXPECT_EQ(reading.expected(), "x y a b");
  EXPECT_EQ(reading.read("z"), "z!.");
}

}  // namespace Varnel_Tolv_XML_Creation
