#include <cstdlib>
#include <nlohmann/json.hpp>

#include "Program.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

const std::filesystem::path kExamples = std::filesystem::path(VARNEL_SOURCE_DIR) / "examples";

/// A copy of the example in which a test makes mistakes.
class Check : public ::testing::Test {
 protected:
  Check() {
    std::filesystem::copy(kExamples / "inspection", directory_.path() / "deployment",
                          std::filesystem::copy_options::recursive);
  }

  void replace(const std::string& strFile, const std::string& strFind,
               const std::string& strText) const {
    const std::string strName = "deployment/" + strFile;
    directory_.file(strName, replaceOnce(textOfFile(directory_.at(strName)), strFind, strText));
  }

  ProgramRun check(std::vector<std::string> words = {}) const {
    words.insert(words.begin(), {"check", "--deployment", "deployment"});
    return runProgram(directory_.path(), words);
  }

  TemporaryDirectory directory_;
};

TEST_F(Check, FindsNothingInTheExample) {
  const ProgramRun text = check();
  EXPECT_EQ(text.status, 0);
  EXPECT_EQ(text.out, "");
  EXPECT_EQ(text.err, "");
  const ProgramRun json = check({"--format", "json"});
  EXPECT_EQ(json.status, 0);
  EXPECT_EQ(json.out, "{\n  \"findings\": [],\n  \"errors\": 0,\n  \"warnings\": 0\n}\n");
}

TEST_F(Check, TellsAnErrorAsACompilerDoes) {
  replace("object-mapper.xml", "id=\"urgency\" toschema=\"true\"",
          "id=\"urgency\" toschema=\"True\"");
  const ProgramRun text = check();
  EXPECT_EQ(text.status, 1);
  EXPECT_EQ(
      text.out,
      "object-mapper.xml:15: error: The word toschema=\"True\" is not \"true\": the answer is "
      "silently not sent. [word-not-true]\n");
  EXPECT_EQ(check({"--format", "json"}).out, R"({
  "findings": [
    {
      "severity": "error",
      "code": "word-not-true",
      "file": "object-mapper.xml",
      "line": 15,
      "object": "urgency",
      "message": "The word toschema=\"True\" is not \"true\": the answer is silently not sent.",
      "hint": "Write toschema=\"true\" in lower case."
    }
  ],
  "errors": 1,
  "warnings": 0
}
)");
}

TEST_F(Check, TellsAPersonAtATerminalWhatToDo) {
  if (std::system("command -v script >/dev/null") != 0) GTEST_SKIP() << "no program \"script\"";
  replace("object-mapper.xml", "id=\"urgency\" toschema=\"true\"",
          "id=\"urgency\" toschema=\"True\"");
  const std::string strCheck = "cd '" + directory_.path().string() +
                               "' && TERM=dumb script -qec '" VARNEL_PROGRAM
                               " check --deployment deployment' /dev/null >shown </dev/null";
  ASSERT_EQ(std::system(strCheck.c_str()), 1 << 8) << "the status of a check that finds an error";
  EXPECT_EQ(
      textOfFile(directory_.at("shown")),
      "object-mapper.xml:15: error: The word toschema=\"True\" is not \"true\": the answer is "
      "silently not sent. [word-not-true]\r\n"
      "    hint: Write toschema=\"true\" in lower case.\r\n");
}

TEST_F(Check, TellsWhatToDoInAFileOnRequest) {
  replace("object-mapper.xml", "id=\"urgency\" toschema=\"true\"",
          "id=\"urgency\" toschema=\"True\"");
  const std::string strFinding =
      "object-mapper.xml:15: error: The word toschema=\"True\" is not \"true\": the answer is "
      "silently not sent. [word-not-true]\n";
  EXPECT_EQ(check().out, strFinding);
  EXPECT_EQ(check({"--hints"}).out,
            strFinding + "    hint: Write toschema=\"true\" in lower case.\n");
}

TEST_F(Check, SucceedsWithWarnings) {
  replace("object-list.xml", "letterlabel=\"C1 Owner\"", "leterlabel=\"C1 Owner\"");
  const ProgramRun run = check();
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find(": warning: "), std::string::npos) << run.out;
}

