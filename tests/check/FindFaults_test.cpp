#include "check/FindFaults.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

std::size_t countOf(const std::vector<Finding>& findings, std::string_view strCode) {
  return static_cast<std::size_t>(std::ranges::count(findings, strCode, &Finding::code));
}

/// Puts the schema beside a deployment, and another namespace into the template, which hides
/// whatever is wrong with its elements.
void hideTemplate(SmallDeployment& deployment) {
  addSchema(deployment);
  deployment.replace("template.xml", "xmlns:m=\"urn:example:m\"", "xmlns:m=\"urn:example:mm\"");
}

TEST(FindFaults, LooksBehindAWrongNamespaceUnlessFilesAreLarge) {
  const struct {
    const char *says, *file;
    bool blnLooks;
  } cases[] = {
      {"no large file", nullptr, true},
      {"a large file of the deployment", "reference.xml", false},
      {"a large schema", "main.xsd", false},
      {"a large document that the schema imports", "pbr.xsd", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    SmallDeployment deployment;
    hideTemplate(deployment);
    deployment.replace("template.xml", "<m:day/>", "<m:dya/>");
    if (c.file) {
      const std::string strLong(4 * 1024 * 1024, 'x');
      deployment.write(c.file, deployment.text(c.file) + "<!--" + strLong + "-->");
    }
    const std::vector<Finding> findings = deployment.check();
    EXPECT_EQ(countOf(findings, "registered-otherwise"), 1u);
    EXPECT_EQ(countOf(findings, "template-undeclared"), c.blnLooks ? 1u : 0u);
  }
}

TEST(FindFaults, TakesNoReadingThatFindsMuchMore) {
  for (const std::size_t lngWrong : {1U, 60U}) {
    SmallDeployment deployment;
    hideTemplate(deployment);
    std::string strWrong;
    for (std::size_t at = 0; at < lngWrong; ++at) strWrong += "<m:wrong/>";
    deployment.replace("template.xml", "<m:end/>", strWrong + "<m:end/>");
    const std::vector<Finding> findings = deployment.check();
    EXPECT_EQ(countOf(findings, "registered-otherwise"), 1u);
    EXPECT_EQ(countOf(findings, "template-undeclared"), lngWrong == 1 ? 1u : 0u) << lngWrong;
  }
}

// A name that is mended may have a prefix that its file does not declare.
TEST(FindFaults, TakesNoReadingThatAFileIsLostFor) {
  const SmallDeployment deployment;
  deployment.replace("template.xml", "<m:report xmlns:m=\"urn:example:m\"",
                     "<r:report xmlns:r=\"urn:example:m\" xmlns:m=\"urn:example:m\"");
  deployment.replace("template.xml", "</m:report>", "</r:report>");
  const std::vector<Finding> findings = deployment.check();
  const auto isCode = [&](std::string_view strCode) {
    return std::ranges::any_of(findings, [&](const Finding& one) { return one.code == strCode; });
  };
  EXPECT_TRUE(isCode("reference-root")) << ::testing::PrintToString(summaries(findings));
  EXPECT_FALSE(isCode("not-well-formed")) << ::testing::PrintToString(summaries(findings));
}

// The one that was hidden is of the same rule, and on the same line.
TEST(FindFaults, KnowsFindingsOfOneLineByTheirObjects) {
  const SmallDeployment deployment;
  deployment.replace("object-list.xml", "<prtobjcts>\n  <prtobjct id=\"title\"",
                     "<prtobjcts xmlns=\"urn:x\"><prtobjct xmlns=\"urn:y\" id=\"title\"");
  const std::vector<std::string> lines = summaries(deployment.check());
  for (const char* const line : {"error default-namespace object-list.xml:2 ",
                                 "error default-namespace object-list.xml:2 title"}) {
    EXPECT_TRUE(std::ranges::binary_search(lines, line)) << line << ::testing::PrintToString(lines);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
