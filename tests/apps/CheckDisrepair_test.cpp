#include <regex>

#include "Program.h"
#include "interface/Deployment.h"

// A deployment in any state of disrepair gives findings with file and line: here every file that
// each example names, in every state that it can be in.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

const std::filesystem::path kExamples = std::filesystem::path(VARNEL_SOURCE_DIR) / "examples";

enum class Damage { keyMissing, nameEmpty, folder, noFile, empty, broken, otherRoot, otherKind };

constexpr struct {
  Damage damage;
  const char* says;
  const char* name;  // in place of the file's; null: it stays
} kDamages[] = {
    {Damage::keyMissing, "the key is missing", nullptr},
    {Damage::nameEmpty, "the name is empty", "\"\""},
    {Damage::folder, "it names a folder", "\"disrepair\""},
    {Damage::noFile, "it names nothing that is there", "\"disrepair/none.xml\""},
    {Damage::empty, "the file is empty", nullptr},
    {Damage::broken, "the file breaks off", nullptr},
    {Damage::otherRoot, "the file has another root", nullptr},
    {Damage::otherKind, "the file is of another kind", nullptr},
};

/// Where an error is expected; line 0: at any line of the file.
struct Place {
  std::string strFile;
  std::size_t lngLine = 0;
};

class CheckDisrepair : public ::testing::TestWithParam<const char*> {
 protected:
  CheckDisrepair() {
    std::filesystem::copy(kExamples / GetParam(), directory_.path() / "site",
                          std::filesystem::copy_options::recursive);
    std::filesystem::create_directory(directory_.path() / "site/disrepair");
    strOptions_ = textOfFile(directory_.at("site/deployment.json"));
    values_ = deploymentValues(strOptions_, "deployment.json");
    lines_ = deploymentLines(strOptions_);
  }

  /// The keys of the example's deployment.json that name files, the schema's among them.
  std::vector<std::string> fileKeys() const {
    std::vector<std::string> keys;
    for (const DeploymentKey& key : deploymentKeys()) {
      const std::string strKey = key.name;
      const bool blnFile = key.kind == DeploymentValueKind::file || strKey == "schema-url";
      if (blnFile && strKey != "page-dir" && values_.contains(strKey)) keys.push_back(strKey);
    }
    return keys;
  }

  /// Writes the options with another value for a key, or, without one, without the key.
  void setValue(const std::string& strKey, const char* value) const {
    const std::regex member("  \"" + strKey + "\": \"[^\"]*\",?\n");
    const std::string strMember =
        value ? "  \"" + strKey + "\": " + std::string(value) + ",\n" : std::string();
    const std::string strJson = std::regex_replace(strOptions_, member, strMember);
    directory_.file("site/deployment.json", std::regex_replace(strJson, std::regex(",\n}"), "\n}"));
  }

  ProgramRun check() const {
    return runProgram(directory_.path(), {"check", "--deployment", "site"});
  }

  Place expectedAt(const std::string& strKey, Damage damage) const {
    const bool blnUnnamed = damage == Damage::keyMissing || damage == Damage::nameEmpty;
    if (strKey == "protocol-info") {  // not every run needs it; told is what misses it
      if (blnUnnamed) return {"template.xml"};
      if (damage == Damage::otherRoot) return {"object-mapper.xml"};
    }
    if (damage == Damage::keyMissing) return {"deployment.json"};
    if (strKey == "schema-url") {
      if (damage == Damage::nameEmpty) return {"deployment.json", lines_.at("schema-uri")};
      if (damage == Damage::otherKind) return {values_.at(strKey)};
    }
    if (damage == Damage::empty || damage == Damage::broken || damage == Damage::otherRoot) {
      return {values_.at(strKey)};
    }
    return {"deployment.json", lines_.at(strKey)};
  }

  TemporaryDirectory directory_;
  std::string strOptions_;
  DeploymentValues values_;
  std::map<std::string, std::size_t, std::less<>> lines_;
};

std::string textFor(const std::string& strKey, Damage damage) {
  const std::string strStart = "<?xml version=\"1.0\"?>\n";
  if (damage == Damage::broken) return strStart + "<a><b>";
  if (damage == Damage::otherRoot) return strStart + "<a/>";
  if (damage == Damage::empty) return {};
  return strStart + (strKey == "object-list" ? "<hiddenfields/>" : "<prtobjcts/>");
}

/// Every line of an output tells a finding, with the file and its line.
void expectFindings(const ProgramRun& run) {
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.status, 1);
  static const std::regex kFinding("[^:]+:[1-9][0-9]*: (error|warning|note): .+ \\[[a-z-]+\\]");
  std::istringstream lines(run.out);
  for (std::string strLine; std::getline(lines, strLine);) {
    EXPECT_TRUE(std::regex_match(strLine, kFinding)) << strLine;
  }
}

bool tellsErrorAt(const std::string& strOut, const Place& place) {
  const std::string strLine = place.lngLine == 0 ? "[0-9]+" : std::to_string(place.lngLine);
  const std::string strFile = std::regex_replace(place.strFile, std::regex("\\."), "\\.");
  return std::regex_search(
      strOut, std::regex("(^|\n)" + strFile + ":" + strLine + ": error: ", std::regex::ECMAScript));
}

TEST_P(CheckDisrepair, GivesAnErrorForEachFileInEachState) {
  for (const std::string& strKey : fileKeys()) {
    const std::string strName = "site/" + values_.at(strKey);
    const std::string strWhole = textOfFile(directory_.at(strName));
    for (const auto& [damage, says, name] : kDamages) {
      SCOPED_TRACE(strKey + ": " + says);
      if (damage == Damage::keyMissing || name) {
        setValue(strKey, name);
      } else {
        directory_.file(strName, textFor(strKey, damage));
      }
      const ProgramRun run = check();
      directory_.file(strName, strWhole);
      directory_.file("site/deployment.json", strOptions_);
      expectFindings(run);
      const Place place = expectedAt(strKey, damage);
      EXPECT_TRUE(tellsErrorAt(run.out, place)) << place.strFile << ":" << place.lngLine << "\n"
                                                << run.out;
    }
  }
  EXPECT_EQ(check().out, "") << "all is as it was";
}

TEST_P(CheckDisrepair, CannotRunWithAValueOfAnotherKind) {
  for (const auto& [strKey, strValue] : values_) {
    SCOPED_TRACE(strKey);
    for (const char* const value : {"1", "null", "[]", "{}", "true"}) {
      setValue(strKey, value);
      EXPECT_TRUE(CouldNotRun(check(), '"' + strKey + "\" is no text"));
    }
  }
}

TEST_P(CheckDisrepair, GivesFindingsWhenNothingIsThere) {
  for (const std::string& strKey : fileKeys()) {
    std::filesystem::remove(directory_.path() / "site" / values_.at(strKey));
  }
  expectFindings(check());
  directory_.file("site/deployment.json", "{}");
  expectFindings(check());
}

INSTANTIATE_TEST_SUITE_P(Examples, CheckDisrepair,
                         ::testing::Values("inspection", "permit", "readme"),
                         [](const auto& parameter) { return std::string(parameter.param); });

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
