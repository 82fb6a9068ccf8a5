#include <atomic>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <system_error>
#include <thread>

#include "apps/host/Host.h"
#include "host/Store.h"
#include "host/Token.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// What people with bad luck or bad intent send. Whatever it is, the next one is served.
class BadInput : public HostTest {
 protected:
  ~BadInput() override { EXPECT_EQ(host_.get("/forms/inspection").status, 200); }

  std::string token(const std::string& strPlace) const {
    return hiddenInputs(host_.get(strPlace).body)["_token"];
  }

  Host host_{words({"--max-rows", "400"})};
  const std::string strPlace_ = parked(host_, exampleForm("draft.form"));
};

TEST_F(BadInput, IsToldByStatusAndPage) {
  const std::string strToken = "_token=" + token("/forms/inspection");
  const std::string strForm = "application/x-www-form-urlencoded";
  std::string strManyFields = strToken;
  for (int field = 0; field < 100'000; ++field) strManyFields += "&f=1";
  const std::string strUnknown(32, '0');
  const struct {
    const char* says;
    const char* method;
    std::string path;
    std::string type;
    std::string body;
    int status;
  } cases[] = {
      {"no type", "POST", "/forms/inspection", "", strToken, 415},
      {"another type", "POST", "/forms/inspection", "multipart/form-data; boundary=x", "--x", 415},
      {"another character set", "POST", "/forms/inspection", strForm + "; charset=utf-16", strToken,
       415},
      {"a type that only begins alike", "POST", "/forms/inspection", strForm + "x", strToken, 415},
      {"a character set that only begins like UTF-8", "POST", "/forms/inspection",
       strForm + "; charset=utf-8x", strToken, 415},
      {"one of two character sets", "POST", "/forms/inspection",
       strForm + ";charset=utf-8;charset=latin1", strToken, 415},
      {"the type with its character set", "POST", "/forms/inspection",
       strForm + "; charset=\"UTF-8\"", strToken, 303},
      {"3 MB", "POST", "/forms/inspection", strForm, std::string(3'000'000, 'a'), 413},
      {"100,000 fields", "POST", "/forms/inspection", strForm, strManyFields, 422},
      {"too many rows by their count", "POST", "/forms/inspection", strForm,
       strToken + "&defects_rowCount=401", 422},
      {"a row count beyond all numbers", "POST", "/forms/inspection", strForm,
       strToken + "&defects_rowCount=99999999999999999999", 422},
      {"too many rows by a cell", "POST", "/forms/inspection", strForm,
       strToken + "&defects___place_401=x", 422},
      {"more than a page shows", "POST", "/forms/inspection", strForm,
       strToken + "&defects___place_502=x", 422},
      {"far more", "POST", "/forms/inspection", strForm, strToken + "&defects___place_99999=x",
       422},
      {"a row beyond all numbers", "POST", "/forms/inspection", strForm,
       strToken + "&defects___place_99999999999999999999=x", 422},
      {"rows that are none", "POST", "/forms/inspection", strForm,
       strToken + "&defects___place_401x=x&defects___place_-99999999999999999999=x", 303},
      {"a row count that is none", "POST", "/forms/inspection", strForm,
       strToken + "&defects_rowCount=-3&meters_rowCount=abc", 303},
      {"nothing but a token", "POST", "/forms/inspection", strForm, strToken, 303},
      {"no body", "POST", "/forms/inspection", strForm, "", 403},
      {"broken escapes", "POST", "/forms/inspection", strForm, strToken + "&town=%zz%4%&%=%", 303},
      {"what is no UTF-8", "POST", "/forms/inspection", strForm, strToken + "&town=%ff\xC0\x80",
       303},
      {"NUL and other controls", "POST", "/forms/inspection", strForm,
       strToken + "&town=a%00b%01c%EF%BF%BF&%00=1", 303},
      {"repeated names", "POST", "/forms/inspection", strForm, strToken + "&town=a&town=b", 303},
      {"an action that is none", "POST", strPlace_, strForm,
       "_token=" + token(strPlace_) + "&_version=1&_action=burn", 422},
      {"an id that does not exist", "GET", "/parked/" + strUnknown, "", "", 404},
      {"an id that cannot exist", "GET", "/parked/x", "", "", 404},
      {"an id in capitals", "GET", "/parked/" + std::string(32, 'A'), "", "", 404},
      {"an id with more behind it", "GET", "/parked/" + strUnknown + "/x", "", "", 404},
      {"a receipt of a form that was not accepted", "GET", "/messages" + strPlace_.substr(7), "",
       "", 404},
      {"the message of such a form", "GET", "/messages" + strPlace_.substr(7) + ".xml", "", "",
       404},
      {"a deployment that does not exist", "GET", "/forms/other", "", "", 404},
      {"a way out of the folder", "GET", "/static/../Embedded.cpp", "", "", 404},
      {"the stylesheet of the pages", "GET", "/static/page.xsl", "", "", 404},
      {"a post to a form that does not exist", "POST", "/parked/" + strUnknown, strForm, "a=b",
       404},
      {"a post to a receipt", "POST", "/messages/" + strUnknown, strForm, "a=b", 405},
      {"a post to the home page", "POST", "/", strForm, "a=b", 405},
      {"a method that does not fit", "DELETE", strPlace_, "", "", 405},
      {"a method that changes files", "PUT", strPlace_ + ".xml", "", "x", 405},
      {"a method that nobody knows", "BREW", "/", "", "", 405},
      {"an address without a beginning", "GET", "parked", "", "", 404},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Headers headers;
    if (!c.type.empty()) headers.emplace_back("Content-Type", c.type);
    const HttpAnswer answer = host_.request(c.method, c.path, headers, c.body);
    EXPECT_EQ(answer.status, c.status);
    EXPECT_EQ(answer.shows("<h1>"), c.status >= 400);
    EXPECT_EQ(answer.header("allow").starts_with("GET"), c.status == 405);
    if (c.status >= 400 && c.status != 403) {
      EXPECT_NE(host_.log().find("\"status\":" + std::to_string(c.status)), std::string::npos);
    }
    EXPECT_NE(answer.header("content-security-policy").find("default-src 'none'"),
              std::string::npos);
    if (c.status == 303 && std::string_view(c.method) == "POST") {
      EXPECT_EQ(host_.get(answer.header("location")).status, 200);
    }
  }
}

TEST_F(BadInput, OfTooManyRowsLosesNoAnswer) {
  Form fullest = exampleForm("draft.form");
  fullest["town"] = "Typed";
  fullest["defects_rowCount"] = "400";
  fullest["defects___place_400"] = "The last row";
  Form larger = fullest;
  larger["defects_rowCount"] = "403";
  larger["defects___place_403"] = "Beyond the limit";
  Form manyFields = fullest;
  for (int row = 1; row <= 400; ++row) {
    manyFields["defects___place_" + std::to_string(row)] = std::to_string(row);
  }
  const struct {
    const char* says;
    const Form& form;
    const char* button;
    const char* shown;
  } cases[] = {
      {"a row more than there may be", fullest, "add-row:defects", "\"The last row\""},
      {"more rows than there may be", larger, "park", "\"Beyond the limit\""},
      {"likewise, to be sent", larger, "submit", "\"Beyond the limit\""},
      {"more fields than there may be", manyFields, "park",
       "name=\"defects___place_399\" value=\"399\""},
  };
  for (const std::string& strPlace : {std::string("/forms/inspection"), strPlace_}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(strPlace + ": " + c.says);
      const HttpAnswer answer =
          host_.post(strPlace, filledIn(host_.get(strPlace), c.form, c.button));
      EXPECT_EQ(answer.status, 422);
      EXPECT_TRUE(answer.shows("as many rows as can be taken, or more"));
      EXPECT_TRUE(answer.shows("value=\"Typed\""));
      EXPECT_TRUE(answer.shows(c.shown));
      EXPECT_FALSE(host_.get(strPlace_).shows("Typed"));
    }
  }

  // A row can be taken away all the same.
  larger["defects_rowCount"] = "401";
  larger.erase("defects___place_403");
  larger["defects___place_401"] = "Beyond the limit";
  const HttpAnswer answer =
      host_.post(strPlace_, filledIn(host_.get(strPlace_), larger, "remove-row:defects:1"));
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(hiddenInputs(answer.body)["defects_rowCount"], "400");
  EXPECT_TRUE(answer.shows("name=\"defects___place_399\" value=\"The last row\""));
  EXPECT_TRUE(answer.shows("name=\"defects___place_400\" value=\"Beyond the limit\""));

  // Not where the page has no place for an answer.
  for (const char* const name : {"defects___place_501", "defects___place_99999999999999999999"}) {
    Form farLarger = larger;
    farLarger[name] = "Far beyond the limit";
    for (const char* const button : {"remove-row:defects:1", "remove-row:meters:1"}) {
      SCOPED_TRACE(std::string(name) + ", " + button);
      const HttpAnswer refused =
          host_.post(strPlace_, filledIn(host_.get(strPlace_), farLarger, button));
      EXPECT_EQ(refused.status, 422);
      EXPECT_TRUE(refused.shows("as many rows as can be taken, or more"));
      EXPECT_FALSE(host_.get(strPlace_).shows("Typed"));
    }
  }
}

