#include <gtest/gtest.h>

#include "answers/AnswerStory.h"
#include "support/Results.h"

// Answers that the parked form does not hold, though they were submitted.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kMark = "<prtobjct id='mark'/>\n";

TEST(ParkLosses, TellWhatTheObjectListLeavesUnparked) {
  const struct {
    const char* says;
    std::string objects;
    const char *form, *losses;
  } cases[] = {
      {"an answer behind the end mark, with the mark's line",
       question("r") + "\n" + kMark + question("q"), "q=1", "q|||1|object-after-end-mark|:3\n"},
      {"nothing was answered behind it", kMark + question("q"), "q=&r=", ""},
      {"the answer behind it is not to be sent", kMark + question("s"), "s=1", ""},
      {"what stands before it is parked", question("q") + kMark, "q=1", ""},
      {"the same answer is there already", kMark + question("q", "type='text' value='1'"), "q=1",
       ""},
      {"a table behind it, cell by cell", kMark + grid(), "t_rowCount=2&t___d_2=y&t___c_1=x",
       "t|1|c|x|object-after-end-mark|:2\nt|2|d|y|object-after-end-mark|:2\n"},

      {"a word that is no object type", "<prtobjct id='q' objecttype='feild' dynamic='false'/>",
       "q=1", "q|||1|unknown-object-type|:2\n"},
      {"a heading is no question", "<prtobjct id='q' objecttype='label' dynamic='false'/>",
       "r=", ""},
      {"a misspelt table", grid("<column id='c'/>", "tabel"), "t_rowCount=1&t___c_1=x",
       "t|1|c|x|unknown-object-type|:2\n"},
      {"a capital is parked, but not carried over",
       "<prtobjct id='q' objecttype='Field' dynamic='false'/>", "q=1",
       "q|||1|unknown-object-type|:2\n"},
      {"a table with a capital, with its own line",
       question("r") + "\n" + grid("<column id='c'/>", "Table"), "t_rowCount=1&t___c_1=x",
       "t|1|c|x|unknown-object-type|:3\n"},

      {"a ticked box that does not say on", question("q", "type='check'"), "q=yes",
       "q|||yes|box-not-on|:2\n"},
      {"a ticked box", question("q", "type='check'"), "q=ON", ""},
      {"a box that is not ticked", question("q", "type='check'"), "", ""},
      {"a box that is not to be sent", question("s", "type='check'"), "s=yes", ""},

      {"an answer to no question", question("q"), "q=1&z=2", "z|||2|unknown-question|:0\n"},
      {"a blank one", question("q"), "q=1&z=+%0D%0A", ""},
      {"labels and row counts are no answers", question("q"), "q=1&z_hiddenName=Z&z_rowCount=3",
       ""},
      {"a name is read in lower case", question("Q"), "Q=1", "Q|||1|unknown-question|:0\n"},
      {"so this one is its answer", question("Q"), "q=1", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = c.objects;
    story.strForm = c.form;
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(ParkLosses, TellOfHiddenFields) {
  const struct {
    const char *says, *hidden, *form, *losses;
  } cases[] = {
      {"another word than true", "\n<hiddenfield id='q' output='q' toschema='True'/>", "q=1",
       "q|||1|word-not-true|hidden.xml:2\n"},
      {"a word that means no", "<hiddenfield id='q' output='q' toschema='false'/>", "q=1", ""},
      {"no word", "<hiddenfield id='q' output='q'/>", "q=1", ""},
      {"true", "<hiddenfield id='q' output='q' toschema='true'/>", "q=1", ""},
      {"a blank one", "<hiddenfield id='q' output='q' toschema='True'/>", "", ""},
      {"an element that is none", "<hidenfield id='q' output='q' toschema='true'/>", "q=1",
       "q|||1|misnamed-hidden-field|hidden.xml:1\n"},
      {"the same, not to be sent", "<hidenfield id='q' output='q'/>", "q=1", ""},
      {"the value is read again under the other name",
       "<hiddenfield id='a' output='q' toschema='true'/>", "a=1",
       "q|||1|hidden-read-anew|hidden.xml:1\n"},
      {"where it is the same", "<hiddenfield id='a' output='q' toschema='true'/>", "a=1&q=1", ""},
      {"a name with a capital is another one", "<hiddenfield id='Q' output='Q' toschema='true'/>",
       "Q=1", "Q|||1|hidden-read-anew|hidden.xml:1\n"},
      {"of one that the mapping leaves out", "<hiddenfield id='a' output='s' toschema='true'/>",
       "a=1", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = question("r");
    story.strHidden = c.hidden;
    story.strForm = c.form;
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(ParkLosses, OfADraftAreThoseOfParkingAlone) {
  AnswerStory story;
  story.blnSubmit = false;
  story.strObjects = question("z") + grid();
  story.strHidden = "<hiddenfield id='h' output='h' toschema='True'/>";
  story.strForm = "z=1&h=2&y=3&t_rowCount=1&t___c_1=a&t___c_2=b";
  EXPECT_EQ(story.losses(), "t|2|c|b|row-beyond-count|:2\ny|||3|unknown-question|:0\n");
}

TEST(ParkLosses, AreNotToldOfAFormThatIsNotParked) {
  AnswerStory story;
  story.strObjects = question("q") + "<prtobjct id='r' objecttype='field'/>";
  story.strForm = "q=1&y=3";
  EXPECT_EQ(story.losses(), "");
  EXPECT_TRUE(
      FailedWithRuntimeError(story.objAck, kTypeMismatch, "ParkProtField", "Type mismatch"));
}

TEST(ParkLosses, StartAnewWithEachRun) {
  AnswerStory story;
  story.strForm = "z=1";
  EXPECT_EQ(story.losses(), "z|||1|unknown-question|:0\n");
  EXPECT_EQ(story.losses(), "z|||1|unknown-question|:0\n");
  EXPECT_TRUE(story.report.journal.empty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
