#include <gtest/gtest.h>

#include "answers/AnswerStory.h"
#include "support/ExampleRun.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(Journal, TellsWhereEachFieldWent) {
  const struct {
    const char* says;
    std::string entries;
    const char* journal;
  } cases[] = {
      {"one place each, and one left out",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:a/m:q</node>"
       "</messageitem>\n<messageitem id='r' toschema='false'/>",
       "q|||1|written|/m:r[1]/m:a[1]/m:q[1] |mapper.xml:2\n"
       "r|||2|left-out||mapper.xml:3\n"},
      {"positions among elements of one name",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:a</node>"
       "<action id='addinfotonode'><parameter formvalue='true'/><parameter formlabel='true'/>"
       "</action></messageitem>\n"
       "<messageitem id='r' toschema='true'><parentxpath>/m:r</parentxpath><node>m:a</node>"
       "<action id='addinfotonode'><parameter formvalue='true'/><parameter formlabel='true'/>"
       "</action></messageitem>",
       "q|||1|written|/m:r[1]/m:a[1] |mapper.xml:2\n"
       "r|||2|written|/m:r[1]/m:a[2] |mapper.xml:3\n"},
      {"the extra place too",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:q</node>"
       "<extrapath>/m:r/head</extrapath><extranode>m:x</extranode></messageitem>\n"
       "<messageitem id='r' toschema='false'/>",
       "q|||1|written|/m:r[1]/m:q[1] /m:r[1]/head[1]/m:x[1] |mapper.xml:2\n"
       "r|||2|left-out||mapper.xml:3\n"},
      {"where the answer of another object goes",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath>"
       "<node item='r'>m:q</node></messageitem>\n<messageitem id='r' toschema='false'/>",
       "q|||1|left-out||mapper.xml:2\n"
       "r|||2|written|/m:r[1]/m:q[1] |mapper.xml:2\n"},
      {"a text of two answers is the place of both",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:a</node>"
       "<action id='addinfotonode'><parameter formvalue='true'/><parameter item='r'/></action>"
       "</messageitem>\n<messageitem id='r' toschema='false'/>",
       "q|||1|written|/m:r[1]/m:a[1] |mapper.xml:2\n"
       "r|||2|written|/m:r[1]/m:a[1] |mapper.xml:2\n"},
      {"the elements of a complex type",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:p</node>"
       "<action id='pair'><parameter id='v' formvalue='true'/>"
       "<parameter id='w' messageitem='r'/></action></messageitem>\n"
       "<messageitem id='r' toschema='false'/>",
       "q|||1|written|/m:r[1]/m:p[1]/m:v[1] |mapper.xml:2\n"
       "r|||2|written|/m:r[1]/m:p[1]/m:g[1]/m:w[1] |mapper.xml:2\n"},
      {"a complex type of constants as a whole",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:p</node>"
       "<action id='fixed'/></messageitem>\n<messageitem id='r' toschema='false'/>",
       "q|||1|written|/m:r[1]/m:p[1] |mapper.xml:2\n"
       "r|||2|left-out||mapper.xml:3\n"},
      {"a lost one has no place",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:q</node>"
       "</messageitem>\n<messageitem id='r' toschema='true'><parentxpath>/m:r</parentxpath>"
       "<node>m:q</node></messageitem>",
       "q|||1|lost||mapper.xml:3\n"
       "r|||2|written|/m:r[1]/m:q[1] |mapper.xml:3\n"},
      {"a copy that the document data make",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:a/m:q</node>"
       "</messageitem>\n<messageitem id='r' toschema='false'/>"
       "<docdata><docinfo id='attestationtime'><parentxpath>/m:r/head</parentxpath>"
       "<node>time</node></docinfo><docnodes><rule><parentxpath>/m:r/head</parentxpath>"
       "<node>/m:r/m:a</node></rule></docnodes></docdata>",
       "q|||1|written|/m:r[1]/m:a[1]/m:q[1] /m:r[1]/head[1]/m:a[1]/m:q[1] |mapper.xml:2\n"
       "r|||2|left-out||mapper.xml:3\n"},
      {"a parent that is copied into itself",
       "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:a/m:q</node>"
       "</messageitem>\n<messageitem id='r' toschema='false'/>"
       "<docdata><docnodes><rule><parentxpath>/m:r/m:a</parentxpath>"
       "<node>/m:r/m:a</node></rule></docnodes></docdata>",
       "q|||1|written|/m:r[1]/m:a[1]/m:q[1] /m:r[1]/m:a[1]/m:a[1]/m:q[1] |mapper.xml:2\n"
       "r|||2|left-out||mapper.xml:3\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = question("q") + question("r");
    story.strEntries = c.entries;
    story.strTypes =
        "<schematype id='pair'><m:v><value id='v'/></m:v><m:g><m:w><value id='w'/></m:w></m:g>"
        "</schematype><schematype id='fixed'><m:v>ticked</m:v></schematype>";
    story.strForm = "q=1&r=2";
    EXPECT_EQ(story.journal(), c.journal);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(Journal, TellsWhereAComplexTypeThatIsATextWent) {
  const std::string strDirect =
      "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:p</node>"
      "<action id='text'><parameter id='v' formvalue='true'/></action></messageitem>\n";
  const struct {
    const char* says;
    std::string entries;
    const char *form, *journal;
  } cases[] = {
      {"the element that the type is put in", strDirect + "<messageitem id='r' toschema='false'/>",
       "q=1&r=2",
       "q|||1|written|/m:r[1]/m:p[1] |mapper.xml:2\n"
       "r|||2|left-out||mapper.xml:3\n"},
      {"which a later answer is written over",
       strDirect + "<messageitem id='r' toschema='true'><parentxpath>/m:r</parentxpath>"
                   "<node>m:p</node></messageitem>",
       "q=1&r=2",
       "q|||1|lost||mapper.xml:3\n"
       "r|||2|written|/m:r[1]/m:p[1] |mapper.xml:3\n"},
      {"which the document data copy",
       strDirect + "<messageitem id='r' toschema='false'/>"
                   "<docdata><docinfo id='attestationtime'><parentxpath>/m:r/head</parentxpath>"
                   "<node>time</node></docinfo><docnodes><rule><parentxpath>/m:r/head</parentxpath>"
                   "<node>/m:r/m:p</node></rule></docnodes></docdata>",
       "q=1&r=2",
       "q|||1|written|/m:r[1]/m:p[1] /m:r[1]/head[1]/m:p[1] |mapper.xml:2\n"
       "r|||2|left-out||mapper.xml:3\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = question("q") + question("r");
    story.strEntries = c.entries;
    story.strTypes = "<schematype id='text'><value id='v'/></schematype>";
    story.strForm = c.form;
    EXPECT_EQ(story.journal(), c.journal);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(Journal, TellsOfCellsThatAreTheTextOfTheirRow) {
  AnswerStory story;
  story.strObjects = grid("<column id='c'/>");
  story.strTypes = "<schematype id='cells'><value id='c'/></schematype>";
  story.strForm = "t_rowCount=2&t___c_1=a&t___c_2=b";
  EXPECT_EQ(story.journal(),
            "t|1|c|a|written|/m:r[1]/row[1] |mapper.xml:5\n"
            "t|2|c|b|written|/m:r[1]/row[2] |mapper.xml:5\n");
  EXPECT_TRUE(Succeeded(story.objAck));
}

TEST(Journal, TellsOfEachCellInItsRow) {
  AnswerStory story;
  story.strObjects = question("q") + grid() + question("r");
  story.strForm = "q=1&r=&t_rowCount=3&t___c_1=a&t___d_1=b&t___d_3=c&t___c_4=beyond";
  EXPECT_EQ(story.journal(),
            "q|||1|written|/m:r[1]/m:q[1] |mapper.xml:2\n"
            "t|1|c|a|written|/m:r[1]/row[1]/m:c[1] |mapper.xml:5\n"
            "t|1|d|b|written|/m:r[1]/row[1]/m:d[1] |mapper.xml:5\n"
            "t|3|c||left-out||mapper.xml:5\n"
            "t|3|d|c|written|/m:r[1]/row[2]/m:d[1] |mapper.xml:5\n"
            "t|4|c|beyond|lost||:2\n"
            "r||||left-out||mapper.xml:3\n");
  EXPECT_TRUE(Succeeded(story.objAck));
}

TEST(Journal, HasOneEntryForEachAnswer) {
  const std::string strTicked = question("q", "type='check'");
  const std::string strComputed = grid(
      "<column id='c'/><column id='n' calculate='true' datatype='date' timedimabbr='d' "
      "firstcolumn='a' secondcolumn='b'/><column id='timedimension'/>");
  const std::string strFixed = grid("<column id='c'/><column id='d' autovalue='k'/>");
  const struct {
    const char* says;
    std::string objects;
    const char *hidden, *form, *journal;
  } cases[] = {
      {"a box that does not say on", strTicked, "", "q=yes", "q|||yes|lost||:2\n"},
      {"a box that does", strTicked, "", "q=on", "q|||true|written|/m:r[1]/m:q[1] |mapper.xml:2\n"},
      {"a box that is not ticked", strTicked, "", "", "q||||left-out||mapper.xml:2\n"},
      {"a computed cell for which another value was submitted", strComputed, "",
       "t_rowCount=1&t___c_1=x&t___a_1=2012-01-01&t___b_1=2012-01-31&t___n_1=31",
       "t|1|c|x|written|/m:r[1]/row[1]/m:c[1] |mapper.xml:5\n"
       "t|1|n|31|lost||:2\n"
       "t|1|timedimension||left-out||mapper.xml:5\n"},
      {"the unit of a duration that was not computed", strComputed, "",
       "t_rowCount=1&t___c_1=x&t___timedimension_1=days",
       "t|1|c|x|written|/m:r[1]/row[1]/m:c[1] |mapper.xml:5\n"
       "t|1|n||left-out||mapper.xml:5\n"
       "t|1|timedimension|days|lost||:2\n"},
      {"a fixed cell for which another value was submitted", strFixed, "",
       "t_rowCount=1&t___c_1=x&t___d_1=y",
       "t|1|c|x|written|/m:r[1]/row[1]/m:c[1] |mapper.xml:5\nt|1|d|y|lost||:2\n"},
      {"an object behind the end mark", question("r") + "<prtobjct id='mark'/>" + question("q"), "",
       "q=1", "r||||left-out||mapper.xml:3\nq|||1|lost||:2\n"},
      {"a hidden field that is read under another name", question("r"),
       "<hiddenfield id='a' output='q' toschema='true'/>", "a=1",
       "r||||left-out||mapper.xml:3\nq|||1|lost||hidden.xml:1\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = c.objects;
    story.strHidden = c.hidden;
    story.strForm = c.form;
    EXPECT_EQ(story.journal(), c.journal);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(Journal, GivesNoPlaceToWhatIsLeftOut) {
  // The blank answer's element stays, as the reference XML wants it.
  AnswerStory story;
  story.deployment.file("reference.xml", "<r><q mandatory='true'/></r>");
  story.strObjects = question("q") + question("s");
  story.strEntries =
      "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node item='s'>m:q</node>"
      "</messageitem>\n<messageitem id='s' toschema='false'/>";
  story.strForm = "q=&s=";
  EXPECT_EQ(story.journal(), "q||||left-out||mapper.xml:2\ns||||left-out||mapper.xml:3\n");
}

TEST(Journal, HasTheLabelsOfTheObjectList) {
  AnswerStory story;
  story.strObjects =
      question("q", "type='text' letterlabel='Your name'") +
      "<prtobjct id='t' objecttype='table' type='dynatable' dynamic='false' tablelabel='Rows'>"
      "<column id='c' columnlabel='Colour'/></prtobjct>";
  story.strForm = "q=1&t_rowCount=1&t___c_1=a&t___c_2=b&t___x_2=c&z=d";
  story.journal();
  std::string strLabels;
  for (const JournalEntry& entry : story.report.journal) {
    strLabels += entry.value + ": " + entry.questionText + '|' + entry.columnText + '\n';
  }
  EXPECT_EQ(strLabels, "1: Your name|\na: Rows|Colour\nb: Rows|Colour\nc: Rows|\nd: |\n");
  std::string strLost;
  for (const AnswerLoss& loss : story.report.losses) {
    strLost += loss.value + ": " + loss.questionText + '|' + loss.columnText + '\n';
  }
  EXPECT_EQ(strLost, "b: Rows|Colour\nc: Rows|\nd: |\n");
}

TEST(Journal, TellsOfTheTextOfARow) {
  AnswerStory story;
  story.strObjects = grid("<column id='c' columnlabel='C'/><column id='d' columnlabel='D'/>");
  story.strEntries =
      "<messageitem id='t' type='dynatable' toschema='true'><parentxpath>/m:r</parentxpath>"
      "<node>row</node><action id='rowinfotovalue'/></messageitem>";
  story.strForm = "t_rowCount=2&t___c_1=a&t___d_2=b";
  EXPECT_EQ(story.journal(),
            "t|1|c|a|written|/m:r[1]/row[1] |mapper.xml:2\n"
            "t|1|d||written|/m:r[1]/row[1] |mapper.xml:2\n"
            "t|2|c||written|/m:r[1]/row[2] |mapper.xml:2\n"
            "t|2|d|b|written|/m:r[1]/row[2] |mapper.xml:2\n");
}

TEST(Journal, TellsOfHiddenFields) {
  AnswerStory story;
  story.strObjects = question("q");
  story.strHidden =
      "<hiddenfield id='r' output='r' toschema='true'/>\n"
      "<hiddenfield id='u' output='user'/>\n<hiddenfield id='v' output='v' toschema='True'/>";
  story.strForm = "q=1&r=2&u=3&v=4&z=5";
  EXPECT_EQ(story.journal(),
            "q|||1|written|/m:r[1]/m:q[1] |mapper.xml:2\n"
            "r|||2|written|/m:r[1]/m:n[1] |mapper.xml:3\n"
            "user|||3|left-out||hidden.xml:2\n"
            "v|||4|lost||hidden.xml:3\n"
            "z|||5|lost||:0\n");
}

TEST(Journal, OfADraftHasNoPlaces) {
  AnswerStory story;
  story.blnSubmit = false;
  story.strObjects = question("q") + grid();
  story.strForm = "q=1&t_rowCount=1&t___c_1=a";
  EXPECT_EQ(story.journal(), "q|||1|left-out||:0\nt|1|c|a|left-out||:0\nt|1|d||left-out||:0\n");
}

TEST(Journal, OfAFailedRunGoesAsFarAsItCame) {
  AnswerStory story;
  story.strObjects = question("q") + question("z") + question("r");
  story.strForm = "q=1&z=2&r=3";
  EXPECT_EQ(story.journal(),
            "q|||1|written|/m:r[1]/m:q[1] |mapper.xml:2\nz|||2|lost||mapper.xml:0\n");
  EXPECT_FALSE(story.objAck.Success());
}

/// A run of the example with a report.
RunReport reportOf(std::string_view strForm) {
  const ExampleRun example(strForm);
  RunReport report;
  HostServices services = example.host();
  services.report = &report;
  services.blnJournal = true;
  BuildXML library(services);
  example.run(library);
  return report;
}

TEST(Journal, OfTheExampleLosesNothing) {
  for (const char* const strForm : {"complete.form", "faulty.form"}) {
    SCOPED_TRACE(strForm);
    const RunReport report = reportOf(strForm);
    for (const AnswerLoss& loss : report.losses) {
      ADD_FAILURE() << loss.questionId << ' ' << loss.rowIndex << ' ' << loss.columnId << ' '
                    << loss.reason << " in line " << loss.line;
    }
    EXPECT_GT(report.journal.size(), 50U);
  }
}

TEST(Journal, AgreesWithTheLosses) {
  AnswerStory story;
  story.strObjects = question("q") + question("r") + grid();
  story.strEntries =
      "<messageitem id='q' toschema='True'/><messageitem id='r' toschema='true'><parentxpath>/m:r"
      "</parentxpath><node>m:n</node></messageitem><messageitem id='t' type='table'>"
      "<action id='cells'/></messageitem>";
  story.strForm = "q=1&r=2&x=3&t_rowCount=1&t___c_1=a&t___d_2=b";
  const std::string strAlone = story.losses();
  story.journal();
  std::size_t lngLost = 0;
  for (const JournalEntry& entry : story.report.journal) {
    if (entry.outcome == JournalOutcome::lost) ++lngLost;
  }
  EXPECT_EQ(story.report.losses.size(), 4U) << strAlone;
  EXPECT_EQ(lngLost, 4U);
  story.blnJournal = false;
  EXPECT_EQ(story.losses(), strAlone) << "the same losses with a journal and without";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
