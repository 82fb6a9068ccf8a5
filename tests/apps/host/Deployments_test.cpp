#include <sys/resource.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "apps/host/Host.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Json = nlohmann::json;

/// What is served, and what becomes of its changes.
class Deployments : public HostTest {};

TEST_F(Deployments, ServesSeveralDeployments) {
  fs::copy(deployment(), directory_.at("second"), fs::copy_options::recursive);
  const Host host(words({"--deployment", directory_.at("second")}));
  EXPECT_TRUE(host.get("/").shows("/forms/inspection"));
  EXPECT_TRUE(host.get("/").shows("/forms/second"));
  EXPECT_EQ(host.get("/forms/second").status, 200);
}

TEST_F(Deployments, MakesAPageFromTheObjectListAloneWhereNoneIsGiven) {
  fs::remove(deployment() / "page.xml");
  fs::remove(deployment() / "page.xsl");
  const Host host(words());
  const HttpAnswer page = host.get("/forms/inspection");
  EXPECT_TRUE(page.shows(">Case number <span"));                            // of the message's path
  EXPECT_TRUE(page.shows("<h2 id=\"s1-title\">Header</h2>"));               // likewise
  EXPECT_TRUE(page.shows("<option value=\"heatpump\">heatpump</option>"));  // of the schema
  EXPECT_TRUE(page.shows("B1 Building"));                                   // of the object list
  EXPECT_TRUE(page.shows(">Add a row</button>"));
  Form answers = exampleForm("complete.form");
  const std::string strPlace = parked(host, answers);
  EXPECT_EQ(host.post(strPlace, filledIn(host.get(strPlace), answers, "submit")).status, 303);
}

TEST_F(Deployments, UsesTheDateOrderOfTheDeployment) {
  replaceIn("deployment.json", "\"dmy\"", "\"mdy\"");
  const Host host(words());
  EXPECT_TRUE(host.get("/forms/inspection").shows("month/day/year"));
}

TEST_F(Deployments, TakesOverAChangedDeploymentWholeOrNotAtAll) {
  const Host host(words());
  replaceIn("page.xml", "label=\"Town\"", "label=\"Town or village\"");
  EXPECT_TRUE(host.get("/forms/inspection").shows("Town or village"));

  replaceIn("page.xml", "label=\"Street\"", "label=\"Road\"");
  replaceIn("object-mapper.xml", "</message>", "");
  EXPECT_FALSE(host.get("/forms/inspection").shows("Road"));
  EXPECT_NE(parked(host, exampleForm("draft.form")), "");
  EXPECT_EQ(eventsOf(host, "deployment-refused").size(), 1U);
  const std::vector<Json> findings = eventsOf(host, "deployment-finding");
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0]["code"], "not-well-formed");
  EXPECT_EQ(findings[0]["file"], "object-mapper.xml");
  EXPECT_GT(findings[0]["line"], 1);
  EXPECT_EQ(host.get("/readyz").status, 200);

  fs::rename(deployment(), directory_.at("away"));
  EXPECT_NE(parked(host, exampleForm("draft.form")), "");
  fs::rename(directory_.at("away"), deployment());
  std::ofstream(deployment() / "object-mapper.xml", std::ios::app) << "</message>\n";
  EXPECT_TRUE(host.get("/forms/inspection").shows("Road"));
}

TEST_F(Deployments, TakesOverAChangeThatCouldNotBeReadAtFirst) {
  const Host host(words());
  const auto letFilesBeOf = [&](rlim_t lngMost) {
    const rlimit limit{.rlim_cur = lngMost, .rlim_max = RLIM_INFINITY};
    ASSERT_EQ(::prlimit(host.process(), RLIMIT_FSIZE, &limit, nullptr), 0);
  };
  letFilesBeOf(4096);  // no copy can be made, as on a disk that is full
  replaceIn("page.xml", "label=\"Town\"", "label=\"Town or village\"");
  EXPECT_FALSE(host.get("/forms/inspection").shows("Town or village"));
  EXPECT_EQ(eventsOf(host, "deployment-refused").size(), 1U);
  letFilesBeOf(RLIM_INFINITY);
  EXPECT_TRUE(becomes([&] { return host.get("/forms/inspection").shows("Town or village"); }));
  EXPECT_EQ(eventsOf(host, "deployment-refused").size(), 1U);
  EXPECT_EQ(eventsOf(host, "deployment-changed").size(), 1U);
}

TEST_F(Deployments, TellsOnceThatTheFolderIsGone) {
  const Host host(words());
  for (std::size_t lngTime = 1; lngTime <= 2; ++lngTime) {
    fs::rename(deployment(), directory_.at("away"));
    for (int request = 0; request < 3; ++request) {
      EXPECT_EQ(host.get("/forms/inspection").status, 200);
    }
    EXPECT_EQ(eventsOf(host, "deployment-refused").size(), lngTime);
    fs::rename(directory_.at("away"), deployment());
    EXPECT_EQ(host.get("/forms/inspection").status, 200);
  }
}

TEST_F(Deployments, ListsTheFormsAsTheyAreNow) {
  const Host host(words());
  EXPECT_TRUE(host.get("/").shows("Building inspection report"));
  replaceIn("page.xml", "title=\"Building inspection report\"", "title=\"Report on a building\"");
  EXPECT_TRUE(host.get("/").shows("Report on a building"));
}

TEST_F(Deployments, ShowsNothingOfAFormThatIsServedElsewhere) {
  std::string strPlace;
  {
    const Host host(words());
    strPlace = parked(host, exampleForm("complete.form"));
    const Form form = filledIn(host.get(strPlace), exampleForm("complete.form"), "submit");
    ASSERT_EQ(host.post(strPlace, form).header("location"), "/messages" + strPlace.substr(7));
  }
  fs::rename(deployment(), directory_.at("second"));
  const Host host({"--deployment", directory_.at("second"), "--store",
                   "sqlite:" + directory_.at("store.sqlite")});
  const std::string strReceipt = "/messages" + strPlace.substr(7);
  for (const std::string& strPath :
       {strPlace, strPlace + ".xml", strReceipt, strReceipt + ".xml"}) {
    SCOPED_TRACE(strPath);
    EXPECT_EQ(host.get(strPath).status, 404);
    EXPECT_EQ(host.get(strPath, {{"Accept", "application/json"}}).status, 404);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
