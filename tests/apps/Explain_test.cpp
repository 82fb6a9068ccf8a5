#include <filesystem>

#include "Program.h"

// `varnel-xml explain`: where every answer of a submission went.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class Explain : public ProgramTest {
 protected:
  ProgramRun explain(std::vector<std::string> words, const ProgramStreams& streams = {}) const {
    words.insert(words.begin(), {"explain", "--deployment", "."});
    return runProgram(directory_.path(), words, streams);
  }
  ProgramRun explainForm(std::string_view strForm, std::vector<std::string> words = {}) const {
    write("answers.form", strForm);
    words.insert(words.end(), {"--form", "answers.form"});
    return explain(words);
  }
};

TEST_F(Explain, TellsInTextWhereEachAnswerWentTheLostOnesFirst) {
  // ESC and, in U+009B, the same in one character.
  const ProgramRun run = explainForm("name=Ada&born=5.3.2026&shoe=4%0A2%1B[31m%C2%9B32m\n");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "2 written, 0 left out, 1 lost; the schema: not-asked\n"
            "shoe: 4 / 2\\x1b[31m\\u009b32m\n"
            "    lost: no object of the form asks for it [unknown-question]\n"
            "name: Ada\n"
            "    written\n"
            "    /c:card[1]/c:name[1]\n"
            "    mapper.xml:2\n"
            "born: 5.3.2026\n"
            "    written\n"
            "    /c:card[1]/c:born[1]\n"
            "    mapper.xml:4\n");
}

TEST_F(Explain, LeavesBlankAnswersOutOfTheText) {
  EXPECT_EQ(explainForm("name=&born=+").out,
            "0 written, 0 left out, 0 lost; the schema: not-asked\n");
}

TEST_F(Explain, TellsWhyARunFailed) {
  write("mapper.xml", "<message/>");
  const ProgramRun run = explainForm("name=Ada");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "The run failed: object mapper not found for object=name\n"
            "0 written, 0 left out, 1 lost; the schema: not-asked\n"
            "name: Ada\n"
            "    lost: the object mapper has no entry for it [no-mapping]\n"
            "    mapper.xml\n");
}

TEST_F(Explain, NamesTheTableAndTheFormFieldWithoutWhichARunFails) {
  write("objects.xml",
        "<prtobjcts><prtobjct id='T' objecttype='table' type='dynatable' dynamic='false'>"
        "<column id='a' columnlabel='A'/></prtobjct><hdnflds/></prtobjcts>");
  const ProgramRun run = explainForm("T___a_1=x");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("The run failed: The object list is missing: table \"T\", form "
                                 "field \"t_rowCount\" was not posted\n"));
  EXPECT_THAT(explainForm("T_rowCount=1", {"--format", "html"}).out,
              HasSubstr("form field \"t_rowCount\" was not posted"));
}

TEST_F(Explain, GivesTheSameJsonAsABuild) {
  write("answers.form", "name=Ada&shoe=42");
  const ProgramRun run = explain({"--form", "answers.form", "--format", "json"});
  EXPECT_EQ(run.out,
            build({"--deployment", ".", "--form", "answers.form", "--submit", "--explain"}).out);
  EXPECT_THAT(run.out, HasSubstr("\"journal\""));
}

TEST_F(Explain, MakesAPageOfItsOwn) {
  const ProgramRun run = explainForm("name=%3Cb%3EAda%26&shoe=42%01", {"--format", "html"});
  expectPageOfItsOwn(run, "Where every answer went");
  EXPECT_THAT(run.out, HasSubstr("no object of the form asks for it"));
  EXPECT_THAT(run.out, Not(HasSubstr("<b>"))) << "an answer is text";
}

TEST_F(Explain, ReadsTheFormFromStandardInput) {
  const ProgramRun run = explain({"--form", "-"}, {.strInput = "name=Ada"});
  EXPECT_THAT(run.out, HasSubstr("1 written, 0 left out, 0 lost"));
}

TEST_F(Explain, RefusesWhatItCannotUse) {
  EXPECT_TRUE(CouldNotRun(explain({"--format", "pdf"}), "--format"));
  EXPECT_TRUE(CouldNotRun(explain({"--form", "none.form"}), "none.form"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
