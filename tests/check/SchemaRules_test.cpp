#include <gtest/gtest.h>

#include <algorithm>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kError = Severity::error;
constexpr Severity kWarning = Severity::warning;

/// What the rules of these tables find, as `severity code file:line object`, sorted.
std::vector<std::string> found(const SmallDeployment& deployment) {
  std::vector<std::string> lines;
  for (const Finding& finding : deployment.check()) {
    const bool blnOurs = std::ranges::any_of(
        schemaRules(), [&](const Rule& rule) { return rule.strCode == finding.code; });
    if (!blnOurs) continue;
    EXPECT_FALSE(finding.message.empty() || finding.hint.empty()) << summary(finding);
    lines.push_back(summary(finding));
  }
  std::ranges::sort(lines);
  return lines;
}

/// One mistake, made by one replacement, and what these rules find of it; nothing where it is only
/// the neighbour of a mistake.
struct SchemaMistake {
  const char* says;
  const char* file;
  const char* find;
  const char* replacement;
  std::vector<Expected> findings;
};

/// Expects of each mistake in turn, beside the schema, exactly its findings by these rules.
void expectBesideSchema(const std::vector<SchemaMistake>& mistakes) {
  for (const SchemaMistake& mistake : mistakes) {
    SCOPED_TRACE(mistake.says);
    SmallDeployment deployment;
    addSchema(deployment);
    const std::size_t lngChanged =
        deployment.replace(mistake.file, mistake.find, mistake.replacement);
    std::vector<std::string> expected;
    for (const Expected& row : mistake.findings) {
      std::size_t lngLine = lngChanged;
      if (!row.at.empty()) {
        const std::string strText = deployment.text(row.file);
        const std::size_t lngAt = strText.find(row.at);
        ASSERT_NE(lngAt, std::string::npos) << row.at;
        lngLine =
            1 + static_cast<std::size_t>(std::count(
                    strText.begin(), strText.begin() + static_cast<std::ptrdiff_t>(lngAt), '\n'));
      }
      expected.push_back(summary({.severity = row.severity,
                                  .code = row.code,
                                  .file = row.file,
                                  .line = lngLine,
                                  .object = row.object,
                                  .message = {},
                                  .hint = {}}));
    }
    std::ranges::sort(expected);
    EXPECT_EQ(found(deployment), expected);
  }
}

DeploymentFiles example(const std::string& strName) {
  const std::string strFolder = VARNEL_SOURCE_DIR "/examples/" + strName + "/";
  DeploymentFiles files;
  files.strTemplateXML = strFolder + "template.xml";
  files.strMsgObjectXML = strFolder + "object-mapper.xml";
  files.strSchemaTypeMapperXML = strFolder + "schema-types.xml";
  files.strHiddenFieldXML = strFolder + "hidden-fields.xml";
  files.strNamespaceXML = strFolder + "namespaces.xml";
  files.strQuestionsXmlPath = strFolder + "questions.xml";
  files.strReferenceXmlPath = strFolder + "reference.xml";
  files.strObjectList = strFolder + "object-list.xml";
  return files;
}

TEST(SchemaRules, FindNothingInCorrectDeployments) {
  SmallDeployment deployment;
  addSchema(deployment);
  DeploymentFiles inspection = example("inspection");
  inspection.strProtocolInfo = VARNEL_SOURCE_DIR "/examples/inspection/protocol-info.xml";
  inspection.strPageDirectory = VARNEL_SOURCE_DIR "/examples/inspection/pages";
  inspection.strSchemaUrl = "schema/inspection.xsd";
  inspection.strSchemaUri = "urn:example:inspection:report";
  for (const DeploymentFiles& files : {deployment.files, inspection, example("readme")}) {
    SCOPED_TRACE(files.strTemplateXML);
    for (const Finding& finding : checkDeployment(files)) {
      ADD_FAILURE() << summary(finding) << ": " << finding.message;
    }
  }
}

