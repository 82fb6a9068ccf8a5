#include <nlohmann/json.hpp>

#include "Program.h"

// The report of a run, as a script gets it.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Json = nlohmann::ordered_json;
using Lines = std::vector<std::string>;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAreArray;

Lines keysOf(const Json& object) {
  Lines keys;
  for (const auto& [strKey, value] : object.items()) keys.push_back(strKey);
  return keys;
}

std::string address(const Json& violation) {
  return violation["questionId"].get<std::string>() + "/" +
         violation["rowIndex"].get<std::string>() + "/" + violation["columnId"].get<std::string>();
}

class Report : public ProgramTest {
 protected:
  ProgramRun submit(const char* form, Lines more) const {
    more.insert(more.begin(), {"--deployment", kExample, "--form", kExample + "/" + form,
                               "--submit", "--now", "2025-10-14T12:05:00"});
    return build(std::move(more));
  }

  Json result(const char* form, Lines more = {}) const {
    more.insert(more.begin(), {"--validate", "--report"});
    return Json::parse(submit(form, std::move(more)).out);
  }
};

TEST_F(Report, StandsBehindTheRestOfTheResultOnlyWhenItIsAskedFor) {
  const Lines plain = {"success",     "errorCode",   "errorName",  "errorDetail",
                       "userMessage", "errorSource", "userErrors", "internalErrors"};
  Lines withReport = plain;
  withReport.emplace_back("report");
  EXPECT_EQ(keysOf(Json::parse(submit("faulty.form", {"--validate"}).out)), plain);
  EXPECT_EQ(keysOf(Json::parse(submit("faulty.form", {"--validate", "--strict"}).out)), plain);
  EXPECT_EQ(keysOf(result("faulty.form")), withReport);
}

TEST_F(Report, HasItsKeysInAFixedOrder) {
  const Json report = result("faulty.form")["report"];
  EXPECT_THAT(keysOf(report), ElementsAre("verdict", "reason", "violations", "losses"));
  EXPECT_THAT(keysOf(report["violations"].front()),
              ElementsAre("kind", "facet", "path", "attribute", "value", "limit", "expected",
                          "message", "questionId", "questionText", "rowIndex", "columnId",
                          "columnText", "allowed", "type", "cause", "constraint"));
  EXPECT_THAT(keysOf(result("faulty.form", {"--explain"})["report"]),
              ElementsAre("verdict", "reason", "violations", "losses", "journal"));
}

TEST_F(Report, ComesWithExplainAlone) {
  const Json explained = Json::parse(submit("complete.form", {"--explain"}).out);
  EXPECT_EQ(explained["report"]["verdict"], "not-asked");
  EXPECT_TRUE(explained["report"]["journal"].is_array());
}

TEST_F(Report, OfTheCompleteFormFindsNothing) {
  const Json report = result("complete.form")["report"];
  EXPECT_EQ(report["verdict"], "valid");
  EXPECT_EQ(report["reason"], "");
  EXPECT_THAT(report["violations"], SizeIs(0));
}

/// The mistakes of the faulty form, one after the other as the form has them, and in how many
/// places of the message each is seen.
const struct {
  const char *answer, *kind, *facet;
  std::size_t lngPlaces;
} kMistakes[] = {
    {"casenumber//", "value", "pattern", 3},  // and in the document data and the record's source
    {"inspectionkind//", "value", "enumeration", 1},
    {"reporttitle//", "value", "minLength", 1},
    {"buildingname//", "value", "maxLength", 1},
    {"postcode//", "value", "pattern", 1},
    {"town//", "missing-child", "", 1},
    {"yearbuilt//", "value", "minInclusive", 1},
    {"storeys//", "value", "minInclusive", 1},
    {"floorarea//", "value", "", 1},
    {"ownername//", "value", "minLength", 1},
    {"officephone//", "value", "maxLength", 1},
    {"owneremail//", "value", "pattern", 1},
    {"inspectiondate//", "value", "", 1},
    {"visitstart//", "value", "", 1},
    {"arrivaltime//", "value", "pattern", 1},
    {"weather//", "value", "enumeration", 1},
    {"temperature//", "value", "maxInclusive", 1},
    {"inspectornumber//", "value", "pattern", 2},  // and in the document data
    {"heatingkind//", "value", "enumeration", 1},
    {"smokedetectors//", "value", "", 1},
    {"areas/5/remark", "value", "maxLength", 1},
    {"defects/1/severity", "value", "enumeration", 1},
    {"defects/1/found", "value", "", 1},
    {"defects/1/duration", "value", "", 1},  // between a date and none there are no days
    {"defects/2/repairby", "value", "", 1},
    {"defects/2/duration", "value", "", 1},
    {"defects/3/found", "value", "", 1},
    {"meters/1/reading", "value", "", 1},
    {"samples//", "value", "", 1},
    {"grade//", "value", "enumeration", 2},  // and in the header
    {"summary//", "value", "minLength", 1},
    {"measures//", "value", "maxLength", 1},
    {"followupdate//", "value", "", 1},
    {"fee//", "value", "fractionDigits", 1},
    {"officeid//", "value", "pattern", 1},
};

