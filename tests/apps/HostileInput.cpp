#include "HostileInput.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "result/ServiceEnums.h"

namespace Varnel_Tolv_XML_Creation::test {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

const std::vector<Role> kConfigurationRoles = {
    {"--object-list", "objects.xml", Refusal::couldNotRun},
    {"--protocol-info", "protocol.xml", Refusal::couldNotRun},
    {"--namespaces", "namespaces.xml", Refusal::namespaces},
    {"--hidden-fields", "hidden.xml", Refusal::configuration},
    {"--template", "template.xml", Refusal::configuration},
    {"--reference", "reference.xml", Refusal::configuration},
    {"--object-mapper", "mapper.xml", Refusal::configuration},
    {"--schema-types", "types.xml", Refusal::configuration},
    {"--questions", "questions.xml", Refusal::questions},
};
const Role kSchemaRole = {"--schema-url", "card.xsd", Refusal::schema};

std::vector<Role> allRoles() {
  std::vector<Role> roles = kConfigurationRoles;
  roles.push_back(kSchemaRole);
  return roles;
}

const Role& roleOf(std::string_view strOption) {
  const auto found = std::ranges::find(kConfigurationRoles, strOption, &Role::option);
  if (found == kConfigurationRoles.end()) throw std::runtime_error("no such role");
  return *found;
}

namespace {

constexpr std::pair<const char*, const char*> kFiles[] = {
    {"deployment.json",
     R"({"template": "template.xml", "object-mapper": "mapper.xml", "schema-types": "types.xml",
         "hidden-fields": "hidden.xml", "namespaces": "namespaces.xml",
         "questions": "questions.xml", "reference": "reference.xml", "object-list": "objects.xml",
         "protocol-info": "protocol.xml", "form": "card.form", "now": "2026-03-05T09:05:07",
         "submit": true, "validate": true, "page-dir": "pages", "schema-url": "card.xsd",
         "schema-uri": "urn:card"})"},
    {"hidden.xml", "<hiddenfields></hiddenfields>"},
    {"reference.xml", "<c:card xmlns:c='urn:card' mandatory='true'></c:card>"},
    {"protocol.xml", "<protocol name='Card' region='North' version='2'></protocol>"},
    {"questions.xml",
     "<questions><question id='name' maxLength='5'><xpath>/c:card/c:name</xpath></question>"
     "</questions>"},
    {"card.xsd",
     R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:card"
  xmlns="urn:card" elementFormDefault="qualified">
  <xs:include schemaLocation="short.xsd"/>
  <xs:element name="card">
    <xs:complexType><xs:sequence>
      <xs:element name="form" type="xs:string"/>
      <xs:element name="date" type="xs:date"/>
      <xs:element name="time" type="xs:time"/>
      <xs:element name="name" type="short"/>
      <xs:element name="born" type="xs:date"/>
    </xs:sequence></xs:complexType>
  </xs:element>
</xs:schema>)"},
    {"short.xsd",
     R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:card">
  <xs:simpleType name="short"><xs:restriction base="xs:string"><xs:maxLength value="5"/>
  </xs:restriction></xs:simpleType>
</xs:schema>)"},
    {"card.form", "name=Ada&born=5.3.2026"},
    {"long.form", "name=Adaline&born=5.3.2026"},
};

constexpr const char* kMessage =
    "<?xml version=\"1.0\"?>\r\n"
    "<c:card xmlns:c=\"urn:card\"><c:form>Card (North, v2)</c:form>"
    "<c:date>2026-03-05</c:date><c:time>09:05:07</c:time>"
    "<c:name>Ada</c:name><c:born>2026-03-05</c:born></c:card>\r\n";

std::string optionalText(const std::filesystem::path& path) {
  return std::filesystem::exists(path) ? textOfFile(path) : "";
}

/// Named by where it is: what is told may be megabytes long.
void expectNoSecret(const char* strPlace, const std::string& strText) {
  EXPECT_EQ(strText.find(kSecret), std::string::npos) << strPlace;
}

std::string failureJson(eReturnValues lngCode, const std::string& strDetail,
                        const std::string& strUserMessage) {
  return "{\n  \"success\": false,\n  \"errorCode\": " + std::to_string(lngCode) +
         ",\n  \"errorName\": \"" + std::string(ReturnValueName(lngCode).value_or("")) +
         "\",\n  \"errorDetail\": \"" + strDetail + "\",\n  \"userMessage\": \"" + strUserMessage +
         "\",\n  \"errorSource\": \"\",\n";
}

void replaceAll(std::string& strText, std::string_view strOld, const std::string& strNew) {
  for (std::size_t at = 0; (at = strText.find(strOld, at)) != std::string::npos;
       at += strNew.size()) {
    strText.replace(at, strOld.size(), strNew);
  }
}

}  // namespace

