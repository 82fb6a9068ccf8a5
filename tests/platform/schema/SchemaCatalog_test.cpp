#include "platform/schema/SchemaCatalog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SchemaTesting.h"
#include "platform/dom/DomTesting.h"
#include "platform/schema/ReadSchemaDocuments.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

constexpr const char* kHttp = "http://127.0.0.1:9/o.xsd";

std::string catalogText(std::string_view strEntries, std::string_view strAttributes = "") {
  return "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog' " +
         std::string(strAttributes) + ">" + std::string(strEntries) + "</catalog>";
}

/// A schema that imports "urn:o" and refers to its element "o" when `blnNeeded`.
std::string importing(const std::string& strLocation, bool blnNeeded = true) {
  const std::string strAttribute =
      strLocation.empty() ? "" : " schemaLocation='" + strLocation + "'";
  return schemaText("<xs:import namespace='urn:o'" + strAttribute +
                    "/><xs:element name='r'><xs:complexType><xs:sequence>" +
                    (blnNeeded ? "<xs:element ref='o:o' xmlns:o='urn:o'/>" : "") +
                    "</xs:sequence></xs:complexType></xs:element>");
}

/// A folder with what "urn:o" may come from.
class SchemaCatalogTest : public testing::Test {
 protected:
  SchemaCatalogTest() {
    directory_.write("schemas/o.xsd", schemaText("<xs:element name='o' type='xs:int'/>", "urn:o"));
  }

  /// Why the schema is refused; empty when it is taken and knows "o".
  std::string refusal(const std::string& strSchema, const std::string& strCatalog = "") const {
    const std::string strPath = directory_.write("main/main.xsd", strSchema);
    SchemaCollection colSchemas;
    colSchemas.catalog(strCatalog);
    try {
      colSchemas.add("", strPath);
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), kXmlFailure);
      return error.description();
    }
    EXPECT_THAT(violations(colSchemas, "<r><o xmlns='urn:o'>x</o></r>"), SizeIs(1));
    return "";
  }

  const SchemaDirectory directory_;
};

TEST_F(SchemaCatalogTest, FindsWhatAnImportDoesNot) {
  const struct {
    const char *says, *entries, *location;
  } cases[] = {
      {"the namespace, no location", "<uri name='urn:o' uri='schemas/o.xsd'/>", ""},
      {"the namespace, beside a location", "<uri name='urn:o' uri='schemas/o.xsd'/>", kHttp},
      {"the namespace, beside a missing file", "<uri name='urn:o' uri='schemas/o.xsd'/>", "x.xsd"},
      {"a public identifier", "<public publicId='urn:o' uri='schemas/o.xsd'/>", ""},
      {"the location", "<uri name='http://127.0.0.1:9/o.xsd' uri='schemas/o.xsd'/>", kHttp},
      {"a system identifier", "<system systemId='http://127.0.0.1:9/o.xsd' uri='schemas/o.xsd'/>",
       kHttp},
      {"the start of a location",
       "<rewriteURI uriStartString='http://127.0.0.1:9/' rewritePrefix='schemas/'/>", kHttp},
      {"the start of a system identifier",
       "<rewriteSystem systemIdStartString='http://127.0.0.1:9/' rewritePrefix='schemas/'/>",
       kHttp},
      {"the longest start",
       "<rewriteURI uriStartString='http:' rewritePrefix='nowhere/'/>"
       "<rewriteURI uriStartString='http://127.0.0.1:9/' rewritePrefix='schemas/'/>"
       "<rewriteURI uriStartString='http://' rewritePrefix='nowhere/'/>",
       kHttp},
      {"the end of a location", "<uriSuffix uriSuffix='9/o.xsd' uri='schemas/o.xsd'/>", kHttp},
      {"the end of a system identifier",
       "<systemSuffix systemIdSuffix='/o.xsd' uri='schemas/o.xsd'/>", kHttp},
      {"the whole before the start, the start before the end",
       "<uriSuffix uriSuffix='o.xsd' uri='nowhere'/>"
       "<rewriteURI uriStartString='http' rewritePrefix='nowhere'/>"
       "<uri name='http://127.0.0.1:9/o.xsd' uri='schemas/o.xsd'/>",
       kHttp},
      {"the location before the namespace",
       "<uri name='urn:o' uri='nowhere'/><uriSuffix uriSuffix='o.xsd' uri='schemas/o.xsd'/>",
       kHttp},
      {"a group with a base", "<group xml:base='schemas/'><uri name='urn:o' uri='o.xsd'/></group>",
       ""},
      {"an entry with a base", "<uri xml:base='schemas/' name='urn:o' uri='o.xsd'/>", ""},
      {"the next catalog", "<nextCatalog catalog='schemas/next.xml'/>", ""},
      {"a catalog before the next",
       "<nextCatalog catalog='wrong.xml'/>"
       "<uri name='urn:o' uri='schemas/o.xsd'/>",
       ""},
      {"a missing next catalog",
       "<nextCatalog catalog='none.xml'/><uri name='urn:o' uri='schemas/o.xsd'/>", ""},
  };
  directory_.write("schemas/next.xml", catalogText("<uri name='urn:o' uri='o.xsd'/>"));
  directory_.write("wrong.xml", catalogText("<uri name='urn:o' uri='nowhere'/>"));
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strCatalog = directory_.write("catalog.xml", catalogText(c.entries));
    EXPECT_EQ(refusal(importing(c.location), strCatalog), "");
    EXPECT_NE(refusal(importing(c.location)), "") << "without the catalog";
  }
}

