#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>

#include "apps/Program.h"

// One whole submission in each folder beside this file, named for what it shows:
//
//   deployment.json, form     what goes in, with the files that the deployment names
//   options                   more words for the command line, if any: they name the deployment
//                             and the form of a case that has none of its own
//   result.json               what comes out, compared byte by byte. A document that is not
//   park.xml, send.xml        there must not be written; the trace is compared where it is there.
//   trace.txt

namespace Varnel_Tolv_XML_Creation::test {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> caseNames() {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(VARNEL_CASES_DIR)) {
    if (entry.is_directory()) names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

std::optional<std::string> textIfThere(const fs::path& path) {
  if (!fs::exists(path)) return std::nullopt;
  return textOfFile(path);
}

/// Runs the case from its own folder, so that paths in texts are the same on every machine.
int runCase(const fs::path& folder, const TemporaryDirectory& outputs) {
  std::vector<std::string> words{"build",
                                 "--park-out",
                                 outputs.at("park.xml"),
                                 "--send-out",
                                 outputs.at("send.xml"),
                                 "--result",
                                 outputs.at("result.json"),
                                 "--trace",
                                 outputs.at("trace.txt")};
  if (fs::exists(folder / "deployment.json")) words.insert(words.end(), {"--deployment", "."});
  if (fs::exists(folder / "form")) words.insert(words.end(), {"--form", "form"});
  std::istringstream options(textIfThere(folder / "options").value_or(""));
  for (std::string strWord; options >> strWord;) words.push_back(strWord);
  const ProgramRun run = runProgram(folder, words);
  EXPECT_EQ(run.out + run.err, "");
  return run.status;
}

void approve(const fs::path& expected, const std::optional<std::string>& actual) {
  if (!actual) {
    fs::remove(expected);
    return;
  }
  std::ofstream stream(expected, std::ios::binary);
  stream << *actual;
  EXPECT_TRUE(stream.flush()) << expected;
}

TEST(Cases, AreFound) { EXPECT_FALSE(caseNames().empty()); }

class Submission : public ::testing::TestWithParam<std::string> {};

TEST_P(Submission, GivesWhatItsFolderExpects) {
  const fs::path folder = fs::path(VARNEL_CASES_DIR) / GetParam();
  const TemporaryDirectory outputs;
  const int status = runCase(folder, outputs);
  ASSERT_LT(status, 2) << "the program could not run";

  const bool blnApprove = std::getenv("VARNEL_APPROVE") != nullptr;
  for (const char* name : {"result.json", "park.xml", "send.xml", "trace.txt"}) {
    SCOPED_TRACE(name);
    const auto actual = textIfThere(outputs.path() / name);
    const auto expected = textIfThere(folder / name);
    if (std::string_view(name) == "trace.txt" && !expected) continue;
    if (blnApprove) {
      approve(folder / name, actual);
    } else {
      EXPECT_EQ(actual.value_or("(not written)"), expected.value_or("(not written)"));
    }
  }
  const bool blnSuccess =
      textOfFile(outputs.at("result.json")).find("\"success\": true") != std::string::npos;
  EXPECT_EQ(status, blnSuccess ? 0 : 1);
}

std::string asTestName(const ::testing::TestParamInfo<std::string>& info) {
  std::string strName = info.param;
  std::ranges::replace_if(
      strName, [](unsigned char letter) { return std::isalnum(letter) == 0; }, '_');
  return strName;
}

INSTANTIATE_TEST_SUITE_P(Cases, Submission, ::testing::ValuesIn(caseNames()), asTestName);

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