HostileInput::HostileInput() {
  for (const auto& [strName, strText] : kFiles) write(strName, strText);
  std::filesystem::create_directory(directory_.path() / "pages");
  const std::string strSecret(kSecret);
  outside_.file("secret.txt", strSecret);
  outside_.file("secret.xml", "<secret>" + strSecret + "</secret>");
  outside_.file("secret.dtd", "<!ENTITY e '" + strSecret + "'>");
  outside_.file("secret.xsd",
                "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:o'>"
                "<!--" +
                    strSecret + "--><xs:element name='o'/></xs:schema>");
}

Outcome HostileInput::submit(std::vector<std::string> words, ProgramStreams streams) const {
  constexpr unsigned kMaxSeconds = kSanitized ? 100 : 50;
  constexpr std::size_t kMaxMegabytes = 1024;
  const std::string outputs[] = {"park.out", "send.out", "trace.out"};
  for (const std::string& strOutput : outputs) std::filesystem::remove(directory_.at(strOutput));
  words.insert(words.begin(),
               {"--park-out", "park.out", "--send-out", "send.out", "--trace", "trace.out"});
  if (streams.lngSeconds == 0) streams.lngSeconds = kMaxSeconds;

  Outcome outcome;
  outcome.run = buildDeployment(std::move(words), streams);
  outcome.strTrace = optionalText(directory_.at("trace.out"));
  outcome.strSend = optionalText(directory_.at("send.out"));
  EXPECT_GE(outcome.run.status, 0) << outcome.run.err;
  EXPECT_LE(outcome.run.status, 2) << outcome.run.err;
  expectMemoryBelow(kMaxMegabytes, outcome.run);
  expectNoSecret("standard output", outcome.run.out);
  expectNoSecret("standard error", outcome.run.err);
  expectNoSecret("the parked form", optionalText(directory_.at("park.out")));
  expectNoSecret("the message", outcome.strSend);
  expectNoSecret("the trace", outcome.strTrace);
  return outcome;
}

void HostileInput::expectMemoryBelow(std::size_t lngMegabytes, const ProgramRun& run) {
  if (kSanitized) return;  // a sanitizer's own memory hides that of the run
  EXPECT_LT(run.lngPeakMegabytes, lngMegabytes);
}

Outcome HostileInput::submitWith(const Role& role, const std::string& strFile) const {
  std::vector<std::string> words{role.option, strFile};
  // The questions are asked where the schema finds something.
  if (role.refusal == Refusal::questions) words.insert(words.end(), {"--form", "long.form"});
  return submit(std::move(words));
}

Outcome HostileInput::submitText(const Role& role, std::string_view strText) const {
  write(kHostileFile, strText);
  return submitWith(role, kHostileFile);
}

void HostileInput::expectSent(const Outcome& outcome) {
  EXPECT_EQ(outcome.run.status, 0) << outcome.run.err;
  EXPECT_EQ(outcome.run.out, kSuccessJson);
  EXPECT_EQ(outcome.strSend, kMessage);
  EXPECT_TRUE(outcome.strTrace.ends_with(": End ValidateXMLAgainstSchema\n"));
}