TEST(SchemaRules, FindWhatIsWrongWithTheSchemaItself) {
  expectBesideSchema({
      {"a type that is not there",
       "main.xsd",
       "<xs:element name=\"again\" type=\"Title\"",
       "<xs:element name=\"again\" type=\"Titel\"",
       {{kError, "schema-unusable", "main.xsd"}}},
      {"a facet that contradicts another of its type",
       "main.xsd",
       "<xs:restriction base=\"xs:string\"><xs:minLength value=\"3\"/>",
       "<xs:restriction base=\"xs:string\">\n<xs:length value=\"90\"/>\n",
       {{kError, "schema-unusable", "main.xsd", "<xs:length value=\"90\"/>"}}},
      {"another kind of document",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:include schemaLocation=\"template.xml\"/><xs:element name=\"report\">",
       {{kError, "schema-unusable", "template.xml", "<m:report"}}},
      {"a file that is not there, and is needed",
       "main.xsd",
       "schemaLocation=\"pbr.xsd\"",
       "schemaLocation=\"prb.xsd\"",
       {{kWarning, "import-missing", "main.xsd"},
        {kError, "schema-unusable", "main.xsd", "ref=\"pbr:AdditionalInfo\""}}},
      {"a location on another machine",
       "main.xsd",
       "schemaLocation=\"pbr.xsd\"",
       "schemaLocation=\"http://schemas.example/pbr.xsd\"",
       {{kWarning, "import-on-network", "main.xsd"},
        {kError, "schema-unusable", "main.xsd", "ref=\"pbr:AdditionalInfo\""}}},
      {"one of two imports leads nowhere",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:import namespace=\"urn:example:pbr\" schemaLocation=\"gone.xsd\"/>"
       "<xs:element name=\"report\">",
       {{kWarning, "import-elsewhere", "main.xsd"}}},
      {"another import of the same file is fine",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:import namespace=\"urn:example:pbr\" schemaLocation=\"pbr.xsd\"/>"
       "<xs:element name=\"report\">",
       {}},
      {"another target namespace",
       "main.xsd",
       "targetNamespace=\"urn:example:m\"",
       "targetNamespace=\"urn:example:n\" xmlns:o=\"urn:example:n\"",
       {{kError, "schema-unusable", "main.xsd", "<xs:element name=\"head\""},
        {kError, "schema-namespace", "main.xsd"}}},
      {"no attribute for the column of a cell without a place",
       "pbr.xsd",
       "<xs:attribute name=\"id\" type=\"xs:NCName\"/>",
       "<xs:attribute name=\"column\" type=\"xs:NCName\"/>",
       {{kError, "additional-info-id", "schema-types.xml", "<pbr:AdditionalInfo/>", "faults"}}},
      {"a pattern that backtracks",
       "main.xsd",
       "<xs:enumeration value=\"yes\"/>",
       "<xs:pattern value=\"([a-z]+)+\"/>",
       {{kWarning, "pattern-backtracks", "main.xsd"}}},
      {"a pattern that does not",
       "main.xsd",
       "<xs:enumeration value=\"yes\"/>",
       "<xs:pattern value=\"([a-z]+-)*[a-z]+\"/>",
       {}},
      {"a pattern that takes too much memory",
       "main.xsd",
       "<xs:enumeration value=\"yes\"/>",
       "<xs:pattern value=\"((([a-z]{1,1000}x){1,1000}y){1,1000}z){1,1000}\"/>",
       {{kError, "pattern-too-heavy", "main.xsd"}}},
      {"an attribute with the name of a mark",
       "main.xsd",
       "<xs:element name=\"contact\" type=\"Contact\" minOccurs=\"0\"/>\n    </xs:sequence>",
       "<xs:element name=\"contact\" type=\"Contact\" minOccurs=\"0\"/>\n    </xs:sequence>"
       "<xs:attribute name=\"rowIndex\"/>",
       {{kWarning, "mark-declared", "template.xml", "<m:head>"}}},
      {"an attribute with another name is fine",
       "main.xsd",
       "<xs:element name=\"contact\" type=\"Contact\" minOccurs=\"0\"/>\n    </xs:sequence>",
       "<xs:element name=\"contact\" type=\"Contact\" minOccurs=\"0\"/>\n    </xs:sequence>"
       "<xs:attribute name=\"rowindex\"/>",
       {}},
  });
}

TEST(SchemaRules, FindASchemaThatIsNotNamedOrIsAnothers) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.files.strSchemaUri = "urn:example:other";
  EXPECT_EQ(found(deployment), std::vector<std::string>{"error schema-namespace main.xsd:3 "})
      << "on the line of targetNamespace";
  deployment.files.strSchemaUri = "urn:example:m";
  deployment.files.strSchemaUrl = "gone.xsd";
  EXPECT_EQ(found(deployment), std::vector<std::string>{"error schema-unusable gone.xsd:1 "});
  deployment.files.strSchemaUrl = "";
  EXPECT_EQ(found(deployment), std::vector<std::string>{"error no-schema :1 "})
      << "its namespace is named";
  deployment.files.strSchemaUri = "";
  EXPECT_EQ(found(deployment), std::vector<std::string>{}) << "nobody asks for a verdict";
  deployment.files.blnValidateAgainstSchema = true;
  EXPECT_EQ(found(deployment), std::vector<std::string>{"error no-schema :1 "});
}

