#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Program.h"

// `varnel-xml prove`: whether errors lead back to the answers that are wrong.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// The deployment of two questions with a schema: a name of two or three letters or none, and a
/// day. Its questions XML does not know the name, so the compatible lists fail for that.
class Prove : public ProgramTest {
 protected:
  Prove() {
    write("schema.xsd", schema("<xs:element name='name' minOccurs='0'><xs:simpleType>"
                               "<xs:restriction base='xs:string'><xs:minLength value='2'/>"
                               "<xs:maxLength value='3'/></xs:restriction></xs:simpleType>"
                               "</xs:element><xs:element name='born' type='xs:date'/>"));
    write("questions.xml", "<questions/>");
  }

  static std::string schema(const std::string& strAnswers, const std::string& strRules = "") {
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:card' "
           "xmlns:c='urn:card' elementFormDefault='qualified'>"
           "<xs:element name='card'><xs:complexType><xs:sequence>"
           "<xs:element name='form' type='xs:string' minOccurs='0'/>"
           "<xs:element name='date' type='xs:date'/><xs:element name='time' type='xs:time'/>" +
           strAnswers + "</xs:sequence></xs:complexType>" + strRules + "</xs:element></xs:schema>";
  }

  ProgramRun prove(std::string_view strForm, std::vector<std::string> words = {}) const {
    std::filesystem::create_directories(directory_.path() / "pages");
    write("answers.form", strForm);
    words.insert(words.begin(), {"prove", "--deployment", ".", "--page-dir", "pages",
                                 "--schema-url", "schema.xsd", "--schema-uri", "urn:card",
                                 "--questions", "questions.xml", "--form", "answers.form"});
    return runProgram(directory_.path(), words);
  }
};

TEST_F(Prove, TellsOfEachSpoiledAnswerWhetherErrorsLeadBackToIt) {
  const ProgramRun run = prove("name=Ada&born=5.3.2026");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "2 answers, spoiled in 6 ways: 5 wrong, 1 not wrong, 0 without a verdict\n"
            "exact list: 5 of 5 led back, 100 %\n"
            "compatible lists: 2 of 5 led back, 40 %\n"
            "\n"
            "Missed by the compatible lists alone:\n"
            "name: too-long: xxxx\n"
            "name: too-short: x\n"
            "born: empty: (nothing)\n"
            "\n"
            "Not wrong:\n"
            "name: empty: (nothing)\n");
}

TEST_F(Prove, GivesJson) {
  const ProgramRun run = prove("name=Ada&born=5.3.2026", {"--format", "json"});
  EXPECT_EQ(run.status, 0) << run.err;
  const json result = json::parse(run.out);
  json figures = result;
  figures.erase("spoiled");
  EXPECT_EQ(figures, json::parse(R"({"answers": 2, "wrong": 5, "notWrong": 1, "noVerdict": 0,
      "exact": {"led": 5, "missed": 0}, "compatible": {"led": 2, "missed": 3}})"));
  ASSERT_EQ(result["spoiled"].size(), 6u);
  EXPECT_EQ(result["spoiled"][0], json::parse(R"({"questionId": "name", "rowIndex": "",
      "columnId": "", "spoiling": "empty", "value": "", "outcome": "not-wrong"})"));
  EXPECT_EQ(result["spoiled"][1], json::parse(R"({"questionId": "name", "rowIndex": "",
      "columnId": "", "spoiling": "too-long", "value": "xxxx", "outcome": "wrong",
      "exact": true, "compatible": false,
      "named": [{"questionId": "name", "rowIndex": "", "columnId": ""}]})"));
}

