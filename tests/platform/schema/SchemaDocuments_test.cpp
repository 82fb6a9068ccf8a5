#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <set>

#include "SchemaTesting.h"
#include "platform/dom/DomTesting.h"
#include "platform/schema/CompileSchema.h"
#include "platform/schema/ReadSchemaDocuments.h"
#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* kRoot = "<xs:element name='r' type='xs:int'/>";
constexpr const char* kNotThere = "The system cannot locate the object specified.";

std::string include(const std::string& strLocation) {
  return "<xs:include schemaLocation='" + strLocation + "'/>";
}

std::string import(const std::string& strNamespace, const std::string& strLocation) {
  return "<xs:import namespace='" + strNamespace + "' schemaLocation='" + strLocation + "'/>";
}

/// Why a schema is refused; empty when it is not.
std::string refusal(const std::string& strPath, std::string_view strNamespaceUri = "") {
  try {
    SchemaCollection().add(strNamespaceUri, strPath);
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kXmlFailure);
    return error.description();
  }
  return "";
}

std::string refused(const std::string& strPath, const std::string& strReason) {
  return "The schema '" + strPath + "' cannot be registered: " + strReason;
}

/// The documents in their order, each as "file|namespace", with a "+" where that is adopted.
std::vector<std::string> partsOf(const SchemaDocuments& documents) {
  std::vector<std::string> parts;
  for (const SchemaDocument& document : documents.documents) {
    const std::string strFile = document.strPath.substr(document.strPath.rfind('/') + 1);
    parts.push_back(strFile + "|" + document.strTargetNamespace + (document.blnAdopted ? "+" : ""));
  }
  return parts;
}

TEST(SchemaDocuments, MayHaveTheirWhiteSpacePreserved) {
  const SchemaDirectory directory;
  std::string strText = schemaText(
      "\n  <xs:element name='r'>\n<xs:complexType> </xs:complexType>\n"
      "</xs:element>\n");
  strText.insert(strText.find(' '), " xml:space='preserve'");
  EXPECT_EQ(refusal(directory.write("main.xsd", strText)), "");
}

TEST(SchemaDocuments, HaveWhatAnEntityHoldsOnTheLineWhereTheyNameIt) {
  const SchemaDirectory directory;
  const std::string strText =
      "<!DOCTYPE r [<!ENTITY e \"<xs:element name='a' type='xs:none'/>\">]>\n\n" +
      schemaText("&e;");
  const SchemaDocuments documents =
      readSchemaDocuments("", directory.write("main.xsd", strText), "");
  try {
    compileSchema(documents, "main.xsd");
    FAIL() << "it is not refused";
  } catch (const SchemaFailure& failure) {
    EXPECT_EQ(failure.spot().lngLine, 3U);
  }
}

TEST(SchemaDocuments, AreReadOnceEachWhateverLeadsToThem) {
  const SchemaDirectory directory;
  directory.write("shared.xsd", schemaText("<xs:simpleType name='n'>"
                                           "<xs:restriction base='xs:int'/></xs:simpleType>"));
  directory.write("b.xsd",
                  schemaText(include("shared.xsd") + include("./x/../shared.xsd"), "urn:b"));
  const std::string strPath = directory.write(
      "a.xsd", schemaText(include("shared.xsd") + import("urn:b", "b.xsd") + include("more.xsd") +
                              "<xs:element name='r' type='t:n'/>",
                          "urn:a"));
  directory.write(
      "more.xsd",
      schemaText(include("a.xsd") + include("shared.xsd") + import("urn:b", "b.xsd"), "urn:a"));
  const SchemaDocuments documents = readSchemaDocuments("urn:a", strPath, "");
  EXPECT_THAT(partsOf(documents), ElementsAre("a.xsd|urn:a", "shared.xsd|urn:a+", "b.xsd|urn:b",
                                              "shared.xsd|urn:b+", "more.xsd|urn:a"));
  EXPECT_THAT(documents.trees, SizeIs(4));
  EXPECT_EQ(documents.documents[1].root, documents.documents[3].root);

  // Each reference knows where it leads; the second import of a namespace leads nowhere.
  std::vector<std::size_t> colLed;
  for (const SchemaDocument::Reference& reference : documents.documents[0].references) {
    EXPECT_EQ(reference.element->parent, documents.documents[0].root);
    colLed.push_back(reference.lngDocument);
  }
  EXPECT_THAT(colLed, ElementsAre(1U, 2U, 4U));
  EXPECT_THAT(documents.documents[2].references, SizeIs(2));
  EXPECT_THAT(documents.documents[4].references, SizeIs(2));

  EXPECT_EQ(refusal(strPath, "urn:a"), "");
}