TEST(SchemaRules, LookForTheSchemaWhereARunDoes) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.files.strSchemaUrl = deployment.at("main.xsd");
  EXPECT_EQ(found(deployment), std::vector<std::string>{"error schema-unusable main.xsd:1 "})
      << "a run looks for an absolute path below the folder above the page's";
  deployment.files.strSchemaUrl = "/main.xsd";
  EXPECT_EQ(found(deployment), std::vector<std::string>{});
}

TEST(SchemaRules, FindTemplatesThatTheSchemaRefuses) {
  expectBesideSchema({
      {"an element that is not declared there",
       "template.xml",
       "<m:day/>",
       "<m:dya/>",
       {{kError, "template-undeclared", "template.xml"},
        {kError, "mandatory-unfilled", "template.xml", "<m:head>"}}},
      {"elements in the wrong order",
       "template.xml",
       "<m:day/>\n    <m:time/>",
       "<m:time/>\n    <m:day/>",
       {{kError, "template-order", "template.xml", "<m:day/>"}}},
      {"a text that is no value",
       "template.xml",
       "<m:end/>",
       "<m:end><m:again>x</m:again></m:end>",
       {{kError, "path-in-template", "object-mapper.xml", "<extranode>m:again", "title"},
        {kError, "template-value", "template.xml"}}},
      {"an attribute that is not declared",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms kind=\"all\"/>",
       {{kError, "template-attribute", "template.xml"}}},
      {"one of another namespace is left alone",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"m:Rooms\"/>",
       {}},
      {"a type that the schema does not have",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"Rooms\"/>",
       {{kError, "template-attribute", "template.xml"}}},
      {"nothing at all, which the schema does not allow",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:nil=\"true\"/>",
       {{kError, "template-attribute", "template.xml"}}},
      {"that it is something is fine",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:nil=\"false\"/>",
       {}},
      {"a root that is abstract",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:element name=\"report\" abstract=\"true\">",
       {{kError, "root-undeclared", "template.xml", "<m:report"}}},
  });
}

TEST(SchemaRules, FindTextsOfTheTemplateThatAreNoValues) {
  expectBesideSchema({
      {"a value that is none",
       "template.xml",
       "<m:guest/>\n    <m:guest/>",
       "<m:guest>x</m:guest>",
       {{kError, "template-value", "template.xml"}}},
  });
}

TEST(SchemaRules, FindPathsThatTheSchemaDoesNotHave) {
  expectBesideSchema({
      {"a parent that an earlier entry makes is fine",
       "object-mapper.xml",
       "<node>m:contact/m:phone</node>\n  </messageitem>\n  <messageitem id=\"phone2\" "
       "toschema=\"true\" absent=\"phone1\">\n    <parentxpath>/m:report/m:head</parentxpath>\n    "
       "<node>m:contact/m:phone</node>",
       "<node>m:contact/m:phone</node>\n  </messageitem>\n  <messageitem id=\"phone2\" "
       "toschema=\"true\" absent=\"phone1\">\n    "
       "<parentxpath>/m:report/m:head/m:contact</parentxpath>\n    <node>m:phone</node>",
       {}},
      {"an element that the schema does not have there",
       "object-mapper.xml",
       "<node>m:urgent</node>",
       "<node>m:urgnet</node>",
       {{kError, "path-undeclared", "object-mapper.xml", "", "urgent"}}},
      {"the prefix of another namespace",
       "object-mapper.xml",
       "<node>m:urgent</node>",
       "<node>pbr:urgent</node>",
       {{kError, "path-undeclared", "object-mapper.xml", "", "urgent"}}},
      {"a row that the schema does not have there",
       "object-mapper.xml",
       "<node>m:room</node>",
       "<node>m:roms</node>",
       {{kError, "path-undeclared", "object-mapper.xml", "", "rooms"}}},
      {"an element of a complex type that the schema does not have there",
       "schema-types.xml",
       "<m:caption><value id=\"caption\"/></m:caption>",
       "<m:capture><value id=\"caption\"/></m:capture>",
       {{kError, "path-undeclared", "schema-types.xml", "", "owner"}}},
      {"a text where elements are wanted",
       "object-mapper.xml",
       "<node>m:urgent</node>",
       "<node>m:contact</node>",
       {{kError, "no-text-there", "object-mapper.xml", "", "urgent"}}},
  });
}

