#include "interface/Deployment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interface/CheckDeployment.h"
#include "result/RuntimeError.h"
#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// What an expression raises, as number and description.
template <class Body>
std::string raised(Body&& body) {
  try {
    body();
  } catch (const RuntimeError& error) {
    return std::to_string(error.number()) + ' ' + error.description();
  }
  return "nothing";
}

TEST(OpenDeployment, GivesTheValuesOfItsFileWithFileNamesBelowTheFolder) {
  const TemporaryDirectory folder;
  folder.file("deployment.json", R"({"template": "T", "object-mapper": "a/../O",
      "schema-types": "/S", "hidden-fields": "file:///H", "namespaces": "", "questions": "Q",
      "reference": "R", "submit": true, "object-list": "L", "protocol-info": "P",
      "schema-url": "U", "schema-uri": "urn:u", "form": "-", "page-dir": "pages",
      "no-server": true, "date-order": "ymd", "now": "2024-02-29T23:59:58"})");
  folder.file("catalog.xml", "");
  const Deployment deployment = openDeployment(folder.path().string());
  EXPECT_EQ(deployment.strTemplateXML, folder.at("T"));
  EXPECT_EQ(deployment.strMsgObjectXML, folder.at("a/../O"));
  EXPECT_EQ(deployment.strSchemaTypeMapperXML, "/S");
  EXPECT_EQ(deployment.strHiddenFieldXML, "file:///H");
  EXPECT_EQ(deployment.strNamespaceXML, "");
  EXPECT_EQ(deployment.strQuestionsXmlPath, folder.at("Q"));
  EXPECT_EQ(deployment.strReferenceXmlPath, folder.at("R"));
  EXPECT_TRUE(deployment.blnSubmit);
  EXPECT_FALSE(deployment.blnValidateAgainstSchema);
  EXPECT_EQ(deployment.objectList, folder.at("L"));
  EXPECT_EQ(deployment.protocolInfo, folder.at("P"));
  EXPECT_EQ(deployment.strSchemaUrl, "U");
  EXPECT_EQ(deployment.strSchemaUri, "urn:u");
  EXPECT_EQ(deployment.strSchemaCatalog, folder.at("catalog.xml"));
  EXPECT_EQ(deployment.form, "-");
  EXPECT_EQ(deployment.pageDirectory, folder.at("pages"));
  EXPECT_TRUE(deployment.blnContext);
  EXPECT_FALSE(deployment.blnServer);
  EXPECT_EQ(deployment.dateOrder, DateOrder::yearMonthDay);
  ASSERT_TRUE(deployment.clock);
  EXPECT_EQ(deployment.clock->now(), (DateTime{2024, 2, 29, 23, 59, 58}));
}

TEST(FilesOf, ADeploymentAreAllThatItNames) {
  const TemporaryDirectory folder;
  folder.file("catalog.xml", "");
  const Deployment deployment = deploymentWith({{"template", "T"},
                                                {"object-mapper", "O"},
                                                {"schema-types", "S"},
                                                {"hidden-fields", "H"},
                                                {"namespaces", "N"},
                                                {"questions", "Q"},
                                                {"reference", "R"},
                                                {"submit", "true"},
                                                {"validate", "true"},
                                                {"object-list", "L"},
                                                {"protocol-info", "P"},
                                                {"schema-url", "U"},
                                                {"schema-uri", "urn:u"},
                                                {"page-dir", "pages"},
                                                {"no-context", "true"},
                                                {"no-server", "true"},
                                                {"date-order", "mdy"}},
                                               folder.path().string());
  const DeploymentFiles files = filesOf(deployment);
  EXPECT_EQ(files.strTemplateXML, "T");
  EXPECT_EQ(files.strMsgObjectXML, "O");
  EXPECT_EQ(files.strSchemaTypeMapperXML, "S");
  EXPECT_EQ(files.strHiddenFieldXML, "H");
  EXPECT_EQ(files.strNamespaceXML, "N");
  EXPECT_EQ(files.strQuestionsXmlPath, "Q");
  EXPECT_EQ(files.strReferenceXmlPath, "R");
  EXPECT_EQ(files.strObjectList, "L");
  EXPECT_EQ(files.strProtocolInfo, "P");
  EXPECT_EQ(files.strSchemaUrl, "U");
  EXPECT_EQ(files.strSchemaUri, "urn:u");
  EXPECT_EQ(files.strPageDirectory, "pages");
  EXPECT_EQ(files.strSchemaCatalog, folder.at("catalog.xml"));
  EXPECT_TRUE(files.blnSubmit);
  EXPECT_TRUE(files.blnValidateAgainstSchema);
  EXPECT_FALSE(files.blnContext);
  EXPECT_FALSE(files.blnServer);
  EXPECT_EQ(files.dateOrder, DateOrder::monthDayYear);
  EXPECT_EQ(files.strOptionFile, "");
  EXPECT_TRUE(files.optionLines.empty());
  EXPECT_EQ(filesOf(Deployment()).strObjectList, "");
}

