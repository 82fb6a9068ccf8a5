#include <nlohmann/json.hpp>
#include <regex>
#include <thread>
#include <utility>

#include "apps/host/Host.h"
#include "host/Token.h"
#include "interface/BuildXML.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Json = nlohmann::json;

/// From filling in to the receipt.
class Cycle : public HostTest {
 protected:
  Host host_{words({"--deliver", "directory:" + inbox().string()})};
};

std::size_t count(const HttpAnswer& page, const std::string& strPattern) {
  const std::regex pattern(strPattern);
  return static_cast<std::size_t>(std::distance(
      std::sregex_iterator(page.body.begin(), page.body.end(), pattern), std::sregex_iterator()));
}

std::string inputOf(const HttpAnswer& page, const std::string& strName) {
  return partOf(page, "name=\"" + strName + '"', ">");
}

/// Answers that name an attribute's value where it would leave it.
const char* const kHostile = "\"><script>alert('x')</script>&amp;";

TEST_F(Cycle, BeginsWithAnEmptyPageThatAsksEveryQuestion) {
  const HttpAnswer page = host_.get("/forms/inspection");
  EXPECT_EQ(page.status, 200);
  const Document objList = Document::create();
  ASSERT_TRUE(objList.load((deployment() / "object-list.xml").string()));
  const std::optional<NodeList> colFields = objList.selectNodes("//prtobjct[@objecttype='field']");
  ASSERT_GT(colFields->length(), 60U);
  for (const Node& objField : *colFields) {
    const std::string strId = *objField.getAttribute("id");
    EXPECT_NE(inputOf(page, strId), "") << strId;
    EXPECT_TRUE(page.shows("id=\"q-" + strId + '"')) << strId;
  }
  EXPECT_TRUE(page.shows("<option value=\"residential\">Dwellings</option>"));
  EXPECT_TRUE(page.shows("day.month.year, as 31.10.2026"));
  EXPECT_TRUE(page.shows("New, not saved yet"));
  EXPECT_FALSE(page.shows("value=\"submit\""));  // there is nothing yet that could be sent twice
  EXPECT_EQ(hiddenInputs(page.body)["areas_rowCount"], "6");
  EXPECT_EQ(hiddenInputs(page.body)["defects_rowCount"], "1");
}

TEST_F(Cycle, ParksAndOpensAgainWhatWasTyped) {
  Form answers = exampleForm("draft.form");
  answers["reporttitle"] = kHostile;
  answers["owneraddress"] = "\r\nsecond line\r\n\r\nfourth <line>";
  answers["basement"] = "on";
  const HttpAnswer page = host_.get("/forms/inspection");
  const HttpAnswer answer = host_.post("/forms/inspection", filledIn(page, answers, "park"));
  EXPECT_EQ(answer.status, 303);
  const std::string strPlace = answer.header("location");
  ASSERT_TRUE(std::regex_match(strPlace, std::regex("/parked/[0-9a-f]{32}"))) << strPlace;

  const HttpAnswer opened = host_.get(strPlace);
  EXPECT_EQ(opened.status, 200);
  EXPECT_TRUE(opened.shows("Saved, not sent yet"));
  EXPECT_TRUE(opened.shows("value=\"Havnehuset\""));
  EXPECT_TRUE(opened.shows("value=\"&quot;&gt;&lt;script&gt;alert('x')&lt;/script&gt;&amp;amp;\""));
  EXPECT_FALSE(opened.shows("<script>alert"));
  EXPECT_TRUE(opened.shows(">\n\r\nsecond line\r\n\r\nfourth &lt;line&gt;</textarea>"));
  EXPECT_NE(inputOf(opened, "basement").find("checked"), std::string::npos);
  EXPECT_EQ(inputOf(opened, "listed").find("checked"), std::string::npos);
  EXPECT_TRUE(opened.shows("<option value=\"\"></option><option value=\"low\">"));
}