TEST(SchemaRules, FindThatNoSchemaIsNamedForTheCheckThatIsAskedFor) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.files.strSchemaUrl.clear();
  deployment.files.strSchemaUri.clear();
  EXPECT_EQ(found(deployment), std::vector<std::string>{});
  deployment.files.blnValidateAgainstSchema = true;
  const std::vector<std::string> lines = found(deployment);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_NE(lines.front().find("no-schema"), std::string::npos) << lines.front();
}

TEST(SchemaRules, SayWhatIsTooLargeToBeLookedAt) {
  SmallDeployment deployment;
  addSchema(deployment);
  std::string strTemplate = "<m:report xmlns:m=\"urn:example:m\">";
  for (int number = 0; number < 50'000; ++number) strTemplate += "<m:head/>";
  deployment.write("template.xml", strTemplate + "</m:report>");
  const std::vector<std::string> lines = found(deployment);
  const std::string kCode = "not-checked";
  EXPECT_TRUE(std::ranges::any_of(lines, [&](const std::string& strLine) {
    return strLine.starts_with("note ") && strLine.find(kCode) != std::string::npos;
  }));
}

TEST(SchemaRules, FindARootThatIsNoElementOfTheSchema) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.replace("main.xsd", "<xs:element name=\"report\">", "<xs:element name=\"reports\">");
  const std::vector<std::string> lines = found(deployment);
  const std::string strTold = summary({.severity = kError,
                                       .code = "root-undeclared",
                                       .file = "template.xml",
                                       .line = 2,
                                       .object = {},
                                       .message = {},
                                       .hint = {}});
  EXPECT_EQ(std::ranges::count(lines, strTold), 1) << strTold;
}

TEST(SchemaRules, FindElementsInTheWrongPlace) {
  expectBesideSchema({
      {"an object that comes too late",
       "object-list.xml",
       "<prtobjct id=\"title\" objecttype=\"field\" type=\"text\" dynamic=\"false\"/>\n"
       "  <prtobjct id=\"seen\" objecttype=\"field\" type=\"date\" dynamic=\"false\" "
       "letterlabel=\"Seen on\"/>",
       "<prtobjct id=\"seen\" objecttype=\"field\" type=\"date\" dynamic=\"false\" "
       "letterlabel=\"Seen on\"/>"
       "<prtobjct id=\"title\" objecttype=\"field\" type=\"text\" dynamic=\"false\"/>",
       {{kError, "path-position", "object-mapper.xml", "<node>m:title</node>", "title"}}},
      {"an element of the template before which others belong",
       "template.xml",
       "<m:end/>",
       "<m:end><m:office/></m:end>",
       {{kError, "path-in-template", "object-mapper.xml", "<node>m:office</node>\n  </messageitem>",
         "office"},
        {kError, "path-position", "object-mapper.xml", "<extranode>m:again", "title"},
        {kError, "path-position", "object-mapper.xml", "<node item", "note"}}},
      {"a complex type in the wrong order",
       "schema-types.xml",
       "<m:name><value id=\"name\"/></m:name>\n      <m:role><value id=\"role\"/></m:role>",
       "<m:role><value id=\"role\"/></m:role>\n      <m:name><value id=\"name\"/></m:name>",
       {{kError, "path-position", "schema-types.xml", "<m:name>", "owner"}}},
      {"a box where a date is wanted",
       "object-mapper.xml",
       "<node>m:urgent</node>",
       "<node>m:seen</node>",
       {{kError, "checkbox-value", "object-list.xml", "checkedvalue=\"yes\"", "urgent"},
        {kWarning, "question-kind", "questions.xml", "<question id=\"urgent\"", "urgent"}}},
      {"a second answer at the same path, unless there is one, is fine",
       "object-mapper.xml",
       "<messageitem id=\"phone2\" toschema=\"true\" absent=\"phone1\">",
       "<messageitem id=\"phone2\" toschema=\"true\" checkexists=\"true\">",
       {}},
      {"rows where the schema allows one",
       "main.xsd",
       "minOccurs=\"0\" maxOccurs=\"9\"",
       "minOccurs=\"0\"",
       {{kError, "path-repeated", "object-mapper.xml", "<node>m:room</node>", "rooms"}}},
      {"alternatives of which both can come",
       "main.xsd",
       "<xs:element name=\"urgent\" type=\"Yes\" minOccurs=\"0\"/>\n"
       "      <xs:element name=\"contact\" type=\"Contact\" minOccurs=\"0\"/>",
       "<xs:choice minOccurs=\"0\"><xs:element name=\"urgent\" type=\"Yes\"/>"
       "<xs:element name=\"contact\" type=\"Contact\"/></xs:choice>",
       {{kWarning, "choice-both", "object-mapper.xml", "<node>m:contact/m:phone", "phone1"}}},
  });
}

