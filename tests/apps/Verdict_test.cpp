#include "Program.h"

// The schema's verdict about the example's submissions, as a script gets it.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// A schema of the example's namespace that accepts every report.
constexpr const char* kLenientSchema =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' "
    "targetNamespace='urn:example:inspection:report'><xs:element name='InspectionReport'/>"
    "</xs:schema>";

struct UserError {
  const char *questionId, *questionText, *rowIndex, *columnId, *columnText, *message;
};

struct InternalError {
  const char *message, *xpath, *questionId, *rowIndex, *columnId;
};

std::string record(std::initializer_list<std::pair<const char*, const char*>> members) {
  std::string strRecord;
  for (const auto& [strKey, strValue] : members) {
    strRecord += strRecord.empty() ? "    {\n" : ",\n";
    strRecord += std::string("      \"") + strKey + "\": \"" + strValue + '"';
  }
  return strRecord + "\n    }";
}

std::string asJson(const UserError& error) {
  return record({{"questionId", error.questionId},
                 {"questionText", error.questionText},
                 {"rowIndex", error.rowIndex},
                 {"columnId", error.columnId},
                 {"columnText", error.columnText},
                 {"message", error.message}});
}

std::string asJson(const InternalError& error) {
  return record({{"message", error.message},
                 {"xpath", error.xpath},
                 {"questionId", error.questionId},
                 {"rowIndex", error.rowIndex},
                 {"columnId", error.columnId}});
}

class Verdict : public ProgramTest {
 protected:
  static std::vector<std::string> words(const char* form, std::vector<std::string> more) {
    more.insert(more.begin(), {"--deployment", kExample, "--form", kExample + "/" + form,
                               "--validate", "--now", "2025-10-14T12:05:00"});
    return more;
  }

  /// A submission that is checked.
  ProgramRun submit(const char* form, std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"--submit", "--send-out", "send.xml", "--trace", "trace.txt"});
    return build(words(form, std::move(more)));
  }

  /// Whether the trace of the last submission holds this.
  bool traceTells(std::string_view strText) const {
    return read("trace.txt").find(strText) != std::string::npos;
  }

  /// The run came through without a verdict, and the trace tells `strReason`.
  void expectNone(const ProgramRun& run, const std::string& strReason) const {
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, kSuccessJson);
    EXPECT_TRUE(exists("send.xml"));
    EXPECT_TRUE(traceTells("buildXML: Validating against schema\n"));
    EXPECT_TRUE(traceTells("\nValidateXMLAgainstSchema: " + strReason)) << strReason;
    EXPECT_TRUE(traceTells("\nbuildXML: XML failed validation:\\r\\n"));
  }
};

TEST_F(Verdict, OnTheCompleteReportIsASuccessWithoutRecords) {
  const ProgramRun run = submit("complete.form");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, kSuccessJson);
  EXPECT_TRUE(traceTells("\n: End ValidateXMLAgainstSchema\n"));
  EXPECT_FALSE(traceTells("XML failed validation"));
}

TEST_F(Verdict, OnTheFaultyReportIsARefusal) {
  const ProgramRun run = submit("faulty.form");
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_THAT(
      run.out,
      StartsWith("{\n"
                 "  \"success\": false,\n"
                 "  \"errorCode\": -2147210423,\n"
                 "  \"errorName\": \"SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED\",\n"
                 "  \"errorDetail\": \"ValidateXMLAgainstSchema: 30 user errors, 9 internal "
                 "errors\",\n"
                 "  \"userMessage\": \"There were errors which caused the message XML to be "
                 "invalid\",\n"
                 "  \"errorSource\": \"\",\n"
                 "  \"userErrors\": [\n    {\n"));
  EXPECT_THAT(run.out, HasSubstr("\n    }\n  ],\n  \"internalErrors\": [\n    {\n"));

  const Document objSend = parsed(read("send.xml"));
  EXPECT_EQ(objSend.selectNodes("//*[@questionId or @rowIndex or @columnId]")->length(), 0U);
  EXPECT_EQ(objSend.documentElement().nodeName(), "InspectionReport");
}