TEST_F(Cycle, BeginsEachPostWithTheObjectListOfTheDeployment) {
  const std::string strPlace = parked(host_, exampleForm("complete.form"));
  const std::string strFirst = host_.get(strPlace + ".xml").body;
  for (int round = 0; round < 3; ++round) {
    const HttpAnswer page = host_.get(strPlace);
    ASSERT_EQ(host_.post(strPlace, filledIn(page, exampleForm("complete.form"), "park")).status,
              303);
  }
  EXPECT_EQ(host_.get(strPlace + ".xml").body, strFirst);
}

TEST_F(Cycle, AddsAndTakesAwayRows) {
  Form answers = exampleForm("draft.form");
  answers["meters_rowCount"] = "3";
  answers["meters___meter_1"] = "water";
  answers["meters___meter_2"] = "gas";
  answers["meters___reading_3"] = "17";
  for (const std::string& strPlace :
       {std::string("/forms/inspection"), parked(host_, exampleForm("draft.form"))}) {
    SCOPED_TRACE(strPlace);
    const HttpAnswer page = host_.get(strPlace);
    const HttpAnswer more = host_.post(strPlace, filledIn(page, answers, "add-row:meters"));
    EXPECT_EQ(more.status, 200);
    EXPECT_EQ(hiddenInputs(more.body)["meters_rowCount"], "4");
    EXPECT_NE(inputOf(more, "meters___meter_4"), "");
    EXPECT_TRUE(more.shows("name=\"meters___meter_2\" value=\"gas\""));
    EXPECT_TRUE(more.shows("value=\"Havnehuset\""));

    const HttpAnswer less = host_.post(strPlace, filledIn(page, answers, "remove-row:meters:1"));
    EXPECT_EQ(less.status, 200);
    EXPECT_EQ(hiddenInputs(less.body)["meters_rowCount"], "2");
    EXPECT_TRUE(less.shows("name=\"meters___meter_1\" value=\"gas\""));
    EXPECT_TRUE(less.shows("name=\"meters___reading_2\" value=\"17\""));
    EXPECT_EQ(inputOf(less, "meters___meter_3"), "");
    EXPECT_EQ(hiddenInputs(less.body)["_version"], hiddenInputs(page.body)["_version"]);

    for (const char* const strButton :
         {"add-row:areas", "add-row:nothing", "remove-row:meters:4", "remove-row:meters:0",
          "remove-row:meters", "remove-row:"}) {
      EXPECT_EQ(host_.post(strPlace, filledIn(page, answers, strButton)).status, 422) << strButton;
    }
  }
}

