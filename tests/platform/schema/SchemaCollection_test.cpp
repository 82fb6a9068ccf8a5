#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <thread>

#include "SchemaTesting.h"
#include "platform/dom/DomTesting.h"
#include "platform/xml/FileCache.h"
#include "platform/xml/FilesRead.h"
#include "support/Faults.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using test::FaultAt;
using testing::HasSubstr;
using testing::SizeIs;

/// Why a schema is refused, after the part that names it.
std::string refusal(const std::string& strPath, std::string_view strNamespaceUri = "",
                    const std::string& strNamed = "") {
  SchemaCollection colSchemas;
  const std::string strDescription =
      descriptionOf(kXmlFailure, [&] { colSchemas.add(strNamespaceUri, strPath); });
  const std::string strStart =
      "The schema '" + (strNamed.empty() ? strPath : strNamed) + "' cannot be registered: ";
  EXPECT_THAT(strDescription, testing::StartsWith(strStart));
  return strDescription.substr(std::min(strStart.size(), strDescription.size()));
}

constexpr const char* kRoot = "<xs:element name='r' type='xs:int'/>";

TEST(SchemaCollection, RegistersASchemaUnderItsTargetNamespace) {
  const SchemaDirectory directory;
  SchemaCollection colSchemas;
  colSchemas.add("urn:a", directory.write("a.xsd", schemaText(kRoot, "urn:a")));
  colSchemas.add("", directory.write("none.xsd", schemaText(kRoot)));
  EXPECT_THAT(violations(colSchemas, "<r xmlns='urn:a'>1</r>"), SizeIs(0));
  EXPECT_THAT(violations(colSchemas, "<r>1</r>"), SizeIs(0));
  EXPECT_THAT(violations(colSchemas, "<r xmlns='urn:b'>1</r>"), SizeIs(1));
}

TEST(SchemaCollection, ReplacesTheSchemaOfANamespace) {
  const SchemaDirectory directory;
  SchemaCollection colSchemas;
  colSchemas.add("", directory.write("a.xsd", schemaText(kRoot)));
  colSchemas.add("", directory.write("b.xsd", schemaText("<xs:element name='s'/>")));
  EXPECT_THAT(violations(colSchemas, "<r>1</r>"), SizeIs(1));
  EXPECT_THAT(violations(colSchemas, "<s/>"), SizeIs(0));
}

TEST(SchemaCollection, RefusesWhatIsNoSchemaOrAnothers) {
  const SchemaDirectory directory;
  EXPECT_EQ(refusal(directory.path("missing.xsd")),
            "The system cannot locate the object specified.");
  EXPECT_EQ(refusal(directory.write("a.xsd", schemaText(kRoot, "urn:a")), "urn:b"),
            "Its target namespace is 'urn:a', not 'urn:b'.");
  EXPECT_EQ(refusal(directory.write("b.xsd", schemaText(kRoot)), "urn:b"),
            "Its target namespace is '', not 'urn:b'.");
  EXPECT_EQ(refusal(directory.write("c.xsd", "<xs:schema/>")),
            "Namespace prefix xs on schema is not defined");
  EXPECT_EQ(refusal(directory.write("d.xsd", "<schema/>")), "It is not an XML Schema.");
  EXPECT_NE(refusal(directory.write("e.xsd", schemaText("<xs:element name='r'"))), "");
  EXPECT_THAT(refusal(directory.write("f.xsd", schemaText("<xs:element name='r' type='nix'/>"))),
              HasSubstr("'nix'"));
  EXPECT_THAT(refusal("http://127.0.0.1:9/a.xsd"), testing::StrEq("It is no file."));
  EXPECT_EQ(refusal(""), "It is no file.");
}

TEST(SchemaCollection, TakesWhiteSpaceForNoContent) {
  const SchemaDirectory directory;
  const auto with = [&](const std::string& strText) {
    return directory.write(
        "main.xsd", "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xml:space='preserve'>" +
                        strText + "<xs:element name='r'>" + strText +
                        "<xs:simpleType> <xs:restriction base='xs:int'/>\n</xs:simpleType>"
                        "</xs:element></xs:schema>");
  };
  SchemaCollection().add("", with(" \n\t&#13;<!-- x --> "));
  EXPECT_THAT(refusal(with(" x ")), HasSubstr("The content is not valid."));
  EXPECT_THAT(refusal(with("<![CDATA[ ]]>")), HasSubstr("The content is not valid."));
}

