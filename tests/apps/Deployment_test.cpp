#include "interface/Deployment.h"

#include "Program.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

class Deployment : public ProgramTest {
 protected:
  /// A directory "site" below the one that the program is run in, with this deployment.json.
  void deploy(std::string_view strJson) const {
    std::filesystem::create_directories(directory_.at("site"));
    write("site/deployment.json", strJson);
  }
  ProgramRun buildSite(std::vector<std::string> words = {}) const {
    words.insert(words.begin(), {"--deployment", "site"});
    return build(std::move(words));
  }
  std::vector<std::string> traceOfSite(std::vector<std::string> words = {}) const {
    words.insert(words.begin(), {"--deployment", "site"});
    return traceOf(std::move(words));
  }
};

TEST_F(Deployment, GivesEveryArgumentWithItsFileNamesBelowTheDirectory) {
  deploy(R"({"template": "T", "object-mapper": "a/O", "schema-types": "./S",
             "hidden-fields": "../H", "namespaces": "N", "questions": "Q", "reference": "R",
             "submit": true, "validate": true, "schema-url": "url", "schema-uri": "uri"})");
  const std::vector<std::string> expected{
      ": BuildXml - strTemplateXML =site/T",
      ": BuildXml - strMsgObjectXML =site/a/O",
      ": BuildXml - strSchemaTypeMapperXML =site/./S",
      ": BuildXml - strHiddenFieldXML =site/../H",
      ": BuildXml - strNamespaceXML =site/N",
      ": BuildXml - strQuestionsXmlPath =site/Q",
      ": BuildXml - strReferenceXmlPath =site/R",
      ": BuildXml - blnSubmit =True",
      ": BuildXml - blnValidateAgainstSchema =True",
      ": BuildXml - strSchemaUrl =url",
      ": BuildXml - strSchemaUri =uri",
  };
  EXPECT_EQ(traceOfSite(), expected);
}

TEST_F(Deployment, LeavesEmptyNamesAbsolutePathsAndFileUrlsAsTheyAre) {
  deploy(R"({"template": "", "object-mapper": "/etc/O", "schema-types": "file:///etc/S",
             "hidden-fields": "FILE:H"})");
  const std::vector<std::string> lines = traceOfSite();
  EXPECT_THAT(lines, Contains(": BuildXml - strTemplateXML ="));
  EXPECT_THAT(lines, Contains(": BuildXml - strMsgObjectXML =/etc/O"));
  EXPECT_THAT(lines, Contains(": BuildXml - strSchemaTypeMapperXML =file:///etc/S"));
  EXPECT_THAT(lines, Contains(": BuildXml - strHiddenFieldXML =FILE:H"));
}

TEST_F(Deployment, HasKeysThatAreOptions) {
  const std::string strHelp = runProgram(directory_.path(), {"build", "--help"}).out;
  for (const DeploymentKey& key : deploymentKeys()) {
    const bool blnFlag = key.kind == DeploymentValueKind::flag;
    // A flag stands before blanks, an option with a value before what that is.
    EXPECT_THAT(strHelp, ::testing::ContainsRegex("  --" + std::string(key.name) +
                                                  (blnFlag ? "  " : " [A-Zd]")));
  }
}

TEST_F(Deployment, LosesToTheCommandLine) {
  deploy(R"({"template": "T", "namespaces": "N", "submit": true, "validate": false,
             "schema-url": "url"})");
  const std::vector<std::string> lines =
      traceOfSite({"--template", "mine", "--namespaces", "", "--submit=false", "--validate",
                   "--schema-url", "other"});
  EXPECT_THAT(lines, Contains(": BuildXml - strTemplateXML =mine"));
  EXPECT_THAT(lines, Contains(": BuildXml - strNamespaceXML ="));
  EXPECT_THAT(lines, Contains(": BuildXml - blnSubmit =False"));
  EXPECT_THAT(lines, Contains(": BuildXml - blnValidateAgainstSchema =True"));
  EXPECT_THAT(lines, Contains(": BuildXml - strSchemaUrl =other"));
}