TEST_F(Cycle, KeepsTheRowsThatTheParkedFormDoesNotTell) {
  const struct {
    const char *says, *count, *meter;
    int shown;
  } cases[] = {
      {"rows that are all blank", "3", "", 3},
      {"a single blank row, with which the table itself is not parked", "1", "", 1},
      {"no rows at all", "0", "", 0},
      {"a blank row behind one that is filled in", "2", "water", 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Form answers = exampleForm("draft.form");
    answers["meters_rowCount"] = c.count;
    if (*c.meter != '\0') answers["meters___meter_1"] = c.meter;
    const HttpAnswer page = host_.get(parked(host_, answers));
    EXPECT_EQ(hiddenInputs(page.body)["meters_rowCount"], c.count);
    EXPECT_EQ(count(page, "name=\"meters___meter_"), static_cast<std::size_t>(c.shown));
    EXPECT_TRUE(page.shows("value=\"add-row:meters\""));
    EXPECT_TRUE(page.shows("Service shaft"));  // a row of the grid, by its label
  }
}

class Grid : public HostTest {};

TEST_F(Grid, KeepsTheAnswersOfARowWhoseIdBeginsWithAZero) {
  replaceIn("object-list.xml", "<row id=\"5\"", "<row id=\"05\"");
  const Host host(words());
  Form answers = exampleForm("complete.form");
  answers["areas___remark_5"] = "Dry";
  const std::string strPlace = parked(host, answers);
  const HttpAnswer opened = host.get(strPlace);
  EXPECT_TRUE(opened.shows("name=\"areas___remark_5\" value=\"Dry\""));
  // Who saves or sends what is shown meets nobody else's answers.
  for (const char* const button : {"park", "submit"}) {
    EXPECT_EQ(host.post(strPlace, filledIn(opened, answers, button)).status, 303) << button;
  }
}

/// The faulty form's mistakes, in the order of the page. `officeid` is the host's to give.
constexpr const char* kMistakes[] = {"casenumber",
                                     "inspectionkind",
                                     "reporttitle",
                                     "buildingname",
                                     "postcode",
                                     "town",
                                     "yearbuilt",
                                     "storeys",
                                     "floorarea",
                                     "ownername",
                                     "officephone",
                                     "owneremail",
                                     "inspectiondate",
                                     "visitstart",
                                     "arrivaltime",
                                     "weather",
                                     "temperature",
                                     "inspectornumber",
                                     "heatingkind",
                                     "smokedetectors",
                                     "areas-5-remark",
                                     "defects-1-severity",
                                     "defects-1-found",
                                     "defects-1-duration",  // computed from the one before
                                     "defects-2-repairby",
                                     "defects-2-duration",  // likewise
                                     "defects-3-found",
                                     "meters-1-reading",
                                     "samples",
                                     "grade",
                                     "summary",
                                     "measures",
                                     "followupdate",
                                     "fee"};

std::vector<std::string> linksOfSummary(const HttpAnswer& page) {
  static const std::regex kLink("<a href=\"#q-([^\"]*)\">");
  std::vector<std::string> links;
  for (std::sregex_iterator each(page.body.begin(), page.body.end(), kLink), end; each != end;
       ++each) {
    links.push_back((*each)[1]);
  }
  return links;
}

TEST_F(Cycle, RefusesMistakesBesideTheirInputs) {
  const std::string strPlace = parked(host_, exampleForm("draft.form"));
  const HttpAnswer page = host_.get(strPlace);
  const Form faulty = exampleForm("faulty.form");
  const HttpAnswer answer = host_.post(strPlace, filledIn(page, faulty, "submit"));
  EXPECT_EQ(answer.status, 422);
  EXPECT_TRUE(answer.shows("Saved, not sent: it has errors"));
  EXPECT_TRUE(answer.shows("There are 34 errors"));
  EXPECT_EQ(linksOfSummary(answer),
            std::vector<std::string>(std::begin(kMistakes), std::end(kMistakes)));
  for (const std::string strMistake : kMistakes) {
    SCOPED_TRACE(strMistake);
    const std::string strAnchor = "q-" + strMistake;
    const std::string strErrors =
        partOf(answer, "<p class=\"error\" id=\"" + strAnchor + "-error", "</p>");
    const std::regex message("Error: ");
    EXPECT_EQ(std::distance(std::sregex_iterator(strErrors.begin(), strErrors.end(), message), {}),
              1);
    const std::string strInput = partOf(answer, "id=\"" + strAnchor + '"', ">");
    EXPECT_NE(strInput.find("aria-describedby=\"" + strAnchor + "-error"), std::string::npos);
    const bool blnComputed = strMistake.ends_with("-duration");
    EXPECT_EQ(strInput.find("aria-invalid=\"true\"") == std::string::npos, blnComputed);
    EXPECT_EQ(strErrors.find("computed from other answers") != std::string::npos, blnComputed);
  }
  EXPECT_EQ(count(answer, "aria-invalid=\"true\""), 32U);
  EXPECT_NE(partOf(answer, "id=\"q-reporttitle-error\"", "</p>").find("At least 5 characters"),
            std::string::npos);
  EXPECT_NE(partOf(answer, "id=\"q-town-error\"", "</p>").find("An answer is missing."),
            std::string::npos);

  // What is typed stands there, also what is no choice, and is parked.
  for (const HttpAnswer& shown : {answer, host_.get(strPlace)}) {
    EXPECT_TRUE(shown.shows("value=\"31.02.2026\""));
    EXPECT_TRUE(shown.shows("<option value=\"hail\" selected>hail</option>"));
    EXPECT_TRUE(shown.shows("value=\"surprise\" checked"));
    EXPECT_TRUE(shown.shows("name=\"defects___repairby_2\" value=\"as soon as possible\""));
  }
  EXPECT_EQ(host_.get("/messages" + strPlace.substr(7)).status, 404);
}

/// The message has these answers in texts with labels, whose lengths the schema bounds.
TEST_F(Cycle, HintsAtTheLimitsThatErrorsTellOfAnswersInLongerTexts) {
  Form form = exampleForm("complete.form");
  const std::string strPlace = parked(host_, form);
  form["areas___remark_5"] = std::string(120, 'x');
  form["remarks"] = std::string(420, 'x');
  const HttpAnswer answer = host_.post(strPlace, filledIn(host_.get(strPlace), form, "submit"));
  EXPECT_EQ(answer.status, 422);
  for (const auto& [strAnchor, strLimit] :
       {std::pair<std::string, std::string>{"areas-5-remark", "180"}, {"remarks", "409"}}) {
    SCOPED_TRACE(strAnchor);
    const std::string strId = "id=\"q-" + strAnchor;
    EXPECT_NE(partOf(answer, strId + "-error\"", "</p>").find("At most " + strLimit + " char"),
              std::string::npos);
    EXPECT_NE(partOf(answer, strId + "-hint\"", "</p>").find(strLimit + " with "),
              std::string::npos);
  }
}

TEST_F(Cycle, RefusesWithTheComputedCellsThatWereSaved) {
  Form form = exampleForm("complete.form");
  form["town"] = "";
  const std::string strPlace = parked(host_, form);
  form["defects___repairby_1"] = "16.11.2025";
  const HttpAnswer answer = host_.post(strPlace, filledIn(host_.get(strPlace), form, "submit"));
  EXPECT_EQ(answer.status, 422);
  for (const HttpAnswer& shown : {answer, host_.get(strPlace)}) {
    EXPECT_TRUE(shown.shows("<output id=\"q-defects-1-duration\" class=\"computed\">33<"));
    EXPECT_TRUE(shown.shows("<output id=\"q-defects-4-duration\" class=\"computed\"><"));
  }
}

/// Posts a form from two connections at once.
std::vector<HttpAnswer> pressedTwice(const Host& host, const std::string& strPlace,
                                     const Form& form) {
  std::vector<HttpAnswer> answers(2);
  std::vector<std::jthread> presses;
  for (HttpAnswer& answer : answers) {
    presses.emplace_back([&] { answer = host.post(strPlace, form); });
  }
  presses.clear();
  return answers;
}

TEST_F(Cycle, ShowsTheMistakesHoweverOftenTheButtonIsPressed) {
  for (int lngRound = 0; lngRound < 5; ++lngRound) {
    const std::string strPlace = parked(host_, exampleForm("draft.form"));
    const Form faulty = filledIn(host_.get(strPlace), exampleForm("faulty.form"), "submit");
    for (const HttpAnswer& answer : pressedTwice(host_, strPlace, faulty)) {
      EXPECT_EQ(answer.status, 422);
      EXPECT_TRUE(answer.shows("There are 34 errors"));
    }
  }
}

TEST_F(Cycle, CountsWhatIsInTheStore) {
  constexpr int kRounds = 5;
  for (int lngRound = 0; lngRound < kRounds; ++lngRound) {
    const std::string strPlace = parked(host_, exampleForm("draft.form"));
    const Form complete = filledIn(host_.get(strPlace), exampleForm("complete.form"), "submit");
    for (const HttpAnswer& answer : pressedTwice(host_, strPlace, complete)) {
      EXPECT_EQ(answer.header("location"), "/messages" + strPlace.substr(7));
    }
  }
  const HttpAnswer metrics = host_.get("/metrics");
  EXPECT_TRUE(metrics.shows("varnel_forms_parked_total " + std::to_string(kRounds) + '\n'));
  EXPECT_TRUE(metrics.shows("varnel_forms_accepted_total " + std::to_string(kRounds) + '\n'));
}

TEST_F(Cycle, NamesTheRowAsThePageCountsIt) {
  Form answers = exampleForm("complete.form");
  answers["meters_rowCount"] = "3";
  for (const char* const row : {"1", "2", "3"}) {
    for (const char* const column : {"meter", "reading", "readon"}) {
      answers[std::string("meters___") + column + '_' + row] = "";
    }
  }
  answers["meters___meter_1"] = answers["meters___meter_3"] = "water";
  answers["meters___reading_1"] = "17";
  answers["meters___reading_3"] = "much";
  answers["meters___readon_1"] = answers["meters___readon_3"] = "12.01.2026";
  const std::string strPlace = parked(host_, answers);
  const HttpAnswer answer = host_.post(strPlace, filledIn(host_.get(strPlace), answers, "submit"));
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(linksOfSummary(answer), std::vector<std::string>{"meters-3-reading"});
}

/// The message would be valid, and would lack something that was answered.
TEST_F(Cycle, RefusesToSendWhatWouldLoseAnAnswer) {
  const struct {
    const char *says, *name, *value;
    std::vector<std::string> links;
    const char *text, *reason;
  } cases[] = {
      {"an answer to a question that is not asked",
       "oldquestion",
       "Kept?",
       {},
       "oldquestion: this is not asked any more, and the answer was not taken.",
       "unknown-question"},
      {"a cell of a column that the table does not have",
       "defects___colour_1",
       "red",
       {"defects-1"},
       "Defects, row 1, colour: this column is not there any more, and the answer was not taken.",
       "unknown-column"},
      {"a row that the grid does not have",
       "areas___remark_9",
       "damp",
       {"areas"},
       "Areas and their condition, row 9, Remark: this row was not taken. Please add it again.",
       "row-beyond-count"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Form answers = exampleForm("complete.form");
    const std::string strPlace = parked(host_, answers);
    answers[c.name] = c.value;
    const HttpAnswer answer =
        host_.post(strPlace, filledIn(host_.get(strPlace), answers, "submit"));
    EXPECT_EQ(answer.status, 422);
    EXPECT_TRUE(answer.shows("There is 1 error"));
    EXPECT_TRUE(answer.shows(c.text));
    EXPECT_EQ(linksOfSummary(answer), c.links);
    EXPECT_TRUE(answer.shows("Saved, not sent: it has errors"));
    EXPECT_EQ(host_.get("/messages" + strPlace.substr(7)).status, 404);
    EXPECT_NE(host_.log().find("\"event\":\"answer-lost\",\"form\":\"inspection\",\"id\":\"" +
                               digestOf(strPlace.substr(8)) + "\",\"reason\":\"" + c.reason),
              std::string::npos);
    EXPECT_EQ(host_.log().find("Kept?"), std::string::npos);

    // The page that came back asks what there is: what it sends loses nothing.
    EXPECT_EQ(host_.post(strPlace, filledIn(answer, exampleForm("complete.form"), "submit")).status,
              303);
  }
}

TEST_F(Cycle, AcceptsWhatWasMendedAndDeliversIt) {
  const std::string strPlace = parked(host_, exampleForm("draft.form"));
  const std::string strId = strPlace.substr(8);
  const HttpAnswer refused =
      host_.post(strPlace, filledIn(host_.get(strPlace), exampleForm("faulty.form"), "submit"));
  ASSERT_EQ(refused.status, 422);
  const HttpAnswer accepted =
      host_.post(strPlace, filledIn(refused, exampleForm("complete.form"), "submit"));
  EXPECT_EQ(accepted.status, 303);
  EXPECT_EQ(accepted.header("location"), "/messages/" + strId);

  const HttpAnswer message = host_.get("/messages/" + strId + ".xml");
  EXPECT_EQ(message.header("content-type"), "application/xml; charset=utf-8");
  EXPECT_TRUE(message.shows("<rpt:CaseNumber>NB-2025-00417</rpt:CaseNumber>"));
  EXPECT_TRUE(message.shows("<rpt:OfficeCode>NB-07</rpt:OfficeCode>"));
  EXPECT_TRUE(message.shows("Remarks: The lift"));
  ASSERT_TRUE(becomes([&] { return delivered() == std::vector{strId + ".xml"}; }));
  EXPECT_EQ(textOfFile(inbox() / (strId + ".xml")), message.body);

  ASSERT_TRUE(becomes([&] { return host_.get("/messages/" + strId).shows("delivered 20"); }));
  const HttpAnswer receipt = host_.get("/messages/" + strId);
  EXPECT_EQ(receipt.status, 200);
  EXPECT_TRUE(receipt.shows("Building inspection report"));
  EXPECT_TRUE(receipt.shows("One message of " + std::to_string(message.body.size()) + " bytes"));
  EXPECT_TRUE(receipt.shows(inbox().string()));
}

TEST_F(Cycle, SendsOnceHoweverOftenTheButtonIsPressed) {
  const std::string strPlace = parked(host_, exampleForm("complete.form"));
  const Form form = filledIn(host_.get(strPlace), exampleForm("complete.form"), "submit");
  for (int press = 0; press < 3; ++press) {
    const HttpAnswer answer = host_.post(strPlace, form);
    EXPECT_EQ(answer.status, 303);
    EXPECT_EQ(answer.header("location"), "/messages" + strPlace.substr(7));
  }
  ASSERT_TRUE(
      becomes([&] { return host_.get("/metrics").shows("varnel_messages_delivered_total 1"); }));
  EXPECT_EQ(delivered(), std::vector{strPlace.substr(8) + ".xml"});
  EXPECT_TRUE(host_.get("/metrics").shows("varnel_forms_accepted_total 1\n"));

  const HttpAnswer opened = host_.get(strPlace);
  EXPECT_TRUE(opened.shows("<fieldset class=\"all\" disabled>"));
  Form other = form;
  other["town"] = "Elsewhere";
  other["_action"] = "park";
  const HttpAnswer late = host_.post(strPlace, other);
  EXPECT_EQ(late.status, 409);
  EXPECT_TRUE(late.shows("sent and accepted before"));
  EXPECT_FALSE(host_.get(strPlace).shows("Elsewhere"));
}

TEST_F(Cycle, OverwritesNothingThatIsNewer) {
  const std::string strPlace = parked(host_, exampleForm("draft.form"));
  const HttpAnswer page = host_.get(strPlace);
  Form mine = exampleForm("draft.form");
  Form theirs = mine;
  mine["town"] = "Mine";
  theirs["town"] = "Theirs";
  theirs["urgency"] = "high";
  theirs["basement"] = "on";
  EXPECT_EQ(host_.post(strPlace, filledIn(page, theirs, "park")).status, 303);
  for (const char* const strButton : {"park", "submit"}) {
    SCOPED_TRACE(strButton);
    const HttpAnswer answer = host_.post(strPlace, filledIn(page, mine, strButton));
    EXPECT_EQ(answer.status, 409);
    EXPECT_TRUE(answer.shows("value=\"Mine\""));
    EXPECT_NE(partOf(answer, "id=\"q-town-stored\"", "</p>").find("Theirs"), std::string::npos);
    EXPECT_NE(partOf(answer, "id=\"q-urgency-stored\"", "</p>").find("High"), std::string::npos);
    EXPECT_NE(partOf(answer, "id=\"q-basement-stored\"", "</p>").find("ticked"), std::string::npos);
    EXPECT_TRUE(answer.shows("3 answers differ"));
    EXPECT_FALSE(host_.get(strPlace).shows("Mine"));
  }
  const HttpAnswer shown = host_.post(strPlace, filledIn(page, mine, "park"));
  EXPECT_EQ(host_.post(strPlace, filledIn(shown, mine, "park")).status, 303);
  EXPECT_TRUE(host_.get(strPlace).shows("value=\"Mine\""));
}

TEST_F(Cycle, ShowsTheRowsThatSomebodyElseSaved) {
  const std::string strPlace = parked(host_, exampleForm("draft.form"));
  const HttpAnswer page = host_.get(strPlace);
  Form theirs = exampleForm("draft.form");
  theirs["meters_rowCount"] = "3";
  theirs["meters___meter_3"] = "gas";
  EXPECT_EQ(host_.post(strPlace, filledIn(page, theirs, "park")).status, 303);
  Form mine = exampleForm("draft.form");
  mine["town"] = "Mine";
  const HttpAnswer answer = host_.post(strPlace, filledIn(page, mine, "park"));
  EXPECT_EQ(answer.status, 409);
  EXPECT_EQ(hiddenInputs(answer.body)["meters_rowCount"], "3");
  EXPECT_NE(partOf(answer, "id=\"q-meters-3-meter-stored\"", "</p>").find("gas"),
            std::string::npos);
  EXPECT_TRUE(answer.shows("3 answers differ"));  // the number of rows is one
}

TEST_F(Cycle, ShowsWhatWasSentToWhoComesTooLate) {
  const std::string strPlace = parked(host_, exampleForm("complete.form"));
  const HttpAnswer page = host_.get(strPlace);
  ASSERT_EQ(host_.post(strPlace, filledIn(page, exampleForm("complete.form"), "submit")).status,
            303);
  Form late = exampleForm("complete.form");
  late["town"] = "Elsewhere";
  const HttpAnswer answer = host_.post(strPlace, filledIn(page, late, "park"));
  EXPECT_EQ(answer.status, 409);
  EXPECT_TRUE(answer.shows("value=\"Elsewhere\""));
  const std::string strSent = partOf(answer, "id=\"q-town-stored\"", "</p>");
  EXPECT_NE(strSent.find("Sent: <q>" + exampleForm("complete.form")["town"] + "</q>"),
            std::string::npos);
  EXPECT_TRUE(answer.shows("what was sent is shown beside them"));
  EXPECT_TRUE(answer.shows("1 answer differs"));
}

TEST_F(Cycle, TakesTheSameAnswersTwiceForNoConflict) {
  const std::string strPlace = parked(host_, exampleForm("draft.form"));
  const HttpAnswer page = host_.get(strPlace);
  for (int press = 0; press < 2; ++press) {
    EXPECT_EQ(host_.post(strPlace, filledIn(page, exampleForm("complete.form"), "park")).status,
              303);
  }
  EXPECT_EQ(hiddenInputs(host_.get(strPlace).body)["_version"], "2");
  Form without = filledIn(page, exampleForm("draft.form"), "park");
  without.erase("_version");
  EXPECT_EQ(host_.post(strPlace, without).status, 409);
}

TEST_F(Cycle, AnswersInJsonToThoseWhoWantIt) {
  const Headers json{{"Accept", "application/json"}};
  const HttpAnswer page = host_.get("/forms/inspection");
  const HttpAnswer created =
      host_.post("/forms/inspection", filledIn(page, exampleForm("draft.form"), "park"), json);
  EXPECT_EQ(created.status, 303);
  const Json first = Json::parse(created.body);
  EXPECT_EQ(first["state"], "parked");
  EXPECT_TRUE(first["result"]["success"]);
  EXPECT_EQ(first["report"]["verdict"], "not-asked");
  const std::string strPlace = "/parked/" + first["id"].get<std::string>();
  EXPECT_EQ(created.header("location"), strPlace);

  // All that the next request needs is in the answer to the one before.
  Form form = exampleForm("faulty.form");
  form["_token"] = first["token"];
  form["_version"] = std::to_string(first["version"].get<int>());
  form["_action"] = "submit";
  const HttpAnswer refused = host_.post(strPlace, form, json);
  EXPECT_EQ(refused.status, 422);
  const Json second = Json::parse(refused.body);
  EXPECT_EQ(second["state"], "refused");
  EXPECT_EQ(second["result"]["errorName"], "SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED");
  EXPECT_EQ(second["result"]["userErrors"].size(), 29U);
  EXPECT_FALSE(second["result"].contains("report"));
  EXPECT_EQ(second["report"]["verdict"], "invalid");
  // One for each wrong element: three have the case number, two the staff number and the grade.
  EXPECT_EQ(second["report"]["violations"].size(), std::size(kMistakes) + 2 + 1 + 1);
  const Json& first_violation = second["report"]["violations"][0];
  EXPECT_EQ(first_violation["questionId"], "casenumber");
  EXPECT_EQ(first_violation["facet"], "pattern");
  EXPECT_EQ(second["report"]["losses"], Json::array());
  EXPECT_EQ(Json::parse(host_.get(strPlace, json).body)["report"], second["report"]);
  EXPECT_EQ(Json::parse(host_.get("/nowhere", json).body)["id"], nullptr);

  // What is on a page for people is a word here.
  EXPECT_EQ(Json::parse(host_.post(strPlace, form, json).body)["error"], nullptr);
  form["town"] = "Elsewhere";
  form["_action"] = "park";
  const HttpAnswer conflict = host_.post(strPlace, form, json);
  EXPECT_EQ(conflict.status, 409);
  EXPECT_EQ(Json::parse(conflict.body)["error"], "conflict");
}

TEST_F(Cycle, TellsAReceiptInJson) {
  const Headers json{{"Accept", "application/json"}};
  const std::string strPlace = parked(host_, exampleForm("complete.form"));
  const std::string strReceipt = "/messages" + strPlace.substr(7);
  EXPECT_EQ(host_.get(strReceipt, json).status, 404);
  const Form form = filledIn(host_.get(strPlace), exampleForm("complete.form"), "submit");
  ASSERT_EQ(host_.post(strPlace, form, json).status, 303);
  ASSERT_TRUE(becomes([&] { return host_.get(strReceipt).shows("delivered 20"); }));
  const Json told = Json::parse(host_.get(strReceipt, json).body);
  EXPECT_EQ(told["state"], "accepted");
  EXPECT_EQ(told["report"]["verdict"], "valid");
  EXPECT_EQ(told["target"], "directory:" + inbox().string());
  const std::regex moment("20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ");
  EXPECT_TRUE(std::regex_match(told["accepted"].get<std::string>(), moment));
  EXPECT_TRUE(std::regex_match(told["delivered"].get<std::string>(), moment));
}

TEST_F(Cycle, AnswersInJsonWhenItIsAmongTheKindsAskedFor) {
  const struct {
    const char* accept;
    bool blnJson;
  } cases[] = {
      {"application/json", true},
      {"Application/JSON", true},
      {"text/html;q=0.5, application/json ; q=0.9", true},
      {"text/html,\tapplication/json;q=0.05", true},
      {"application/json;q=1", true},
      {"application/json;q=0", false},
      {"text/html,application/json; q=0.000", false},
      {"application/jsonx", false},
      {"application/x-application/json", false},
      {"text/html,application/xhtml+xml,application/xml;q=0.9,*/*;q=0.8", false},
      {", ,;", false},
      {"", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.accept);
    for (const char* const strPath : {"/", "/forms/inspection", "/nowhere"}) {
      const HttpAnswer answer = host_.get(strPath, {{"Accept", c.accept}});
      EXPECT_EQ(answer.header("content-type").starts_with("application/json"), c.blnJson);
    }
  }
}

TEST_F(Cycle, ShowsNobodyTheAnswersOfOthers) {
  Form mine = exampleForm("draft.form");
  mine["town"] = "Mine alone";
  const std::string strMine = parked(host_, mine);
  const std::string strOther = parked(host_, exampleForm("draft.form"));
  EXPECT_NE(strMine, strOther);
  EXPECT_TRUE(host_.get(strMine).shows("Mine alone"));
  EXPECT_FALSE(host_.get(strOther).shows("Mine alone"));
  EXPECT_FALSE(host_.get("/").shows("Mine alone"));
  EXPECT_FALSE(host_.get("/").shows(strMine));
}

TEST_F(Cycle, LogsNoAnswers) {
  const std::string strPlace = parked(host_, exampleForm("draft.form"));
  const HttpAnswer refused =
      host_.post(strPlace, filledIn(host_.get(strPlace), exampleForm("faulty.form"), "submit"));
  host_.post(strPlace, filledIn(refused, exampleForm("complete.form"), "submit"));
  ASSERT_TRUE(becomes([&] { return host_.log().find("delivered") != std::string::npos; }));
  EXPECT_EQ(host_.stop(SIGTERM), 0);
  std::vector<std::string> events;
  std::istringstream lines(host_.log());
  for (std::string strLine; std::getline(lines, strLine);) {
    const Json line = Json::parse(strLine);
    events.push_back(line["event"]);
  }
  EXPECT_EQ(events, (std::vector<std::string>{"listening", "parked", "refused", "accepted",
                                              "delivered", "stopping", "stopped"}));
  for (const auto& form : {exampleForm("faulty.form"), exampleForm("complete.form")}) {
    for (const auto& [strName, strValue] : form) {
      if (strValue.size() > 6) {
        EXPECT_EQ(host_.log().find(strValue), std::string::npos) << strName;
      }
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