TEST(SchemaCollection, RefusesAnIdentifierThatIsThereTwice) {
  const SchemaDirectory directory;
  const auto with = [&](const std::string& strFirst, const std::string& strSecond) {
    return directory.write("main.xsd", schemaText("<xs:element name='r' " + strFirst +
                                                  "/><xs:element name='s' " + strSecond + "/>"));
  };
  SchemaCollection().add("", with("id='a'", "id='b'"));
  EXPECT_THAT(refusal(with("id='a'", "id='a'")), HasSubstr("Duplicate value 'a'"));
  EXPECT_THAT(refusal(with("id='a'", "xml:id='a'")), HasSubstr("Duplicate value 'a'"));
}

TEST(SchemaCollection, FollowsReferencesToFiles) {
  const SchemaDirectory directory;
  directory.write("parts of it/types.xsd",
                  schemaText("<xs:include schemaLocation='../main.xsd'/>"
                             "<xs:simpleType name='day'><xs:restriction base='xs:date'/>"
                             "</xs:simpleType><xs:element name='part'/>"));
  directory.write("other.xsd", schemaText("<xs:element name='o' type='xs:int'/>", "urn:o"));
  SchemaCollection colSchemas;
  colSchemas.add("urn:a", directory.write(
                              "main.xsd",
                              schemaText("<xs:include schemaLocation='parts%20of%20it/types.xsd'/>"
                                         "<xs:import namespace='urn:o' schemaLocation='other.xsd'/>"
                                         "<xs:element name='r'><xs:complexType><xs:sequence>"
                                         "<xs:element name='d' type='t:day'/>"
                                         "<xs:element ref='o:o' xmlns:o='urn:o'/></xs:sequence>"
                                         "</xs:complexType></xs:element>",
                                         "urn:a")));
  EXPECT_THAT(
      violations(colSchemas, "<r xmlns='urn:a'><d>2020-01-01</d><o xmlns='urn:o'>1</o></r>"),
      SizeIs(0));
  EXPECT_THAT(violations(colSchemas, "<r xmlns='urn:a'><d>x</d><o xmlns='urn:o'>x</o></r>"),
              SizeIs(2));
  // What an included document declares is declared, in the namespace that it is included into.
  EXPECT_THAT(violations(colSchemas,
                         "<r xmlns='urn:a'><part/><d>2020-01-01</d>"
                         "<o xmlns='urn:o'>1</o></r>"),
              testing::ElementsAre(HasSubstr("content is invalid")));
}

TEST(SchemaCollection, RefusesReferencesThatCannotBeHad) {
  const SchemaDirectory directory;
  directory.write("other.xsd", schemaText(kRoot, "urn:other"));
  directory.write("broken.xsd", "<xs:schema");
  const auto including = [&](const std::string& strLocation) {
    return directory.write("main.xsd",
                           schemaText("<xs:include schemaLocation='" + strLocation + "'/>"));
  };
  EXPECT_EQ(refusal(including("missing.xsd"), "", directory.path("missing.xsd")),
            "The system cannot locate the object specified.");
  EXPECT_EQ(refusal(including("http://127.0.0.1:9/x.xsd")),
            "It refers to 'http://127.0.0.1:9/x.xsd', which is no file.");
  EXPECT_EQ(refusal(including("file://host/x.xsd")),
            "It refers to 'file://host/x.xsd', which is no file.");
  EXPECT_NE(refusal(including("broken.xsd"), "", directory.path("broken.xsd")), "");
  EXPECT_THAT(refusal(including("other.xsd")), HasSubstr("other.xsd"));

  EXPECT_EQ(refusal(directory.write(
                "main.xsd", schemaText("<xs:redefine schemaLocation='ftp://127.0.0.1:9/x.xsd'/>"))),
            "It refers to 'ftp://127.0.0.1:9/x.xsd', which is no file.");
  EXPECT_EQ(refusal(directory.write("main.xsd",
                                    schemaText("<xs:import xml:base='http://127.0.0.1:9/' "
                                               "namespace='urn:x' schemaLocation='x.xsd'/>"))),
            "It has an xml:base.");
}