TEST_F(BadInput, OfARowThatAGridLacksIsToldWhenItIsSent) {
  Form form = exampleForm("complete.form");
  form["areas___remark_401"] = "x";
  const auto post = [&](const char* button) {
    return host_.post(strPlace_, filledIn(host_.get(strPlace_), form, button),
                      {{"Accept", "application/json"}});
  };
  EXPECT_EQ(post("park").status, 303);
  const HttpAnswer answer = post("submit");
  EXPECT_EQ(answer.status, 422);
  const auto losses = nlohmann::json::parse(answer.body)["report"]["losses"];
  ASSERT_EQ(losses.size(), 1);
  EXPECT_EQ(losses[0]["reason"], "row-beyond-count");
}

TEST_F(BadInput, OfCharactersThatXmlLacksIsShownByTheirReplacement) {
  const HttpAnswer answer = host_.request(
      "POST", "/forms/inspection", {{"Content-Type", "application/x-www-form-urlencoded"}},
      "_token=" + token("/forms/inspection") +
          "&town=a%00b%1Fc%FFd%EF%BF%BEe%09f&street=a&street=b");
  const HttpAnswer page = host_.get(answer.header("location"));
  const std::string strMark = "\xEF\xBF\xBD";
  EXPECT_TRUE(
      page.shows("value=\"a" + strMark + 'b' + strMark + 'c' + strMark + 'd' + strMark + "e"));
  EXPECT_TRUE(page.shows("value=\"a, b\""));
}

