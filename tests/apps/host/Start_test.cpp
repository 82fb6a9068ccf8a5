#include <csignal>
#include <fstream>

#include "apps/host/Host.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// Starting, changing and stopping.
class Start : public HostTest {
 protected:
  void replaceIn(const char* name, const std::string& strFrom, const std::string& strTo) const {
    std::string strText = textOfFile(deployment() / name);
    const std::size_t at = strText.find(strFrom);
    ASSERT_NE(at, std::string::npos);
    strText.replace(at, strFrom.size(), strTo);
    std::ofstream(deployment() / name) << strText;
  }
};

TEST_F(Start, WithBadOptionsTellsWhy) {
  const std::string strFolder = deployment().string();
  const struct {
    const char* says;
    std::vector<std::string> words;
    const char* reason;
  } cases[] = {
      {"no deployment", {}, "--deployment"},
      {"a folder that does not exist", {"--deployment", strFolder + "x"}, "inspectionx"},
      {"a folder of one name twice",
       {"--deployment", strFolder, "--deployment", strFolder},
       "two folders"},
      {"an unknown store", {"--deployment", strFolder, "--store", "ram:"}, "--store"},
      {"a store that cannot be opened",
       {"--deployment", strFolder, "--store", "sqlite:/nowhere/at/all"},
       "--store"},
      {"an unknown target", {"--deployment", strFolder, "--deliver", "ftp://x"}, "--deliver"},
      {"a port that is none", {"--deployment", strFolder, "--listen", "127.0.0.1:x"}, "--listen"},
      {"an option that does not exist", {"--deployment", strFolder, "--burn"}, "--burn"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Host host(c.words);
    EXPECT_EQ(host.port(), 0);
    EXPECT_EQ(host.waitForEnd(), 2);
    EXPECT_NE(host.log().find(c.reason), std::string::npos) << host.log();
  }
}

TEST_F(Start, EndsWithTheFindingsOfABrokenDeployment) {
  const struct {
    const char *file, *from, *to, *says;
  } cases[] = {
      {"object-mapper.xml", "<message", "<message x", "object-mapper.xml"},
      {"schema/record.xsd", "<xs:schema", "<xs:skema", "the check of the message broke down"},
      {"deployment.json", "schema/inspection.xsd", "schema/none.xsd", "broke down"},
      {"page.xml", "ref=\"town\"", "ref=\"city\"", "there is no question \"city\""},
      {"page.xsl", "</xsl:stylesheet>", "", "page.xsl"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    const std::string strBefore = textOfFile(deployment() / c.file);
    replaceIn(c.file, c.from, c.to);
    Host host(words());
    EXPECT_EQ(host.port(), 0);
    EXPECT_GT(host.waitForEnd(), 0);
    EXPECT_NE(host.log().find(c.says), std::string::npos) << host.log();
    std::ofstream(deployment() / c.file) << strBefore;
  }
}

TEST_F(Start, TakesOverAChangedDeploymentWholeOrNotAtAll) {
  const Host host(words());
  replaceIn("page.xml", "label=\"Town\"", "label=\"Town or village\"");
  EXPECT_TRUE(host.get("/forms/inspection").shows("Town or village"));

  replaceIn("page.xml", "label=\"Street\"", "label=\"Road\"");
  replaceIn("object-mapper.xml", "</message>", "");
  EXPECT_FALSE(host.get("/forms/inspection").shows("Road"));
  EXPECT_NE(parked(host, exampleForm("draft.form")), "");
  EXPECT_NE(host.log().find("deployment-refused"), std::string::npos);
  EXPECT_EQ(host.get("/readyz").status, 200);

  fs::rename(deployment(), directory_.at("away"));
  EXPECT_NE(parked(host, exampleForm("draft.form")), "");
  fs::rename(directory_.at("away"), deployment());
  std::ofstream(deployment() / "object-mapper.xml", std::ios::app) << "</message>\n";
  EXPECT_TRUE(host.get("/forms/inspection").shows("Road"));
}

TEST_F(Start, MakesAPageFromTheObjectListAloneWhereNoneIsGiven) {
  fs::remove(deployment() / "page.xml");
  fs::remove(deployment() / "page.xsl");
  const Host host(words());
  const HttpAnswer page = host.get("/forms/inspection");
  EXPECT_TRUE(page.shows(">Case number <span"));                            // of the message's path
  EXPECT_TRUE(page.shows("<h2 id=\"s1-title\">Header</h2>"));               // likewise
  EXPECT_TRUE(page.shows("<option value=\"heatpump\">heatpump</option>"));  // of the schema
  EXPECT_TRUE(page.shows("B1 Building"));                                   // of the object list
  Form answers = exampleForm("complete.form");
  const std::string strPlace = parked(host, answers);
  EXPECT_EQ(host.post(strPlace, filledIn(host.get(strPlace), answers, "submit")).status, 303);
}

TEST_F(Start, UsesTheDateOrderOfTheDeployment) {
  replaceIn("deployment.json", "\"dmy\"", "\"mdy\"");
  const Host host(words());
  EXPECT_TRUE(host.get("/forms/inspection").shows("month/day/year"));
}

TEST_F(Start, IsEndedCleanlyBySigterm) {
  Host host(words());
  const Connection silent(host.port());
  const std::string strPlace = parked(host, exampleForm("draft.form"));
  EXPECT_EQ(host.get("/healthz").body, "alive\n");
  EXPECT_EQ(host.stop(SIGTERM), 0);
  EXPECT_NE(host.log().find("\"stopped\""), std::string::npos);

  const Host next(words());  // finds what the one before acknowledged
  EXPECT_TRUE(next.get(strPlace).shows("Havnehuset"));
}

TEST_F(Start, WithAStoreThatIsFullLosesNothingThatWasAcknowledged) {
  const Host host(words(), std::size_t{1} << 20);
  const std::string strPlace = parked(host, exampleForm("draft.form"));
  ASSERT_NE(strPlace, "");
  Form large = exampleForm("draft.form");
  for (int each = 0; each < 80'000; ++each) large["internalnote"] += "A long answer. ";
  const HttpAnswer refused = host.post(strPlace, filledIn(host.get(strPlace), large, "park"));
  EXPECT_EQ(refused.status, 503);
  EXPECT_NE(refused.header("retry-after"), "");
  EXPECT_TRUE(refused.shows("The store cannot be reached"));
  EXPECT_NE(host.log().find("\"store-problem\""), std::string::npos);
  EXPECT_EQ(host.log().find("A long answer."), std::string::npos);

  EXPECT_TRUE(host.get(strPlace).shows("value=\"Havnehuset\""));
  EXPECT_NE(parked(host, exampleForm("draft.form")), "");
}

TEST_F(Start, ServesSeveralDeployments) {
  fs::copy(deployment(), directory_.at("second"), fs::copy_options::recursive);
  const Host host(words({"--deployment", directory_.at("second")}));
  EXPECT_TRUE(host.get("/").shows("/forms/inspection"));
  EXPECT_TRUE(host.get("/").shows("/forms/second"));
  EXPECT_EQ(host.get("/forms/second").status, 200);
}

TEST_F(Start, CountsInTheTextOfPrometheus) {
  const Host host(words());
  const std::string strPlace = parked(host, exampleForm("draft.form"));
  host.post(strPlace, filledIn(host.get(strPlace), exampleForm("faulty.form"), "submit"));
  const HttpAnswer metrics = host.get("/metrics");
  EXPECT_TRUE(metrics.header("content-type").starts_with("text/plain; version=0.0.4"));
  for (const char* const strLine :
       {"varnel_runs_total{outcome=\"parked\"} 1\n", "varnel_runs_total{outcome=\"refused\"} 1\n",
        "varnel_stage_seconds_count{stage=\"run\"} 2\n", "# TYPE varnel_stage_seconds histogram\n",
        "varnel_forms_parked_total 2\n", "varnel_forms_accepted_total 0\n",
        "varnel_requests_in_flight 1\n"}) {
    EXPECT_TRUE(metrics.shows(strLine)) << strLine;
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
