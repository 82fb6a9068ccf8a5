#include <gtest/gtest.h>

#include <algorithm>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kError = Severity::error;
constexpr Severity kWarning = Severity::warning;

// Behind the type of the root, where its identity constraints stand.
constexpr const char* kReportEnd = R"(</xs:complexType>
  </xs:element>
  <xs:complexType name="Head">)";

}  // namespace

const std::vector<SchemaMistake>& mistakesOfSchemaProblems() {
  static const std::vector<SchemaMistake> kMistakes = {
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
       {{kError, "schema-unusable", "main.xsd"}}},
      {"a file that is not there, and that nothing needs",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:import namespace=\"urn:example:none\" schemaLocation=\"none.xsd\"/>"
       "<xs:element name=\"report\">",
       {{kWarning, "import-missing", "main.xsd"}}},
      {"a file that is not there, and another mistake",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:import namespace=\"urn:example:none\" schemaLocation=\"none.xsd\"/>"
       "<xs:element name=\"twice\"/><xs:element name=\"twice\"/><xs:element name=\"report\">",
       {{kWarning, "import-missing", "main.xsd"}, {kError, "schema-unusable", "main.xsd"}}},
      {"a file that is not there for no namespace, and an empty name",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:import schemaLocation=\"none.xsd\"/><xs:element name=\"\"/><xs:element "
       "name=\"report\">",
       {{kWarning, "import-missing", "main.xsd"}, {kError, "schema-unusable", "main.xsd"}}},
      {"a file that is not there, and a value like its namespace",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:import namespace=\"urn:example:none\" schemaLocation=\"none.xsd\"/>"
       "<xs:simpleType name=\"none\"><xs:restriction base=\"xs:int\">"
       "<xs:maxInclusive value=\"urn:example:none\"/></xs:restriction></xs:simpleType>"
       "<xs:element name=\"report\">",
       {{kWarning, "import-missing", "main.xsd"}, {kError, "schema-unusable", "main.xsd"}}},
      {"an include of a file that is not there",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:include\n schemaLocation=\"gone.xsd\"/><xs:element name=\"report\">",
       {{kError, "schema-unusable", "main.xsd", "schemaLocation=\"gone.xsd\""}}},
      {"a redefinition of a document of another machine",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:redefine\n schemaLocation=\"http://schemas.example/m.xsd\"/>"
       "<xs:element name=\"report\">",
       {{kError, "schema-unusable", "main.xsd",
         "schemaLocation=\"http://schemas.example/m.xsd\""}}},
      {"an import for another namespace than its document has",
       "main.xsd",
       "<xs:import namespace=\"urn:example:pbr\"",
       "<xs:import namespace=\"urn:example:prb\"",
       {{kError, "schema-unusable", "main.xsd"}}},
      {"a document with another namespace than it is imported for",
       "pbr.xsd",
       "targetNamespace=\"urn:example:pbr\"",
       "targetNamespace=\"urn:example:prb\"",
       {{kError, "schema-unusable", "pbr.xsd"}}},
      {"a location on another machine",
       "main.xsd",
       "schemaLocation=\"pbr.xsd\"",
       "schemaLocation=\"http://schemas.example/pbr.xsd\"",
       {{kError, "schema-unusable", "main.xsd"}}},
      {"a location on another machine, and nothing needs it",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:import namespace=\"urn:example:none\" schemaLocation=\"http://schemas.example/n.xsd\"/>"
       "<xs:element name=\"report\">",
       {{kWarning, "import-on-network", "main.xsd"}}},
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
      {"the field of a key leads nowhere",
       "main.xsd",
       kReportEnd,
       R"(</xs:complexType>
<xs:key name="meter"><xs:selector xpath="m:meters/m:reading" xmlns:m="urn:example:m"/>
<xs:field xpath="m:metre" xmlns:m="urn:example:m"/></xs:key></xs:element>
  <xs:complexType name="Head">)",
       {{kError, "identity-never-met", "main.xsd", "<xs:field xpath=\"m:metre\""}}},
      {"the selector of a key to which others refer leads nowhere",
       "main.xsd",
       kReportEnd,
       R"(</xs:complexType>
<xs:key name="meter"><xs:selector xpath="meters/reading"/>
<xs:field xpath="m:meter" xmlns:m="urn:example:m"/></xs:key>
<xs:keyref name="asked" refer="meter"><xs:selector xpath="m:end" xmlns:m="urn:example:m"/>
<xs:field xpath="m:office" xmlns:m="urn:example:m"/></xs:keyref></xs:element>
  <xs:complexType name="Head">)",
       {{kError, "identity-never-met", "main.xsd", "<xs:key name=\"meter\">"}}},
      {"the selector of a reference leads nowhere",
       "main.xsd",
       kReportEnd,
       R"(</xs:complexType>
<xs:key name="meter"><xs:selector xpath=".//m:reading" xmlns:m="urn:example:m"/>
<xs:field xpath="m:meter" xmlns:m="urn:example:m"/></xs:key>
<xs:keyref name="asked" refer="meter"><xs:selector xpath="m:ends" xmlns:m="urn:example:m"/>
<xs:field xpath="m:office" xmlns:m="urn:example:m"/></xs:keyref></xs:element>
  <xs:complexType name="Head">)",
       {{kWarning, "identity-void", "main.xsd", "<xs:keyref name="}}},
      {"the field of a unique value is an attribute that there is not",
       "main.xsd",
       kReportEnd,
       R"(</xs:complexType>
<xs:unique name="info"><xs:selector xpath="m:faults/m:fault/p:AdditionalInfo"
 xmlns:m="urn:example:m" xmlns:p="urn:example:pbr"/>
<xs:field xpath="@ident"/></xs:unique></xs:element>
  <xs:complexType name="Head">)",
       {{kWarning, "identity-void", "main.xsd", "<xs:field xpath=\"@ident\"/>"}}},
      {"fields that are an element, an attribute and the element itself",
       "main.xsd",
       kReportEnd,
       R"(</xs:complexType>
<xs:unique name="info"><xs:selector xpath="m:faults/m:fault/p:AdditionalInfo"
 xmlns:m="urn:example:m" xmlns:p="urn:example:pbr"/>
<xs:field xpath="@id"/><xs:field xpath="."/></xs:unique>
<xs:key name="any"><xs:selector xpath="*/m:none | m:meters/*" xmlns:m="urn:example:m"/>
<xs:field xpath="m:*" xmlns:m="urn:example:m"/></xs:key></xs:element>
  <xs:complexType name="Head">)",
       {}},
      {"where a type derived from the one there may stand nothing is known",
       "main.xsd",
       kReportEnd,
       R"(</xs:complexType>
<xs:unique name="more"><xs:selector xpath="m:people/m:owner" xmlns:m="urn:example:m"/>
<xs:field xpath="m:more" xmlns:m="urn:example:m"/></xs:unique></xs:element>
  <xs:complexType name="Tenant"><xs:complexContent><xs:extension base="Person">
  <xs:sequence><xs:element name="more" type="xs:string"/></xs:sequence>
  </xs:extension></xs:complexContent></xs:complexType>
  <xs:complexType name="Head">)",
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
       {}}};
  return kMistakes;
}