TEST(SchemaCollection, TellsLocalNamesByTheirForm) {
  const SchemaDirectory directory;
  SchemaCollection colSchemas;
  colSchemas.add(
      "urn:a",
      directory.write("a.xsd",
                      "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' "
                      "targetNamespace='urn:a'><xs:element name='r'><xs:complexType><xs:sequence>"
                      "<xs:element name='a' form='qualified' type='xs:int'/>"
                      "<xs:element name='b' type='xs:int'/><xs:element name='c' type='xs:int'/>"
                      "</xs:sequence></xs:complexType></xs:element></xs:schema>"));
  EXPECT_THAT(violations(colSchemas, "<p:r xmlns:p='urn:a'><p:a>1</p:a><b>1</b><c>1</c></p:r>"),
              SizeIs(0));
  EXPECT_THAT(violations(colSchemas,
                         "<p:r xmlns:p='urn:a'><a/><p:a>1</p:a><p:b/><b>1</b><c>1</c>"
                         "<b>1</b></p:r>"),
              testing::ElementsAre(HasSubstr("The element 'a' is used"),
                                   HasSubstr("The element 'p:b' is used"),
                                   HasSubstr("content is invalid")));
}

TEST(SchemaCollection, FailsWhereATestMakesItFail) {
  const SchemaDirectory directory;
  const std::string strPath = directory.write("a.xsd", schemaText(kRoot));
  for (const Fault fault : {Fault::nothing, Fault::error}) {
    FaultAt faults(DomOperation::addSchema, fault);
    SchemaCollection colSchemas(&faults);
    EXPECT_EQ(descriptionOf(kXmlFailure, [&] { colSchemas.add("", strPath); }), "Injected failure");
    EXPECT_TRUE(faults.struck());
    colSchemas.add("", strPath);
  }
  FaultAt noMemory(DomOperation::addSchema, Fault::outOfMemory);
  EXPECT_THROW(SchemaCollection(&noMemory).add("", strPath), std::bad_alloc);
}

/// Expects that `strText` has `lngViolations` by the schema at `strPath`, taken from `cache`.
void expectBy(FileCache& cache, const std::string& strPath, std::string_view strText,
              std::size_t lngViolations) {
  SchemaCollection colSchemas(nullptr, &cache);
  colSchemas.add("", strPath);
  EXPECT_THAT(violations(colSchemas, strText), SizeIs(lngViolations)) << strText;
}

TEST(SchemaCollection, TakesASchemaFromTheCacheWhileNoneOfItsFilesChanges) {
  const SchemaDirectory directory;
  const auto write = [&](const std::string& strName, const std::string& strText) {
    std::string strPath = directory.write(strName, strText);
    FilesRead files;
    files.add(strPath, stampOf(strPath));
    while (!files.settled()) std::this_thread::yield();
    return strPath;
  };
  const auto typeText = [](const std::string& strBase) {
    return schemaText("<xs:simpleType name='t'><xs:restriction base='xs:" + strBase +
                      "'/></xs:simpleType>");
  };
  write("t.xsd", typeText("int"));
  const std::string strPath =
      write("a.xsd", schemaText("<xs:include schemaLocation='t.xsd'/>"
                                "<xs:import namespace='urn:o' schemaLocation='o.xsd'/>"
                                "<xs:element name='r' type='t'/>"));
  FileCache cache;
  expectBy(cache, strPath, "<r>x</r>", 1);
  const std::size_t lngBytes = cache.bytes();
  EXPECT_GT(lngBytes, 0);
  expectBy(cache, strPath, "<r>x</r>", 1);
  expectBy(cache, strPath, "<r>1</r>", 0);
  EXPECT_EQ(cache.bytes(), lngBytes);

  // The included file, and one that was missing and then comes.
  write("t.xsd", typeText("token"));
  expectBy(cache, strPath, "<r>x</r>", 0);
  write("o.xsd", "no schema");
  SchemaCollection colSchemas(nullptr, &cache);
  try {
    colSchemas.add("", strPath);
    ADD_FAILURE() << "it is no schema";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kXmlFailure);
    EXPECT_EQ(error.description(), "The schema '" + directory.path("o.xsd") +
                                       "' cannot be registered: Start tag expected, '<' not found");
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
