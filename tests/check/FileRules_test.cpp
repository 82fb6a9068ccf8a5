#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

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
      {"document-type",
       "a document type in front of the template's root",
       {{"template.xml", "<m:report xmlns:m", R"(<!DOCTYPE
  m:report>
<m:report xmlns:m)"}},
       {{Severity::error, "document-type", "template.xml", "<!DOCTYPE"}}},
      {"document-type",
       "a comment that looks like one",
       {{"template.xml", "<m:report xmlns:m", "<!-- <!DOCTYPE m:report> --><m:report xmlns:m"}},
       {}},
      {"document-type",
       "a document type of another file, which no message takes over",
       {{"questions.xml", "<questions>", "<!DOCTYPE questions><questions>"}},
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

TEST(FileRules, TellOfAFileThatCannotBeReadWhereItIsNamed) {
  SmallDeployment deployment;
  deployment.files.strOptionFile = deployment.at("deployment.json");
  deployment.files.optionLines = {{"questions", 7}, {"reference", 8}};
  const std::string strFolder = std::filesystem::path(deployment.at("x")).parent_path().string();
  const struct {
    const char* says;
    std::string strQuestions, strMessage;
  } cases[] = {
      {"none", deployment.at("questons.xml"),
       "\"questons.xml\" for \"questions\" cannot be read: There is none."},
      {"a folder", strFolder, "cannot be read: It is a folder."},
      {"one of another kind", deployment.at("namespaces.xml"), "its root is \"namespaces\""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    deployment.files.strQuestionsXmlPath = c.strQuestions;
    const std::vector<Finding> findings = deployment.check();
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings[0].file, "deployment.json");
    EXPECT_EQ(findings[0].line, 7u);
    EXPECT_NE(findings[0].message.find(c.strMessage), std::string::npos) << findings[0].message;
  }
}

TEST(FileRules, FindKeysThatStandThereTwice) {
  SmallDeployment deployment;
  deployment.files.strOptionFile = deployment.at("deployment.json");
  const struct {
    const char *says, *json;
    std::vector<std::string> findings;
  } cases[] = {
      {"once", R"({"template": "a.xml", "reference": "template"})", {}},
      {"twice",
       "{\"template\": \"a.xml\",\n\"template\": \"b.xml\"}",
       {"error option-twice deployment.json:2 "}},
      {"no JSON, which nobody could have read",
       "{\"template\": 1,\n\"template\": 2",
       {"error options-unusable deployment.json:2 "}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    deployment.write("deployment.json", c.json);
    EXPECT_EQ(summaries(deployment.check()), c.findings);
  }
}

TEST(FileRules, FindTheOptionThatNamesTheFileOfAnother) {
  const struct {
    const char* says;
    std::string DeploymentFiles::*name;
    const char* file;
    std::vector<std::string> findings;
  } cases[] = {
      {"the template for the reference XML",
       &DeploymentFiles::strReferenceXmlPath,
       "template.xml",
       {"error wrong-file deployment.json:8 "}},
      {"the reference XML for the template",
       &DeploymentFiles::strTemplateXML,
       "reference.xml",
       {"error wrong-file deployment.json:1 "}},
      {"the reference XML for the questions",
       &DeploymentFiles::strQuestionsXmlPath,
       "./reference.xml",
       {"error wrong-root deployment.json:7 "}},
      {"the questions for the template",
       &DeploymentFiles::strTemplateXML,
       "questions.xml",
       {"error wrong-root deployment.json:1 "}},
      {"the template for the protocol information",
       &DeploymentFiles::strProtocolInfo,
       "template.xml",
       {"error wrong-file deployment.json:2 "}},
      {"the hidden fields for the namespaces",
       &DeploymentFiles::strNamespaceXML,
       "hidden-fields.xml",
       {"error wrong-root deployment.json:9 "}},
      {"a schema for the template",
       &DeploymentFiles::strTemplateXML,
       "main.xsd",
       {"error wrong-root deployment.json:1 "}},
      {"the page for the protocol information",
       &DeploymentFiles::strProtocolInfo,
       "page.xml",
       {"error wrong-root deployment.json:2 "}},
      {"a catalog for the reference XML",
       &DeploymentFiles::strReferenceXmlPath,
       "catalog.xml",
       {"error wrong-root deployment.json:8 "}},
      {"each its own", &DeploymentFiles::strNamespaceXML, "namespaces.xml", {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    SmallDeployment deployment;
    deployment.files.strOptionFile = deployment.at("deployment.json");
    deployment.files.optionLines = {{"template", 1},
                                    {"protocol-info", 2},
                                    {"questions", 7},
                                    {"reference", 8},
                                    {"namespaces", 9}};
    deployment.write("main.xsd", "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'/>");
    deployment.write("page.xml", "<page><section/></page>");
    deployment.write("catalog.xml",
                     "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'/>");
    deployment.files.*c.name = deployment.at(c.file);
    EXPECT_EQ(summaries(deployment.check()), c.findings);
  }
}

TEST(FileRules, NameTheRootThatAFileShouldHave) {
  const SmallDeployment deployment;
  deployment.write("hidden-fields.xml", "<hiddenfield/>");
  const std::vector<Finding> findings = deployment.check();
  ASSERT_EQ(findings.size(), 1u) << ::testing::PrintToString(summaries(findings));
  EXPECT_EQ(findings[0].hint, "Name the right file, or rename the root: hiddenfields.");
}

TEST(FileRules, TellOfTheTemplateAndTheReferenceExchanged) {
  SmallDeployment deployment;
  deployment.files.strOptionFile = deployment.at("deployment.json");
  deployment.files.optionLines = {{"template", 1}, {"reference", 8}};
  std::swap(deployment.files.strTemplateXML, deployment.files.strReferenceXmlPath);
  EXPECT_EQ(summaries(deployment.check()),
            std::vector<std::string>(
                {"error wrong-file deployment.json:1 ", "error wrong-file deployment.json:8 "}));
}

TEST(FileRules, TellOfAKeyThatStandsThereTwiceAndNotOfItsFile) {
  SmallDeployment deployment;
  deployment.files.strOptionFile = deployment.at("deployment.json");
  deployment.write("deployment.json",
                   "{\"template\": \"template.xml\",\n\"template\": \"reference.xml\"}");
  deployment.files.strTemplateXML = deployment.at("reference.xml");
  EXPECT_EQ(summaries(deployment.check()),
            std::vector<std::string>({"error option-twice deployment.json:2 "}));
}

TEST(FileRules, TellOfAFileOfNoKindWhereItIsNamedOnlyWhenTwoAreExchanged) {
  SmallDeployment deployment;
  deployment.files.strOptionFile = deployment.at("deployment.json");
  deployment.files.optionLines = {{"template", 1}, {"object-mapper", 3}};
  std::swap(deployment.files.strTemplateXML, deployment.files.strMsgObjectXML);
  EXPECT_EQ(summaries(deployment.check()),
            std::vector<std::string>(
                {"error wrong-root deployment.json:1 ", "error wrong-root deployment.json:3 "}));
  std::swap(deployment.files.strTemplateXML, deployment.files.strMsgObjectXML);
  deployment.write("object-mapper.xml", "<a/>");
  EXPECT_EQ(summaries(deployment.check()),
            std::vector<std::string>({"error wrong-root object-mapper.xml:1 "}));
}

TEST(FileRules, FindWhatTheOptionsTakeFromEveryRun) {
  const struct {
    const char* says;
    bool blnContext, blnServer, blnVerdict;
    std::vector<std::string> findings;
  } cases[] = {
      {"all is there", true, true, true, {}},
      {"no context", false, true, true, {"error no-context deployment.json:4 "}},
      {"no server", true, false, true, {"error no-server deployment.json:5 "}},
      {"no server, which only the schema's verdict needs", true, false, false, {}},
      {"neither", false, false, true, {"error no-context deployment.json:4 "}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    SmallDeployment deployment;
    deployment.files.strOptionFile = deployment.at("deployment.json");
    deployment.files.optionLines = {{"no-context", 4}, {"no-server", 5}, {"validate", 6}};
    deployment.files.blnContext = c.blnContext;
    deployment.files.blnServer = c.blnServer;
    deployment.files.blnValidateAgainstSchema = c.blnVerdict;
    std::vector<std::string> found;
    for (const Finding& finding : deployment.check()) {
      if (finding.code != "no-schema") found.push_back(summary(finding));
    }
    EXPECT_EQ(found, c.findings);
  }
}

TEST(FileRules, TellOfExchangedFilesWithoutLookingIntoThem) {
  SmallDeployment deployment;
  std::swap(deployment.files.strQuestionsXmlPath, deployment.files.strReferenceXmlPath);
  std::vector<std::string> found;
  for (const Finding& finding : deployment.check()) found.push_back(summary(finding));
  const std::vector<std::string> expected = {"error wrong-root questions.xml:2 ",
                                             "error wrong-root reference.xml:2 "};
  EXPECT_EQ(found, expected);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