namespace {

TEST(SchemaProblems, FindEachMistakeAndNothingElse) {
  expectBesideSchema(mistakesOfSchemaProblems());
}

TEST(SchemaProblems, FindASchemaThatIsNotNamedOrIsAnothers) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.files.strSchemaUri = "urn:example:other";
  EXPECT_EQ(foundBesideSchema(deployment),
            std::vector<std::string>{"error schema-namespace main.xsd:3 "})
      << "on the line of targetNamespace";
  deployment.files.strSchemaUri = "urn:example:m";
  deployment.files.strSchemaUrl = "gone.xsd";
  EXPECT_EQ(foundBesideSchema(deployment),
            std::vector<std::string>{"error schema-unusable gone.xsd:1 "});
  deployment.files.strSchemaUrl = "";
  EXPECT_EQ(foundBesideSchema(deployment), std::vector<std::string>{"error no-schema :1 "})
      << "its namespace is named";
  deployment.files.strSchemaUri = "";
  EXPECT_EQ(foundBesideSchema(deployment), std::vector<std::string>{})
      << "nobody asks for a verdict";
  deployment.files.blnValidateAgainstSchema = true;
  EXPECT_EQ(foundBesideSchema(deployment), std::vector<std::string>{"error no-schema :1 "});
}

/// What the only finding says and what it says to do.
std::string toldOf(const Replacement& mistake) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.replace(mistake.file, mistake.find, mistake.text);
  const std::vector<Finding> findings = deployment.check();
  if (findings.size() != 1) return ::testing::PrintToString(summaries(findings));
  return findings[0].message + " " + findings[0].hint;
}