TEST(SchemaDocuments, AreWhatTheirNamespacesMakeOfThem) {
  const SchemaDirectory directory;
  directory.write("part.xsd", schemaText("<xs:simpleType name='n'><xs:restriction base='m'/>"
                                         "</xs:simpleType><xs:simpleType name='m'>"
                                         "<xs:restriction base='xs:int'/></xs:simpleType>"
                                         "<xs:element name='p' type='n'/>"));
  directory.write("b.xsd", schemaText(include("part.xsd"), "urn:b"));
  SchemaCollection colSchemas;
  colSchemas.add(
      "urn:a",
      directory.write(
          "a.xsd", schemaText(include("part.xsd") + import("urn:b", "b.xsd") +
                                  "<xs:element name='r'><xs:complexType><xs:sequence>"
                                  "<xs:element ref='t:p'/><xs:element ref='b:p' xmlns:b='urn:b'/>"
                                  "</xs:sequence></xs:complexType></xs:element>",
                              "urn:a")));
  EXPECT_THAT(violations(colSchemas, "<r xmlns='urn:a'><p>1</p><p xmlns='urn:b'>1</p></r>"),
              SizeIs(0));
  EXPECT_THAT(violations(colSchemas, "<r xmlns='urn:a'><p>x</p><p xmlns='urn:b'>x</p></r>"),
              SizeIs(2));
}

TEST(SchemaDocuments, MayReferToOneAnotherInCircles) {
  const SchemaDirectory directory;
  const std::string strPath = directory.write(
      "a.xsd", schemaText(include("a2.xsd") + import("urn:b", "b.xsd") + kRoot, "urn:a"));
  directory.write("a2.xsd", schemaText(include("a.xsd"), "urn:a"));
  directory.write("b.xsd",
                  schemaText(import("urn:a", "a.xsd") + "<xs:element name='s'/>", "urn:b"));
  EXPECT_EQ(refusal(strPath, "urn:a"), "");
  EXPECT_THAT(refusal(directory.write("self.xsd", schemaText(include("self.xsd")))),
              HasSubstr("must not import/include/redefine itself"));
}

