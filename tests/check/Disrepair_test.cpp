#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>

#include "check/Findings.h"
#include "check/SmallDeployment.h"

// Deployments in any state of disrepair: findings, never a crash, and work that grows no faster
// than the files.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr auto kFiles = std::to_array<const char*>(
    {"object-list.xml", "hidden-fields.xml", "namespaces.xml", "template.xml", "object-mapper.xml",
     "schema-types.xml", "reference.xml", "questions.xml", "protocol-info.xml"});

TEST(Disrepair, IsFoundInFilesThatAreCutOff) {
  for (const char* const file : kFiles) {
    const SmallDeployment deployment;
    const std::string strText = deployment.text(file);
    for (std::size_t lngSize = 0; lngSize < strText.size() - 2;
         lngSize += 1 + strText.size() / 15) {
      deployment.write(file, strText.substr(0, lngSize));
      EXPECT_FALSE(deployment.check().empty()) << file << " cut at " << lngSize;
    }
  }
}

TEST(Disrepair, IsFoundInFilesThatAreExchanged) {
  for (const char* const file : kFiles) {
    for (const char* const other : kFiles) {
      const SmallDeployment deployment;
      if (file == other) continue;
      deployment.write(file, deployment.text(other));
      EXPECT_FALSE(deployment.check().empty()) << other << " as " << file;
    }
  }
}

// A piece between two marks of markup is deleted or doubled, at random places from a fixed seed.
TEST(Disrepair, IsToldOnLinesThatAreThere) {
  std::minstd_rand random(20261122);
  for (int lngRound = 0; lngRound < 150; ++lngRound) {
    const SmallDeployment deployment;
    const char* const file = kFiles[random() % std::size(kFiles)];
    std::string strText = deployment.text(file);
    const std::size_t lngFrom = strText.find_first_of("<\"> /", random() % strText.size());
    if (lngFrom == std::string::npos) continue;
    const std::size_t lngTo = strText.find_first_of("<\"> /", lngFrom + 1 + random() % 60);
    if (lngTo == std::string::npos) continue;
    const std::string strPiece = strText.substr(lngFrom, lngTo - lngFrom);
    if (random() % 2 == 0) {
      strText.erase(lngFrom, strPiece.size());
    } else {
      strText.insert(lngTo, strPiece);
    }
    deployment.write(file, strText);
    for (const Finding& finding : deployment.check()) {
      ASSERT_NE(std::ranges::find(kFiles, finding.file), std::end(kFiles)) << summary(finding);
      const std::string strTold = deployment.text(finding.file);
      const auto lngLines = 1 + std::ranges::count(strTold, '\n');
      EXPECT_GE(finding.line, 1U) << summary(finding);
      EXPECT_LE(finding.line, static_cast<std::size_t>(lngLines)) << summary(finding);
    }
  }
}

std::string repeated(const std::string& strBefore, std::size_t lngCount, const char* strPattern,
                     const std::string& strAfter) {
  std::string strText = strBefore;
  for (std::size_t at = 0; at < lngCount; ++at) {
    for (const char* letter = strPattern; *letter; ++letter) {
      if (*letter == '#') {
        strText += std::to_string(at);
      } else {
        strText += *letter;
      }
    }
  }
  return strText + strAfter;
}

/// Expects of a mistake that is made so often as many findings as are kept, the last of which
/// counts the others.
void expectThreeThousand(const SmallDeployment& deployment, std::string_view strCode) {
  std::size_t lngCount = 0;
  std::string strHint;
  for (const Finding& finding : deployment.check()) {
    if (finding.code != strCode) continue;
    ++lngCount;
    strHint = finding.hint;
  }
  EXPECT_EQ(lngCount, Findings::kMostOfOneRule);
  EXPECT_NE(strHint.find("(and 2000 more"), std::string::npos) << strHint;
}

TEST(Disrepair, IsToldAThousandTimesOfOneRule) {
  const SmallDeployment deployment;
  deployment.write("object-list.xml",
                   repeated("<?xml version='1.0'?><prtobjcts>", 3000,
                            "<prtobjct id='q#' objecttype='field' type='Check' dynamic='maybe'/>",
                            "<hdnflds/></prtobjcts>"));
  expectThreeThousand(deployment, "dynamic-no-boolean");
}

TEST(Disrepair, IsCountedBesideTheSchemaToo) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.replace("template.xml", "  <m:end/>", repeated("", 3000, "<m:wrong/>", "<m:end/>"));
  expectThreeThousand(deployment, "template-undeclared");
}

TEST(Disrepair, OfPathsIsNotLookedForInAMessageThatIsTooLarge) {
  SmallDeployment deployment;
  deployment.replace("template.xml", "  <m:end/>", repeated("", 1'000'001, "<a/>", "<m:end/>"));
  const std::vector<Finding> findings = deployment.check();
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_EQ(summary(findings[0]), "note too-large template.xml:1 ");
}

/// The message is gone through for each path that is more than names: when it is made for the first
/// of these rules, and again when they are looked at.
TEST(Disrepair, OfPathsIsNotToldOnceTheyAreNotLookedAtAnyMore) {
  for (const std::size_t lngRules : {300U, 600U}) {
    SCOPED_TRACE(lngRules);
    const SmallDeployment deployment;
    deployment.replace("template.xml", "  <m:end/>", repeated("", 100'000, "<a/>", "<m:end/>"));
    deployment.replace("object-mapper.xml", "    <docnodes>",
                       repeated("<docnodes>", lngRules,
                                "<docnode><parentxpath>/m:report/m:end</parentxpath>"
                                "<node>/m:report/m:head/*</node></docnode>",
                                ""));
    EXPECT_EQ(summaries(deployment.check()),
              std::vector<std::string>{"note too-large template.xml:1 "});
  }
}

/// Many of everything that is looked up, all found by index: a search for each would not end.
TEST(Disrepair, IsFoundAmongManyThousandEntries) {
  constexpr std::size_t kMany = 20'000;
  const SmallDeployment deployment;
  deployment.write("object-list.xml",
                   repeated("<?xml version='1.0'?><prtobjcts>", kMany,
                            "<prtobjct id='q#' objecttype='field' type='text' dynamic='false'/>",
                            "<hdnflds/></prtobjcts>"));
  deployment.write("hidden-fields.xml", "<hiddenfields/>");
  deployment.write("object-mapper.xml",
                   repeated("<message>", kMany,
                            "<messageitem id='q#' toschema='true' absent='q1#'><parentxpath>"
                            "/m:report/m:head</parentxpath><node>m:a#</node></messageitem>",
                            "<docdata><docinfo id='attestationtime'><parentxpath>/m:report/m:head"
                            "</parentxpath><node>m:time</node></docinfo><docnodes/></docdata>"
                            "</message>"));
  deployment.write("questions.xml",
                   repeated("<questions>", kMany,
                            "<question id='q#'><xpath>/m:report/m:head/m:a#</xpath></question>",
                            "</questions>"));
  deployment.write("reference.xml", repeated("<m:report xmlns:m='urn:example:m'><m:head>", kMany,
                                             "<m:a#/>", "</m:head></m:report>"));
  const std::vector<Finding> findings = deployment.check();
  // Nine in ten conditions name nothing.
  EXPECT_EQ(findings.size(), Findings::kMostOfOneRule);
  for (const Finding& finding : findings) {
    EXPECT_EQ(finding.code, "names-nothing") << summary(finding);
    if (finding.code != "names-nothing") break;
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
