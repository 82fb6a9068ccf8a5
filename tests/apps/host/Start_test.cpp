#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cctype>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <thread>

#include "apps/host/Host.h"
#include "host/Token.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Json = nlohmann::json;

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
      {"an escape that is none",
       {"--deployment", strFolder, "--store", "postgresql://u@h/d%2"},
       "two hexadecimal digits"},
      {"an escape for a blank",
       {"--deployment", strFolder, "--store", "postgresql://u:p%20q@h/d"},
       "a blank, quote or backslash"},
      {"a name without a value",
       {"--deployment", strFolder, "--store", "postgresql://u@h/d?sslmode"},
       "NAME=VALUE"},
      {"an unknown target", {"--deployment", strFolder, "--deliver", "ftp://x"}, "--deliver"},
      {"a target without a host",
       {"--deployment", strFolder, "--deliver", "http:///x"},
       "--deliver"},
      {"a target's port that is none",
       {"--deployment", strFolder, "--deliver", "http://h:99999999/x"},
       "--deliver"},
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

/// The lines of a log that tell of an event.
std::vector<Json> eventsOf(const Host& host, std::string_view strEvent) {
  std::vector<Json> events;
  std::istringstream lines(host.log());
  for (std::string strLine; std::getline(lines, strLine);) {
    Json line = Json::parse(strLine, nullptr, false);
    if (line.is_object() && line["event"] == strEvent) events.push_back(std::move(line));
  }
  return events;
}

/// Where hosts put temporary files, as long as the object lives.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::string& strFolder) {
    if (const char* const before = std::getenv("TMPDIR")) before_ = before;
    ::setenv("TMPDIR", strFolder.c_str(), 1);
  }
  ~TemporaryFolder() { before_ ? ::setenv("TMPDIR", before_->c_str(), 1) : ::unsetenv("TMPDIR"); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

 private:
  std::optional<std::string> before_;
};

TEST_F(Start, EndsWithTheFindingsOfABrokenDeployment) {
  const struct {
    const char *file, *from, *to, *code, *place;
    int line;
  } cases[] = {
      {"object-mapper.xml", "<message", "<message x", "not-well-formed", "object-mapper.xml", 2},
      {"object-mapper.xml", "id=\"town\"", "id=\"twon\"", "no-mapping", "object-mapper.xml", 54},
      {"schema/record.xsd", "<xs:schema", "<xs:skema", "schema-unusable", "schema/record.xsd", 139},
      {"deployment.json", "schema/inspection.xsd", "schema/none.xsd", "schema-unusable",
       "deployment.json", 11},
      {"deployment.json", "\"object-list\": \"object-list.xml\",", "", "file-missing",
       "deployment.json", 1},
      {"deployment.json", "\"schema-url\": \"schema/inspection.xsd\",", "", "no-schema",
       "deployment.json", 12},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.code);
    const std::string strBefore = textOfFile(deployment() / c.file);
    replaceIn(c.file, c.from, c.to);
    Host host(words());
    EXPECT_EQ(host.port(), 0);
    EXPECT_EQ(host.waitForEnd(), 1);
    const std::vector<Json> findings = eventsOf(host, "deployment-finding");
    ASSERT_FALSE(findings.empty()) << host.log();
    EXPECT_EQ(findings[0]["form"], "inspection");
    EXPECT_EQ(findings[0]["severity"], "error");
    EXPECT_EQ(findings[0]["code"], c.code);
    EXPECT_EQ(findings[0]["file"], c.place);
    EXPECT_EQ(findings[0]["line"], c.line);
    EXPECT_NE(findings[0]["reason"], "");
    EXPECT_EQ(eventsOf(host, "deployment-refused").size(), 1U);
    std::ofstream(deployment() / c.file) << strBefore;
  }
}