void HostileInput::expectAccepted(const Role& role, const Outcome& outcome) {
  if (role.refusal != Refusal::questions) return expectSent(outcome);
  EXPECT_EQ(outcome.run.status, 1);
  EXPECT_THAT(outcome.run.out,
              StartsWith(failureJson(SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED,
                                     "ValidateXMLAgainstSchema: 1 user errors, 0 internal errors",
                                     "There were errors which caused the message XML to be "
                                     "invalid")));
  EXPECT_THAT(outcome.run.out, HasSubstr("Number of characters entered (7) exceeds the maximum"));
}

void HostileInput::expectRefused(const Role& role, const Outcome& outcome,
                                 const std::string& strFile, std::string_view strReason) const {
  const ProgramRun& run = outcome.run;
  switch (role.refusal) {
    case Refusal::couldNotRun:
      EXPECT_TRUE(CouldNotRun(run, std::string(role.option) + " " + strFile + ": "));
      EXPECT_TRUE(CouldNotRun(run, strReason));
      return;
    case Refusal::namespaces:
      EXPECT_EQ(run.status, 1) << run.err;
      EXPECT_THAT(run.out,
                  StartsWith(failureJson(SVC_RET_XML_CREATION_NAMESPACE_XML_LOAD_ERROR,
                                         "Unable to load namespace xml:" + strFile,
                                         "An error occurred while creating the message xml")));
      return;
    case Refusal::configuration:
      EXPECT_EQ(run.status, 1) << run.err;
      EXPECT_THAT(run.out,
                  StartsWith(failureJson(SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
                                         "The template xml (" + strFile + ") could not be loaded",
                                         "An error occurred while loading the template xml")));
      return;
    case Refusal::questions:
      EXPECT_EQ(run.status, 0) << run.out;
      EXPECT_THAT(outcome.strTrace,
                  HasSubstr("\nProccessSchemaValidationErrors: Context "
                            "=ProccessSchemaValidationErrors, strQuestionsXmlPath=" +
                            strFile + " - \n"));
      EXPECT_THAT(outcome.strTrace, HasSubstr("\nbuildXML: XML failed validation:\\r\\n"));
      return;
    case Refusal::schema:
      expectNoVerdict(outcome, directory_.at(strFile), strReason);
  }
}

void HostileInput::expectNoVerdict(const Outcome& outcome, const std::string& strPath,
                                   std::string_view strReason) {
  EXPECT_EQ(outcome.run.status, 0) << outcome.run.err;
  EXPECT_EQ(outcome.run.out, kSuccessJson);
  const std::string strStart =
      "\nValidateXMLAgainstSchema: Unexpected error in ValdateXMLAgainstSchema (-2147467259, The "
      "schema '" +
      strPath + "' cannot be registered: ";
  const std::size_t lngAt = outcome.strTrace.find(strStart);
  ASSERT_NE(lngAt, std::string::npos) << strStart << outcome.strTrace;
  const std::size_t lngReason = lngAt + strStart.size();
  EXPECT_THAT(
      outcome.strTrace.substr(lngReason, outcome.strTrace.find('\n', lngReason) - lngReason),
      HasSubstr(std::string(strReason)));
  EXPECT_THAT(outcome.strTrace, HasSubstr("\nbuildXML: XML failed validation:\\r\\n"));
  EXPECT_THAT(outcome.strTrace, Not(HasSubstr("End ValidateXMLAgainstSchema")));
}

std::string HostileInput::infected(const Role& role, std::string_view strDocumentType,
                                   std::string_view strContent) const {
  std::string strText = read(role.file);
  std::string strType(strDocumentType);
  std::string strInside(strContent);
  replaceAll(strType, "%DIR", outside_.path().string());
  replaceAll(strInside, "%DIR", outside_.path().string());
  strText.insert(strText.rfind("</"), strInside);
  const std::size_t lngRoot = strText.starts_with("<?") ? strText.find("?>") + 2 : 0;
  return strText.insert(lngRoot, strType);
}

}  // namespace Varnel_Tolv_XML_Creation::test
