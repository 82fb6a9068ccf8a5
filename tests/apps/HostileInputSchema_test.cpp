#include <gmock/gmock.h>

#include "HostileInput.h"

// A schema that leads elsewhere, and a location of the schema that does.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;

class HostileInputSchema : public HostileInput {
 protected:
  /// Puts this behind the first reference of the honest schema.
  void refer(const std::string& strReference) const {
    std::string strSchema = strHonest_;
    const std::string strBefore = "<xs:include schemaLocation=\"short.xsd\"/>";
    strSchema.insert(strSchema.find(strBefore) + strBefore.size(), strReference);
    write("card.xsd", strSchema);
  }
  static std::string import(const std::string& strLocation) {
    return "<xs:import namespace='urn:o' schemaLocation='" + strLocation + "'/>";
  }
  std::string upAndOut(const std::string& strName) const {
    return "../" + outside_.path().filename().string() + "/" + strName;
  }

  /// What the schema refers to in the imported namespace was not found.
  static void expectNothingImported(const Outcome& outcome) {
    EXPECT_EQ(outcome.run.status, 0) << outcome.run.err;
    EXPECT_EQ(outcome.run.out, kSuccessJson);
    EXPECT_THAT(outcome.strTrace, HasSubstr("'{urn:o}o' does not resolve to"));
    EXPECT_THAT(outcome.strTrace, ::testing::Not(HasSubstr("End ValidateXMLAgainstSchema")));
  }

  const std::string strHonest_ = read("card.xsd");
  // What refers to the imported namespace.
  const std::string strUse_ =
      "<xs:element name='use'><xs:complexType><xs:sequence><xs:element ref='o:o' xmlns:o='urn:o'/>"
      "</xs:sequence></xs:complexType></xs:element>";
};

TEST_F(HostileInputSchema, GoesToNoOtherMachine) {
  for (const char* location :
       {"http://127.0.0.1:9/o.xsd", "HTTP://127.0.0.1:9/o.xsd", "https://127.0.0.1:9/o.xsd",
        "ftp://127.0.0.1:9/o.xsd", "http:o.xsd", "file://127.0.0.1/o.xsd",
        "//127.0.0.1/share/o.xsd", "//127.0.0.1", "urn:o", "data:text/xml,o"}) {
    for (const std::string& strReference :
         {"<xs:include schemaLocation='" + std::string(location) + "'/>",
          "<xs:redefine schemaLocation='" + std::string(location) + "'/>"}) {
      SCOPED_TRACE(strReference);
      refer(strReference);
      expectNoVerdict(submit(), directory_.at("card.xsd"),
                      "It refers to '" + std::string(location) + "', which is no file.)");
    }
    SCOPED_TRACE(location);
    refer(import(location));  // of which nothing is needed
    expectSent(submit());
    refer(import(location) + strUse_);
    expectNothingImported(submit());
  }
}

TEST_F(HostileInputSchema, TakesNoTextForALocationThatIsNone) {
  for (const char* location :
       {"\\\\127.0.0.1\\share\\o.xsd", "..\\..\\o.xsd", "%zz", "http://[", "a b.xsd"}) {
    SCOPED_TRACE(location);
    refer("<xs:include schemaLocation='" + std::string(location) + "'/>");
    expectNoVerdict(submit(), directory_.at("card.xsd"),
                    "It refers to '" + std::string(location) + "', which is no location.)");
    refer(import(location));
    expectSent(submit());
  }
  refer("<xs:include schemaLocation=' http://127.0.0.1:9/o.xsd '/>");
  expectNoVerdict(submit(), directory_.at("card.xsd"),
                  "It refers to ' http://127.0.0.1:9/o.xsd ', which is no file.)");
}

TEST_F(HostileInputSchema, LooksForNothingByItsNamespace) {
  for (const std::string& strNamespace :
       {std::string("http://127.0.0.1:9/o.xsd"), "file://" + secret("secret.xsd")}) {
    refer("<xs:import namespace='" + strNamespace + "'/>");
    expectSent(submit());
  }
}

TEST_F(HostileInputSchema, CannotMoveItsBase) {
  refer("<xs:annotation xml:base='http://127.0.0.1:9/'/>");
  expectNoVerdict(submit(), directory_.at("card.xsd"), "It has an xml:base.)");
}

