#include <cctype>
#include <utility>

#include "OptionTable.h"
#include "Program.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

class CommandLine : public ProgramTest {
 protected:
  ProgramRun run(const std::vector<std::string>& words) const {
    return runProgram(directory_.path(), words);
  }
};

TEST_F(CommandLine, TellsItsVersion) {
  const ProgramRun version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "varnel-xml " VARNEL_VERSION "\n");
  EXPECT_EQ(version.err, "");
}

TEST_F(CommandLine, HelpsWithTheProgram) {
  const ProgramRun help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.err, "");
  for (const char* command : {"build", "check", "batch", "test", "explain", "prove", "document"}) {
    EXPECT_NE(help.out.find("\n  " + std::string(command) + " "), std::string::npos) << command;
  }
}

TEST_F(CommandLine, HelpsWithEveryOptionOfEachSubCommand) {
  const std::pair<const char*, unsigned> commands[] = {
      {"build", kBuild},     {"check", kCheck}, {"batch", kBatch},      {"test", kTest},
      {"explain", kExplain}, {"prove", kProve}, {"document", kDocument}};
  for (const auto& [command, bit] : commands) {
    SCOPED_TRACE(command);
    const ProgramRun help = run({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    for (const OptionRow& row : optionTable()) {
      const std::string strPlaceholder = placeholderOf(row);
      const std::string strOption =
          std::string("  --") + row.name + (strPlaceholder.empty() ? "" : " " + strPlaceholder);
      const std::size_t at = help.out.find(strOption);
      const bool blnListed =
          at != std::string::npos && std::isspace(help.out.at(at + strOption.size())) != 0;
      EXPECT_EQ(blnListed, (row.commands & bit) != 0) << strOption;
    }
  }
}

TEST_F(CommandLine, NamesEveryLanguageInItsHelp) {
  EXPECT_NE(run({"build", "--help"}).out.find("--language en|de "), std::string::npos);
}

TEST_F(CommandLine, HelpsWithTheExitStatus) {
  const struct {
    const char *command, *failed;
    bool blnStrict;
  } cases[] = {
      {"build", "; 1 the run failed; 2", true},
      {"check", "; 1 there are findings of severity error; 2", false},
      {"explain", "; 1 the run failed; 2", false},
      {"prove", "; 1 an error does not; 2", false},
      {"document", "0 done; 2", false},
      {"test", "; 1 something else came out; 2", false},
      {"batch", "; 1 a run failed or a line was bad; 2", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.command);
    const std::string strHelp = run({c.command, "--help"}).out;
    EXPECT_NE(strHelp.find("Exit status: 0 done"), std::string::npos) << strHelp;
    EXPECT_NE(strHelp.find(c.failed), std::string::npos) << strHelp;
    EXPECT_EQ(strHelp.find("3 with --strict") != std::string::npos, c.blnStrict) << strHelp;
  }
}

TEST_F(CommandLine, WithHelpRunsNothing) {
  const ProgramRun help = run({"build", "--deployment", ".", "--park-out", "park.xml", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_FALSE(exists("park.xml"));
}

TEST_F(CommandLine, RefusesWhatItDoesNotKnow) {
  const struct {
    const char* says;
    std::vector<std::string> words;
    const char* reason;
  } cases[] = {
      {"no sub-command", {}, "sub-command"},
      {"an unknown sub-command",
       {"unbuild", "my", "form"},
       "\"unbuild\" is none of the sub-commands build, check, "},
      {"words too many, as they came",
       {"build", "one", "two"},
       "The following arguments were not expected: one two\n"},
      {"control characters in a word", {"un\x1b[31m\xC2\x9Bm"}, "\"un\\x1b[31m\\u009bm\""},
      {"build twice", {"build", "build"}, "build"},
      {"an unknown option", {"build", "--templates", "x"}, "--templates"},
      {"an option before the sub-command", {"--submit", "build"}, "--submit"},
      {"the first letters of an option", {"build", "--temp", "x"}, "--temp"},
      {"a word too many", {"build", "form.txt"}, "form.txt"},
      {"an empty word too many",
       {"build", "--submit", ""},
       "The following arguments were not expected: \n"},
      {"a value that is missing", {"build", "--form"}, "--form"},
      {"a flag with a word that is no Boolean", {"build", "--submit=perhaps"}, "perhaps"},
      {"a line end in a word", {"build", "--a\nb"}, "--a b"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_TRUE(CouldNotRun(run(c.words), c.reason));
  }
}

TEST_F(CommandLine, TellsWhatToDoAboutAnOptionGivenTwice) {
  const struct {
    const char* says;
    std::vector<std::string> words;
    const char* reason;
  } cases[] = {
      {"a file", {"--form", "a", "--form", "b"}, "--form: given 2 times"},
      {"the same both times", {"--now=x", "--now=x"}, "--now: given 2 times"},
      {"the deployment", {"--deployment", "a", "--deployment", "b"}, "--deployment: given 2 times"},
      {"an output", {"--trace", "-", "--submit", "--trace", "t"}, "--trace: given 2 times"},
      {"no value", {"--template=", "--template=", "--template=x"}, "--template: given 3 times"},
      {"a flag", {"--submit", "--submit=false"}, "--submit: given 2 times"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::vector<std::string> words = {"build"};
    words.insert(words.end(), c.words.begin(), c.words.end());
    EXPECT_TRUE(CouldNotRun(run(words), c.reason + std::string("; leave all but one of them out")));
  }
}

TEST_F(CommandLine, TakesTheWordAfterAnOptionAsItsValueWhateverItLooksLike) {
  const struct {
    const char* says;
    std::vector<std::string> words;
    const char* value;
  } cases[] = {
      {"a plain word", {"--template", "a.xml"}, "a.xml"},
      {"joined by =", {"--template=a.xml"}, "a.xml"},
      {"an option's name", {"--template", "--submit"}, "--submit"},
      {"two dashes", {"--template", "--"}, "--"},
      {"the sub-command's name", {"--template", "build"}, "build"},
      {"brackets", {"--template", "[a,b]"}, "[a,b]"},
      {"braces", {"--template", "{}"}, "{}"},
      {"blanks and quotes", {"--template", " \"a\" 'b' "}, " \"a\" 'b' "},
      {"another =", {"--template=a=b"}, "a=b"},
      {"an empty word", {"--template", ""}, ""},
      {"nothing after =", {"--template=", "--submit"}, ""},
      {"nothing at all", {}, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(traceOf(c.words).at(0), std::string(": BuildXml - strTemplateXML =") + c.value);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
