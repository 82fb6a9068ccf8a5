#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "apps/host/Host.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using Json = nlohmann::json;

/// The options, and what a start finds and leaves.
class Start : public HostTest {};

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

TEST_F(Start, LetsNobodyElseReadTheStore) {
  const Host host(words());
  for (const auto& entry : fs::directory_iterator(directory_.at(""))) {
    if (!entry.path().filename().string().starts_with("store.sqlite")) continue;
    EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write)
        << entry.path();
  }
  EXPECT_TRUE(fs::exists(directory_.at("store.sqlite")));
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

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