TEST_F(Check, TellsWhatNoFileIsNamedForAtTheDeployment) {
  replace("deployment.json", "\"reference\": \"reference.xml\",", "");
  const ProgramRun run = check();
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.out.starts_with("deployment.json:1: error: ")) << run.out;
}

TEST_F(Check, CannotRunWithoutADeployment) {
  const char* const strCure = "name the folder of a deployment with --deployment";
  EXPECT_TRUE(CouldNotRun(runProgram(directory_.path(), {"check"}), strCure));
  EXPECT_TRUE(CouldNotRun(runProgram(directory_.path(), {"check", "--format", "json"}), strCure));
  EXPECT_TRUE(CouldNotRun(runProgram(directory_.path(), {"check", "."}), "."));
}

TEST_F(Check, TakesTheOptionsOfABuild) {
  const ProgramRun single = runProgram(directory_.path(), {"check", "--template", "template.xml"});
  EXPECT_EQ(single.status, 1);
  EXPECT_NE(single.out.find("No file is named for \"object-list\""), std::string::npos);
  const ProgramRun run = check({"--questions", "none.xml"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.out.starts_with("none.xml:1: error: ")) << run.out;
}

TEST_F(Check, TellsWhatEveryRunIsWithout) {
  replace("deployment.json", "\"page-dir\"", "\"no-server\": true,\n  \"page-dir\"");
  const ProgramRun named = check();
  EXPECT_EQ(named.status, 1);
  EXPECT_TRUE(named.out.starts_with("deployment.json:13: error: ")) << named.out;
  EXPECT_NE(named.out.find("[no-server]"), std::string::npos) << named.out;
  const ProgramRun given = check({"--no-context"});
  EXPECT_EQ(given.status, 1);
  EXPECT_NE(given.out.find("[no-context]"), std::string::npos) << given.out;
}

TEST_F(Check, CannotRunWithOptionsThatItCannotUse) {
  EXPECT_TRUE(CouldNotRun(check({"--format", "xml"}), "none of text, json"));
  EXPECT_TRUE(CouldNotRun(check({"--form", "complete.form"}), "--form"));
  replace("deployment.json", "\"template\"", "\"tempalte\"");
  EXPECT_TRUE(CouldNotRun(check(), "is an unknown key"));
}

TEST_F(Check, TellsWhichKeysThereAre) {
  replace("deployment.json", "\"template\"", "\"tempalte\"");
  EXPECT_TRUE(
      CouldNotRun(check({"--hints"}),
                  "\"tempalte\" is an unknown key (line 2). Write \"template\"; the keys are "
                  "template, object-mapper, schema-types, "));
}

TEST_F(Check, TellsWhatKeepsTheOptionsFromBeingUsed) {
  const struct {
    const char *says, *find, *text, *told;
    int line;
  } cases[] = {
      {"a comma too many", "\n}", ",\n}", "The comma at the end is one too many.", 14},
      {"an unknown key", "\"template\"", "\"tempalte\"", "\"tempalte\" is an unknown key.", 2},
      {"no text", "\"template.xml\"", "1", "\"template\" is no text.", 2},
  };
  const std::string strWhole = textOfFile(directory_.at("deployment/deployment.json"));
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    replace("deployment.json", c.find, c.text);
    const ProgramRun text = check();
    const std::string strTold(c.told, std::string_view(c.told).size() - 1);
    EXPECT_TRUE(CouldNotRun(
        text, "deployment.json: " + strTold + " (line " + std::to_string(c.line) + ')'));
    const ProgramRun json = check({"--format", "json"});
    EXPECT_EQ(json.status, 2);
    EXPECT_EQ(json.err, text.err);
    const auto result = nlohmann::json::parse(json.out);
    EXPECT_EQ(result["errors"], 1);
    ASSERT_EQ(result["findings"].size(), 1u);
    const auto& finding = result["findings"][0];
    EXPECT_EQ(finding["code"], "options-unusable");
    EXPECT_EQ(finding["file"], "deployment.json");
    EXPECT_EQ(finding["line"], c.line);
    EXPECT_EQ(finding["message"], c.told);
    directory_.file("deployment/deployment.json", strWhole);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