TEST_F(HostileInputSchema, ReadsNothingForItsDocumentType) {
  const std::string strUse = "<xs:annotation><xs:appinfo>&e;</xs:appinfo></xs:annotation>";
  for (const std::string& strType :
       {std::string("<!DOCTYPE d>"), std::string("<!DOCTYPE d SYSTEM 'http://127.0.0.1:9/e.dtd'>"),
        "<!DOCTYPE d SYSTEM '" + secret("secret.dtd") + "'>",
        "<!DOCTYPE d [<!ENTITY e SYSTEM '" + secret("secret.txt") + "'>]>",
        std::string("<!DOCTYPE d [<!ENTITY e SYSTEM '/etc/passwd'>]>")}) {
    SCOPED_TRACE(strType);
    write("card.xsd", strType + strHonest_);
    expectSent(submit());  // it needs nothing of that
    refer(strUse);
    write("card.xsd", strType + read("card.xsd"));
    expectNoVerdict(submit(), directory_.at("card.xsd"), "Entity 'e' not defined)");
  }
}

// A schema belongs to those who run the deployment and may stand anywhere on their machine. What
// it leads to is read as a schema or not at all.
TEST_F(HostileInputSchema, MayReferToOtherSchemasOfTheMachine) {
  for (const std::string& strLocation :
       {upAndOut("secret.xsd"), secret("secret.xsd"), "file://" + secret("secret.xsd"),
        "%2e%2e/" + upAndOut("secret.xsd").substr(3), "./x/../" + upAndOut("secret.xsd")}) {
    SCOPED_TRACE(strLocation);
    refer(import(strLocation));
    expectSent(submit());
  }
}

TEST_F(HostileInputSchema, TellsNothingOfAnotherFileThatItRefersTo) {
  const struct {
    const char *file, *reason;
  } cases[] = {
      {"secret.txt", "Start tag expected, '<' not found"},
      {"secret.dtd", ""},
      {"secret.xml", "It is not an XML Schema.)"},
  };
  for (const auto& c : cases) {
    for (const std::string& strLocation : {upAndOut(c.file), "file://" + secret(c.file)}) {
      SCOPED_TRACE(strLocation);
      refer(import(strLocation));
      expectNoVerdict(submit(), secret(c.file), c.reason);
    }
  }
}

TEST_F(HostileInputSchema, MayReferInACircleButNotWithoutEnd) {
  refer("<xs:include schemaLocation='circle.xsd'/>");
  const std::string strInclude =
      "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:card'>"
      "<xs:include schemaLocation='";
  write("circle.xsd", strInclude + "card.xsd'/></xs:schema>");
  expectSent(submit());

  constexpr int kDocuments = 1100;
  for (int lngAt = 0; lngAt < kDocuments; ++lngAt) {
    write("chain" + std::to_string(lngAt) + ".xsd",
          strInclude + "chain" + std::to_string(lngAt + 1) + ".xsd'/></xs:schema>");
  }
  refer("<xs:include schemaLocation='chain0.xsd'/>");
  expectNoVerdict(submit(), directory_.at("chain998.xsd"), "It is one document too many.)");
}

TEST_F(HostileInputSchema, IsNotReplacedThroughACatalogOfTheMachine) {
  const std::string strOutside = outside_.path().string() + "/";
  write("elsewhere.xml",
        "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>"
        "<rewriteURI uriStartString='' rewritePrefix='" +
            strOutside +
            "'/>"
            "<rewriteSystem systemIdStartString='' rewritePrefix='" +
            strOutside +
            "'/>"
            "<uri name='" +
            directory_.at("secret.xsd") + "' uri='" + secret("secret.xsd") +
            "'/>"
            "<system systemId='" +
            directory_.at("secret.xsd") + "' uri='" + secret("secret.xsd") + "'/></catalog>");
  const ProgramStreams streams{
      .variables = {"XML_CATALOG_FILES=" + directory_.at("elsewhere.xml")}};
  expectSent(submit({}, streams));
  refer("<xs:include schemaLocation='secret.xsd'/>");
  expectNoVerdict(submit({}, streams), directory_.at("secret.xsd"),
                  "The system cannot locate the object specified.)");
  refer(import("secret.xsd") + strUse_);
  expectNothingImported(submit({}, streams));
}