/// It may be kept as far as it came; what is sent must be what was typed.
TEST_F(BadInput, OfCharactersThatDidNotArriveIsNotSent) {
  const struct {
    const char *says, *name;
    std::string value;
    const char* link;
  } cases[] = {
      {"another character set", "ownername", "J\xF8rgen", "#q-ownername"},
      {"a byte that UTF-8 has not", "areas___remark_5", "Dry\xFF", "#q-areas-5-remark"},
      {"a control character", "remarks", "a\x01", "#q-remarks"},
      {"NUL", "weather", std::string("clear\0", 6), "#q-weather"},
      {"the mark, as a page shows it", "ownername", "J\xEF\xBF\xBDrgen", "#q-ownername"},
      {"a name that the page has not", "a\xFF", "1\xFF", ""},
  };
  const Form complete = exampleForm("complete.form");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strPlace = parked(host_, complete);
    const HttpAnswer page = host_.get(strPlace);
    EXPECT_FALSE(page.shows("did not arrive"));
    Form form = filledIn(page, complete, "submit");
    form[c.name] = c.value;
    const HttpAnswer answer = host_.post(strPlace, form);
    EXPECT_EQ(answer.status, 422);
    EXPECT_TRUE(answer.shows("Some characters did not arrive"));
    EXPECT_TRUE(answer.shows("A character did not arrive"));
    EXPECT_TRUE(answer.shows("href=\"" + std::string(c.link) + '"') || *c.link == '\0');
    EXPECT_EQ(host_.get("/messages" + strPlace.substr(7)).status, 404);
    const HttpAnswer json =
        host_.post(strPlace, filledIn(answer, form, "submit"), {{"Accept", "application/json"}});
    EXPECT_EQ(nlohmann::json::parse(json.body)["error"], "characters");
    EXPECT_EQ(host_.post(strPlace, filledIn(host_.get(strPlace), complete, "submit")).status, 303);
  }

  // Such a form can be kept. When it is opened it tells so, and it is not sent as it stands there.
  Form draft = complete;
  draft["ownername"] = "J\xF8rgen";
  const Headers json{{"Accept", "application/json"}};
  const HttpAnswer kept = host_.post("/forms/inspection",
                                     filledIn(host_.get("/forms/inspection"), draft, "park"), json);
  EXPECT_EQ(kept.status, 303);
  EXPECT_FALSE(nlohmann::json::parse(kept.body).contains("error"));
  const std::string strPlace = kept.header("location");
  EXPECT_EQ(nlohmann::json::parse(host_.get(strPlace, json).body)["error"], "characters");
  const HttpAnswer opened = host_.get(strPlace);
  EXPECT_TRUE(opened.shows("Some characters did not arrive"));
  EXPECT_TRUE(opened.shows("value=\"J\xEF\xBF\xBDrgen\""));
  draft["ownername"] = "J\xEF\xBF\xBDrgen";
  EXPECT_EQ(host_.post(strPlace, filledIn(opened, draft, "submit")).status, 422);
}