TEST_F(Prove, GoesBeyondTheBoundsOfDaysTimesAndYears) {
  const struct {
    const char *says, *base, *facets, *answer;
    std::vector<std::string> beyond;
  } cases[] = {
      {"days",
       "xs:date",
       "<xs:minInclusive value='2026-01-01'/><xs:maxInclusive value='2028-02-28'/>",
       "2026-03-05",
       {"2025-12-31", "2028-02-29"}},
      {"days, themselves left out",
       "xs:date",
       "<xs:minExclusive value='2026-01-01'/><xs:maxExclusive value='2027-01-01'/>",
       "2026-03-05",
       {"2026-01-01", "2027-01-01", "2025-12-31", "2027-01-02"}},
      {"days with a zone",
       "xs:date",
       "<xs:minInclusive value='2026-01-01Z'/><xs:maxInclusive value='2026-12-31Z'/>",
       "2026-03-05",
       {"2025-12-31Z", "2027-01-01Z"}},
      {"moments",
       "xs:dateTime",
       "<xs:minInclusive value='2026-01-01T00:00:00'/>"
       "<xs:maxInclusive value='2026-12-31T23:59:59.5'/>",
       "2026-03-05T09:05:07",
       {"2025-12-31T23:59:59", "2027-01-01T00:00:00"}},
      {"times",
       "xs:time",
       "<xs:minInclusive value='08:00:00'/><xs:maxInclusive value='17:30:00'/>",
       "09:05:07",
       {"07:59:59", "17:30:01"}},
      {"all times of a day",
       "xs:time",
       "<xs:minInclusive value='00:00:00'/><xs:maxInclusive value='23:59:59'/>",
       "09:05:07",
       {}},
      {"years",
       "xs:gYear",
       "<xs:minInclusive value='1900'/><xs:maxInclusive value='2026'/>",
       "1985",
       {"1899", "2027"}},
      {"months",
       "xs:gYearMonth",
       "<xs:minInclusive value='2026-01'/><xs:maxInclusive value='2026-12'/>",
       "2026-03",
       {"2025-12", "2027-01"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strType = std::string_view(c.base) == "xs:date" ? "date" : "text";
    write("objects.xml",
          "<?xml version='1.0'?><prtobjcts>"
          "<prtobjct id='name' objecttype='field' type='text' dynamic='false'/>"
          "<prtobjct id='born' objecttype='field' type='" +
              strType + "' dynamic='false'/><hdnflds/></prtobjcts>");
    write("schema.xsd",
          schema("<xs:element name='name' type='xs:string' minOccurs='0'/><xs:element name='born'>"
                 "<xs:simpleType><xs:restriction base='" +
                 std::string(c.base) + "'>" + c.facets +
                 "</xs:restriction></xs:simpleType></xs:element>"));
    const ProgramRun run = prove("name=Ada&born=" + std::string(c.answer), {"--format", "json"});
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    std::vector<std::string> beyond;
    const json result = json::parse(run.out);
    for (const json& spoiled : result["spoiled"]) {
      if (spoiled["spoiling"] != "out-of-bounds") continue;
      beyond.push_back(spoiled["value"].get<std::string>());
      EXPECT_EQ(spoiled["outcome"], "wrong") << beyond.back();
      EXPECT_EQ(spoiled["exact"], true) << beyond.back();
    }
    EXPECT_EQ(beyond, c.beyond);
  }
}

TEST_F(Prove, EndsWithStatus1WhenTheExactListMissesAnAnswer) {
  // The day must be one that the name tells: without a name it is the day that is refused.
  write("schema.xsd", schema("<xs:element name='name' type='xs:string' minOccurs='0'/>"
                             "<xs:element name='born' type='xs:string' minOccurs='0'/>",
                             "<xs:key name='names'><xs:selector xpath='c:name'/>"
                             "<xs:field xpath='.'/></xs:key>"
                             "<xs:keyref name='days' refer='c:names'><xs:selector xpath='c:born'/>"
                             "<xs:field xpath='.'/></xs:keyref>"));
  const ProgramRun run = prove("name=2026-03-05&born=5.3.2026");
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_THAT(run.out, StartsWith("2 answers, spoiled in 2 ways: 1 wrong, 1 not wrong"));
  EXPECT_THAT(run.out, HasSubstr("\nexact list: 0 of 1 led back, 0 %\n"));
  EXPECT_THAT(run.out, HasSubstr("\nMissed by the exact list:\n"
                                 "name: empty: (nothing)\n"
                                 "    names born\n"));
}

TEST_F(Prove, LeadsBackToEveryAnswerOfTheExample) {
  const ProgramRun run =
      runProgram(directory_.path(), {"prove", "--deployment", kExample, "--form",
                                     kExample + "/complete.form", "--now", "2025-10-14T12:05:00"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr(" led back, 100 %\ncompatible lists: "));
  EXPECT_THAT(run.out, Not(HasSubstr(" 0 wrong, ")));
  EXPECT_THAT(run.out, Not(HasSubstr("Missed by the exact list")));
}

TEST_F(Prove, RefusesAFormWhoseMessageIsNotValid) {
  EXPECT_TRUE(
      CouldNotRun(prove("name=A&born=5.3.2026"), "not valid to begin with: /c:card[1]/c:name[1]"));
  EXPECT_TRUE(CouldNotRun(prove("name=Ada&born=x"), "/c:card[1]/c:born[1]"));
  std::filesystem::remove(directory_.path() / "schema.xsd");
  EXPECT_TRUE(CouldNotRun(prove("name=Ada&born=5.3.2026"), "not valid to begin with"));
}

TEST_F(Prove, RefusesAFormatThatItDoesNotHave) {
  EXPECT_TRUE(CouldNotRun(prove("name=Ada&born=5.3.2026", {"--format", "pdf"}), "--format"));
}

TEST_F(Prove, MakesAPageOfItsOwn) {
  const ProgramRun run = prove("name=Ada&born=5.3.2026", {"--format", "html"});
  expectPageOfItsOwn(run, "Whether errors lead back to the answers");
  EXPECT_THAT(run.out, HasSubstr("Led back by all lists"));
  EXPECT_THAT(run.out, HasSubstr("too short"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