TEST(SchemaRules, FindWhatComplexTypesBringIntoTheMessage) {
  expectBesideSchema({
      {"an attribute that the schema does not have",
       "schema-types.xml",
       "<m:role>",
       "<m:role kind=\"x\">",
       {{kError, "type-attribute", "schema-types.xml", "", "owner"}}},
      {"a declaration of a namespace is fine",
       "schema-types.xml",
       "<m:role>",
       "<m:role xmlns:o=\"urn:o\">",
       {}},
      {"a text between elements",
       "schema-types.xml",
       "<m:length>",
       "<m:length>x",
       {{kError, "no-text-there", "schema-types.xml", "", "faults"}}},
      {"a text between elements of the template",
       "template.xml",
       "<m:people>",
       "<m:people>x",
       {{kError, "template-value", "template.xml"}}},
      {"a text beside a place, which takes its room, is fine",
       "schema-types.xml",
       "<m:role>",
       "<m:role>x",
       {}},
  });
}

TEST(SchemaRules, FindMoreThanTheSchemaAllows) {
  expectBesideSchema({
      {"elements of the template",
       "template.xml",
       "<m:people>\n",
       "<m:people>\n    <m:guest/>\n",
       {{kError, "template-order", "template.xml", "<m:guest/>\n  </m:people>"}}},
      {"as many as there may be are fine", "main.xsd", "maxOccurs=\"9\"", "maxOccurs=\"2\"", {}},
  });
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.replace("main.xsd", "maxOccurs=\"9\"", "maxOccurs=\"2\"");
  const std::size_t lngLine = deployment.replace(
      "object-list.xml", "<row id=\"2\"", "<row id=\"3\" rowlabel=\"Cellar\"/><row id=\"2\"");
  EXPECT_EQ(found(deployment), std::vector<std::string>{"error path-repeated object-list.xml:" +
                                                        std::to_string(lngLine) + " rooms"});
}

TEST(SchemaRules, TellOnceOfAllElementsThatASchemaHasWithoutItsNamespace) {
  expectBesideSchema({{"a form that is not said",
                       "main.xsd",
                       "elementFormDefault=\"qualified\"",
                       "elementFormDefault=\"unqualified\"",
                       {{kError, "elements-unqualified", "main.xsd"}}},
                      {"and where it should stand",
                       "main.xsd",
                       "\n           elementFormDefault=\"qualified\"",
                       "",
                       {{kError, "elements-unqualified", "main.xsd", "<xs:schema"}}}});
}

TEST(SchemaRules, TellWhereTheOptionsNameTheSchema) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.files.strOptionFile = deployment.at("deployment.json");
  deployment.files.optionLines = {{"schema-url", 10}, {"schema-uri", 11}};
  EXPECT_EQ(found(deployment), std::vector<std::string>{});
  deployment.files.strSchemaUri = "urn:example:other";
  EXPECT_EQ(found(deployment),
            std::vector<std::string>{"error schema-namespace deployment.json:11 "});
  deployment.files.strSchemaUrl = "gone.xsd";
  EXPECT_EQ(found(deployment),
            std::vector<std::string>{"error schema-unusable deployment.json:10 "});
  deployment.files.strSchemaUrl = "";
  EXPECT_EQ(found(deployment), std::vector<std::string>{"error no-schema deployment.json:11 "});
}

TEST(SchemaRules, TellWhatIsWrongWithACatalogAtTheCatalog) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.replace("main.xsd", "schemaLocation=\"pbr.xsd\"", "schemaLocation=\"urn:x:pbr.xsd\"");
  constexpr const char* kCatalog =
      "<catalog xmlns=\"urn:oasis:names:tc:entity:xmlns:xml:catalog\">\n"
      "  <rewriteURI uriStartString=\"urn:x:\" rewritePrefix=\"./\"/>\n</catalog>\n";
  deployment.write("catalog.xml", kCatalog);
  deployment.files.strSchemaCatalog = deployment.at("catalog.xml");
  EXPECT_EQ(found(deployment), std::vector<std::string>{});
  deployment.replace("catalog.xml", "/>\n</catalog>", ">\n</catalog>");
  EXPECT_EQ(found(deployment), std::vector<std::string>{"error schema-unusable catalog.xml:3 "});
  deployment.write("catalog.xml", kCatalog);
  deployment.replace("catalog.xml", "rewriteURI", "rewriteUri");
  const std::vector<Finding> findings = deployment.check();
  EXPECT_TRUE(std::ranges::any_of(findings, [](const Finding& finding) {
    return summary(finding) == "error misspelt-element catalog.xml:2 ";
  }));
}