/// Which can only have happened before this was looked at.
TEST_F(BadInput, OfCharactersThatDidNotArriveIsNotAskedForOnceItWasAccepted) {
  Form draft = exampleForm("complete.form");
  draft["ownername"] = "J\xF8rgen";
  const std::string strPlace = parked(host_, draft);
  {
    Store store("sqlite:" + directory_.at("store.sqlite"), 1);
    StoredForm form = store.find(strPlace.substr(8)).value();
    form.strState = "accepted";
    ++form.lngVersion;
    ASSERT_TRUE(store.accept(form, "<m/>", ""));
  }
  const HttpAnswer opened = host_.get(strPlace);
  EXPECT_TRUE(opened.shows("value=\"J\xEF\xBF\xBDrgen\""));
  EXPECT_FALSE(opened.shows("did not arrive"));
}

TEST_F(BadInput, OfTooManyCellsLosesNoAnswer) {
  const Host host(words({"--max-cells", "40"}));
  Form form = exampleForm("draft.form");
  form["town"] = "Typed";
  form["defects_rowCount"] = "1";
  form["meters_rowCount"] = "8";
  const auto post = [&](const char* button) {
    return host.post("/forms/inspection", filledIn(host.get("/forms/inspection"), form, button));
  };
  EXPECT_EQ(post("park").status, 303);
  form["meters_rowCount"] = "15";
  for (const char* const button : {"park", "add-row:meters"}) {
    const HttpAnswer answer = post(button);
    EXPECT_EQ(answer.status, 422);
    EXPECT_TRUE(answer.shows("as many rows as can be taken, or more"));
    EXPECT_TRUE(answer.shows("value=\"Typed\""));
  }
  EXPECT_EQ(post("remove-row:meters:9").status, 200);
  form["meters_rowCount"] = "500";
  const HttpAnswer answer = post("remove-row:meters:9");
  EXPECT_EQ(answer.status, 422);
  EXPECT_LT(answer.body.size(), 5000u);
}

