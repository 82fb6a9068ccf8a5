// Values that are wrong (too long, too short, of no use) and errors of the other kinds.

#include <gmock/gmock.h>

#include "validation/MappingTesting.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The user's text about the length of a value.
std::string lengthText(SchemaErrorKind kind, std::string_view strValue, std::string_view strLimit) {
  MappingStory story(question("12", "/r/q", strLimit), parked("12", strValue));
  story.error(kind, "/r/q", "12");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.lines(), IsEmpty());
  EXPECT_THAT(story.intErrors(), IsEmpty());
  if (story.userErrors().size() != 1) return "no single record";
  EXPECT_EQ(story.userErrors()[0], "12|Label of 12||||" + story.colUserErrors->front().message);
  return story.colUserErrors->front().message;
}

TEST(ErrorMapping, TellsHowLongAValueIsAndMayBe) {
  EXPECT_EQ(lengthText(kTooLong, "123456789012", "maxLength='10'"),
            "Number of characters entered (12) exceeds the maximum allowed (10)");
  EXPECT_EQ(lengthText(kTooShort, "12", "minLength='3'"),
            "Number of characters entered (2) is less than the minimum allowed (3)");
  EXPECT_EQ(lengthText(kTooShort, "", "minLength='1'"),
            "Number of characters entered (0) is less than the minimum allowed (1)");
  EXPECT_EQ(lengthText(kTooLong, "a\xc3\xa9\xe2\x82\xac\xf0\x9d\x84\x9e ", "maxLength='3'"),
            "Number of characters entered (5) exceeds the maximum allowed (3)")
      << "characters, not bytes, and untrimmed";
  EXPECT_EQ(lengthText(kTooLong, "ab", "maxLength=' many ' minLength='1'"),
            "Number of characters entered (2) exceeds the maximum allowed ( many )")
      << "the limit is text";
  EXPECT_EQ(lengthText(kTooLong, "a", "maxLength='10'"),
            "Number of characters entered (1) exceeds the maximum allowed (10)")
      << "the schema is believed";
}

TEST(ErrorMapping, TellsTheLengthOfAHugeValue) {
  const std::string strHuge(12'000'000, 'x');
  EXPECT_EQ(lengthText(kTooLong, strHuge, "maxLength='5'"),
            "Number of characters entered (12000000) exceeds the maximum allowed (5)");
}

TEST(ErrorMapping, RecordsALimitThatIsMissing) {
  const struct {
    SchemaErrorKind kind;
    const char *limit, *user, *internal;
  } cases[] = {
      {kTooLong, "minLength='1'", "Number of characters entered exceeds the maximum allowed",
       "Question 12: maxLength attribute missing"},
      {kTooLong, "maxlength='1'", "Number of characters entered exceeds the maximum allowed",
       "Question 12: maxLength attribute missing"},
      {kTooShort, "maxLength='1'", "Number of characters entered is less than the minimum allowed",
       "Question 12: minLength attribute missing"},
      {kTooShort, "minLength=''", "Number of characters entered is less than the minimum allowed",
       "Question 12: minLength attribute missing"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.limit);
    MappingStory story(question("12", "/r/q", c.limit), parked("12", "value"));
    story.error(c.kind, "/r/q", "12", "7");
    EXPECT_TRUE(Succeeded(story.map()));
    EXPECT_THAT(story.userErrors(), ElementsAre(std::string("12|Label of 12||||") + c.user));
    EXPECT_THAT(story.intErrors(), ElementsAre(std::string(c.internal) + "|/r/q|12|7|"));
    EXPECT_THAT(story.lines(), IsEmpty());
  }
}

TEST(ErrorMapping, RecordsAMissingLimitBeforeItNeedsALabel) {
  MappingStory story(question("q", "/r/q"), "<prtobjct id='q' value='v'/>");
  story.error(kTooLong, "/r/q", "q");
  EXPECT_TRUE(RaisesObjectNotSet(story));
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), ElementsAre("Question q: maxLength attribute missing|/r/q|q||"));
}

/// A table `t` with the cells 1/a and 2/a.
MappingStory tableStory(std::string_view strColumn) {
  return MappingStory(
      question("t", "/r/t", "type='dynaTable' maxLength='99' minLength='99'", strColumn),
      parked("t", "rows", "", row("1", cell("a", "one")) + row("2", cell("a", "four"))));
}

TEST(ErrorMapping, TakesValueLimitAndLabelOfACell) {
  MappingStory story = tableStory("<column id='b'/><column id='a' maxLength='3' minLength='8'/>");
  story.error(kTooLong, "/r/t/a", "t", "2", "a");
  EXPECT_TRUE(Succeeded(story.map()));
  story.colErrors.clear();
  EXPECT_THAT(story.userErrors(),
              ElementsAre("t|Label of t|2|a|Column a|Number of characters entered (4) exceeds the "
                          "maximum allowed (3)"));
  story.error(kTooShort, "/r/t/a", "t", "1", "a");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(),
              ElementsAre("t|Label of t|1|a|Column a|Number of characters entered (3) is less than "
                          "the minimum allowed (8)"));
  EXPECT_THAT(story.intErrors(), IsEmpty());
}

TEST(ErrorMapping, RecordsALimitThatAColumnLacks) {
  MappingStory story = tableStory("<column id='a'/>");
  story.error(kTooLong, "/r/t/a", "t", "2", "a");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(),
              ElementsAre("t|Label of t|2|a|Column a|Number of characters entered exceeds the "
                          "maximum allowed"));
  EXPECT_THAT(story.intErrors(),
              ElementsAre("Question t: maxLength attribute missing|/r/t/a|t|2|a"));
}

