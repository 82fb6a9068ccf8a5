#include <nlohmann/json.hpp>

#include "apps/host/Host.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Json = nlohmann::json;

/// Two who work on one form.
class Conflict : public HostTest {
 protected:
  Host host_{words()};
};

TEST_F(Conflict, ShowsTheRowsOfBothSides) {
  Form one = exampleForm("draft.form");
  one["meters_rowCount"] = "1";
  one["meters___meter_1"] = "water";
  Form two = one;
  two["meters_rowCount"] = "2";
  two["meters___meter_2"] = "gas";
  two["meters___reading_2"] = "4711";
  const struct {
    const char* says;
    Form theirs, mine;
    const char* count;
    const char* meter;  // what is shown beside the cells of row 2
    const char* reading;
  } cases[] = {
      {"a row that only the other one has", two, one, "2 rows, here 1", "gas", "4711"},
      {"a row that only the posted one has", one, two, "1 row, here 2", "no answer", "no answer"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strPlace = parked(host_, exampleForm("draft.form"));
    const HttpAnswer page = host_.get(strPlace);
    EXPECT_EQ(host_.post(strPlace, filledIn(page, c.theirs, "park")).status, 303);
    const HttpAnswer answer = host_.post(strPlace, filledIn(page, c.mine, "park"));
    EXPECT_EQ(answer.status, 409);
    EXPECT_EQ(hiddenInputs(answer.body)["meters_rowCount"], "2");
    EXPECT_NE(partOf(answer, "id=\"q-meters-stored\"", "</p>").find(c.count), std::string::npos);
    EXPECT_NE(partOf(answer, "id=\"q-meters-2-meter-stored\"", "</p>").find(c.meter),
              std::string::npos);
    EXPECT_NE(partOf(answer, "id=\"q-meters-2-reading-stored\"", "</p>").find(c.reading),
              std::string::npos);
    EXPECT_TRUE(answer.shows("3 answers differ"));
    for (const char* const anchor : {"meters", "meters-2-meter", "meters-2-reading"}) {
      EXPECT_TRUE(answer.shows(std::string("<a href=\"#q-") + anchor + "\">")) << anchor;
    }
  }
}

TEST_F(Conflict, GivesNobodyANewerVersionWhoDidNotSeeIt) {
  const Headers json{{"Accept", "application/json"}};
  const std::string strPlace = parked(host_, exampleForm("draft.form"));
  const HttpAnswer page = host_.get(strPlace);
  Form theirs = exampleForm("draft.form");
  theirs["town"] = "Theirs";
  EXPECT_EQ(host_.post(strPlace, filledIn(page, theirs, "park")).status, 303);
  Form mine = exampleForm("draft.form");
  mine["town"] = "Mine";
  for (const char* const strButton : {"park", "submit", "add-row:meters"}) {
    SCOPED_TRACE(strButton);
    const bool blnRow = std::string_view(strButton).starts_with("add-row");
    const HttpAnswer answer = host_.post(strPlace, filledIn(page, mine, strButton), json);
    EXPECT_EQ(answer.status, blnRow ? 200 : 409);
    const Json told = Json::parse(answer.body);
    EXPECT_EQ(told.value("error", ""), blnRow ? "" : "conflict");
    EXPECT_EQ(told["version"], 1);
    // A client that goes on with what it was told overwrites nothing.
    mine["_token"] = told["token"];
    mine["_version"] = std::to_string(told["version"].get<int>());
  }
  EXPECT_EQ(host_.post(strPlace, filledIn(page, mine, "park"), json).status, 409);
  EXPECT_TRUE(host_.get(strPlace).shows("value=\"Theirs\""));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
