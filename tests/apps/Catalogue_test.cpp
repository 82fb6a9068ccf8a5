#include "Catalogue.h"

#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "CatalogueFiles.h"
#include "Program.h"
#include "result/RunReport.h"

// The texts of apps/messages/, and what the program makes of them.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using nlohmann::json;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kFacets[] = {"length",       "minLength",    "maxLength",
                                   "pattern",      "enumeration",  "whiteSpace",
                                   "maxInclusive", "maxExclusive", "minInclusive",
                                   "minExclusive", "totalDigits",  "fractionDigits"};
constexpr const char* kCounting[] = {"length", "minLength", "maxLength", "totalDigits",
                                     "fractionDigits"};
constexpr const char* kCauses[] = {"duplicate", "no-match", "many-matches", "incomplete"};
constexpr const char* kTypes[] = {
    "date",   "time",    "dateTime",           "gYear",          "boolean",        "gYearMonth",
    "number", "integer", "nonNegativeInteger", "limitedInteger", "positiveInteger"};

json textsOf(const std::string& strLanguage) {
  return json::parse(textOfFile(VARNEL_SOURCE_DIR "/apps/messages/" + strLanguage + ".json"));
}

std::set<std::string> placesIn(const std::string& strText) {
  static const std::regex place(R"(\{([^{}]*)\})");
  std::set<std::string> places;
  for (std::sregex_iterator at(strText.begin(), strText.end(), place), end; at != end; ++at) {
    places.insert((*at)[1]);
  }
  return places;
}

/// The codes that reports can hold.
std::vector<std::string> codes() {
  std::vector<std::string> all{"loss",      "list.more",  "place.question",
                               "place.row", "place.cell", "place.element"};
  for (int kind = 0; kind <= static_cast<int>(ViolationKind::other); ++kind) {
    const auto name = std::string(violationKindName(static_cast<ViolationKind>(kind)));
    all.push_back("violation." + name);
    if (name.ends_with("-child")) {
      all.push_back("violation." + name + ".unknown");
      all.push_back("violation." + name + ".question");
    }
    if (name == "unexpected-child") all.push_back("violation." + name + ".answer-missing");
    if (name == "identity") {
      for (const char* cause : kCauses) all.push_back("violation." + name + "." + cause);
    }
    if (name != "value" && name != "attribute-value") continue;
    all.push_back("violation." + name + ".empty");
    for (const char* facet : kFacets) all.push_back("violation." + name + "." + facet);
    for (const char* type : kTypes) all.push_back("violation." + name + ".type." + type);
    for (const char* facet : kCounting) all.push_back("violation." + name + "." + facet + ".one");
  }
  for (int verdict = 0; verdict <= static_cast<int>(Verdict::notChecked); ++verdict) {
    all.push_back("verdict." + std::string(verdictName(static_cast<Verdict>(verdict))));
  }
  const std::string strReasons = textOfFile(VARNEL_SOURCE_DIR "/src/config/AnswerReasons.h");
  static const std::regex reason(R"re(= "([a-z-]+)";)re");
  for (std::sregex_iterator at(strReasons.begin(), strReasons.end(), reason), end; at != end;
       ++at) {
    all.push_back("loss." + (*at)[1].str());
    all.push_back(all.back() + ".form");
  }
  return all;
}

TEST(Catalogue, HasATextForEveryCodeInEveryLanguageAndNoOther) {
  const std::vector<std::string> expected = codes();
  ASSERT_GT(expected.size(), 60u);
  for (const CatalogueFile& file : catalogueFiles()) {
    const std::string language(file.strLanguage);
    SCOPED_TRACE(language);
    const json texts = textsOf(language);
    for (const std::string& strCode : expected) EXPECT_TRUE(texts.contains(strCode)) << strCode;
    for (const auto& [strCode, text] : texts.items()) {
      EXPECT_THAT(expected, Contains(strCode));
      EXPECT_NE(text.get<std::string>(), "");
    }
  }
}

TEST(Catalogue, HasTheSamePlacesInEveryLanguage) {
  const std::set<std::string> known{"place",   "question",  "row",    "column",
                                    "element", "attribute", "value",  "limit",
                                    "allowed", "expected",  "reason", "list"};
  const json english = textsOf("en");
  for (const CatalogueFile& file : catalogueFiles()) {
    const std::string language(file.strLanguage);
    SCOPED_TRACE(language);
    const json texts = textsOf(language);
    for (const auto& [strCode, text] : texts.items()) {
      SCOPED_TRACE(strCode);
      const std::set<std::string> places = placesIn(text.get<std::string>());
      EXPECT_EQ(places, placesIn(english[strCode].get<std::string>()));
      for (const std::string& strPlace : places) EXPECT_THAT(known, Contains(strPlace));
    }
  }
}