TEST_F(Report, OfTheFaultyFormNamesEachMistakeAtItsQuestionRowAndColumn) {
  Lines expected;
  for (const auto& mistake : kMistakes) {
    expected.insert(expected.end(), mistake.lngPlaces,
                    std::string(mistake.answer) + " " + mistake.kind + " " + mistake.facet);
  }
  const Json report = result("faulty.form")["report"];
  EXPECT_EQ(report["verdict"], "invalid");
  Lines found;
  for (const Json& violation : report["violations"]) {
    found.push_back(address(violation) + " " + violation["kind"].get<std::string>() + " " +
                    violation["facet"].get<std::string>());
  }
  EXPECT_THAT(found, UnorderedElementsAreArray(expected));
}

TEST_F(Report, TellsAViolationWhole) {
  const Json violations = result("faulty.form")["report"]["violations"];
  const auto of = [&](const char* answer) {
    for (const Json& violation : violations) {
      if (address(violation) == answer) return violation;
    }
    return Json();
  };
  EXPECT_EQ(of("defects/1/severity"), Json::parse(R"({
                "kind": "value", "facet": "enumeration",
                "path": "/InspectionReport[1]/Record[1]/pbr:Defects[1]/pbr:Defect[1]/pbr:Severity[1]",
                "attribute": "", "value": "extreme", "limit": "'low', 'medium', 'high'",
                "expected": [],
                "message": "The value is not allowed; it must be one of 'low', 'medium', 'high'.",
                "questionId": "defects", "questionText": "Defects", "rowIndex": "1",
                "columnId": "severity", "columnText": "Severity",
                "allowed": ["low", "medium", "high"], "type": "", "cause": "",
                "constraint": ""})"));
  EXPECT_EQ(of("town//"), Json::parse(R"({
                "kind": "missing-child", "facet": "",
                "path": "/InspectionReport[1]/Building[1]/bld:Location[1]",
                "attribute": "", "value": "", "limit": "",
                "expected": ["{urn:example:inspection:building}Town"],
                "message": "In 'bld:Location' 'Town' is missing.",
                "questionId": "town", "questionText": "Town", "rowIndex": "", "columnId": "",
                "columnText": "", "allowed": [], "type": "", "cause": "answer-missing",
                "constraint": ""})"));
}

TEST_F(Report, NamesTheTableAndTheFormFieldWithoutWhichARunFails) {
  std::string strForm = textOfFile(std::filesystem::path(kExample) / "complete.form");
  strForm = strForm.substr(0, strForm.find_last_not_of("\r\n") + 1);
  const auto resultWith = [&](std::string_view strFrom, std::string_view strTo) {
    std::string strChanged = strForm;
    strChanged.replace(strChanged.find(strFrom), strFrom.size(), strTo);
    write("one.form", strChanged);
    return Json::parse(build({"--deployment", kExample, "--form", "one.form", "--submit",
                              "--validate", "--report"})
                           .out);
  };
  const struct {
    const char *from, *to, *detail, *failedAt;
  } cases[] = {
      {"meters_rowCount=2&", "", "The object list is missing",
       "table \"meters\", form field \"meters_rowCount\" was not posted"},
      {"meters_rowCount=2&", "meters_rowCount=&", "The object list is missing",
       "table \"meters\", form field \"meters_rowCount\" is empty"},
      {"meters_rowCount=2&", "meters_rowCount=two&", "The object list is missing",
       "table \"meters\", form field \"meters_rowCount\" is no number"},
      {"areas_rowCount=6&", "areas_rowCount=8&", "The protocol table row is missing",
       "table \"areas\", form field \"areas_rowCount\" asks for row 7, which the object list "
       "lacks"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.failedAt);
    const Json failed = resultWith(c.from, c.to);
    EXPECT_EQ(failed["errorDetail"], c.detail);
    EXPECT_EQ(failed["report"]["verdict"], "not-checked");
    EXPECT_EQ(failed["report"]["failedAt"], c.failedAt);
    EXPECT_EQ(failed["report"]["reason"], "The run ended before the message was checked: " +
                                              std::string(c.detail) + ": " + c.failedAt);
  }
  EXPECT_FALSE(
      resultWith("meters_rowCount=2&", "meters_rowCount=2&")["report"].contains("failedAt"));
}