/// A bound of cells is for tables together; only one that was asked for holds for a single table.
TEST_F(BadInput, OfOneTableWithAllTheRowsThatThereMayBeIsTaken) {
  const struct {
    const char* says;
    std::vector<std::string> words;
    const char *defects, *meters;  // rows of 9 and of 3 cells
    int status;
  } cases[] = {
      {"one table", {}, "2000", "0", 303},
      {"as many rows as there may be", {"--max-rows", "2000"}, "2000", "0", 303},
      {"a bound that was asked for", {"--max-cells", "17999"}, "2000", "0", 422},
      {"likewise, kept to", {"--max-cells", "18000"}, "2000", "0", 303},
      {"two tables with the cells of one", {"--max-rows", "1200"}, "1000", "600", 303},
      {"two tables with more", {"--max-rows", "1200"}, "1000", "601", 422},
      {"10,000 cells", {"--max-rows", "1000"}, "1000", "333", 303},
      {"more than 10,000", {"--max-rows", "1000"}, "1000", "334", 422},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Host host(words(c.words));
    Form form{{"defects_rowCount", c.defects}, {"meters_rowCount", c.meters}};
    form["_token"] = hiddenInputs(host.get("/forms/inspection").body)["_token"];
    const HttpAnswer answer =
        host.post("/forms/inspection", form, {{"Accept", "application/json"}});
    EXPECT_EQ(answer.status, c.status);
  }
}

TEST_F(BadInput, WithVeryManyErrorsIsToldEachAtItsPlaceAndInTheSummary) {
  constexpr int kRows = 300;
  const Host host(words());
  Form form = exampleForm("complete.form");
  form["ghost"] = "An answer";  // to what the page does not ask
  form["meters_rowCount"] = std::to_string(kRows);
  for (int row = 1; row <= kRows; ++row) {
    const std::string strRow = std::to_string(row);
    form["meters___meter_" + strRow] = "water";
    form["meters___reading_" + strRow] = "much";
    form["meters___readon_" + strRow] = "12.01.2026";
  }
  const std::string strPlace = parked(host, form);
  const HttpAnswer answer = host.post(strPlace, filledIn(host.get(strPlace), form, "submit"));
  EXPECT_EQ(answer.status, 422);
  EXPECT_TRUE(answer.shows("There are 301 errors"));
  const std::string strSummary = partOf(answer, "id=\"summary\"", "</div>");
  for (int row = 1; row <= kRows; ++row) {
    const std::string strCell = "q-meters-" + std::to_string(row) + "-reading";
    EXPECT_NE(strSummary.find("\"#" + strCell + '"'), std::string::npos) << strCell;
    EXPECT_TRUE(answer.shows("id=\"" + strCell + "-error\"")) << strCell;
  }
  EXPECT_NE(strSummary.find("<li>ghost: this is not asked any more"), std::string::npos);
}

TEST_F(BadInput, WithATokenThatIsNotGoodLosesNoAnswer) {
  const HttpAnswer page = host_.get(strPlace_);
  Form form = filledIn(page, exampleForm("complete.form"), "submit");
  const std::string strGood = form["_token"];
  std::string strForged = strGood;
  strForged.back() = strForged.back() == '0' ? '1' : '0';
  for (const std::string& strToken :
       {strForged, std::string(), std::string("1.2"), std::string("."), token("/forms/inspection"),
        strGood + "0", "9" + strGood}) {
    SCOPED_TRACE(strToken);
    form["_token"] = strToken;
    const HttpAnswer answer = host_.post(strPlace_, form);
    EXPECT_EQ(answer.status, 403);
    EXPECT_TRUE(answer.shows("value=\"NB-2025-00417\""));
    EXPECT_FALSE(host_.get(strPlace_).shows("value=\"NB-2025-00417\""));
  }
  // The page that came back is a good one.
  const HttpAnswer again = host_.post(strPlace_, form);
  EXPECT_EQ(host_.post(strPlace_, filledIn(again, exampleForm("complete.form"), "submit")).status,
            303);
}

TEST_F(BadInput, FromAnotherSiteIsRefused) {
  const HttpAnswer page = host_.get(strPlace_);
  const Form form = filledIn(page, exampleForm("complete.form"), "park");
  for (const Headers& headers :
       {Headers{{"Sec-Fetch-Site", "cross-site"}}, Headers{{"Origin", "http://evil.example"}},
        Headers{{"Origin", "nonsense"}}}) {
    EXPECT_EQ(host_.post(strPlace_, form, headers).status, 403);
  }
  const std::string strHere = "http://127.0.0.1:" + std::to_string(host_.port());
  EXPECT_EQ(
      host_.post(strPlace_, form, {{"Origin", strHere}, {"Sec-Fetch-Site", "same-origin"}}).status,
      303);
}