class CatalogueOfARun : public ProgramTest {
 protected:
  /// The report on a form of the permit's deployment, with these words more.
  json run(const std::string& strForm, std::vector<std::string> words) const {
    const std::string strExample = VARNEL_SOURCE_DIR "/examples/permit";
    words.insert(words.begin(), {"--deployment", strExample, "--form", strForm, "--submit",
                                 "--validate", "--now", "2026-03-05T09:05:07"});
    const ProgramRun run = build(words);
    if (run.status > 1) throw std::runtime_error(run.err);
    return json::parse(run.out);
  }
  const std::string strFaulty_ = VARNEL_SOURCE_DIR "/examples/permit/faulty.form";
};

TEST_F(CatalogueOfARun, AddsATextToEachViolationAndChangesNothingElse) {
  const json plain = run(strFaulty_, {"--report"});
  ASSERT_FALSE(plain["report"]["violations"].empty());
  EXPECT_THAT(plain.dump(), Not(HasSubstr("\"text\":")));
  for (const CatalogueFile& file : catalogueFiles()) {
    const std::string language(file.strLanguage);
    SCOPED_TRACE(language);
    json worded = run(strFaulty_, {"--report", "--language", language});
    EXPECT_NE(worded["report"]["text"], "");
    worded["report"].erase("text");
    for (json& violation : worded["report"]["violations"]) {
      const auto strText = violation["text"].get<std::string>();
      EXPECT_THAT(strText, HasSubstr(violation["questionText"].get<std::string>()));
      for (const char* place : {"{place}", "{value}", "{limit}", "{allowed}", "{element}"}) {
        EXPECT_THAT(strText, Not(HasSubstr(place)));
      }
      violation.erase("text");
    }
    EXPECT_EQ(worded, plain);
  }
}

TEST_F(CatalogueOfARun, WordsWhatIsWrong) {
  const struct {
    const char *question, *row, *column, *english, *german;
  } cases[] = {
      {"eventname", "", "", "Name of the event: at least 3 characters are needed.",
       "Name of the event: Es müssen mindestens 3 Zeichen sein."},
      {"eventkind", "", "", "Kind of event: “fair” is none of concert, market, parade, sports.",
       "Kind of event: „fair“ ist nichts von concert, market, parade, sports."},
      {"days", "", "", "Number of days: “15” is above the most that is allowed, 14.",
       "Number of days: „15“ liegt über dem größten erlaubten Wert 14."},
      {"visitors", "", "", "Visitors expected: “many” is not a whole number from 1 on.",
       "Visitors expected: „many“ ist keine ganze Zahl ab 1."},
      {"organiser", "", "", "Organiser: an answer is missing.", "Organiser: Eine Antwort fehlt."},
      {"closures", "2", "day", "Streets to be closed, row 2, On: “soon” is not a date.",
       "Streets to be closed, Zeile 2, On: „soon“ ist kein Datum."},
      {"closures", "3", "day", "Streets to be closed, row 3, On: an answer is needed.",
       "Streets to be closed, Zeile 3, On: Eine Antwort ist nötig."},
  };
  const json english = run(strFaulty_, {"--report", "--language", "en"});
  const json german = run(strFaulty_, {"--report", "--language", "de"});
  EXPECT_EQ(english["report"]["text"], "The message does not keep to its schema.");
  EXPECT_EQ(german["report"]["text"], "Die Nachricht entspricht nicht ihrem Schema.");
  const auto textAt = [](const json& result, const auto& c) {
    for (const json& violation : result["report"]["violations"]) {
      if (violation["questionId"] == c.question && violation["rowIndex"] == c.row &&
          violation["columnId"] == c.column) {
        return violation["text"].template get<std::string>();
      }
    }
    return std::string("(no violation)");
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.question);
    EXPECT_EQ(textAt(english, c), c.english);
    EXPECT_EQ(textAt(german, c), c.german);
  }
}