TEST_F(Deployment, GivesTheDocumentsTheFormAndTheHost) {
  deploy(R"({"template": "../template.xml", "object-mapper": "../mapper.xml",
             "schema-types": "../types.xml", "hidden-fields": "../hidden.xml",
             "namespaces": "../namespaces.xml", "reference": "../reference.xml",
             "object-list": "../objects.xml", "protocol-info": "protocol.xml",
             "form": "form.txt", "page-dir": "pages", "no-server": true, "no-context": false,
             "date-order": "mdy", "now": "2024-02-29T23:59:00", "submit": true})");
  write("site/protocol.xml", "<protocol name=\"Card\"/>");
  write("site/form.txt", "name=Ada&born=04/05/2026");
  const ProgramRun run = buildSite({"--send-out", "send.xml"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(read("send.xml"),
            "<?xml version=\"1.0\"?>\r\n"
            "<c:card xmlns:c=\"urn:card\"><c:form>Card</c:form>"
            "<c:date>2024-02-29</c:date><c:time>23:59:00</c:time>"
            "<c:name>Ada</c:name><c:born>2026-04-05</c:born></c:card>\r\n");
}

TEST_F(Deployment, CanTurnTheContextOff) {
  deploy(R"({"hidden-fields": "../hidden.xml", "namespaces": "../namespaces.xml",
             "object-list": "../objects.xml", "no-context": true})");
  EXPECT_THAT(buildSite().out, HasSubstr("SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING"));
  EXPECT_EQ(buildSite({"--no-context=false"}).status, 0);
}

TEST_F(Deployment, CanTakeTheFormFromStandardInput) {
  deploy(R"({"hidden-fields": "../hidden.xml", "namespaces": "../namespaces.xml",
             "object-list": "../objects.xml", "form": "-"})");
  const ProgramRun run =
      build({"--deployment", "site", "--park-out", "park.xml"}, {.strInput = kForm});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(read("park.xml"), kParkedXml);
}

TEST_F(Deployment, MayBeEmpty) {
  deploy("{}");
  EXPECT_THAT(buildSite().out, HasSubstr("SVC_RET_XML_CREATION_PARK_XML_OBJ_MISSING"));
}

TEST_F(Deployment, IsRefusedWhenItIsMissing) {
  EXPECT_TRUE(CouldNotRun(build({"--deployment", "nowhere"}), "nowhere/deployment.json"));
}

TEST_F(Deployment, IsRefusedWhenItIsMalformed) {
  const struct {
    const char *says, *json, *reason;
  } cases[] = {
      {"nothing", "", "deployment.json"},
      {"no JSON", "template = x", "deployment.json"},
      {"an object that does not end", R"({"template": "x")", "deployment.json"},
      {"something after the object", "{} {}", "deployment.json"},
      {"a comment", "{} // nothing", "deployment.json"},
      {"bytes that are not UTF-8", "{\"template\": \"\xC3\x28\"}", "deployment.json"},
      {"an array", R"(["template"])", "object"},
      {"a moment that is none", R"({"now": "never"})", "site/deployment.json: now: \"never\""},
      {"a date order that is none", R"({"date-order": "dym"})", "site/deployment.json: date-order"},
      {"a text", R"("template")", "object"},
      {"null", "null", "object"},
      {"an unknown key", R"({"templates": "x"})", "templates"},
      {"an empty key", R"({"": "x"})", "\"\""},
      {"a key with dashes", R"({"--template": "x"})", "--template"},
      {"a key in capitals", R"({"Template": "x"})", "Template"},
      {"a key of more than one line", R"({"a\nb": "x"})", "a b"},
      {"itself", R"({"deployment": "."})", "deployment"},
      {"an output", R"({"park-out": "park.xml"})", "park-out"},
      {"help", R"({"help": true})", "help"},
      {"a number for a file", R"({"template": 1})", "template"},
      {"null for a file", R"({"template": null})", "template"},
      {"an array for a file", R"({"form": ["a"]})", "form"},
      {"a Boolean for a text", R"({"schema-uri": true})", "schema-uri"},
      {"a text for a flag", R"({"submit": "true"})", "submit"},
      {"a number for a flag", R"({"no-context": 1})", "no-context"},
      {"a date order that is none", R"({"date-order": "dym"})", "dym"},
      {"a moment that is none", R"({"now": "2026-02-30T00:00:00"})", "2026-02-30"},
      {"a form that is missing", R"({"form": "x.form"})", "site/x.form"},
      {"an object list that is missing", R"({"object-list": "x.xml"})", "site/x.xml"},
      {"a name with a NUL", R"({"form": "deployment.json\u0000"})", "deployment.json"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    deploy(c.json);
    EXPECT_TRUE(CouldNotRun(buildSite(), c.reason));
  }
}

TEST_F(Deployment, IsCheckedWholeAlsoWhereTheCommandLineWins) {
  deploy(R"({"template": 1})");
  EXPECT_TRUE(CouldNotRun(buildSite({"--template", "x"}), "template"));
}

TEST_F(Deployment, IsRefusedAndNotFollowedIntoADeepNest) {
  deploy(std::string(500000, '['));
  EXPECT_TRUE(CouldNotRun(buildSite(), "deployment.json"));
  deploy(std::string(500000, '[') + std::string(500000, ']'));
  EXPECT_TRUE(CouldNotRun(buildSite(), "object"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
