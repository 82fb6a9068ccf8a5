#include <gtest/gtest.h>

#include "answers/AnswerStory.h"
#include "support/Results.h"

// Cells and rows that are left behind, while the form is parked and while it is carried over.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kDuration =
    "<column id='c'/><column id='n' calculate='true' datatype='date' timedimabbr='d' "
    "firstcolumn='a' secondcolumn='b'/><column id='timedimension'/>";
constexpr const char* kDurationTypes =
    "<schematype id='cells'><m:c><value id='c'/></m:c><m:n><value id='n'/></m:n>"
    "<m:u><value id='timedimension'/></m:u></schematype>";

TEST(TableLosses, TellOfCellsThatAreNotStored) {
  const struct {
    const char *says, *content, *form, *losses;
  } cases[] = {
      {"a row beyond the count", "<column id='c'/><column id='d'/>",
       "t_rowCount=1&t___c_1=a&t___c_2=b", "t|2|c|b|row-beyond-count|:2\n"},
      {"rows in the order of their numbers", "<column id='c'/><column id='d'/>",
       "t_rowCount=0&t___d_2=x&t___c_2=y&t___c_10=z",
       "t|2|c|y|row-beyond-count|:2\nt|2|d|x|row-beyond-count|:2\nt|10|c|z|row-beyond-count|:2\n"},
      {"cells in the order of the columns, unknown ones last", "<column id='d'/><column id='c'/>",
       "t_rowCount=0&t___a_1=w&t___c_1=x&t___d_1=y&t___c_10=z&t___d_10=v",
       "t|1|d|y|row-beyond-count|:2\nt|1|c|x|row-beyond-count|:2\nt|1|a|w|row-beyond-count|:2\n"
       "t|10|d|v|row-beyond-count|:2\nt|10|c|z|row-beyond-count|:2\n"},
      {"all rows within it", "<column id='c'/><column id='d'/>", "t_rowCount=2&t___c_1=a&t___c_2=b",
       ""},
      {"a blank one beyond it", "<column id='c'/><column id='d'/>",
       "t_rowCount=1&t___c_1=a&t___c_2=", ""},
      {"a column that the table has not", "<column id='c'/><column id='d'/>",
       "t_rowCount=1&t___c_1=a&t___x_1=b", "t|1|x|b|unknown-column|:2\n"},
      {"a row number that is none", "<column id='c'/>", "t_rowCount=1&t___c_1=a&t___c_01=b",
       "t___c_01|||b|unknown-question|:0\n"},
      {"another value than the fixed one", "<column id='c'/><column id='d' autovalue='k'/>",
       "t_rowCount=1&t___c_1=a&t___d_1=b", "t|1|d|b|cell-not-read|:2\n"},
      {"the fixed value itself", "<column id='c'/><column id='d' autovalue='k'/>",
       "t_rowCount=1&t___c_1=a&t___d_1=k", ""},
      {"a table that was parked before", "<row id='1'><column id='c' value='old'/></row>",
       "t_rowCount=2&t___c_1=a", "t|1|c|a|parked-before|:2\n"},
      {"what is stored in a table that goes as blank",
       "<row id='1'><column id='c' value='old'/><column id='d' autovalue='k' value='k'/></row>",
       "t_rowCount=1", "t|1|c|old|blank-table|:2\n"},
      {"a question that stands in it",
       "<column id='c'/><prtobjct id='q' objecttype='field' type='text' dynamic='false'/>",
       "t_rowCount=1&q=1", "q|||1|blank-table|:2\n"},
      {"a blank table without anything", "<column id='c'/><column id='d' autovalue='k'/>",
       "t_rowCount=1", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = grid(c.content);
    story.strForm = c.form;
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(TableLosses, OfSeveralTablesOfOneIdAreToldOnce) {
  AnswerStory story;
  story.strObjects = grid("<column id='c'/>") + grid("<column id='d'/>");
  story.strForm = "t_rowCount=1&t___c_1=a&t___x_1=b&t___x=y&t___c_01=z";
  EXPECT_EQ(story.losses(),
            "t|1|x|b|unknown-column|:2\n"
            "t___c_01|||z|unknown-question|:0\nt___x|||y|unknown-question|:0\n");
}

TEST(TableLosses, TellOfAnswersToComputedCells) {
  const struct {
    const char *says, *form, *losses;
  } cases[] = {
      {"both operands make the number",
       "t___c_1=x&t___a_1=2012-01-01&t___b_1=2012-01-31&t___timedimension_1=days", ""},
      {"one alone makes none, and takes the unit with it",
       "t___c_1=x&t___a_1=2012-01-01&t___timedimension_1=days",
       "t|1|a|2012-01-01|operand-without-result|:2\n"
       "t|1|timedimension|days|unit-without-duration|:2\n"},
      {"neither", "t___c_1=x", ""},
      {"no dates", "t___c_1=x&t___a_1=soon&t___b_1=later",
       "t|1|a|soon|operand-without-result|:2\nt|1|b|later|operand-without-result|:2\n"},
      {"a number that the page computed too",
       "t___c_1=x&t___a_1=2012-01-01&t___b_1=2012-01-31&t___n_1=30", ""},
      {"another than the page's", "t___c_1=x&t___a_1=2012-01-01&t___b_1=2012-01-31&t___n_1=31",
       "t|1|n|31|cell-not-read|:2\n"},
      {"a row of operands alone is blank", "t___c_2=x&t___a_1=2012-01-01&t___b_1=2012-01-31",
       "t|1|a|2012-01-01|blank-row|:2\nt|1|b|2012-01-31|blank-row|:2\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = grid(kDuration);
    story.strTypes = kDurationTypes;
    story.strForm = std::string("t_rowCount=2&") + c.form;
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(TableLosses, ComeInTheOrderOfRowsAndColumnsWhateverLostThem) {
  AnswerStory story;
  story.strObjects = grid("<column id='e'/>" + std::string(kDuration) + "<column id='d'/>");
  story.strTypes = kDurationTypes;  // no place for d and e
  story.strForm =
      "t_rowCount=3&t___e_1=u&t___c_1=x&t___d_1=y&t___a_2=2012-01-01&t___b_2=2012-01-31"
      "&t___c_3=x&t___a_3=soon&t___d_3=z";
  EXPECT_EQ(story.losses(),
            "t|1|e|u|cell-without-place|types.xml:2\n"
            "t|1|d|y|cell-without-place|types.xml:2\n"
            "t|2|a|2012-01-01|blank-row|:2\n"
            "t|2|b|2012-01-31|blank-row|:2\n"
            "t|3|a|soon|operand-without-result|:2\n"
            "t|3|d|z|cell-without-place|types.xml:2\n");
}

TEST(TableLosses, TellOfAGridThatGoesWithItsOnlyRow) {
  AnswerStory story;
  story.strObjects =
      "<prtobjct id='t' objecttype='table' type='table' dynamic='false'><row id='1'/>" +
      std::string(kDuration) + "</prtobjct>";
  story.strForm = "t_rowCount=1&t___a_1=2012-01-01&t___b_1=2012-01-31";
  EXPECT_EQ(story.losses(), "t|1|a|2012-01-01|blank-row|:2\nt|1|b|2012-01-31|blank-row|:2\n");
}

TEST(TableLosses, TellOfCellsThatTheMappingHasNoPlaceFor) {
  const std::string strPlace =
      "<messageitem id='t' type='dynatable' toschema='true'><parentxpath>/m:r</parentxpath>"
      "<node>row</node><action id='cells'/></messageitem>";
  const struct {
    const char* says;
    std::string entry;
    const char *types, *losses;
  } cases[] = {
      {"a column without a placeholder", strPlace,
       "<schematype id='cells'>\n<m:c><value id='c'/></m:c></schematype>",
       "t|1|d|y|cell-without-place|types.xml:2\n"},
      {"it goes to the additional information", strPlace,
       "<schematype id='cells'><m:c><value id='c'/></m:c><pbr:AdditionalInfo/></schematype>", ""},
      {"a placeholder inside the element of another", strPlace,
       "<schematype id='cells'><m:d><m:c><value id='c'/></m:c><value id='d'/></m:d>"
       "</schematype>",
       "t|1|c|x|overwritten|mapper.xml:2\n"},
      {"a placeholder inside one that is filled after it", strPlace,
       "<schematype id='cells'><m:e><value id='d'><m:c><value id='c'/></m:c></value></m:e>"
       "</schematype>",
       "t|1|c|x|overwritten|mapper.xml:2\n"},
      {"the child of one", strPlace,
       "<schematype id='cells'><m:e><value id='d'><value id='c'/></value></m:e></schematype>",
       "t|1|c|x|overwritten|mapper.xml:2\n"},
      {"inside one that was filled before", strPlace,
       "<schematype id='cells'>\n<m:e><value id='c'><m:d><value id='d'/></m:d></value></m:e>"
       "</schematype>",
       "t|1|d|y|cell-without-place|types.xml:2\n"},
      {"inside one that no cell fills", strPlace,
       "<schematype id='cells'><m:e><value id='z'><m:c><value id='c'/></m:c></value></m:e>"
       "<m:d><value id='d'/></m:d></schematype>",
       "t|1|c|x|overwritten|mapper.xml:2\n"},
      {"no entry", "", "<schematype id='cells'/>",
       "t|1|c|x|no-mapping|mapper.xml:0\nt|1|d|y|no-mapping|mapper.xml:0\n"},
      {"an entry without a place",
       "<messageitem id='t' type='table' toschema='true'><action id='cells'/></messageitem>",
       "<schematype id='cells'/>",
       "t|1|c|x|table-without-place|mapper.xml:2\nt|1|d|y|table-without-place|mapper.xml:2\n"},
      {"an entry that says so on purpose",
       "<messageitem id='t' type='table' toschema='false'><action id='cells'/></messageitem>",
       "<schematype id='cells'/>", ""},
      {"an action that is none", strPlace, "<schematype id='other'/>",
       "t|1|c|x|run-failed|mapper.xml:2\nt|1|d|y|run-failed|mapper.xml:2\n"},
      {"a text of the row takes all its cells",
       "<messageitem id='t' type='dynatable' toschema='true'><parentxpath>/m:r</parentxpath>"
       "<node>row</node><action id='rowinfotovalue'/></messageitem>",
       "<schematype id='cells'/>", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = grid("<column id='c' columnlabel='C'/><column id='d' columnlabel='D'/>");
    story.strEntries = c.entry;
    story.strTypes = c.types;
    story.strForm = "t_rowCount=1&t___c_1=x&t___d_1=y";
    EXPECT_EQ(story.losses(), c.losses);
  }
}

TEST(TableLosses, ComeWithTheTableAndTheRowThatCannotBeWrittenAsAText) {
  AnswerStory story;
  story.strObjects = grid("<column id='c' columnlabel='C'/><column id='d'/>");
  story.strEntries =
      "<messageitem id='t' type='dynatable' toschema='true'><parentxpath>/m:r</parentxpath>"
      "<node>row</node><action id='rowinfotovalue'/></messageitem>";
  story.strForm = "t_rowCount=1&t___c_1=x&t___d_1=y";
  static_cast<void>(story.losses());
  EXPECT_EQ(story.objAck.ErrorDetail(), "Selecting the column label has failed");
  EXPECT_EQ(story.report.failedAt, "table \"t\", row \"1\" of the object list");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
