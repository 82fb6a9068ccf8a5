// What is missing where the message element carries a question's id.

#include <gmock/gmock.h>

#include "validation/MappingTesting.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view kTable = "type='dynaTable'";

/// The column `c<number>` of a question, with the path `c<number>`.
std::string columnOf(int lngNumber) {
  const std::string strId = "c" + std::to_string(lngNumber);
  return "<column id='" + strId + "'><path>" + strId + "</path></column>";
}

/// The table `t` at /r/t/row with three columns, of which the first and the third are mandatory,
/// and an error on its row 2.
class TableStory : public MappingStory {
 public:
  explicit TableStory(std::string_view strCells)
      : MappingStory(
            question("t", "/r/t/row", kTable, columnOf(1) + columnOf(2) + columnOf(3)),
            parked("t", "", "", row("1", cell("c1", "") + cell("c3", "")) + row("2", strCells))) {
    strReference =
        "<r><t><row><c1 mandatory='true'/><c2 mandatory='false'/><c3 mandatory='true'/>"
        "</row></t></r>";
    error(kContentIncomplete, "/r/t/row", "t", "2");
  }
};

TEST(ErrorMapping, CallsTheValueOfAPlainQuestionMissing) {
  for (const SchemaErrorKind kind : {kContentIncomplete, kContentInvalid}) {
    for (const char* strType : {"", "type=''", "type='text'", "type='dynatable'"}) {
      SCOPED_TRACE(strType);
      MappingStory story(question("q", "/r/q", strType, columnOf(1)), parked("q", "there"));
      story.error(kind, "/r/elsewhere", "q", "1", "c1");
      EXPECT_TRUE(Succeeded(story.map()));
      EXPECT_THAT(story.userErrors(), ElementsAre("q|Label of q||||Value missing"));
      EXPECT_THAT(story.intErrors(), IsEmpty());
      EXPECT_THAT(story.lines(), IsEmpty());
    }
  }
}

TEST(ErrorMapping, EndsForAQuestionThatIsNotThere) {
  MappingStory story("", parked("q", "x"));
  story.error(kContentIncomplete, "/r/q", "q");
  EXPECT_TRUE(RaisesObjectNotSet(story)) << "in the questions document";

  MappingStory other(question("q", "/r/q"));
  other.error(kContentInvalid, "/r/q", "q");
  EXPECT_TRUE(RaisesObjectNotSet(other)) << "in the parked form";
  EXPECT_THAT(other.lines(), ElementsAre(kObjectNotSetLine));
}

TEST(ErrorMapping, FindsTheColumnThatIsNotFilledIn) {
  TableStory story(cell("c1", "x") + cell("c2", "") + cell("c3", ""));
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("t|Label of t|2|c3|Column c3|Column value missing"));
  EXPECT_THAT(story.intErrors(), IsEmpty());
  EXPECT_THAT(story.lines(), ElementsAre("Column not filled in: c3"));
  EXPECT_THAT(linesOf(story.host, "isXpathMandatory"),
              ElementsAre("Testing xpath: /r/t/row/c1", "Testing xpath: /r/t/row/c2",
                          "Testing xpath: /r/t/row/c3"));
}

TEST(ErrorMapping, KeepsOnlyTheFirstOfTwoColumnsNotFilledIn) {
  TableStory story(cell("c1", "") + cell("c3", ""));
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("t|Label of t|2|c1|Column c1|Column value missing"));
  EXPECT_THAT(story.intErrors(), IsEmpty()) << "the error did leave a record";
  EXPECT_THAT(story.lines(), ElementsAre("Column not filled in: c1", "Column not filled in: c3"));
}

TEST(ErrorMapping, TakesABlankCellForFilledIn) {
  TableStory story(cell("c1", " ") + cell("c3", "x"));
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/t/row|t|2|"));
  EXPECT_THAT(story.lines(), ElementsAre("Uncaught schema validation error: text; xpath: /r/t/row; "
                                         "question ID: t; row index: 2"));
}