TEST(SchemaRules, FindWhatIsMandatoryAndFilledByNothing) {
  expectBesideSchema({
      {"an element that nothing makes",
       "main.xsd",
       "<xs:element name=\"office\" type=\"xs:string\"/>",
       "<xs:element name=\"office\" type=\"xs:string\"/><xs:element name=\"seal\" "
       "type=\"xs:string\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:end/>"}}},
      {"one that need not be there is fine",
       "main.xsd",
       "<xs:element name=\"office\" type=\"xs:string\"/>",
       "<xs:element name=\"office\" type=\"xs:string\"/><xs:element name=\"seal\" "
       "minOccurs=\"0\"/>",
       {}},
      {"a question that is not sent any more",
       "hidden-fields.xml",
       "<hiddenfield id=\"office\" output=\"office\" toschema=\"true\"/>",
       "<hiddenfield id=\"office\" output=\"office\" toschema=\"false\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:end/>"}}},
      {"more elements than one entry makes",
       "main.xsd",
       "<xs:element name=\"office\" type=\"xs:string\"/>",
       "<xs:element name=\"office\" type=\"xs:string\" minOccurs=\"2\" maxOccurs=\"2\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:end/>"}}},
      {"the same element a second time in the sequence",
       "main.xsd",
       "<xs:element name=\"day\" type=\"xs:date\"/>",
       "<xs:element name=\"day\" type=\"xs:date\"/><xs:element name=\"day\" type=\"xs:date\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:head>"}}},
      {"a sequence that must come twice",
       "main.xsd",
       "<xs:sequence>\n            <xs:element name=\"meter\" type=\"xs:string\"/>",
       "<xs:sequence minOccurs=\"2\" maxOccurs=\"2\">\n            <xs:element name=\"meter\" "
       "type=\"xs:string\"/>",
       {{kError, "mandatory-unfilled", "object-mapper.xml", "<node>m:reading</node>", "meters"}}},
      {"a second one that need not be there is fine",
       "main.xsd",
       "<xs:element name=\"day\" type=\"xs:date\"/>",
       "<xs:element name=\"day\" type=\"xs:date\"/>"
       "<xs:element name=\"day\" type=\"xs:date\" minOccurs=\"0\"/>",
       {}},
      {"as many as the template has are fine",
       "main.xsd",
       "<xs:element name=\"guest\" type=\"Guest\" minOccurs=\"0\" maxOccurs=\"2\"/>",
       "<xs:element name=\"guest\" type=\"Guest\" minOccurs=\"2\" maxOccurs=\"2\"/>",
       {{kError, "reference-optional", "reference.xml", "<m:guest mandatory=\"false\">"}}},
      {"one more than the template has",
       "main.xsd",
       "<xs:element name=\"guest\" type=\"Guest\" minOccurs=\"0\" maxOccurs=\"2\"/>",
       "<xs:element name=\"guest\" type=\"Guest\" minOccurs=\"3\" maxOccurs=\"3\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:people>"},
        {kError, "reference-optional", "reference.xml", "<m:guest mandatory=\"false\">"}}},
      {"more than a fixed grid has rows",
       "main.xsd",
       "<xs:element name=\"room\" type=\"xs:string\" minOccurs=\"0\" maxOccurs=\"9\"/>",
       "<xs:element name=\"room\" type=\"xs:string\" minOccurs=\"3\" maxOccurs=\"9\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:rooms/>"},
        {kError, "reference-optional", "reference.xml", "<m:room mandatory=\"false\"/>"}}},
      {"as many as it has are fine",
       "main.xsd",
       "<xs:element name=\"room\" type=\"xs:string\" minOccurs=\"0\" maxOccurs=\"9\"/>",
       "<xs:element name=\"room\" type=\"xs:string\" minOccurs=\"2\" maxOccurs=\"9\"/>",
       {{kError, "reference-optional", "reference.xml", "<m:room mandatory=\"false\"/>"}}},
  });
}