TEST(OpenDeployment, LetsGivenValuesWin) {
  const TemporaryDirectory folder;
  folder.file("deployment.json", R"({"template": "T", "submit": true, "date-order": "ymd"})");
  const Deployment deployment = openDeployment(
      folder.path().string(), {{"template", "mine"}, {"submit", "false"}, {"questions", "Q"}});
  EXPECT_EQ(deployment.strTemplateXML, "mine");
  EXPECT_EQ(deployment.strQuestionsXmlPath, "Q");
  EXPECT_FALSE(deployment.blnSubmit);
  EXPECT_EQ(deployment.dateOrder, DateOrder::yearMonthDay);
}

TEST(OpenDeployment, NeedsNoFolder) {
  const Deployment deployment = openDeployment(std::nullopt, {{"template", "T"}});
  EXPECT_EQ(deployment.strTemplateXML, "T");
  EXPECT_EQ(deployment.pageDirectory, ".");
  EXPECT_EQ(deployment.strSchemaCatalog, "");
  EXPECT_FALSE(deployment.objectList);
}

TEST(OpenDeployment, RefusesWhatIsNoDeploymentAndNamesTheFile) {
  const struct {
    const char *says, *json, *reason;
  } cases[] = {
      {"no JSON", "template = x", "deployment.json: parse error at line 1, column 2: "},
      {"a comma too many", "{\n  \"template\": \"x\",\n}",
       "deployment.json: parse error at line 3, column 1: syntax error while parsing object key - "
       "unexpected '}'; expected string literal"},
      {"a number that is too large", "[1e999]", "deployment.json: number overflow"},
      {"an unknown key on its line", "{\n\"submit\": true,\n\"objectmapper\": \"x\"}",
       "deployment.json: \"objectmapper\" is an unknown key (line 3)"},
      {"a list", "[]", "deployment.json: is not one JSON object"},
      {"an unknown key", R"({"templates": "x"})",
       "deployment.json: \"templates\" is an unknown key (line 1)"},
      {"an output", R"({"send-out": "x"})", "deployment.json: \"send-out\" is an unknown key"},
      {"a number for a file", R"({"template": 1})",
       "deployment.json: \"template\" is no text (line 1)"},
      {"a text for a flag", R"({"submit": "true"})",
       "deployment.json: \"submit\" is no Boolean (line 1)"},
      {"a date order that is none", R"({"date-order": "dym"})",
       "deployment.json: date-order: \"dym\" is none of dmy, mdy, ymd (line 1)"},
      {"a moment that is none", R"({"now": "2026-02-30T00:00:00"})",
       "deployment.json: now: \"2026-02-30T00:00:00\" is no moment of the form "
       "YYYY-MM-DDTHH:MM:SS (line 1)"},
  };
  const TemporaryDirectory folder;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    folder.file("deployment.json", c.json);
    const std::string strRaised = raised([&] { openDeployment(folder.path().string()); });
    EXPECT_THAT(strRaised, HasSubstr(c.reason));
    EXPECT_THAT(strRaised, Not(HasSubstr("exception")));
    EXPECT_EQ(strRaised.substr(0, 2), "5 ");
  }
}

TEST(OpenDeployment, RefusesAFolderWithoutItsFileAndGivenValuesThatAreNone) {
  EXPECT_EQ(raised([] { openDeployment("/nowhere"); }),
            "5 /nowhere/deployment.json: The system cannot locate the object specified.");
  EXPECT_EQ(raised([] {
              openDeployment(std::nullopt, {{"templates", "x"}});
            }),
            "5 \"templates\" is an unknown key");
  EXPECT_EQ(raised([] {
              openDeployment(std::nullopt, {{"submit", "yes"}});
            }),
            "5 submit: \"yes\" is neither true nor false");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