TEST(ErrorMapping, TakesAnErrorWithARowOnlyForAPlainQuestion) {
  MappingStory story = tableStory("<column id='a' maxLength='3'/>");
  story.error(kTooLong, "/r/t", "t", "2", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(),
              ElementsAre("t|Label of t||||Number of characters entered (4) exceeds the maximum "
                          "allowed (99)"))
      << "\"rows\" has four characters";
}

TEST(ErrorMapping, TakesAnErrorWithABlankColumnForACell) {
  MappingStory story = tableStory("<column id='a' maxLength='3'/>");
  story.error(kTooLong, "/r/t", "t", "2", " ");
  EXPECT_TRUE(RaisesObjectNotSet(story));
}

TEST(ErrorMapping, EndsWhereALookupFindsNothing) {
  const struct {
    const char *says, *questions, *park;
    SchemaErrorKind kind;
    const char *row, *column;
  } cases[] = {
      {"too long, not parked", "<question id='q' maxLength='1'/>", "", kTooLong, "", ""},
      {"too short, not parked", "<question id='q' minLength='1'/>", "", kTooShort, "", ""},
      {"parked without a value", "<question id='q' maxLength='1'/>",
       "<prtobjct id='q' fieldlabel='l'/>", kTooLong, "", ""},
      {"no question", "", "<prtobjct id='q' fieldlabel='l' value='v'/>", kTooLong, "", ""},
      {"parked without a label", "<question id='q' maxLength='1'/>", "<prtobjct id='q' value='v'/>",
       kTooLong, "", ""},
      {"no row", "<question id='q'><column id='c' maxLength='1'/></question>",
       "<prtobjct id='q' fieldlabel='l'/>", kTooLong, "1", "c"},
      {"no column in the questions", "<question id='q'/>",
       "<prtobjct id='q' fieldlabel='l'><row id='1'><column id='c' value='v' "
       "columnlabel='l'/></row></prtobjct>",
       kTooLong, "1", "c"},
      {"a cell without a label", "<question id='q'><column id='c' maxLength='1'/></question>",
       "<prtobjct id='q' fieldlabel='l'><row id='1'><column id='c' value='v'/></row></prtobjct>",
       kTooLong, "1", "c"},
      {"wrong, not parked", "<question id='q'/>", "", kInvalidValue, "", ""},
      {"wrong, no such cell", "<question id='q'/>", "<prtobjct id='q' fieldlabel='l'/>",
       kInvalidValue, "1", "c"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    MappingStory story(c.questions, c.park);
    story.error(c.kind, "/r/q", "q", c.row, c.column);
    EXPECT_TRUE(RaisesObjectNotSet(story));
    ASSERT_FALSE(story.lines().empty());
    EXPECT_EQ(story.lines().back(), kObjectNotSetLine);
    EXPECT_THAT(story.userErrors(), IsEmpty());
  }
}

TEST(ErrorMapping, CallsAValueInvalid) {
  MappingStory story("", parked("q", "x") + parked("t", "", "", row("2", cell("c", "v"))));
  story.error(kInvalidValue, "/r/q", "q", "5");
  story.error(kInvalidValue, "/r/t/c", "t", "2", "c");
  EXPECT_TRUE(Succeeded(story.map())) << "what the questions document says plays no part";
  EXPECT_THAT(story.userErrors(), ElementsAre("q|Label of q||||Invalid value",
                                              "t|Label of t|2|c|Column c|Invalid value"));
  EXPECT_THAT(story.intErrors(), IsEmpty());
  EXPECT_THAT(story.lines(), ElementsAre("Invalid value: q/5/", "Invalid value: t/2/c"));
}

TEST(ErrorMapping, RecordsEveryOtherErrorWithItsOwnText) {
  const struct {
    const char* says;
    SchemaErrorKind kind;
    const char *question, *row, *column, *line;
  } cases[] = {
      {"undeclared element", kUndeclaredElement, "q", "", "", "; question ID: q"},
      {"text", kTextNotAllowed, "q", "1", "", "; question ID: q; row index: 1"},
      {"unclassified", kUnclassified, "q", "", "c", "; question ID: q; column ID: c"},
      {"all of it", kUnclassified, "q", "1", "c", "; question ID: q; row index: 1; column ID: c"},
      {"invalid, without a question", kInvalidValue, "", "1", "c",
       "; no question ID; row index: 1; column ID: c"},
      {"too long, without a question", kTooLong, "", "", "", "; no question ID"},
      {"too short, without a question", kTooShort, "", "", "", "; no question ID"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    MappingStory story(question("q", "/r/q"), parked("q", ""));
    story.error(c.kind, "/r/q", c.question, c.row, c.column, "What happened.\r\nWhere.");
    EXPECT_TRUE(Succeeded(story.map()));
    EXPECT_THAT(story.userErrors(), IsEmpty());
    EXPECT_THAT(story.intErrors(), ElementsAre(std::string("What happened.\r\nWhere.|/r/q|") +
                                               c.question + "|" + c.row + "|" + c.column));
    EXPECT_THAT(story.lines(),
                ElementsAre(std::string("Schema validation error: What happened.\r\nWhere.; xpath: "
                                        "/r/q") +
                            c.line));
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
