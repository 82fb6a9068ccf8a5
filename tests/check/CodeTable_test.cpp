#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/SmallDeployment.h"
#include "support/Documents.h"

// Every rule has a code of its own, a section in docs/check.md, a mistake that it finds and a
// neighbour of it on which it stays quiet.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

std::vector<Mistake> allMistakes() {
  std::vector<Mistake> all;
  for (const auto* const mistakes :
       {&mistakesOfActionRules(), &mistakesOfColumnRules(), &mistakesOfComplexTypeRules(),
        &mistakesOfDocumentDataRules(), &mistakesOfFileRules(), &mistakesOfFormatRules(),
        &mistakesOfHiddenFieldRules(), &mistakesOfIdRules(), &mistakesOfLabelRules(),
        &mistakesOfMappingRules(), &mistakesOfNamespaceRules(), &mistakesOfObjectListRules(),
        &mistakesOfPathRules(), &mistakesOfQuestionRules(), &mistakesOfReferenceRules()}) {
    all.insert(all.end(), mistakes->begin(), mistakes->end());
  }
  return all;
}

// What no replacement of a text in the small deployment can bring about has tests of its own.
const std::set<std::string> kTestedElsewhere = {"file-missing",
                                                "file-unreadable",
                                                "no-context",
                                                "no-protocol-info",
                                                "no-server",
                                                "no-schema",
                                                "not-checked",
                                                "option-twice",
                                                "options-unusable",
                                                "page-check-box",
                                                "page-choice-without-value",
                                                "page-names-nothing",
                                                "page-names-twice",
                                                "page-placeholder",
                                                "page-value-missing",
                                                "page-value-refused",
                                                "page-word",
                                                "too-large",
                                                "wrong-file"};

TEST(CodeTable, HasAMistakeAndAQuietNeighbourForEachRule) {
  std::set<std::string> fired, quiet;
  for (const Mistake& mistake : allMistakes()) {
    bool blnFires = false;
    for (const Expected& expected : mistake.findings) blnFires |= expected.code == mistake.code;
    (blnFires ? fired : quiet).insert(mistake.code);
  }
  // The rules that need a schema have their mistakes beside one; each of those lists all that they
  // find, so every other rule of theirs is quiet on it.
  for (const Rule& rule : schemaRules()) quiet.emplace(rule.strCode);
  for (const auto* const mistakes :
       {&mistakesOfMessageContent(), &mistakesOfMessageDocumentData(), &mistakesOfMessageOrder(),
        &mistakesOfMessageRequired(), &mistakesOfMessageValues(),
        &mistakesOfQuestionsAgainstSchema(), &mistakesOfReferenceAgainstSchema(),
        &mistakesOfSchemaProblems()}) {
    for (const SchemaMistake& mistake : *mistakes) {
      for (const Expected& expected : mistake.findings) fired.insert(expected.code);
    }
  }
  std::set<std::string> codes;
  for (const std::span<const Rule> table : ruleTables()) {
    for (const Rule& rule : table) {
      const std::string strCode(rule.strCode);
      EXPECT_TRUE(codes.insert(strCode).second) << strCode << " is the code of two rules";
      const bool blnElsewhere = kTestedElsewhere.contains(strCode);
      EXPECT_NE(fired.contains(strCode), blnElsewhere)
          << strCode << (blnElsewhere ? " fires on a mistake" : " fires on no mistake");
      EXPECT_TRUE(blnElsewhere || quiet.contains(strCode)) << strCode << " has no quiet neighbour";
    }
  }
  for (const std::string& strCode : fired) EXPECT_TRUE(codes.contains(strCode)) << strCode;
}

TEST(CodeTable, ExplainsEachCodeOnceInTheDocument) {
  const std::string strDocument =
      textOfFile(std::filesystem::path(VARNEL_SOURCE_DIR) / "docs" / "check.md");
  std::map<std::string, int> sections;
  std::istringstream lines(strDocument);
  for (std::string strLine; std::getline(lines, strLine);) {
    if (strLine.starts_with("### ")) ++sections[strLine.substr(4)];
  }
  for (const std::span<const Rule> table : ruleTables()) {
    for (const Rule& rule : table) {
      const std::string strCode(rule.strCode);
      EXPECT_EQ(sections[strCode], 1) << strCode;
      const std::size_t lngSection = strDocument.find("### " + strCode + "\n");
      if (lngSection == std::string::npos) continue;
      const std::string strSection =
          strDocument.substr(lngSection, strDocument.find("\n##", lngSection + 4) - lngSection);
      const std::string strSeverity = "*" + std::string(severityName(rule.severity)) + "*";
      EXPECT_NE(strSection.find(strSeverity), std::string::npos)
          << strCode << " is " << strSeverity;
      EXPECT_NE(strSection.find("\nCure: "), std::string::npos) << strCode << " has no cure";
      sections.erase(strCode);
    }
  }
  for (const auto& [strCode, lngCount] : sections) ADD_FAILURE() << "no rule has " << strCode;
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
