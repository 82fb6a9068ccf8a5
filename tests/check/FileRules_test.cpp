#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfFileRules() {
  static const std::vector<Mistake> kMistakes = {
      {"not-well-formed",
       "an element that is never ended",
       {{"hidden-fields.xml", R"(toschema="false"/>)", R"(toschema="false">)"}},
       {{Severity::error, "not-well-formed", "hidden-fields.xml", "</hiddenfields>"}}},
      {"not-well-formed",
       "a comment is no mistake",
       {{"object-list.xml", R"(<prtobjcts>
)",
         R"(<prtobjcts>
  <!-- & -->
)"}},
       {}},
      {"wrong-root",
       "a root of another name",
       {{"object-mapper.xml", R"(<message>
  <!-- The head. -->)",
         R"(<messages>
  <!-- The head. -->)"},
        {"object-mapper.xml", R"(</message>
)",
         R"(</messages>
)"}},
       {{Severity::error, "wrong-root", "object-mapper.xml"}}},
      {"wrong-root",
       "white space in the tag of the root",
       {{"object-mapper.xml", R"(<message>
  <!-- The head. -->)",
         R"(<message >
  <!-- The head. -->)"}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(FileRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfFileRules()); }

TEST(FileRules, FindNothingInACorrectDeployment) {
  for (const Finding& finding : SmallDeployment().check()) {
    ADD_FAILURE() << summary(finding) << ": " << finding.message;
  }
}

TEST(FileRules, FindFilesThatAreNotNamed) {
  const struct {
    const char* says;
    std::string DeploymentFiles::*name;
    std::vector<std::string> findings;
  } cases[] = {
      {"the object list", &DeploymentFiles::strObjectList, {"error file-missing :1 "}},
      {"the reference XML", &DeploymentFiles::strReferenceXmlPath, {"error file-missing :1 "}},
      {"the questions, which only the schema's verdict needs",
       &DeploymentFiles::strQuestionsXmlPath,
       {}},
      {"the protocol information",
       &DeploymentFiles::strProtocolInfo,
       {"warning no-protocol-info object-mapper.xml:81 "}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    SmallDeployment deployment;
    (deployment.files.*c.name).clear();
    std::vector<std::string> found;
    for (const Finding& finding : deployment.check()) found.push_back(summary(finding));
    EXPECT_EQ(found, c.findings);
  }
}

TEST(FileRules, NeedOnlyWhatTheFormIsParkedWith) {
  SmallDeployment deployment;
  for (std::string DeploymentFiles::*const name :
       {&DeploymentFiles::strTemplateXML, &DeploymentFiles::strMsgObjectXML,
        &DeploymentFiles::strSchemaTypeMapperXML, &DeploymentFiles::strReferenceXmlPath,
        &DeploymentFiles::strQuestionsXmlPath, &DeploymentFiles::strProtocolInfo}) {
    (deployment.files.*name).clear();
  }
  EXPECT_TRUE(deployment.check().empty());
}

TEST(FileRules, FindFilesThatCannotBeRead) {
  SmallDeployment deployment;
  deployment.files.strQuestionsXmlPath = deployment.at("questons.xml");
  const std::vector<Finding> findings = deployment.check();
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_EQ(summary(findings[0]), "error file-unreadable questons.xml:1 ");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