// The deployment's own catalog may lead anywhere on the machine, as its schemas may, but no
// further.
TEST_F(HostileInputSchema, FindsWhatItImportsThroughTheDeploymentsCatalog) {
  const auto catalog = [&](const std::string& strUri) {
    write("catalog.xml",
          "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'><uri name='urn:o' uri='" +
              strUri + "'/></catalog>");
  };
  write("o.xsd",
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:o'>"
        "<xs:element name='o'/></xs:schema>");
  refer(import("http://127.0.0.1:9/o.xsd") + strUse_);
  catalog("o.xsd");
  expectSent(submit());
  catalog("http://127.0.0.1:9/o.xsd");
  expectNothingImported(submit());
  // The schema may stand elsewhere: it is the deployment's all the same.
  std::filesystem::create_directories(directory_.path() / "schemas");
  std::filesystem::copy(directory_.at("card.xsd"), directory_.at("schemas/card.xsd"));
  std::filesystem::copy(directory_.at("short.xsd"), directory_.at("schemas/short.xsd"));
  catalog("o.xsd");
  expectSent(submit({"--schema-url", "schemas/card.xsd"}));
  write("catalog.xml", "<catalog>");
  const Outcome outcome = submit();
  EXPECT_EQ(outcome.run.out, kSuccessJson);
  EXPECT_THAT(outcome.strTrace, HasSubstr("(-2147467259, The catalog '"));
  EXPECT_THAT(outcome.strTrace, HasSubstr("catalog.xml' cannot be read: "));
}

TEST_F(HostileInputSchema, IsNotNamedByTheMessage) {
  std::string strTemplate = read("template.xml");
  strTemplate.insert(strTemplate.find(" xmlns:c"),
                     " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'"
                     " xsi:schemaLocation='urn:card http://127.0.0.1:9/card.xsd urn:o " +
                         secret("secret.xsd") + "' xsi:noNamespaceSchemaLocation='" +
                         secret("secret.txt") + "'");
  write("template.xml", strTemplate);
  const Outcome outcome = submit();
  EXPECT_EQ(outcome.run.out, kSuccessJson);
  EXPECT_TRUE(outcome.strTrace.ends_with(": End ValidateXMLAgainstSchema\n"));
}

TEST_F(HostileInputSchema, StandsOneStepAboveThePageHoweverItIsNamed) {
  const std::string strLong(100'000, 'x');
  const std::string strHere = directory_.path().string();
  const std::string strSecret = secret("secret.xsd");
  const struct {
    const char* says;
    std::string strUrl, strPath;
  } cases[] = {
      {"an absolute path", strSecret, strHere + strSecret},
      {"two leading strokes", "/" + strSecret, strHere + strSecret},
      {"a file: URL", "file://" + strSecret, strHere + "/file:" + strSecret},
      {"a short file: URL", "file:" + strSecret, strHere + "/file:" + strSecret},
      {"one in capitals", "FILE://" + strSecret, strHere + "/FILE:" + strSecret},
      {"one that climbs first", "x/../file://" + strSecret, strHere + "/file:" + strSecret},
      {"another machine", "http://127.0.0.1:9/o.xsd", strHere + "/http:/127.0.0.1:9/o.xsd"},
      {"back-strokes", "..\\..\\card.xsd", strHere + "/..\\..\\card.xsd"},
      {"escapes", "%2e%2e/card.xsd", strHere + "/%2e%2e/card.xsd"},
      {"a very long name", strLong, strHere + "/" + strLong},
      {"nothing", "", strHere + "/"},
      {"a blank at its end", "card.xsd ", strHere + "/card.xsd "},
  };
  for (const auto& c : cases) {
    for (const char* pages : {"pages", "./pages", "pages/."}) {
      SCOPED_TRACE(std::string(c.says) + ", " + pages);
      expectNoVerdict(
          submit({"--schema-url", c.strUrl, "--page-dir", pages, "--schema-uri", "urn:o"}),
          c.strPath, "The system cannot locate the object specified.)");
    }
  }
}

TEST_F(HostileInputSchema, UrlEndsAtNoNul) {
  std::string strJson = read("deployment.json");
  const std::string strUrl = "\"schema-url\": \"card.xsd";
  strJson.insert(strJson.find(strUrl) + strUrl.size(), "\\u0000.txt");
  write("deployment.json", strJson);
  const Outcome outcome = submit();
  EXPECT_EQ(outcome.run.out, kSuccessJson);
  EXPECT_THAT(outcome.strTrace, HasSubstr("cannot be registered: It is no file.)\n"));
}

TEST_F(HostileInputSchema, UrlMayClimbButTellsNothingOfWhatItFinds) {
  const struct {
    const char *says, *file, *reason;
  } cases[] = {
      {"no XML", "secret.txt", "Start tag expected, '<' not found"},
      {"no schema", "secret.xml", "It is not an XML Schema.)"},
      {"another schema", "secret.xsd", "Its target namespace is 'urn:o', not 'urn:card'.)"},
      {"the system's", "../../../../../../../../etc/hostname", "Start tag expected"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strPath = (outside_.path() / c.file).lexically_normal().string();
    expectNoVerdict(submit({"--schema-url", upAndOut(c.file)}), strPath, c.reason);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
