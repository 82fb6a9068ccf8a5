#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "Program.h"

// What a report calls valid, another engine must not refuse: every submission of tests/cases and of
// the examples, and each example's complete form with each of its answers spoiled, goes to xmllint
// as it was handed out.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using Lines = std::vector<std::string>;

const fs::path kSource = VARNEL_SOURCE_DIR;

/// A deployment's catalog lies beside its folder of schemas.
bool xmllintAccepts(const fs::path& schema, const std::string& strMessageFile) {
  const fs::path catalog = schema.parent_path().parent_path() / "catalog.xml";
  const std::string strCommand = "XML_CATALOG_FILES='" + catalog.string() + "' " + VARNEL_XMLLINT +
                                 " --noout --nonet --schema '" + schema.string() + "' '" +
                                 strMessageFile + "' 2>/dev/null";
  return std::system(strCommand.c_str()) == 0;
}

/// The words that say on the command line what a JSON file of options says.
Lines wordsOf(const json& options) {
  Lines words;
  for (const auto& [strKey, value] : options.items()) {
    if (value.is_boolean() && !value.get<bool>()) continue;
    words.push_back("--" + strKey);
    if (value.is_string()) words.push_back(value.get<std::string>());
  }
  return words;
}

/// The schema that a run with these options reads, below the folder in which they stand.
fs::path schemaOf(const fs::path& folder, const json& options) {
  fs::path base = folder;
  json all = options;
  if (options.contains("deployment")) {
    base = folder / options["deployment"].get<std::string>();
    all.merge_patch(json::parse(textOfFile(base / "deployment.json")));
  }
  return (base / all.value("page-dir", ".") / ".." / all.value("schema-url", "none"))
      .lexically_normal();
}

class SecondOpinion : public ::testing::Test {
 protected:
  /// Runs a submission, and compares the verdict with that of the other engine.
  void compare(const fs::path& folder, Lines words, const fs::path& schema) {
    words.insert(words.begin(), "build");
    for (const std::string& strWord :
         {std::string("--submit"), std::string("--validate"), std::string("--report"),
          std::string("--send-out"), outputs_.at("send.xml")}) {
      words.push_back(strWord);
    }
    fs::remove(outputs_.at("send.xml"));
    const ProgramRun run = runProgram(folder, words);
    ASSERT_LT(run.status, 2) << run.err;
    const json report = json::parse(run.out)["report"];
    const std::string strVerdict = report["verdict"];
    ++verdicts_[strVerdict];
    if (strVerdict == "not-checked") {
      EXPECT_NE(report["reason"], "");
      return;
    }
    EXPECT_EQ(strVerdict, report["violations"].empty() ? "valid" : "invalid");
    EXPECT_EQ(xmllintAccepts(schema, outputs_.at("send.xml")), strVerdict == "valid")
        << report.dump(2);
  }

  TemporaryDirectory outputs_;
  std::map<std::string, int> verdicts_;
};

TEST_F(SecondOpinion, AgreesWithTheVerdictOnEveryCase) {
  for (const fs::directory_entry& entry : fs::directory_iterator(kSource / "tests/cases")) {
    if (!fs::exists(entry.path() / "submission.json")) continue;
    SCOPED_TRACE(entry.path());
    json options = json::parse(textOfFile(entry.path() / "submission.json"));
    options.erase("submit");
    options.erase("validate");
    compare(entry.path(), wordsOf(options), schemaOf(entry.path(), options));
  }
  EXPECT_GT(verdicts_["valid"], 0);
  EXPECT_GT(verdicts_["invalid"], 0);
}

TEST_F(SecondOpinion, AgreesWithTheVerdictOnEachSpoiledAnswerOfTheExamples) {
  for (const char* example : {"inspection", "permit", "readme"}) {
    const fs::path folder = kSource / "examples" / example;
    const fs::path schema = schemaOf(folder, {{"deployment", "."}});
    const std::string strForm = textOfFile(folder / "complete.form");
    const auto submit = [&](const std::string& strBody) {
      const std::string strFile = outputs_.file("spoiled.form", strBody);
      compare(folder, {"--deployment", ".", "--form", strFile, "--now", "2025-10-14T12:05:00"},
              schema);
    };
    submit(strForm);
    for (std::size_t lngAt = 0; lngAt < strForm.size();) {
      const std::size_t lngEnd = std::min(strForm.find('&', lngAt), strForm.size());
      const std::size_t lngValue = strForm.find('=', lngAt) + 1;
      const std::string strName = strForm.substr(lngAt, lngValue - lngAt);
      const bool blnAnswer = strName.find("_hiddenName") == std::string::npos &&
                             strName.find("_rowCount") == std::string::npos;
      if (blnAnswer && lngValue < lngEnd) {
        for (const char* instead : {"", "%23%23"}) {
          SCOPED_TRACE(std::string(example) + ": " + strName + instead);
          submit(strForm.substr(0, lngValue) + instead + strForm.substr(lngEnd));
        }
      }
      lngAt = lngEnd + 1;
    }
  }
  EXPECT_GT(verdicts_["valid"], 20);
  EXPECT_GT(verdicts_["invalid"], 100);
  EXPECT_EQ(verdicts_["not-checked"], 0);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