TEST(SchemaProblems, NameTheDocumentAndTheNamespaceThatAreMeant) {
  EXPECT_EQ(toldOf({"main.xsd", "<xs:element name=\"report\">",
                    "<xs:include schemaLocation=\"gone.xsd\"/><xs:element name=\"report\">"}),
            "The schema cannot be used: There is no file \"gone.xsd\", which this include names. "
            "Correct the location: until then no message is checked.");
  EXPECT_EQ(toldOf({"main.xsd", "<xs:element name=\"report\">",
                    "<xs:include schemaLocation=\"https://schemas.example/gone.xsd\"/>"
                    "<xs:element name=\"report\">"}),
            "The schema cannot be used: It refers to 'https://schemas.example/gone.xsd', which is "
            "no file. Nothing is read over the network: put the file beside the schema, or let a "
            "catalog name it.");
  EXPECT_EQ(toldOf({"main.xsd", "<xs:element name=\"report\">",
                    "<xs:import schemaLocation=\"none.xsd\"/><xs:element name=\"report\">"}),
            "The import for no namespace leads to no file: its location is 'none.xsd'. Correct the "
            "location, or let a catalog name the file.");
  EXPECT_EQ(toldOf({"main.xsd", "schemaLocation=\"pbr.xsd\"", "schemaLocation=\"prb.xsd\""}),
            "The schema cannot be used: The import of the namespace 'urn:example:pbr' leads to no "
            "file: its location is 'prb.xsd'. Correct the location, or let a catalog name the "
            "file.");
  EXPECT_EQ(
      toldOf({"main.xsd", "<xs:import namespace=\"urn:example:pbr\"",
              "<xs:import namespace=\"urn:example:prb\""}),
      "The schema cannot be used: The import is for \"urn:example:prb\", and the target "
      "namespace of \"pbr.xsd\" is \"urn:example:pbr\". Write \"urn:example:pbr\": until then "
      "no message is checked.");
  EXPECT_EQ(toldOf({"pbr.xsd", "targetNamespace=\"urn:example:pbr\"",
                    "targetNamespace=\"urn:example:prb\""}),
            "The schema cannot be used: Its target namespace is \"urn:example:prb\", and it is "
            "imported for \"urn:example:pbr\". Write \"urn:example:pbr\": until then no message is "
            "checked.");
  EXPECT_EQ(
      toldOf({"main.xsd", "<xs:import namespace=\"urn:example:pbr\"", "<xs:import"}),
      "The schema cannot be used: The import is for no namespace, and the target namespace of "
      "\"pbr.xsd\" is \"urn:example:pbr\". Write \"urn:example:pbr\": until then no message "
      "is checked.");
  EXPECT_EQ(toldOf({"pbr.xsd", "targetNamespace=\"urn:example:pbr\"", ""}),
            "The schema cannot be used: It has no target namespace, and it is imported for "
            "\"urn:example:pbr\". Write \"urn:example:pbr\": until then no message is checked.");
}