TEST_F(Start, ToldOfABrokenPageTellsWhy) {
  const struct {
    const char *file, *from, *to, *says;
  } cases[] = {
      {"page.xml", "ref=\"town\"", "ref=\"city\"", "there is no question \"city\""},
      {"page.xsl", "</xsl:stylesheet>", "", "page.xsl"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    const std::string strBefore = textOfFile(deployment() / c.file);
    replaceIn(c.file, c.from, c.to);
    Host host(words());
    EXPECT_EQ(host.port(), 0);
    EXPECT_EQ(host.waitForEnd(), 2);
    EXPECT_NE(host.log().find(c.says), std::string::npos) << host.log();
    std::ofstream(deployment() / c.file) << strBefore;
  }
}

TEST_F(Start, TellsWarningsAndServes) {
  replaceIn("object-mapper.xml", "</message>",
            "<messageitem id=\"nobody\" toschema=\"false\"/></message>");
  const Host host(words());
  EXPECT_EQ(host.get("/readyz").status, 200);
  const std::vector<Json> findings = eventsOf(host, "deployment-finding");
  ASSERT_EQ(findings.size(), 1U) << host.log();
  EXPECT_EQ(findings[0]["severity"], "warning");
  EXPECT_EQ(findings[0]["object"], "nobody");
}

TEST_F(Start, TakesOverAChangedDeploymentWholeOrNotAtAll) {
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

TEST_F(Start, TakesOverAChangeThatCouldNotBeReadAtFirst) {
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

TEST_F(Start, TellsOnceThatTheFolderIsGone) {
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

TEST_F(Start, ListsTheFormsAsTheyAreNow) {
  const Host host(words());
  EXPECT_TRUE(host.get("/").shows("Building inspection report"));
  replaceIn("page.xml", "title=\"Building inspection report\"", "title=\"Report on a building\"");
  EXPECT_TRUE(host.get("/").shows("Report on a building"));
}

TEST_F(Start, LogsNothingOfWhatAPageSays) {
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
TEST_F(Start, LogsNoIdOfAForm) {
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

TEST_F(Start, ListensOnAnAddressOfIpv6) {
  if (!hasIpv6()) GTEST_SKIP() << "this machine has no ::1";
  const Host host(words({"--listen", "[::1]:0"}));
  const std::string strHere = "http://[::1]:" + std::to_string(host.port());
  EXPECT_EQ(host.out(), strHere + "/\n");
  const Form form = filledIn(host.get("/forms/inspection"), exampleForm("draft.form"), "park");
  const HttpAnswer answer = host.post("/forms/inspection", form, {{"Origin", strHere}});
  EXPECT_EQ(answer.status, 303);
  EXPECT_TRUE(host.get(answer.header("location")).shows("Havnehuset"));
}

/// The first that a server of PostgreSQL hears of the host has the user and the database.
TEST_F(Start, ReadsTheAddressOfAStoreWithBracketsAndEscapes) {
  if (!hasIpv6()) GTEST_SKIP() << "this machine has no ::1";
  const int listener = ::socket(AF_INET6, SOCK_STREAM, 0);
  LocalPlace place(0, true);
  ASSERT_EQ(::bind(listener, place.get(), place.lngSize), 0);
  ASSERT_EQ(::listen(listener, 1), 0);
  ::getsockname(listener, place.get(), &place.lngSize);
  const std::string strPort = std::to_string(place.port());
  for (const std::string& strAddress : {"u%40v@[::1]:" + strPort + "/a%2fb?sslmode=disable",
                                        "u%40v@[::1]/a%2Fb?port=" + strPort + "&sslmode=disable"}) {
    SCOPED_TRACE(strAddress);
    const auto host = Host::started(
        {"--deployment", deployment().string(), "--store", "postgresql://" + strAddress});
    pollfd waiting{.fd = listener, .events = POLLIN, .revents = 0};
    ASSERT_EQ(::poll(&waiting, 1, 60'000), 1) << host->log();
    const int descriptor = ::accept(listener, nullptr, nullptr);
    char buffer[1024];
    const ssize_t lngRead = ::recv(descriptor, buffer, sizeof(buffer), 0);
    ::close(descriptor);
    const std::string strHeard(buffer, lngRead > 0 ? static_cast<std::size_t>(lngRead) : 0);
    const std::string strNull(1, '\0');
    for (const std::string& strSaid :
         {"user" + strNull + "u@v" + strNull, "database" + strNull + "a/b" + strNull}) {
      EXPECT_NE(strHeard.find(strSaid), std::string::npos) << strHeard;
    }
  }
  ::close(listener);
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

TEST_F(Start, TellsABalancerThatItIsBeingStoppedBeforeItRefusesConnections) {
  Host host(words());
  for (int probe = 0; probe < 2; ++probe) EXPECT_EQ(host.get("/readyz").status, 200);
  ASSERT_EQ(::kill(host.process(), SIGTERM), 0);
  HttpAnswer probe;
  EXPECT_TRUE(becomes([&] { return (probe = host.get("/readyz")).status != 200; }));
  EXPECT_EQ(probe.status, 503);
  EXPECT_TRUE(probe.shows("The host is being stopped."));
  // Who has not heard of it yet is served all the same.
  const HttpAnswer form = host.get("/forms/inspection");
  EXPECT_EQ(form.status, 200);
  EXPECT_EQ(form.header("connection"), "close");
  EXPECT_EQ(host.waitForEnd(), 0);
  EXPECT_NE(host.log().find("\"stopped\""), std::string::npos);
}

TEST_F(Start, RefusesConnectionsAtOnceWhereReadinessWasAskedForOnce) {
  Host host(words());
  EXPECT_EQ(host.get("/readyz").status, 200);  // as a script does that starts a host
  ASSERT_EQ(::kill(host.process(), SIGTERM), 0);
  ASSERT_TRUE(becomes([&] { return host.log().find("\"stopping\"") != std::string::npos; }));
  int lngServed = 0;
  EXPECT_TRUE(becomes([&] {
    try {
      if (host.get("/healthz").status == 200) ++lngServed;
      return false;
    } catch (const std::runtime_error&) {
      return true;  // refused
    }
  }));
  EXPECT_EQ(lngServed, 0);
  EXPECT_EQ(host.waitForEnd(), 0);
}

/// Whether a thread, by its file of /proc, has both signals blocked that ask the host to stop.
bool blocksStopSignals(const std::string& strStatusFile) {
  std::istringstream lines(textOfFile(strStatusFile));
  for (std::string strLine; std::getline(lines, strLine);) {
    if (!strLine.starts_with("SigBlk:")) continue;
    const unsigned long long lngBlocked = std::stoull(strLine.substr(7), nullptr, 16);
    const unsigned long long lngWanted = 1ULL << (SIGTERM - 1) | 1ULL << (SIGINT - 1);
    return (lngBlocked & lngWanted) == lngWanted;
  }
  return false;
}

TEST_F(Start, LetsNobodyElseReadTheStore) {
  const Host host(words());
  for (const auto& entry : fs::directory_iterator(directory_.at(""))) {
    if (!entry.path().filename().string().starts_with("store.sqlite")) continue;
    EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write)
        << entry.path();
  }
  EXPECT_TRUE(fs::exists(directory_.at("store.sqlite")));
}

TEST_F(Start, LetsNoThreadBeInterruptedByTheSignalsThatEndIt) {
  const Host host(words({"--deliver", "directory:" + inbox().string(), "--workers", "3"}));
  ASSERT_NE(parked(host, exampleForm("draft.form")), "");
  int lngThreads = 0;
  for (const auto& thread :
       fs::directory_iterator("/proc/" + std::to_string(host.process()) + "/task")) {
    EXPECT_TRUE(blocksStopSignals(thread.path() / "status"));
    ++lngThreads;
  }
  EXPECT_GE(lngThreads, 1 + 3 + 1);  // the server, the workers, the deliveries
}

TEST_F(Start, IsEndedCleanlyAtWhateverMoment) {
  // How long the host takes until it listens; the signals come within twice that.
  const auto begin = std::chrono::steady_clock::now();
  const Host first(words({"--deliver", "directory:" + inbox().string()}));
  const auto start = std::chrono::steady_clock::now() - begin;
  constexpr int kTimes = 24;
  for (int lngTime = 0; lngTime < kTimes; ++lngTime) {
    const auto host = Host::started(words({"--deliver", "directory:" + inbox().string()}));
    // Before its first line of code the system would end it, which is no clean end and none that
    // is lost.
    const std::string strStatus = "/proc/" + std::to_string(host->process()) + "/status";
    ASSERT_TRUE(becomes([&] { return blocksStopSignals(strStatus); }));
    std::this_thread::sleep_for(start * 2 * lngTime / kTimes);
    EXPECT_EQ(host->stop(lngTime % 2 == 0 ? SIGTERM : SIGINT), 0) << lngTime << '\n' << host->log();
    EXPECT_NE(host->log().find("\"stopped\""), std::string::npos) << lngTime;
  }
}

TEST_F(Start, WithAStoreThatIsFullLosesNothingThatWasAcknowledged) {
  const Host host(words(), std::size_t{1} << 20);
  const std::string strPlace = parked(host, exampleForm("draft.form"));
  ASSERT_NE(strPlace, "");
  Form large = exampleForm("draft.form");
  for (int each = 0; each < 80'000; ++each) large["internalnote"] += "A long answer. ";
  const HttpAnswer refused = host.post(strPlace, filledIn(host.get(strPlace), large, "park"));
  EXPECT_EQ(refused.status, 503);
  EXPECT_TRUE(refused.shows("A long answer. A long answer."));  // still there, to be sent again
  EXPECT_NE(refused.header("retry-after"), "");
  EXPECT_TRUE(refused.shows("The store cannot be reached"));
  EXPECT_EQ(hiddenInputs(refused.body)["_version"], "1");
  EXPECT_NE(host.log().find("\"store-problem\""), std::string::npos);
  EXPECT_EQ(host.log().find("A long answer."), std::string::npos);

  EXPECT_TRUE(host.get(strPlace).shows("value=\"Havnehuset\""));
  // What was run and is not in the store was not parked.
  EXPECT_TRUE(host.get("/metrics").shows("varnel_runs_total{outcome=\"parked\"} 2\n"));
  EXPECT_TRUE(host.get("/metrics").shows("varnel_forms_parked_total 1\n"));
  EXPECT_NE(parked(host, exampleForm("draft.form")), "");
}

/// With one form worked on and one waiting, the next is told to come again, with all that was
/// typed.
TEST_F(Start, WithTooManyAtOnceKeepsWhatTheyTyped) {
  const Host host(words({"--workers", "1", "--queue", "1"}));
  Form form = filledIn(host.get("/forms/inspection"), exampleForm("complete.form"), "park");
  form["owneraddress"] = "\r\nA \"street\" & <more>";
  const std::string strBody = encoded(form);
  const std::string strRequest =
      "POST /forms/inspection HTTP/1.1\r\nHost: x\r\nConnection: close\r\n"
      "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
      std::to_string(strBody.size()) + "\r\n\r\n" + strBody;
  HttpAnswer refused;
  EXPECT_TRUE(becomes([&] {
    std::vector<std::unique_ptr<Connection>> connections;
    for (int each = 0; each < 12; ++each) {
      connections.push_back(std::make_unique<Connection>(host.port()));
      connections.back()->send(strRequest);
    }
    for (const auto& connection : connections) {
      const HttpAnswer answer = connection->receive();
      if (answer.status == 503) refused = answer;
    }
    return refused.status == 503;
  }));
  EXPECT_EQ(refused.header("retry-after"), "1");
  EXPECT_TRUE(refused.shows("Too many are here at once"));
  EXPECT_TRUE(refused.shows("<form method=\"post\" action=\"/forms/inspection\""));
  EXPECT_EQ(hiddenInputs(refused.body), form);
  EXPECT_FALSE(refused.shows("<more>"));

  const HttpAnswer saved = host.post("/forms/inspection", hiddenInputs(refused.body));
  EXPECT_EQ(saved.status, 303);
  EXPECT_TRUE(host.get(saved.header("location"))
                  .shows(">\n\r\nA \"street\" &amp; &lt;more&gt;</textarea>"));
}

/// A schema outside the folder is read where it stands, so it can break while the host runs.
TEST_F(Start, AcceptsNothingThatCouldNotBeChecked) {
  fs::rename(deployment() / "schema", directory_.at("schema"));
  replaceIn("deployment.json", "schema/inspection.xsd", "../schema/inspection.xsd");
  Host host(words());
  const std::string strPlace = parked(host, exampleForm("complete.form"));
  const Form form = filledIn(host.get(strPlace), exampleForm("complete.form"), "submit");
  const std::string strSchema = directory_.at("schema/record.xsd");
  const std::string strBefore = textOfFile(strSchema);
  std::ofstream(strSchema) << "broken";

  const HttpAnswer answer = host.post(strPlace, form);
  EXPECT_EQ(answer.status, 500);
  EXPECT_TRUE(answer.shows("it could not be checked, so it was not sent"));
  EXPECT_TRUE(answer.shows("Saved, not sent yet"));
  EXPECT_TRUE(answer.shows("value=\"NB-2025-00417\""));
  EXPECT_EQ(host.get("/messages" + strPlace.substr(7)).status, 404);
  EXPECT_TRUE(host.get("/metrics").shows("varnel_runs_total{outcome=\"not-checked\"} 1\n"));
  const std::vector<Json> failed = eventsOf(host, "run-failed");
  ASSERT_EQ(failed.size(), 1U);
  EXPECT_TRUE(failed[0]["reason"].get<std::string>().starts_with("The schema cannot be used"));

  // Those who run the deployment find the reason with the form.
  const Json kept = Json::parse(host.get(strPlace, {{"Accept", "application/json"}}).body);
  EXPECT_EQ(kept["state"], "parked");
  EXPECT_EQ(kept["report"]["verdict"], "not-checked");
  EXPECT_NE(kept["report"]["reason"].get<std::string>().find("record.xsd"), std::string::npos);

  std::ofstream(strSchema) << strBefore;
  EXPECT_EQ(host.post(strPlace, filledIn(answer, exampleForm("complete.form"), "submit")).status,
            303);
}

/// The folders below `strFolder` that a host keeps copies of deployments in.
std::vector<std::string> copiesIn(const std::string& strFolder) {
  std::vector<std::string> copies;
  for (const auto& entry : fs::directory_iterator(strFolder)) {
    const std::string strName = entry.path().filename().string();
    if (strName.starts_with("varnel-xml-host-")) copies.push_back(strName);
  }
  return copies;
}

TEST_F(Start, TakesAwayTheCopiesOfHostsThatWereKilled) {
  const std::string strTemporary = directory_.at("temporary");
  fs::create_directory(strTemporary);
  const TemporaryFolder folder(strTemporary);
  fs::create_directory(strTemporary + "/of-somebody-else");
  const Host living(words());
  const std::vector<std::string> used = copiesIn(strTemporary);
  ASSERT_EQ(used.size(), 1U);
  {
    Host killed(words());
    EXPECT_EQ(copiesIn(strTemporary).size(), 2U);
    killed.stop(SIGKILL);
  }
  EXPECT_EQ(copiesIn(strTemporary).size(), 2U);
  {
    Host next(words());
    EXPECT_EQ(copiesIn(strTemporary).size(), 2U);  // its own and that of the one that lives
    EXPECT_EQ(next.stop(SIGTERM), 0);
  }
  EXPECT_EQ(copiesIn(strTemporary), used);
  EXPECT_TRUE(fs::exists(strTemporary + "/of-somebody-else"));
  const std::string strPlace = parked(living, exampleForm("complete.form"));
  EXPECT_EQ(
      living.post(strPlace, filledIn(living.get(strPlace), exampleForm("complete.form"), "submit"))
          .status,
      303);
}

TEST_F(Start, ServesSeveralDeployments) {
  fs::copy(deployment(), directory_.at("second"), fs::copy_options::recursive);
  const Host host(words({"--deployment", directory_.at("second")}));
  EXPECT_TRUE(host.get("/").shows("/forms/inspection"));
  EXPECT_TRUE(host.get("/").shows("/forms/second"));
  EXPECT_EQ(host.get("/forms/second").status, 200);
}

TEST_F(Start, ShowsNothingOfAFormThatIsServedElsewhere) {
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