TEST(SchemaDocuments, AreFoundByAnyUri) {
  const struct {
    const char *says, *file, *location;
  } cases[] = {
      {"blanks as escapes", "x y.xsd", "x%20y.xsd"},
      {"an escape that is a name", "x%20y.xsd", "x%2520y.xsd"},
      {"white space around it", "plain.xsd", " \n\tplain.xsd\r\n "},
      {"letters beyond ASCII", "größe.xsd", "größe.xsd"},
      {"the same as escapes", "größe.xsd", "gr%C3%B6%C3%9Fe.xsd"},
      {"an escaped slash, which leads out of a folder", "plain.xsd", "sub/..%2fplain.xsd"},
      {"escaped dots", "plain.xsd", "sub/%2e%2e/plain.xsd"},
      {"a folder", "sub/plain.xsd", "sub/plain.xsd"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const SchemaDirectory directory;
    directory.write(c.file, schemaText("<xs:element name='part'/>"));
    SchemaCollection colSchemas;
    colSchemas.add("", directory.write("main.xsd", schemaText(include(c.location))));
    EXPECT_THAT(violations(colSchemas, "<part/>"), SizeIs(0));
  }
}

TEST(SchemaDocuments, AreNotTheFilesWhoseNamesHoldTheEscapes) {
  const SchemaDirectory directory;
  directory.write("x%20y.xsd", schemaText(kRoot));
  EXPECT_EQ(refusal(directory.write("main.xsd", schemaText(include("x%20y.xsd")))),
            refused(directory.path("x y.xsd"), kNotThere));
}

TEST(SchemaDocuments, AreFoundBesideAFileWithAnEscapeInItsPath) {
  const SchemaDirectory directory;
  directory.write("a%20b/part.xsd", schemaText("<xs:element name='part'/>"));
  EXPECT_EQ(refusal(directory.write("a%20b/main.xsd", schemaText(include("part.xsd")))), "");
}

TEST(SchemaDocuments, AreReferredToByTheTopLevelAlone) {
  const SchemaDirectory directory;
  const std::string strForeign =
      "<xs:annotation><xs:appinfo>" + include("missing.xsd") + "<xs:schema>" +
      include("http://127.0.0.1:9/x.xsd") + "</xs:schema></xs:appinfo><xs:documentation>" +
      import("urn:x", "missing.xsd") + "</xs:documentation></xs:annotation>";
  EXPECT_EQ(refusal(directory.write("main.xsd", schemaText(strForeign + kRoot))), "");
}

TEST(SchemaDocuments, AreFilesWithSomethingInThem) {
  const SchemaDirectory directory;
  std::filesystem::create_directory(directory.path("folder.xsd"));
  ASSERT_EQ(mkfifo(directory.path("pipe.xsd").c_str(), 0600), 0);
  directory.write("empty.xsd", "");
  for (const char* file : {"folder.xsd", "pipe.xsd", "missing.xsd"}) {
    SCOPED_TRACE(file);
    for (const std::string& strKind : {std::string("include"), std::string("redefine")}) {
      const std::string strReference = "<xs:" + strKind + " schemaLocation='" + file + "'/>";
      EXPECT_EQ(refusal(directory.write("main.xsd", schemaText(strReference))),
                refused(directory.path(file), kNotThere));
    }
    // An import that leads nowhere is none of these.
    EXPECT_EQ(refusal(directory.write("main.xsd", schemaText(import("urn:x", file) + kRoot))), "");
  }
  EXPECT_EQ(refusal(directory.write("main.xsd", schemaText(import("urn:x", "empty.xsd")))),
            refused(directory.path("empty.xsd"), "Document is empty"));
}

TEST(SchemaDocuments, AreAtMostAThousand) {
  const SchemaDirectory directory;
  std::string strIncludes;
  for (int lngAt = 1; lngAt < 1000; ++lngAt) {
    const std::string strName = "d" + std::to_string(lngAt) + ".xsd";
    directory.write(strName, schemaText("<xs:element name='e" + std::to_string(lngAt) + "'/>"));
    strIncludes += include(strName);
  }
  EXPECT_EQ(refusal(directory.write("main.xsd", schemaText(strIncludes))), "");
  directory.write("more.xsd", schemaText(kRoot));
  EXPECT_EQ(refusal(directory.write("main.xsd", schemaText(strIncludes + include("more.xsd")))),
            refused(directory.path("more.xsd"), "It is one document too many."));
}

TEST(SchemaDocuments, MayHaveADocumentType) {
  const SchemaDirectory directory;
  const std::string strType =
      "<!DOCTYPE xs:schema PUBLIC '-//W3C//DTD XMLSCHEMA 200102//EN' 'http://127.0.0.1:9/x.dtd' ["
      "<!ENTITY name 'part'><!ENTITY % p ''> %p;"
      "<!ENTITY element \"<xs:element name='&name;' type='xs:int'/>\">"
      "<!ATTLIST xs:schema xmlns:xs CDATA #FIXED 'http://www.w3.org/2001/XMLSchema' "
      "elementFormDefault CDATA 'qualified'>]>";
  directory.write("part.xsd", strType + "<xs:schema>&element;</xs:schema>");
  const std::string strPath =
      directory.write("main.xsd", strType +
                                      "<xs:schema><xs:include schemaLocation='&name;.xsd'/>"
                                      "</xs:schema>");
  const SchemaDocuments documents = readSchemaDocuments("", strPath, "");
  for (const SchemaDocument& document : documents.documents) {
    EXPECT_EQ(attributeOf(document.root, "elementFormDefault"), "qualified");
  }
  SchemaCollection colSchemas;
  colSchemas.add("", strPath);
  EXPECT_THAT(violations(colSchemas, "<part>1</part>"), SizeIs(0));
  EXPECT_THAT(violations(colSchemas, "<part>x</part>"), SizeIs(1));
}

TEST(SchemaDocuments, ExpandWhatTheyDeclareWithinBounds) {
  const SchemaDirectory directory;
  std::string strBomb = "<!ENTITY a0 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa'>";
  for (int level = 1; level < 10; ++level) {
    strBomb += "<!ENTITY a" + std::to_string(level) + " '";
    for (int times = 0; times < 10; ++times) strBomb += "&a" + std::to_string(level - 1) + ";";
    strBomb += "'>";
  }
  const std::string strLong(1'000'000, 'u');
  std::string strMany, strSomeDeclared, strManyDeclared;
  for (int at = 0; at < 20'000; ++at) strMany += "<xs:annotation/>";
  for (int at = 0; at < 2'000; ++at) {
    strManyDeclared += " a" + std::to_string(at) + " CDATA ''";
    if (at == 400) strSomeDeclared = strManyDeclared;
  }
  const std::string strSchema = schemaText("<xs:annotation>&e;</xs:annotation>" + strMany);
  const std::string strPlain = schemaText(strMany);
  directory.write("secret.txt", "secret");
  const struct {
    const char* says;
    std::string strType, strDocument, strReason;
  } cases[] = {
      {"an entity bomb", "[" + strBomb + "<!ENTITY e '&a9;'>]", strSchema, "entity"},
      {"an external entity", "[<!ENTITY e SYSTEM '/etc/passwd'>]", strSchema, "'e'"},
      {"one by a URL", "[<!ENTITY e SYSTEM 'file:///etc/passwd'>]", strSchema, "'e'"},
      {"one beside it", "[<!ENTITY e SYSTEM 'secret.txt'>]", strSchema, "'e'"},
      {"an external parameter entity", "[<!ENTITY % e SYSTEM 'secret.txt'> %e;]", strPlain, ""},
      {"an entity of an external subset", "SYSTEM 'secret.txt'", strSchema, "'e'"},
      {"a long default", "[<!ATTLIST xs:annotation id CDATA '" + strLong + "'>]", strPlain,
       "attributes too large"},
      {"a long namespace", "[<!ATTLIST xs:annotation xmlns:l CDATA '" + strLong + "'>]", strPlain,
       "attributes too large"},
      {"many defaults", "[<!ATTLIST xs:annotation" + strSomeDeclared + ">]", strPlain,
       "attributes too large"},
      {"very many defaults", "[<!ATTLIST xs:annotation" + strManyDeclared + ">]", strPlain,
       "too many attributes"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strPath =
        directory.write("a.xsd", "<!DOCTYPE xs:schema " + c.strType + ">" + c.strDocument);
    const std::string strRefusal = refusal(strPath);
    EXPECT_THAT(strRefusal, StartsWith(refused(strPath, "")));
    EXPECT_THAT(strRefusal, HasSubstr(c.strReason));
    EXPECT_THAT(strRefusal, Not(HasSubstr("root:")));
  }
}

TEST(SchemaDocuments, AreNamedByTheirPathsInWhatTheCompilerSays) {
  const SchemaDirectory directory;
  directory.write("part.xsd", schemaText(kRoot, "urn:other"));
  const std::string strPath = directory.write("main.xsd", schemaText(include("part.xsd")));
  EXPECT_THAT(refusal(strPath), HasSubstr("'" + directory.path("part.xsd") + "'"));
}

TEST(SchemaDocuments, DoNotChangeWhileOthersReadThem) {
  // What the compiler gets is a copy.
  const SchemaDirectory directory;
  const std::string strPath = directory.write(
      "main.xsd", schemaText(import("urn:none", "http://127.0.0.1:9/x.xsd") + kRoot));
  const SchemaDocuments documents = readSchemaDocuments("", strPath, "");
  const TreeNode* reference = documents.documents[0].root->first;
  EXPECT_EQ(attributeOf(reference, "schemaLocation"), "http://127.0.0.1:9/x.xsd");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