TEST_F(BadInput, ThatIsNoHttpIsAnswered) {
  const struct {
    const char* says;
    std::string bytes;
    int status;
  } cases[] = {
      {"no request at all", "hello\r\n\r\n", 400},
      {"bytes", std::string("\x16\x03\x01\0\xff\r\n\r\n", 9), 400},
      {"a length that is none", "POST / HTTP/1.1\r\nContent-Length: x\r\n\r\n", 400},
      {"two lengths", "POST / HTTP/1.1\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\nab", 400},
      {"a length beyond all numbers",
       "POST / HTTP/1.1\r\nContent-Length: 99999999999999999999999\r\n\r\n", 400},
      {"a huge body announced", "POST / HTTP/1.1\r\nContent-Length: 9999999999\r\n\r\n", 413},
      {"a head without end", "GET / HTTP/1.1\r\nA: " + std::string(40'000, 'a'), 431},
      {"a long address", "GET /" + std::string(40'000, 'a'), 431},
      {"a body in pieces that are none",
       "POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n", 400},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Connection connection(host_.port());
    connection.send(c.bytes);
    EXPECT_EQ(connection.receive().status, c.status);
  }
}

/// Over a slow connection: the browser shows the answer when it could send all.
/// The sockets that a process has open.
std::set<std::string> socketsOf(pid_t process) {
  std::set<std::string> sockets;
  for (const auto& entry :
       std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd")) {
    std::error_code gone;
    const std::string strFile = std::filesystem::read_symlink(entry.path(), gone).string();
    if (strFile.starts_with("socket:")) sockets.insert(strFile);
  }
  return sockets;
}

/// Who has the answer and sends nothing more is let go meanwhile.
TEST_F(BadInput, ThatIsTooLongIsLetInToItsEnd) {
  const std::string strPiece(400'000, 'a');
  constexpr int kPieces = 8;
  const std::set<std::string> before = socketsOf(host_.process());
  const Connection silent(host_.port());
  EXPECT_TRUE(silent.send("POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 99999999\r\n\r\nabc"));
  EXPECT_EQ(silent.receive().status, 413);
  std::set<std::string> silentOnes = socketsOf(host_.process());
  std::erase_if(silentOnes, [&](const std::string& each) { return before.contains(each); });
  ASSERT_EQ(silentOnes.size(), 1);
  const Connection connection(host_.port());
  EXPECT_TRUE(connection.send("POST /forms/inspection HTTP/1.1\r\nHost: x\r\nContent-Length: " +
                              std::to_string(kPieces * strPiece.size()) + "\r\n\r\n"));
  for (int lngPiece = 1; lngPiece <= kPieces; ++lngPiece) {
    EXPECT_TRUE(connection.send(strPiece)) << lngPiece;
    std::this_thread::sleep_for(std::chrono::seconds(1));
  }
  EXPECT_FALSE(socketsOf(host_.process()).contains(*silentOnes.begin()));
  const HttpAnswer answer = connection.receive();
  EXPECT_EQ(answer.status, 413);
  EXPECT_TRUE(answer.shows("The form is too large"));
}

TEST_F(BadInput, InPiecesOrWithAWordAheadIsTakenAsAWhole) {
  const std::string strBody = "_token=" + token("/forms/inspection") + "&town=Here";
  char length[8];
  std::snprintf(length, sizeof(length), "%zx", strBody.size());
  const std::string strHead =
      "POST /forms/inspection HTTP/1.1\r\nHost: x\r\nConnection: close\r\n"
      "Content-Type: application/x-www-form-urlencoded\r\n";
  for (const std::string& strRequest :
       {strHead + "Transfer-Encoding: chunked\r\n\r\n" + length + "\r\n" + strBody +
            "\r\n0\r\n\r\n",
        strHead + "Expect: 100-continue\r\nContent-Length: " + std::to_string(strBody.size()) +
            "\r\n\r\n" + strBody}) {
    const Connection connection(host_.port());
    connection.send(strRequest);
    EXPECT_EQ(connection.receive().status, 303);
  }
}

TEST_F(BadInput, OfSilentAndSlowConnectionsHoldsUpNobody) {
  std::vector<std::unique_ptr<Connection>> connections;
  for (int each = 0; each < 200; ++each) {
    connections.push_back(std::make_unique<Connection>(host_.port()));
    if (each % 2 == 0) connections.back()->send("POST /forms/inspection HTTP/1.1\r\nContent-Le");
    if (each % 5 == 0) connections.back()->send("ngth: 100000\r\n\r\nabc");
  }
  EXPECT_EQ(host_.get("/forms/inspection").status, 200);
  EXPECT_EQ(host_.get("/readyz").status, 200);
  // Those that ask for much and read nothing of it.
  for (int each = 0; each < 50; ++each) {
    connections.push_back(std::make_unique<Connection>(host_.port()));
    connections.back()->send("GET " + strPlace_ + " HTTP/1.1\r\nHost: x\r\n\r\n");
  }
  EXPECT_EQ(host_.get(strPlace_).status, 200);
}

TEST_F(BadInput, OfMoreSlowBodiesThanThereMayBeFilesHoldsUpNobody) {
  const Host host(words(), 0, 300);
  std::vector<std::unique_ptr<Connection>> connections;
  for (int each = 0; each < 400; ++each) {
    connections.push_back(std::make_unique<Connection>(host.port()));
    connections.back()->send("POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 100000\r\n\r\nabc");
  }
  EXPECT_EQ(host.get("/healthz").status, 200);
  EXPECT_EQ(host.get("/forms/inspection").status, 200);
}

TEST_F(BadInput, OfTooManyRequestsIsToldToComeAgain) {
  const Host host(words({"--workers", "1", "--queue", "1"}));
  const std::string strPlace = parked(host, exampleForm("draft.form"));
  const Form faulty = filledIn(host.get(strPlace), exampleForm("faulty.form"), "submit");
  std::atomic<bool> blnTold = false;
  std::vector<std::jthread> people;
  for (int each = 0; each < 6; ++each) {
    people.emplace_back([&](const std::stop_token& stop) {
      while (!stop.stop_requested()) {
        const HttpAnswer answer = host.post(strPlace, faulty);
        EXPECT_TRUE(answer.status == 422 || answer.status == 503) << answer.status;
        if (answer.status != 503) continue;
        EXPECT_EQ(answer.header("retry-after"), "1");
        EXPECT_TRUE(answer.shows("Too many are here at once"));
        blnTold = true;
      }
    });
  }
  // Who asks how the host is gets an answer all the same.
  EXPECT_TRUE(becomes([&] { return host.get("/readyz").status != 200 || blnTold; }));
  for (int each = 0; each < 5; ++each) EXPECT_EQ(host.get("/readyz").status, 200);
  EXPECT_TRUE(blnTold);
  people.clear();
  EXPECT_NE(
      host.log().find("\"status\":503,\"method\":\"POST\",\"path\":\"/parked/" +
                      digestOf(strPlace.substr(8)) + "\",\"reason\":\"Too many are here at once\""),
      std::string::npos);
}

TEST_F(BadInput, DoesNotMakeSeveralRequestsOfOneConnectionMixUp) {
  const Connection connection(host_.port());
  connection.send(
      "GET /healthz HTTP/1.1\r\nHost: x\r\n\r\nHEAD /forms/inspection HTTP/1.1\r\n"
      "Host: x\r\n\r\nGET /nowhere HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
  const HttpAnswer all = connection.receive();
  EXPECT_EQ(all.status, 200);
  EXPECT_TRUE(all.body.starts_with("alive\n"));
  EXPECT_TRUE(all.shows("HTTP/1.1 404"));
  EXPECT_FALSE(all.shows("Case number"));  // a head has no body
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