TEST(SchemaRules, FindValuesThatTheTypeRefuses) {
  expectBesideSchema({
      {"a box whose value the enumeration does not have",
       "object-list.xml",
       "checkedvalue=\"yes\"",
       "checkedvalue=\"Yes\"",
       {{kError, "checkbox-value", "object-list.xml", "", "urgent"}}},
      {"a date that is not converted",
       "object-list.xml",
       "id=\"seen\" objecttype=\"field\" type=\"date\"",
       "id=\"seen\" objecttype=\"field\" type=\"text\"",
       {{kError, "date-not-converted", "object-list.xml", "", "seen"}}},
      {"a date that becomes a moment",
       "object-list.xml",
       "id=\"seen\" objecttype=\"field\" type=\"date\"",
       "id=\"seen\" objecttype=\"field\" type=\"time\"",
       {{kError, "date-form", "object-list.xml", "", "seen"}}},
      {"a cell that is not converted",
       "object-list.xml",
       "<column id=\"mended\" columnlabel=\"Mended\" columntype=\"date\"/>",
       "<column id=\"mended\" columnlabel=\"Mended\"/>",
       {{kError, "date-not-converted", "object-list.xml", "", "mended"}}},
      {"a cell that says of itself that it is not computed is typed in like others",
       "object-list.xml",
       "<column id=\"mended\" columnlabel=\"Mended\" columntype=\"date\"/>",
       "<column id=\"mended\" columnlabel=\"Mended\" calculate=\"false\"/>",
       {{kError, "date-not-converted", "object-list.xml", "", "mended"}}},
      {"a constant that the enumeration does not have",
       "object-mapper.xml",
       "<parameter id=\"channel\">on site</parameter>",
       "<parameter id=\"channel\">onsite</parameter>",
       {{kError, "constant-refused", "object-mapper.xml"}}},
      {"a constant of a column that the enumeration does not have",
       "object-list.xml",
       "autovalue=\"days\"",
       "autovalue=\"day\"",
       {{kError, "constant-refused", "object-list.xml", "", "timedimension"}}},
  });
}

TEST(SchemaRules, FindReferencesThatDifferFromTheSchema) {
  expectBesideSchema({
      {"mandatory there, optional here",
       "reference.xml",
       "<m:again mandatory=\"false\"/>\n    <m:note mandatory=\"false\"/>\n    <m:title "
       "mandatory=\"false\"/>\n    <m:office mandatory=\"true\"/>",
       "<m:again mandatory=\"false\"/>\n    <m:note mandatory=\"false\"/>\n    <m:title "
       "mandatory=\"false\"/>\n    <m:office mandatory=\"false\"/>",
       {{kError, "reference-optional", "reference.xml", "<m:office"}}},
      {"mandatory here, optional there, of a part of a complex type that cannot be empty",
       "reference.xml",
       "<m:length mandatory=\"false\">",
       "<m:length mandatory=\"true\">",
       {{kError, "reference-keeps-empty", "reference.xml"}}},
      {"of one that can",
       "reference.xml",
       "<m:role mandatory=\"false\"/>\n      <m:caption mandatory=\"false\"/>\n      <m:channel "
       "mandatory=\"false\"/>\n    </m:owner>\n    <m:address",
       "<m:role mandatory=\"true\"/>\n      <m:caption mandatory=\"false\"/>\n      <m:channel "
       "mandatory=\"false\"/>\n    </m:owner>\n    <m:address",
       {{kWarning, "reference-mandatory", "reference.xml"}}},
      {"of one that a constant always fills",
       "reference.xml",
       "<m:channel mandatory=\"false\"/>\n    </m:owner>\n    <m:address",
       "<m:channel mandatory=\"true\"/>\n    </m:owner>\n    <m:address",
       {{kWarning, "reference-mandatory", "reference.xml"}}},
      {"of an element of the template that can be empty",
       "reference.xml",
       "<m:guest mandatory=\"false\">",
       "<m:guest mandatory=\"true\">",
       {{kWarning, "reference-mandatory", "reference.xml"}}},
      {"of one that is only made for its answer",
       "reference.xml",
       "<m:urgent mandatory=\"false\"/>",
       "<m:urgent mandatory=\"true\"/>",
       {{kWarning, "reference-mandatory", "reference.xml"}}},
      {"a name that is unknown",
       "reference.xml",
       "<m:urgent mandatory=\"false\"/>",
       "<m:urgnet mandatory=\"false\"/>",
       {{kWarning, "reference-undeclared", "reference.xml"}}},
      {"a mandatory element that is left out",
       "reference.xml",
       "<m:form mandatory=\"true\"/>",
       "",
       {{kError, "reference-incomplete", "reference.xml", "<m:head"}}},
      {"an optional element that is left out is fine",
       "reference.xml",
       "<m:urgent mandatory=\"false\"/>",
       "",
       {}},
      {"a mandatory element that no path finds",
       "reference.xml",
       "<m:form mandatory=\"true\"/>",
       "<form mandatory=\"true\"/>",
       {{kError, "reference-incomplete", "reference.xml", "<m:head"}}},
  });
}