TEST(Catalogue, WordsAViolationByItsCauseAndInTheSingular) {
  SchemaViolation violation;
  violation.questionId = "q";
  violation.questionText = "Parcels";
  violation.path = "/m:r[1]/m:row[2]";
  violation.value = "12/9";
  const struct {
    ViolationKind kind;
    const char *facet, *limit, *cause, *english, *german;
  } cases[] = {
      {ViolationKind::identity, "", "", "duplicate", "“12/9” is there twice.",
       "„12/9“ kommt doppelt vor."},
      {ViolationKind::identity, "", "", "no-match", "“12/9” refers to something that is not there.",
       "„12/9“ verweist auf etwas, das nicht da ist."},
      {ViolationKind::identity, "", "", "many-matches", "“12/9” refers to several things.",
       "„12/9“ verweist auf mehreres."},
      {ViolationKind::identity, "", "", "incomplete",
       "an answer is missing by which this is told from others.",
       "Eine Antwort fehlt, an der man das von anderem unterscheidet."},
      {ViolationKind::identity, "", "", "", "it cannot be seen which value tells this from others.",
       "Es ist nicht zu erkennen, welcher Wert das von anderem unterscheidet."},
      {ViolationKind::unexpectedChild, "", "", "answer-missing", "an answer is missing.",
       "Eine Antwort fehlt."},
      {ViolationKind::missingChild, "", "", "answer-missing", "an answer is missing.",
       "Eine Antwort fehlt."},
      {ViolationKind::value, "maxLength", "1", "", "at most 1 character is allowed.",
       "Es darf höchstens 1 Zeichen sein."},
      {ViolationKind::value, "maxLength", "11", "", "at most 11 characters are allowed.",
       "Es dürfen höchstens 11 Zeichen sein."},
      {ViolationKind::value, "minLength", "1", "", "at least 1 character is needed.",
       "Es muss mindestens 1 Zeichen sein."},
      {ViolationKind::value, "fractionDigits", "1", "",
       "“12/9” has more than 1 digit behind the point.", "„12/9“ hat mehr als 1 Nachkommastelle."},
      {ViolationKind::value, "maxInclusive", "1", "",
       "“12/9” is above the most that is allowed, 1.",
       "„12/9“ liegt über dem größten erlaubten Wert 1."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.english);
    violation.kind = c.kind;
    violation.facet = c.facet;
    violation.limit = c.limit;
    violation.cause = c.cause;
    const std::string strPlace = "Parcels: ";
    EXPECT_EQ(::Catalogue::of("en").text(violation), strPlace + c.english);
    EXPECT_EQ(::Catalogue::of("de").text(violation), strPlace + c.german);
  }
}

TEST_F(CatalogueOfARun, WordsALossWithLabelAndId) {
  write("objects.xml",
        "<prtobjcts><prtobjct id='name' objecttype='field' type='text' dynamic='false'/>"
        "<prtobjct id='t' objecttype='table' type='dynatable' dynamic='false' tablelabel='Rows'>"
        "<column id='a' columnlabel='Colour'/></prtobjct><hdnflds/></prtobjcts>");
  write("mapper.xml",
        "<message><messageitem id='name' toschema='True'/>"
        "<messageitem id='t' type='dynatable' toschema='false'/></message>");
  write("answers.form",
        "name=Ada&name_hiddenName=Your+name&t_rowCount=1&t___a_2=red&t___b_1=x&shoe=42");
  const struct {
    const char* language;
    std::vector<std::string> texts;
  } cases[] = {
      {"en",
       {"Your name (name): the word that should send it is not exactly true.",
        "shoe: no object of the form asks for it."}},
      {"de",
       {"Your name (name): Das Wort, das sie senden soll, ist nicht genau true.",
        "shoe: Kein Objekt des Formulars fragt danach."}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.language);
    const json result = json::parse(buildDeployment({"--form", "answers.form", "--submit",
                                                     "--report", "--language", c.language})
                                        .out);
    std::vector<std::string> texts;
    for (const json& loss : result["report"]["losses"]) {
      texts.push_back(loss["text"].get<std::string>());
    }
    EXPECT_EQ(texts, c.texts);
  }
  write("mapper.xml", "<message><messageitem id='name' toschema='false'/></message>");
  const json result = json::parse(
      buildDeployment({"--form", "answers.form", "--submit", "--report", "--language", "en"}).out);
  EXPECT_EQ(result["report"]["losses"][0]["text"],
            "Rows (t), row 1, b: the table has no such column.");
  EXPECT_EQ(result["report"]["losses"][1]["text"],
            "Rows (t), row 2, Colour (a): its row is above the submitted row count.");
}

TEST_F(CatalogueOfARun, TakesWhatWasAnsweredAsItIs) {
  write("one.form", "eventkind=%7Blimit%7D+%7Bnone+%7D&closures_rowCount=3&channel=web");
  const json result = run(directory_.at("one.form"), {"--report", "--language", "en"});
  EXPECT_THAT(result["report"].dump(), HasSubstr("Kind of event: “{limit} {none }” is none of"));
}

TEST_F(CatalogueOfARun, NeedsALanguageThatThereIs) {
  EXPECT_TRUE(
      CouldNotRun(build({"--report", "--language", "fr"}), "--language: \"fr\" is none of de, en"));
  // Without a report there is nothing to word.
  const json result = run(strFaulty_, {"--language", "de"});
  EXPECT_FALSE(result.contains("report"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
