#include "Program.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

class Arguments : public ProgramTest {};

TEST_F(Arguments, ReachTheLibraryAsGiven) {
  const std::vector<std::string> lines =
      traceOf({"--template",      "T",  "--object-mapper", "O",          "--schema-types", "S",
               "--hidden-fields", "H",  "--namespaces",    "N",          "--questions",    "Q",
               "--reference",     "R",  "--submit",        "--validate", "--schema-url",   "url",
               "--schema-uri",    "uri"});
  const std::vector<std::string> expected{
      ": BuildXml - strTemplateXML =T",
      ": BuildXml - strMsgObjectXML =O",
      ": BuildXml - strSchemaTypeMapperXML =S",
      ": BuildXml - strHiddenFieldXML =H",
      ": BuildXml - strNamespaceXML =N",
      ": BuildXml - strQuestionsXmlPath =Q",
      ": BuildXml - strReferenceXmlPath =R",
      ": BuildXml - blnSubmit =True",
      ": BuildXml - blnValidateAgainstSchema =True",
      ": BuildXml - strSchemaUrl =url",
      ": BuildXml - strSchemaUri =uri",
  };
  EXPECT_EQ(lines, expected);  // no object list, so nothing else is traced
}

TEST_F(Arguments, AreEmptyOrFalseByDefault) {
  const std::vector<std::string> expected{
      ": BuildXml - strTemplateXML =",
      ": BuildXml - strMsgObjectXML =",
      ": BuildXml - strSchemaTypeMapperXML =",
      ": BuildXml - strHiddenFieldXML =",
      ": BuildXml - strNamespaceXML =",
      ": BuildXml - strQuestionsXmlPath =",
      ": BuildXml - strReferenceXmlPath =",
      ": BuildXml - blnSubmit =False",
      ": BuildXml - blnValidateAgainstSchema =False",
      ": BuildXml - strSchemaUrl =",
      ": BuildXml - strSchemaUri =",
  };
  EXPECT_EQ(traceOf({}), expected);
}

TEST_F(Arguments, WithoutAnObjectListPassNothing) {
  const ProgramRun run = build({});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, HasSubstr("\"errorName\": \"SVC_RET_XML_CREATION_PARK_XML_OBJ_MISSING\""));
}

TEST_F(Arguments, PassTheObjectListAsADocument) {
  EXPECT_THAT(traceOf({"--object-list", "objects.xml"}),
              Contains(::testing::StartsWith(
                  ": BuildXml - objParkXMl = <?xml version=\"1.0\"?>\\r\\n<prtobjcts>")));
}

TEST_F(Arguments, PassTheProtocolInformationAsItsDocumentElement) {
  write("form.txt", kForm);
  const ProgramRun run = buildDeployment({"--form", "form.txt", "--submit", "--protocol-info",
                                          "protocol.xml", "--send-out", "send.xml"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_THAT(read("send.xml"), HasSubstr("<c:form>Card (North, v2)</c:form>"));
}

TEST_F(Arguments, WithoutProtocolInformationLeaveItsPlaceEmpty) {
  write("form.txt", kForm);
  const ProgramRun run =
      buildDeployment({"--form", "form.txt", "--submit", "--send-out", "send.xml"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(read("send.xml"), kMessageXml);
}

TEST_F(Arguments, ThatNameADocumentRefuseWhatIsNone) {
  write("no.xml", "<prtobjcts>");
  write("empty.xml", "");
  const struct {
    const char *says, *file, *reason;
  } cases[] = {
      {"a missing file", "missing.xml", "missing.xml"},
      {"an empty name", "", " : The system cannot locate the object specified."},
      {"a directory", ".", " .: The system cannot locate the object specified."},
      {"an empty file", "empty.xml", "empty.xml"},
      {"a file that does not parse", "no.xml", "no.xml"},
  };
  for (const char* option : {"--object-list", "--protocol-info"}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(option) + ": " + c.says);
      const ProgramRun run = buildDeployment({option, c.file, "--park-out", "park.xml"});
      EXPECT_TRUE(CouldNotRun(run, c.reason));
      EXPECT_TRUE(CouldNotRun(run, option));
      EXPECT_FALSE(exists("park.xml"));
    }
  }
}

TEST_F(Arguments, ThatNameAConfigurationFileLeaveItsFailureToTheLibrary) {
  const ProgramRun run = buildDeployment({"--hidden-fields", "missing.xml"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out,
              HasSubstr("\"errorDetail\": \"The template xml (missing.xml) could not be loaded\""));
}

TEST_F(Arguments, TakeAFileUrl) {
  const std::string strUrl = "file://" + directory_.at("hidden.xml");
  const ProgramRun run = buildDeployment({"--hidden-fields", strUrl});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