TEST(SchemaRules, FindElementsOfTheTemplateThatAreKeptEmpty) {
  const struct {
    const char *says, *people, *guest, *expected;
  } cases[] = {
      {"the second stays empty where one guest is named", "false", "true",
       "error reference-keeps-empty"},
      {"both go", "false", "false", ""},
      {"the place of the first name has a text", "true", "true", "error reference-keeps-empty"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    SmallDeployment deployment;
    addSchema(deployment);
    deployment.replace("main.xsd", "<xs:element name=\"name\" type=\"xs:string\" minOccurs=\"0\"/>",
                       "<xs:element name=\"name\" type=\"xs:string\"/>");
    deployment.replace("reference.xml", "<m:name mandatory=\"false\"/>",
                       "<m:name mandatory=\"true\"/>");
    deployment.replace("reference.xml", "<m:people mandatory=\"false\">",
                       std::string("<m:people mandatory=\"") + c.people + "\">");
    deployment.replace("reference.xml", "<m:guest mandatory=\"false\">",
                       std::string("<m:guest mandatory=\"") + c.guest + "\">");
    std::vector<std::string> lines = found(deployment);
    std::erase_if(lines, [](const std::string& strLine) {
      return strLine.find("-mandatory ") == std::string::npos &&
             strLine.find("-keeps-empty ") == std::string::npos;
    });
    for (std::string& strLine : lines) strLine.resize(strLine.find(' ', strLine.find(' ') + 1));
    std::erase(lines, "warning reference-mandatory");  // of the people
    EXPECT_EQ(lines,
              *c.expected ? std::vector<std::string>{c.expected} : std::vector<std::string>{});
  }
}

TEST(SchemaRules, FindQuestionsThatDifferFromTheMessage) {
  expectBesideSchema({
      {"a looser limit",
       "questions.xml",
       "maxLength=\"60\"",
       "maxLength=\"80\"",
       {{kWarning, "length-differs", "questions.xml", "", "title"}}},
      {"a tighter limit of a column",
       "questions.xml",
       "maxLength=\"80\"",
       "maxLength=\"60\"",
       {{kWarning, "length-differs", "questions.xml", "", "fault"}}},
      {"a limit that is not said",
       "questions.xml",
       " minLength=\"3\"",
       "",
       {{kWarning, "length-missing", "questions.xml", "", "fault"}}},
      {"a text that is called a date",
       "questions.xml",
       "<question id=\"title\" ",
       "<question id=\"title\" type=\"date\" ",
       {{kWarning, "question-kind", "questions.xml", "", "title"}}},
      {"a date that is called a text",
       "questions.xml",
       "<question id=\"seen\" type=\"date\">",
       "<question id=\"seen\" type=\"text\">",
       {{kWarning, "question-kind", "questions.xml", "", "seen"}}},
  });
}

TEST(SchemaRules, FindCopiesThatMayFindNothingToStandBefore) {
  expectBesideSchema({
      {"a copy that may find nothing to stand before",
       "object-mapper.xml",
       "<insertbefore appendonnomatch=\"true\">",
       "<insertbefore>",
       {{kError, "insert-before-uncertain", "object-mapper.xml"}}},
  });
}

TEST(SchemaRules, EndInSpiteOfCopiesOfCopies) {
  SmallDeployment deployment;
  addSchema(deployment);
  std::string strRules;
  for (int copy = 0; copy < 40; ++copy) {
    strRules += "<docnode><parentxpath>/m:report</parentxpath><node>/m:report/*</node></docnode>";
  }
  deployment.replace("object-mapper.xml", "<docnodes>", "<docnodes>" + strRules);
  const std::vector<std::string> lines = found(deployment);
  EXPECT_TRUE(std::ranges::count(lines, "note not-checked template.xml:2 ") == 1);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