TEST_F(SchemaCatalogTest, AsksTheHostsCatalogAndThenTheOneBesideTheSchema) {
  directory_.write("main/catalog.xml", catalogText("<uri name='urn:o' uri='../schemas/o.xsd'/>"));
  EXPECT_EQ(refusal(importing("")), "");
  const std::string strOther =
      directory_.write("other.xml", catalogText("<uri name='urn:p' uri='p.xsd'/>"));
  EXPECT_EQ(refusal(importing(""), strOther), "");
  directory_.write("other.xml", catalogText("<uri name='urn:o' uri='main/main.xsd'/>"));
  EXPECT_THAT(refusal(importing(""), strOther), HasSubstr("must not import"));
}

TEST_F(SchemaCatalogTest, IsReadAgainForEachSchema) {
  const std::string strCatalog = directory_.write("catalog.xml", catalogText(""));
  EXPECT_NE(refusal(importing(""), strCatalog), "");
  directory_.write("catalog.xml", catalogText("<uri name='urn:o' uri='schemas/o.xsd'/>"));
  EXPECT_EQ(refusal(importing(""), strCatalog), "");
  directory_.write("catalog.xml", catalogText("<!-- nothing -->"));
  EXPECT_NE(refusal(importing(""), strCatalog), "");
}

TEST_F(SchemaCatalogTest, PrefersPublicOrSystemIdentifiers) {
  const struct {
    const char *says, *attributes, *entries, *location;
    bool blnFound;
  } cases[] = {
      {"by itself", "", "<public publicId='urn:o' uri='schemas/o.xsd'/>", kHttp, true},
      {"public", "prefer='public'", "<public publicId='urn:o' uri='schemas/o.xsd'/>", kHttp, true},
      {"system", "prefer='system'", "<public publicId='urn:o' uri='schemas/o.xsd'/>", kHttp, false},
      {"system, without a location", "prefer='system'",
       "<public publicId='urn:o' uri='schemas/o.xsd'/>", "", true},
      {"a group of its own", "prefer='system'",
       "<group prefer='public'><public publicId='urn:o' uri='schemas/o.xsd'/></group>", kHttp,
       true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strCatalog =
        directory_.write("catalog.xml", catalogText(c.entries, c.attributes));
    EXPECT_EQ(refusal(importing(c.location), strCatalog).empty(), c.blnFound);
  }
}

TEST_F(SchemaCatalogTest, IsAskedForNothingThatIsThere) {
  directory_.write("main/o.xsd", schemaText("<xs:element name='o' type='xs:int'/>", "urn:o"));
  const std::string strCatalog =
      directory_.write("catalog.xml", "<this is no catalog and is not looked at");
  EXPECT_EQ(refusal(importing("o.xsd"), strCatalog), "");
}

TEST_F(SchemaCatalogTest, IsAskedForTheLocationsOfIncludes) {
  directory_.write("schemas/part.xsd",
                   schemaText("<xs:element name='r'><xs:complexType><xs:sequence>"
                              "<xs:any/></xs:sequence><xs:attribute name='t' type='T'/>"
                              "</xs:complexType></xs:element><xs:simpleType name='T'>"
                              "<xs:restriction base='xs:int'/></xs:simpleType>"));
  const std::string strCatalog = directory_.write(
      "catalog.xml", catalogText("<uriSuffix uriSuffix='/part.xsd' uri='schemas/part.xsd'/>"));
  const struct {
    const char *says, *parts, *refusal;
  } cases[] = {
      {"of another machine", "<xs:include schemaLocation='http://127.0.0.1:9/part.xsd'/>", ""},
      {"of no file", "<xs:include schemaLocation='no/part.xsd'/>", ""},
      {"of what is redefined",
       "<xs:redefine schemaLocation='http://127.0.0.1:9/part.xsd'><xs:simpleType name='T'>"
       "<xs:restriction base='T'><xs:maxInclusive value='9'/></xs:restriction></xs:simpleType>"
       "</xs:redefine>",
       ""},
      {"that it has not", "<xs:include schemaLocation='http://127.0.0.1:9/o.xsd'/>",
       "which is no file."},
      {"that it has not, of no file", "<xs:include schemaLocation='o.xsd'/>",
       "The system cannot locate the object specified."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strRefusal = refusal(schemaText(c.parts), strCatalog);
    EXPECT_EQ(strRefusal.empty(), std::string_view(c.refusal).empty()) << strRefusal;
    EXPECT_THAT(strRefusal, HasSubstr(c.refusal));
  }
}

TEST_F(SchemaCatalogTest, MustBeACatalog) {
  const struct {
    const char *says, *text, *reason;
  } cases[] = {
      {"no XML", "catalog", "Start tag expected, '<' not found"},
      {"something else", "<catalog/>", "It is not an XML catalog."},
      {"an external entity",
       "<!DOCTYPE catalog [<!ENTITY e SYSTEM '/etc/passwd'>]><catalog "
       "xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>&e;</catalog>",
       "Entity 'e' not defined"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strCatalog = directory_.write("catalog.xml", c.text);
    EXPECT_EQ(refusal(importing(""), strCatalog),
              "The catalog '" + strCatalog + "' cannot be read: " + c.reason);
    directory_.write("main/catalog.xml", c.text);
    EXPECT_EQ(refusal(importing("")), "The catalog '" + directory_.path("main/catalog.xml") +
                                          "' cannot be read: " + c.reason);
    std::filesystem::remove(directory_.path("main/catalog.xml"));
  }
  EXPECT_EQ(refusal(importing(""), directory_.path("none.xml")),
            "The catalog '" + directory_.path("none.xml") +
                "' cannot be read: The system cannot locate the object specified.");
}

TEST_F(SchemaCatalogTest, HasADocumentTypeThatIsNotRead) {
  const std::string strCatalog = directory_.write(
      "catalog.xml",
      "<!DOCTYPE catalog PUBLIC '-//OASIS//DTD Entity Resolution XML Catalog V1.0//EN' "
      "'http://127.0.0.1:9/catalog.dtd'>" +
          catalogText("<uri name='urn:o' uri='schemas/o.xsd'/>"));
  EXPECT_EQ(refusal(importing(""), strCatalog), "");
}

TEST_F(SchemaCatalogTest, LeadsToNoOtherMachineAndInNoCircle) {
  directory_.write("circle.xml", catalogText("<nextCatalog catalog='catalog.xml'/>"
                                             "<nextCatalog catalog='circle.xml'/>"));
  const std::string strNotFound = refusal(importing(""));
  for (const char* entries :
       {"<uri name='urn:o' uri='http://127.0.0.1:9/o.xsd'/>",
        "<uri name='urn:o' uri='file://elsewhere/o.xsd'/>",
        "<uri name='urn:o' uri='//elsewhere/o'/>", "<uri name='urn:o' uri='schemas'/>",
        "<uri name='urn:o'/>", "<uri uri='schemas/o.xsd'/>",
        "<nextCatalog catalog='http://127.0.0.1:9/catalog.xml'/>", "<nextCatalog/>",
        "<nextCatalog catalog='catalog.xml'/><nextCatalog catalog='circle.xml'/>",
        "<delegateURI uriStartString='urn:' catalog='circle.xml'/>"}) {
    SCOPED_TRACE(entries);
    const std::string strCatalog = directory_.write("catalog.xml", catalogText(entries));
    EXPECT_EQ(refusal(importing(""), strCatalog), strNotFound);
  }
}

TEST_F(SchemaCatalogTest, LeadsToAHundredCatalogs) {
  for (int lngAt = 0; lngAt < 101; ++lngAt) {
    directory_.write("c" + std::to_string(lngAt),
                     catalogText("<nextCatalog catalog='c" + std::to_string(lngAt + 1) + "'/>"));
  }
  EXPECT_THAT(refusal(importing(""), directory_.path("c0")),
              HasSubstr("c100' cannot be read: It is one catalog too many."));
}

TEST_F(SchemaCatalogTest, IsNotNeededWhereNothingRefersToTheNamespace) {
  for (const char* location : {"", kHttp, "missing.xsd", "%zz", "file://elsewhere/o.xsd"}) {
    SCOPED_TRACE(location);
    const SchemaDirectory directory;
    SchemaCollection colSchemas;
    colSchemas.add("", directory.write("main.xsd", importing(location, false)));
    EXPECT_THAT(violations(colSchemas, "<r/>"), SizeIs(0));
    EXPECT_THAT(refusal(importing(location)), HasSubstr("{urn:o}o"));
  }
}

TEST_F(SchemaCatalogTest, ComesBehindAnotherImportOfTheNamespace) {
  // The import without a location comes first, and means the document that the other one leads to.
  directory_.write("main/both.xsd",
                   schemaText("<xs:import namespace='urn:o' schemaLocation='../schemas/o.xsd'/>"));
  const std::string strCatalog =
      directory_.write("catalog.xml", catalogText("<uri name='urn:o' uri='main/both.xsd'/>"));
  std::string strSchema = importing("");
  strSchema.insert(strSchema.find("<xs:import"), "<xs:include schemaLocation='both.xsd'/>");
  EXPECT_EQ(refusal(strSchema, strCatalog), "");
}

TEST(W3cSchemas, AreImportedWithoutAFile) {
  const struct {
    const char *ns, *location, *attribute, *good, *bad;
  } cases[] = {
      {"http://www.w3.org/XML/1998/namespace", "http://www.w3.org/2001/xml.xsd", "xml:space",
       "xml:space='default'", "xml:space='other'"},
      {"http://www.w3.org/XML/1998/namespace", "", "xml:lang", "xml:lang=''", "xml:lang='1 2'"},
      {"http://www.w3.org/1999/xlink", "http://www.w3.org/1999/xlink.xsd", "p:show",
       "xmlns:p='http://www.w3.org/1999/xlink' p:show='new'",
       "xmlns:p='http://www.w3.org/1999/xlink' p:show='old'"},
      {"http://www.w3.org/1999/xlink", "missing.xsd", "p:show",
       "xmlns:p='http://www.w3.org/1999/xlink' p:show='new'",
       "xmlns:p='http://www.w3.org/1999/xlink' p:show='old'"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.attribute) + " " + c.location);
    const SchemaDirectory directory;
    const std::string strLocation =
        *c.location ? " schemaLocation='" + std::string(c.location) + "'" : "";
    const std::string strPrefix = *c.attribute == 'p' ? " xmlns:p='" + std::string(c.ns) + "'" : "";
    SchemaCollection colSchemas;
    colSchemas.add(
        "", directory.write(
                "main.xsd",
                schemaText("<xs:import namespace='" + std::string(c.ns) + "'" + strLocation +
                           "/><xs:element name='r'><xs:complexType><xs:attribute ref='" +
                           c.attribute + "'" + strPrefix + "/></xs:complexType></xs:element>")));
    EXPECT_THAT(violations(colSchemas, "<r " + std::string(c.good) + "/>"), SizeIs(0));
    EXPECT_THAT(violations(colSchemas, "<r " + std::string(c.bad) + "/>"), SizeIs(1));
  }
}

TEST(W3cSchemas, HoldSignatures) {
  const SchemaDirectory directory;
  SchemaCollection colSchemas;
  colSchemas.add(
      "", directory.write(
              "main.xsd",
              schemaText("<xs:import namespace='http://www.w3.org/2000/09/xmldsig#' schemaLocation="
                         "'http://www.w3.org/TR/xmldsig-core/xmldsig-core-schema.xsd'/>"
                         "<xs:element name='r'><xs:complexType><xs:sequence><xs:element "
                         "ref='ds:DigestMethod' xmlns:ds='http://www.w3.org/2000/09/xmldsig#'/>"
                         "</xs:sequence></xs:complexType></xs:element>")));
  const std::string strStart = "<r><DigestMethod xmlns='http://www.w3.org/2000/09/xmldsig#'";
  EXPECT_THAT(violations(colSchemas, strStart + " Algorithm='a'/></r>"), SizeIs(0));
  EXPECT_THAT(violations(colSchemas, strStart + "/></r>"), SizeIs(1));
}

TEST(W3cSchemas, GiveWayToFilesAndCatalogs) {
  const SchemaDirectory directory;
  const std::string strMine =
      schemaText("<xs:attribute name='mine' type='xs:int'/>", "http://www.w3.org/1999/xlink");
  directory.write("mine.xsd", strMine);
  const auto refusal = [&](const char* location, const std::string& strCatalog) {
    SchemaCollection colSchemas;
    colSchemas.catalog(strCatalog);
    try {
      colSchemas.add("", directory.write(
                             "main.xsd",
                             schemaText("<xs:import namespace='http://www.w3.org/1999/xlink' "
                                        "schemaLocation='" +
                                        std::string(location) +
                                        "'/><xs:attributeGroup name='g'><xs:attribute ref='p:mine' "
                                        "xmlns:p='http://www.w3.org/1999/xlink'/>"
                                        "</xs:attributeGroup>")));
    } catch (const RuntimeError& error) {
      return error.description();
    }
    return std::string();
  };
  EXPECT_EQ(refusal("mine.xsd", ""), "");
  EXPECT_THAT(refusal("http://www.w3.org/1999/xlink.xsd", ""), HasSubstr("mine"));
  const std::string strCatalog = directory.write(
      "all.xml", catalogText("<rewriteURI uriStartString='http://www.w3.org/1999/xlink.xsd' "
                             "rewritePrefix='mine.xsd'/>"));
  EXPECT_EQ(refusal("http://www.w3.org/1999/xlink.xsd", strCatalog), "");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