TEST_F(Report, NamesTheObjectListWhereThatDecides) {
  const std::string strForm = textOfFile(std::filesystem::path(kExample) / "complete.form");
  const std::string strMore =
      strForm.substr(0, strForm.find_last_not_of("\r\n") + 1) + "&defects___defect_9=x";
  write("more.form", strMore);
  std::filesystem::copy(kExample, directory_.path() / "copy",
                        std::filesystem::copy_options::recursive);
  write("batch.jsonl", Json{{"id", "1"}, {"form", strMore}}.dump() + "\n");
  const auto run = [&](const Lines& words, const char* input = nullptr) {
    const ProgramRun ran =
        runProgram(directory_.path(), words, {.strInput = input ? read(input) : ""});
    const Json told = Json::parse(ran.out);
    return told.contains("report") ? told["report"] : told["result"]["report"];
  };
  const struct {
    const char* says;
    Json report;
  } cases[] = {
      {"build",
       run({"build", "--deployment", "copy", "--form", "more.form", "--submit", "--explain"})},
      {"a folder written otherwise",
       run({"build", "--deployment", "./copy//", "--form", "more.form", "--submit", "--explain"})},
      {"explain",
       run({"explain", "--deployment", "copy", "--form", "more.form", "--format", "json"})},
      {"batch", run({"batch", "--deployment", "copy", "--submit", "--explain"}, "batch.jsonl")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Json& losses = c.report["losses"];
    ASSERT_THAT(losses, SizeIs(1));
    EXPECT_EQ(losses[0]["reason"], "row-beyond-count");
    EXPECT_EQ(losses[0]["file"], "object-list.xml");
    EXPECT_GT(losses[0]["line"], 0);
    for (const Json& entry : c.report["journal"]) {
      const Json& rule = entry["rule"];
      EXPECT_EQ(rule["line"] > 0, !rule["file"].get<std::string>().empty()) << entry;
      EXPECT_EQ(rule["file"].get<std::string>().find('/'), std::string::npos) << entry;
    }
  }
}

TEST_F(Report, TellsFilesByTheirPathsAndNotByTheTextsOfThem) {
  std::filesystem::copy(kExample, directory_.path() / "copy",
                        std::filesystem::copy_options::recursive);
  std::string strOptions = read("copy/deployment.json");
  const std::string strMapper = "\"object-mapper.xml\"";
  write("copy/deployment.json", strOptions.replace(strOptions.find(strMapper), strMapper.size(),
                                                   "\"./object-mapper.xml\""));
  for (const char* const folder : {"copy", "copy/", "./copy//", "copy/../copy"}) {
    SCOPED_TRACE(folder);
    const Json report =
        Json::parse(runProgram(directory_.path(), {"build", "--deployment", folder, "--form",
                                                   "copy/complete.form", "--submit", "--explain"})
                        .out)["report"];
    bool blnMapper = false;
    for (const Json& entry : report["journal"]) {
      const std::string strFile = entry["rule"]["file"].get<std::string>();
      EXPECT_EQ(strFile.find('/'), std::string::npos) << strFile;
      blnMapper = blnMapper || strFile == "object-mapper.xml";
    }
    EXPECT_TRUE(blnMapper);
  }
}

TEST_F(Report, OfAFailedRunTellsThatItDidNotGetToTheCheck) {
  const ProgramRun run =
      submit("complete.form", {"--validate", "--report", "--template", "missing.xml"});
  EXPECT_EQ(run.status, 1);
  const Json report = Json::parse(run.out)["report"];
  EXPECT_EQ(report["verdict"], "not-checked");
  EXPECT_THAT(report["reason"].get<std::string>(), HasSubstr("missing.xml"));
}

TEST_F(Report, MakesAStrictRunEndWithStatusThreeWhereASuccessIsNone) {
  const struct {
    const char *says, *form;
    Lines words;
    int status;
  } cases[] = {
      {"a valid message", "complete.form", {"--validate", "--strict"}, 0},
      {"no check asked for", "faulty.form", {"--strict"}, 0},
      {"an invalid message is a failure as ever", "faulty.form", {"--validate", "--strict"}, 1},
      {"no server", "complete.form", {"--validate", "--strict", "--no-server"}, 3},
      {"no schema", "complete.form", {"--validate", "--strict", "--schema-url", "none.xsd"}, 3},
      {"the wrong page folder", "complete.form", {"--validate", "--strict", "--page-dir", "."}, 3},
      {"another namespace",
       "complete.form",
       {"--validate", "--strict", "--schema-uri", "urn:x"},
       3},
      {"no questions XML", "draft.form", {"--validate", "--strict", "--questions", "none.xml"}, 3},
      {"without --strict they succeed",
       "complete.form",
       {"--validate", "--report", "--no-server"},
       0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const ProgramRun run = submit(c.form, c.words);
    EXPECT_EQ(run.status, c.status) << run.out << run.err;
  }
}

/// An object that does not stand directly below the root has no label for the error at its
/// question, so that the mapping of the errors breaks down: the run succeeds without a verdict.
TEST_F(Report, OfATamperedParkedFormIsNotCheckedAndNeverAStrictSuccess) {
  write("schema.xsd", R"(
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns:c="urn:card" targetNamespace="urn:card"
    elementFormDefault="qualified">
  <xs:element name="card"><xs:complexType><xs:sequence>
    <xs:element name="form" type="xs:string"/><xs:element name="date" type="xs:date"/>
    <xs:element name="time" type="xs:time"/>
    <xs:element name="name"><xs:simpleType><xs:restriction base="xs:string">
      <xs:maxLength value="3"/></xs:restriction></xs:simpleType></xs:element>
  </xs:sequence></xs:complexType></xs:element>
</xs:schema>)");
  write("questions.xml", "<questions><question id='name' maxLength='3'/></questions>");
  std::filesystem::create_directory(directory_.path() / "pages");
  write("name.form", "name=Augusta&name_hiddenName=Your+name");
  const std::string strField =
      "<prtobjct id='name' objecttype='field' type='text' dynamic='false'/>";
  const auto withList = [&](const std::string& strObjects, const Lines& more) {
    write("list.xml", "<?xml version=\"1.0\"?><prtobjcts>" + strObjects + "<hdnflds/></prtobjcts>");
    Lines words = {"--object-list", "list.xml",   "--form",          "name.form",
                   "--submit",      "--validate", "--questions",     "questions.xml",
                   "--schema-url",  "schema.xsd", "--schema-uri",    "urn:card",
                   "--page-dir",    "pages",      "--protocol-info", "protocol.xml"};
    words.insert(words.end(), more.begin(), more.end());
    return buildDeployment(words);
  };

  const ProgramRun untampered = withList(strField, {"--strict", "--report"});
  EXPECT_EQ(untampered.status, 1) << untampered.out << untampered.err;
  EXPECT_EQ(Json::parse(untampered.out)["report"]["verdict"], "invalid");

  const std::string strTampered = "<group>" + strField + "</group>";
  const ProgramRun strict = withList(strTampered, {"--strict", "--report"});
  EXPECT_EQ(strict.status, 3) << strict.out << strict.err;
  const Json result = Json::parse(strict.out);
  EXPECT_EQ(result["success"], true);
  EXPECT_EQ(result["report"]["verdict"], "not-checked");
  EXPECT_THAT(result["report"]["reason"].get<std::string>(),
              HasSubstr("Object variable or With block variable not set; "
                        "the parked form has no object 'name'"));
  ASSERT_THAT(result["report"]["violations"], SizeIs(1));
  EXPECT_EQ(result["report"]["violations"][0]["facet"], "maxLength");

  EXPECT_EQ(withList(strTampered, {"--strict"}).status, 3);
  EXPECT_EQ(withList(strTampered, {"--report"}).status, 0);
}

TEST_F(Report, IsNoKeyOfADeployment) {
  for (const char* key : {"report", "explain", "strict"}) {
    write("deployment.json", "{\"" + std::string(key) + "\": true}");
    EXPECT_TRUE(CouldNotRun(buildDeployment({}), "is an unknown key"));
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