TEST(ErrorMapping, RecordsAColumnThatTheFormLacks) {
  TableStory story(cell("c2", "") + cell("c3", ""));
  story.colErrors.clear();
  story.error(kContentInvalid, "/r/t/row/c2", "t", "2", "c2");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("t|Label of t|2|c3|Column c3|Column value missing"));
  EXPECT_THAT(story.intErrors(),
              ElementsAre("Table column missing from protocol|/r/t/row/c2|t|2|c1"))
      << "the column that is missing, wherever the error stands";
  EXPECT_THAT(story.lines(), ElementsAre("Column not in protocol: c1", "Column not filled in: c3"));
}

TEST(ErrorMapping, RecordsEveryMandatoryColumnOfARowThatTheFormLacks) {
  TableStory story("");
  story.colErrors[0].rowIndex = "9";
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), ElementsAre("Table column missing from protocol|/r/t/row|t|9|c1",
                                             "Table column missing from protocol|/r/t/row|t|9|c3"));
}

TEST(ErrorMapping, PassesOverAColumnWithoutAPath) {
  MappingStory story(question("t", "/r/row", kTable, "<column id='c0'/><column/>" + columnOf(1)),
                     parked("t", "", "", row("2", cell("c1", ""))));
  story.strReference = "<r><row><c1 mandatory='TRUE'/></row></r>";
  story.error(kContentInvalid, "/r/row", "t", "2");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("t|Label of t|2|c1|Column c1|Column value missing"));
  EXPECT_THAT(story.lines(), ElementsAre("No path found for t/c0", "No path found for t/",
                                         "Column not filled in: c1"));
}

TEST(ErrorMapping, LeavesATableWithoutColumnsToTheFallback) {
  MappingStory story(question("t", "/r/row", kTable), parked("t", ""));
  story.error(kContentInvalid, "/r/row", "t");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/row|t||"));
}

TEST(ErrorMapping, AsksForTheChoiceOfAColumnWhetherTheFormHasTheTable) {
  MappingStory story(question("t", "/r/row", kTable, columnOf(1)));
  story.strReference = "<r><row><c1 mandatory='true' choice='true'/></row></r>";
  story.error(kContentIncomplete, "/r/row", "t", "2");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/row|t|2|")) << "so nothing is mandatory";
}

TEST(ErrorMapping, SelectsColumnsWithThePrefixesOfTheMessage) {
  MappingStory story(
      question("t", "/r/m:row", kTable, "<column id='c'><path>n:a/m:b</path></column>"),
      parked("t", "", "", row("1", cell("c", ""))));
  story.strReference =
      "<r xmlns:x='urn:m' xmlns:y='urn:n'><x:row><y:a><x:b mandatory='true'/></y:a></x:row></r>";
  story.error(kContentIncomplete, "/r/m:row", "t", "1");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("t|Label of t|1|c|Column c|Column value missing"));
}

TEST(ErrorMapping, EndsWithTheFailureOfTheMandatoryTestOfAColumn) {
  TableStory story(cell("c1", "") + cell("c3", ""));
  story.strReference = "<r><t><row><c1 mandatory='true'/></row></t></r>";
  story.error(kInvalidValue, "/r/q", "q");
  EXPECT_TRUE(FailedWith(story.map(), SVC_RET_XML_CREATION_REF_XML_OBJ_MISSING,
                         "Reference XML Node is missing: /r/t/row/c2",
                         "An error has occurred validating the message XML"));
  EXPECT_THAT(story.userErrors(), ElementsAre("t|Label of t|2|c1|Column c1|Column value missing"))
      << "what was recorded before stays";
  EXPECT_THAT(story.intErrors(), IsEmpty());
  EXPECT_THAT(story.host.traceLines().back(), "isXpathMandatory: objReferenceXmlNode Is Nothing");
}

TEST(ErrorMapping, EndsWithARunTimeErrorOfTheMandatoryTest) {
  MappingStory story(question("t", "/r/x:row", kTable, columnOf(1)), parked("t", ""));
  story.error(kContentIncomplete, "/r/x:row", "t", "1");
  EXPECT_TRUE(FailedWithNumber(story.map(), kXmlFailure, "isXpathMandatory"));
  EXPECT_THAT(story.intErrors(), IsEmpty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