TEST_F(Verdict, TellsThePersonAtTheFormWhatToCorrect) {
  const UserError errors[] = {
      {"town", "Town", "", "", "", "Value missing"},
      {"weather", "Weather", "", "", "", "Invalid value"},
      {"inspectiondate", "D1 Date of the visit", "", "", "", "Invalid value"},
      {"buildingname", "B1 Building", "", "", "",
       "Number of characters entered (64) exceeds the maximum allowed (40)"},
      {"ownername", "C1 Owner", "", "", "",
       "Number of characters entered (1) is less than the minimum allowed (2)"},
      {"areas", "Areas and their condition", "5", "remark", "Remark",
       "Number of characters entered (120) exceeds the maximum allowed (80)"},
      {"defects", "Defects", "1", "severity", "Severity", "Invalid value"},
  };
  const std::string strResult = submit("faulty.form").out;
  const std::string strUserErrors = strResult.substr(0, strResult.find("\"internalErrors\""));
  for (const UserError& error : errors) EXPECT_THAT(strUserErrors, HasSubstr(asJson(error)));
}

TEST_F(Verdict, TellsThoseWhoRunTheDeploymentTheRest) {
  const InternalError errors[] = {
      {"Pattern constraint failed.\\r\\nThe element: 'pbr:CaseNumber'  has an invalid value "
       "according to its data type.",
       "/InspectionReport/Record/pbr:Source/pbr:CaseNumber", "casenumber", "", ""},
      {"The element: 'pbr:Found'  has an invalid value according to its data type.",
       "/InspectionReport/Record/pbr:Defects/pbr:Defect/pbr:Found", "defects", "3", "found"},
  };
  const std::string strResult = submit("faulty.form").out;
  const std::size_t lngStart = strResult.find("\"internalErrors\"");
  ASSERT_NE(lngStart, std::string::npos);
  for (const InternalError& error : errors) {
    EXPECT_THAT(strResult.substr(lngStart), HasSubstr(asJson(error)));
  }
}

TEST_F(Verdict, IsNotGivenWithoutSubmitting) {
  const std::vector<std::string> lines = traceOf(words("faulty.form", {}));
  EXPECT_THAT(lines, Contains("buildXML: Set objAck = addHiddenFlds(objParkingXML, "
                              "objHiddenFldXML)"));
  EXPECT_THAT(lines, Not(Contains("buildXML: Validating against schema")));
  const ProgramRun run = build(words("faulty.form", {}));
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, kSuccessJson);
}

TEST_F(Verdict, IsThatOfTheSchemaBesideThePageDirectory) {
  std::filesystem::create_directories(directory_.path() / "site/pages");
  std::filesystem::create_directories(directory_.path() / "site/schema");
  const std::vector<std::string> page{"--page-dir", "site/pages"};
  constexpr const char* kNotRegistered =
      "Unexpected error in ValdateXMLAgainstSchema (-2147467259, ";

  expectNone(submit("faulty.form", page), kNotRegistered);

  // Below the page itself nobody looks.
  std::filesystem::create_directories(directory_.path() / "site/pages/schema");
  write("site/pages/schema/inspection.xsd", kLenientSchema);
  expectNone(submit("faulty.form", page), kNotRegistered);

  write("site/schema/inspection.xsd", kLenientSchema);
  const ProgramRun lenient = submit("faulty.form", page);
  EXPECT_EQ(lenient.status, 0) << lenient.out;
  EXPECT_EQ(lenient.out, kSuccessJson);
  EXPECT_TRUE(traceTells("\n: End ValidateXMLAgainstSchema\n"));

  EXPECT_EQ(submit("faulty.form", {"--page-dir", kExample + "/pages"}).status, 1);
}

TEST_F(Verdict, IsMissedWithoutAServer) {
  expectNone(submit("faulty.form", {"--no-server"}),
             "The context object for the intrinsic IIS Object is missing\n");
}

TEST_F(Verdict, IsMissedForASchemaOfAnotherNamespace) {
  expectNone(submit("faulty.form", {"--schema-uri", "urn:example:other"}),
             "Unexpected error in ValdateXMLAgainstSchema (-2147467259, ");
  EXPECT_TRUE(traceTells(
      "Its target namespace is 'urn:example:inspection:report', not 'urn:example:other'.)\n"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