TEST(SchemaProblems, NameNoIncludeThatIsThere) {
  SmallDeployment deployment;
  addSchema(deployment);
  constexpr const char* kEmpty = "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\"/>";
  for (const char* file : {"there.xsd", "over there.xsd", "by name.xsd", "catalogued.xsd"}) {
    deployment.write(file, kEmpty);
  }
  deployment.write("catalog.xml",
                   "<catalog xmlns=\"urn:oasis:names:tc:entity:xmlns:xml:catalog\">"
                   "<systemSuffix systemIdSuffix=\"elsewhere.xsd\" uri=\"catalogued.xsd\"/>"
                   "<uriSuffix uriSuffix=\"elsewhere.xsd\" uri=\"catalogued.xsd\"/></catalog>");
  deployment.replace("main.xsd", "<xs:element name=\"report\">",
                     "<xs:include schemaLocation=\"there.xsd\"/>"
                     "<xs:include schemaLocation=\"over%20there.xsd\"/>"
                     "<xs:include schemaLocation=\"elsewhere.xsd\"/>"
                     "<xs:include schemaLocation=\"file://" +
                         deployment.at("by%20name.xsd") +
                         "\"/>"
                         "<xs:include schemaLocation=\"gone.xsd\"/><xs:element name=\"report\">");
  const std::vector<Finding> findings = deployment.check();
  ASSERT_EQ(findings.size(), 1u) << ::testing::PrintToString(summaries(findings));
  EXPECT_EQ(findings[0].message,
            "The schema cannot be used: There is no file \"gone.xsd\", which this include names.");
}

TEST(SchemaProblems, LookForTheSchemaWhereARunDoes) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.files.strSchemaUrl = deployment.at("main.xsd");
  EXPECT_EQ(foundBesideSchema(deployment),
            std::vector<std::string>{"error schema-unusable main.xsd:1 "})
      << "a run looks for an absolute path below the folder above the page's";
  deployment.files.strSchemaUrl = "/main.xsd";
  EXPECT_EQ(foundBesideSchema(deployment), std::vector<std::string>{});
}

TEST(SchemaProblems, TellWhereTheOptionsNameTheSchema) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.files.strOptionFile = deployment.at("deployment.json");
  deployment.files.optionLines = {{"schema-url", 10}, {"schema-uri", 11}};
  EXPECT_EQ(foundBesideSchema(deployment), std::vector<std::string>{});
  deployment.files.strSchemaUri = "urn:example:other";
  EXPECT_EQ(foundBesideSchema(deployment),
            std::vector<std::string>{"error schema-namespace deployment.json:11 "});
  deployment.files.strSchemaUrl = "gone.xsd";
  EXPECT_EQ(foundBesideSchema(deployment),
            std::vector<std::string>{"error schema-unusable deployment.json:10 "});
  deployment.files.strSchemaUrl = "template.xml";
  EXPECT_EQ(foundBesideSchema(deployment),
            std::vector<std::string>{"error schema-unusable deployment.json:10 "})
      << "which is no schema";
  deployment.files.strSchemaUrl = "";
  EXPECT_EQ(foundBesideSchema(deployment),
            std::vector<std::string>{"error no-schema deployment.json:11 "});
}

TEST(SchemaProblems, TellWhatIsWrongWithACatalogAtTheCatalog) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.replace("main.xsd", "schemaLocation=\"pbr.xsd\"", "schemaLocation=\"urn:x:pbr.xsd\"");
  constexpr const char* kCatalog =
      "<catalog xmlns=\"urn:oasis:names:tc:entity:xmlns:xml:catalog\">\n"
      "  <rewriteURI uriStartString=\"urn:x:\" rewritePrefix=\"./\"/>\n</catalog>\n";
  deployment.write("catalog.xml", kCatalog);
  deployment.files.strSchemaCatalog = deployment.at("catalog.xml");
  EXPECT_EQ(foundBesideSchema(deployment), std::vector<std::string>{});
  deployment.replace("catalog.xml", "/>\n</catalog>", ">\n</catalog>");
  EXPECT_EQ(foundBesideSchema(deployment),
            std::vector<std::string>{"error schema-unusable catalog.xml:3 "});
  deployment.write("catalog.xml", kCatalog);
  deployment.replace("catalog.xml", "rewriteURI", "rewriteUri");
  const std::vector<Finding> findings = deployment.check();
  EXPECT_TRUE(std::ranges::any_of(findings, [](const Finding& finding) {
    return summary(finding) == "error misspelt-element catalog.xml:2 ";
  }));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
