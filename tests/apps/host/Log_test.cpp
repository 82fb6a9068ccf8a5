#include <cctype>
#include <nlohmann/json.hpp>
#include <sstream>

#include "apps/host/Host.h"
#include "host/Token.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Json = nlohmann::json;

/// What the log has, and what it never has.
class Log : public HostTest {};

TEST_F(Log, LogsNothingOfWhatAPageSays) {
  replaceIn("page.xsl", "<xsl:template name=\"footer\">",
            "<xsl:template match=\"/form\" mode=\"title\">"
            "<xsl:message><xsl:value-of select=\"//input[@name='town']/@value\"/></xsl:message>"
            "<xsl:if test=\"//input[@name='town']/@value = 'Nowhere'\">"
            "<xsl:message terminate=\"yes\">Nowhere</xsl:message></xsl:if>"
            "</xsl:template><xsl:template name=\"footer\">");
  const Host host(words({"--workers", "1"}));
  Form answers = exampleForm("draft.form");
  answers["town"] = "Geheimstadt";
  EXPECT_EQ(host.get(parked(host, answers)).status, 200);
  answers["town"] = "Nowhere";
  EXPECT_EQ(host.get(parked(host, answers)).status, 500);
  replaceIn("page.xsl", "</xsl:stylesheet>", "");
  EXPECT_EQ(host.get("/forms/inspection").status, 200);
  EXPECT_EQ(eventsOf(host, "page-failed").size(), 1U);
  EXPECT_EQ(eventsOf(host, "deployment-refused").size(), 1U);
  EXPECT_EQ(host.log().find("Geheimstadt"), std::string::npos);
  EXPECT_EQ(host.log().find("Nowhere"), std::string::npos);
  std::istringstream lines(host.log());
  for (std::string strLine; std::getline(lines, strLine);) {
    EXPECT_TRUE(Json::accept(strLine)) << strLine;
  }
}

/// Whoever knows an id can open its form, and others than those who may do that read the log.
TEST_F(Log, LogsNoIdOfAForm) {
  const std::string strInbox = "directory:" + inbox().string();
  const Host host(words({"--deliver", strInbox}));
  const std::string strPlace = parked(host, exampleForm("complete.form"));
  const std::string strId = strPlace.substr(8);
  fs::create_directories(inbox() / (strId + ".xml") / "in the way");
  EXPECT_EQ(host.request("PUT", strPlace, {}, "").status, 405);
  const Form form = filledIn(host.get(strPlace), exampleForm("complete.form"), "submit");
  EXPECT_EQ(host.post(strPlace, form).status, 303);
  ASSERT_TRUE(becomes([&] { return !eventsOf(host, "delivery-failed").empty(); }));
  // A link that was copied with too much, or came through what writes in capitals.
  std::string strCapitals = strId;
  for (char& letter : strCapitals) letter = static_cast<char>(std::toupper(letter));
  for (const std::string& strOther :
       {strPlace + "0", "/parked/ab" + strId, "/parked/" + strCapitals}) {
    EXPECT_EQ(host.request("PUT", strOther, {}, "").status, 404) << strOther;
  }
  EXPECT_EQ(eventsOf(host, "request-refused").size(), 4);
  EXPECT_EQ(host.log().find(strId), std::string::npos);
  EXPECT_EQ(host.log().find(strCapitals), std::string::npos);

  const std::string strDigest = digestOf(strId);
  for (const char* const strEvent : {"parked", "accepted", "delivery-failed"}) {
    EXPECT_EQ(eventsOf(host, strEvent)[0]["id"], strDigest) << strEvent;
  }
  EXPECT_EQ(eventsOf(host, "request-refused")[0]["path"], "/parked/" + strDigest);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
