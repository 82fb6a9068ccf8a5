#include <gmock/gmock.h>

#include <cstdlib>

#include "HostileInput.h"
#include "SystemCalls.h"

// Whatever the input: the run opens the files of its deployment and no others, and no socket.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

/// The run as seen from outside.
struct WatchedRun {
  Outcome outcome;
  SystemCalls calls;
  std::vector<std::string> outsiders;  // neither of the deployment nor of any run at all
};

class HostileInputSystemCalls : public HostileInput {
 protected:
  void SetUp() override {
    if (!canTrace()) GTEST_SKIP() << "strace is missing, or may not watch other programs here";
    // What every run opens: the libraries and what they read when they start.
    const ProgramRun run = runProgram(directory_.path(), {"--version"}, watched());
    ASSERT_EQ(run.status, 0) << run.err;
    always_ = readSystemCalls(strace(), directory_.path()).paths;
    ASSERT_FALSE(always_.empty());
  }

  WatchedRun watch(std::vector<std::string> words = {}, const std::string& strVariable = "",
                   const std::vector<std::string>& under = {}) const {
    ProgramStreams streams = watched();
    if (!strVariable.empty()) streams.variables.push_back(strVariable);
    streams.under.insert(streams.under.end(), under.begin(), under.end());
    return seen(submit(std::move(words), streams), directory_.path().string());
  }
  WatchedRun watchText(const Role& role, const std::string& strText) const {
    write(kHostileFile, strText);
    std::vector<std::string> words{role.option, kHostileFile};
    if (role.refusal == Refusal::questions) words.insert(words.end(), {"--form", "long.form"});
    return watch(std::move(words));
  }

  /// What the last watched run did beyond this directory and that in which it was run.
  WatchedRun seen(Outcome outcome, const std::string& strDeployment) const {
    WatchedRun run{.outcome = std::move(outcome),
                   .calls = readSystemCalls(strace(), directory_.path()),
                   .outsiders = {}};
    for (const std::string& strPath : run.calls.paths) {
      const bool blnInside = (strPath + "/").starts_with(strDeployment + "/") ||
                             (strPath + "/").starts_with(directory_.path().string() + "/");
      if (!blnInside && !always_.contains(strPath)) run.outsiders.push_back(strPath);
    }
    return run;
  }

  static void expectNothingOutside(const WatchedRun& run) {
    EXPECT_THAT(run.outsiders, IsEmpty());
    EXPECT_THAT(run.calls.networkCalls, IsEmpty());
  }

  void refer(const std::string& strReference) const {
    std::string strSchema = strHonest_;
    strSchema.insert(strSchema.find("<xs:element name=\"card\""), strReference);
    write("card.xsd", strSchema);
  }

  std::string strace() const { return calls_.at("strace"); }
  ProgramStreams watched() const {
    ProgramStreams streams;
    streams.under = tracing(strace());
    // Two cannot watch one program, and the search for leaks is a watcher too.
    const char* options = std::getenv("ASAN_OPTIONS");
    streams.variables.push_back("ASAN_OPTIONS=" + std::string(options ? options : "") +
                                ":detect_leaks=0");
    return streams;
  }

 private:
  TemporaryDirectory calls_;
  std::set<std::string> always_;
  const std::string strHonest_ = read("card.xsd");
};

TEST_F(HostileInputSystemCalls, AreSeen) {
  const WatchedRun file = watch({"--template", secret("secret.xml")});
  EXPECT_THAT(file.outsiders, ElementsAre(secret("secret.xml")));

  std::filesystem::create_symlink(secret("secret.xml"), directory_.at("link.xml"));
  const WatchedRun link = watch({"--template", "link.xml"});
  EXPECT_THAT(link.outsiders, ElementsAre(secret("secret.xml")));

  const WatchedRun missing = watch({"--template", secret("missing.xml")});
  EXPECT_THAT(missing.outsiders, ElementsAre(secret("missing.xml")));

  const WatchedRun network =
      watch({}, "", {"bash", "-c", "(exec 3<>/dev/tcp/127.0.0.1/9) 2>/dev/null; exec \"$@\"", "-"});
  EXPECT_THAT(network.calls.networkCalls, Contains(::testing::HasSubstr("connect(")));
}

TEST_F(HostileInputSystemCalls, OfTheHonestRunAreForItsDeployment) {
  const WatchedRun run = watch();
  expectSent(run.outcome);
  expectNothingOutside(run);
  for (const char* file : {"template.xml", "card.xsd", "short.xsd", "card.form", "send.out"}) {
    EXPECT_THAT(run.calls.paths, Contains(directory_.at(file)));
  }
}

TEST_F(HostileInputSystemCalls, OfTheExampleAreForItsDeployment) {
  const std::string strExample = VARNEL_SOURCE_DIR "/examples/inspection";
  const ProgramRun run = build({"--deployment", strExample, "--form", strExample + "/complete.form",
                                "--submit", "--validate", "--send-out", "send.out", "--trace",
                                "trace.out", "--now", "2026-03-05T09:05:07"},
                               watched());
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, kSuccessJson);
  const WatchedRun example = seen({.run = run, .strTrace = "", .strSend = ""}, strExample);
  expectNothingOutside(example);
  EXPECT_THAT(example.calls.paths, Contains(strExample + "/schema/inspection.xsd"));
}

TEST_F(HostileInputSystemCalls, AreNoneForAnEntity) {
  const struct {
    const char *says, *documentType, *content;
  } cases[] = {
      {"a file", "<!DOCTYPE d [<!ENTITY e SYSTEM '%DIR/secret.txt'>]>", "&e;"},
      {"a file: URL", "<!DOCTYPE d [<!ENTITY e SYSTEM 'file://%DIR/secret.txt'>]>", "&e;"},
      {"the network", "<!DOCTYPE d [<!ENTITY e SYSTEM 'http://127.0.0.1:9/e'>]>", "&e;"},
      {"a parameter entity", "<!DOCTYPE d [<!ENTITY % p SYSTEM '%DIR/secret.dtd'> %p;]>", "&e;"},
      {"one on the network", "<!DOCTYPE d [<!ENTITY % p SYSTEM 'ftp://127.0.0.1:9/e.dtd'> %p;]>",
       ""},
      {"a DTD", "<!DOCTYPE d SYSTEM 'file://%DIR/secret.dtd'>", "&e;"},
      {"a DTD on the network", "<!DOCTYPE d SYSTEM 'http://127.0.0.1:9/e.dtd'>", "&e;"},
  };
  for (const Role& role : allRoles()) {
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(role.option) + ": " + c.says);
      const WatchedRun run = watchText(role, infected(role, c.documentType, c.content));
      EXPECT_THAT(run.calls.paths, Contains(directory_.at(kHostileFile)));
      expectNothingOutside(run);
    }
  }
}

TEST_F(HostileInputSystemCalls, AreNoneForADtdThatNothingNeeds) {
  const Role& role = roleOf("--template");
  for (const char* type : {"<!DOCTYPE d SYSTEM '%DIR/secret.dtd'>",
                           "<!DOCTYPE d PUBLIC '-//W3C//DTD XHTML 1.0 Strict//EN' "
                           "'http://127.0.0.1:9/e.dtd'>"}) {
    const WatchedRun run = watchText(role, infected(role, type, ""));
    expectSent(run.outcome);
    expectNothingOutside(run);
  }
}

TEST_F(HostileInputSystemCalls, AreNoneForAnInclusion) {
  const WatchedRun run =
      watchText(roleOf("--template"),
                infected(roleOf("--template"), "<?xml-stylesheet href='file://%DIR/secret.xml'?>",
                         "<i:include xmlns:i='http://www.w3.org/2001/XInclude' parse='text' "
                         "href='file://%DIR/secret.txt'/>"));
  expectNothingOutside(run);
}

TEST_F(HostileInputSystemCalls, AreNoneForASchemaOnTheNetwork) {
  for (const char* location :
       {"http://127.0.0.1:9/o.xsd", "https://127.0.0.1:9/o.xsd", "ftp://127.0.0.1:9/o.xsd",
        "file://127.0.0.1/o.xsd", "//127.0.0.1/share/o.xsd", "\\\\127.0.0.1\\share\\o.xsd"}) {
    for (const char* kind : {"import namespace='urn:o'", "include", "redefine"}) {
      SCOPED_TRACE(std::string(kind) + " " + location);
      refer("<xs:" + std::string(kind) + " schemaLocation='" + location + "'/>");
      const WatchedRun run = watch();
      if (std::string(kind).starts_with("import")) {
        expectSent(run.outcome);  // nothing of it is needed
      } else {
        EXPECT_THAT(run.outcome.strTrace,
                    ::testing::HasSubstr("cannot be registered: It refers to"));
      }
      expectNothingOutside(run);
    }
  }
  refer("<xs:import namespace='http://127.0.0.1:9/o.xsd'/>");
  expectNothingOutside(watch());
}

TEST_F(HostileInputSystemCalls, AreNoneForWhatTheMessageNames) {
  std::string strTemplate = read("template.xml");
  strTemplate.insert(strTemplate.find(" xmlns:c"),
                     " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                     "xsi:schemaLocation='urn:card http://127.0.0.1:9/card.xsd urn:card " +
                         secret("secret.xsd") + "'");
  const WatchedRun run = watchText(roleOf("--template"), strTemplate);
  EXPECT_TRUE(run.outcome.strTrace.ends_with(": End ValidateXMLAgainstSchema\n"));
  expectNothingOutside(run);
}

TEST_F(HostileInputSystemCalls, AreNoneForACatalogOfTheMachine) {
  write("elsewhere.xml",
        "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'><rewriteSystem "
        "systemIdStartString='' rewritePrefix='" +
            outside_.path().string() +
            "/'/><rewriteURI uriStartString='' rewritePrefix='http://127.0.0.1:9/'/></catalog>");
  for (const char* reference :
       {"include schemaLocation='short.xsd'", "include schemaLocation='secret.xsd'",
        "import namespace='urn:o' schemaLocation='secret.xsd'", "import namespace='urn:o'",
        "import namespace='http://www.w3.org/1999/xlink' "
        "schemaLocation='http://www.w3.org/1999/xlink.xsd'"}) {
    SCOPED_TRACE(reference);
    refer("<xs:" + std::string(reference) + "/>");
    const WatchedRun run = watch({}, "XML_CATALOG_FILES=" + directory_.at("elsewhere.xml"));
    EXPECT_THAT(run.calls.paths, Not(Contains(directory_.at("elsewhere.xml"))));
    expectNothingOutside(run);
  }
}

TEST_F(HostileInputSystemCalls, AreNoneForWhatTheDeploymentsCatalogHasOnTheNetwork) {
  write("catalog.xml",
        "<!DOCTYPE catalog SYSTEM 'http://127.0.0.1:9/catalog.dtd'>"
        "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>"
        "<rewriteURI uriStartString='' rewritePrefix='http://127.0.0.1:9/'/>"
        "<nextCatalog catalog='http://127.0.0.1:9/catalog.xml'/></catalog>");
  refer("<xs:import namespace='urn:o' schemaLocation='http://127.0.0.1:9/o.xsd'/>");
  const WatchedRun run = watch();
  expectSent(run.outcome);
  EXPECT_THAT(run.calls.paths, Contains(directory_.at("catalog.xml")));
  expectNothingOutside(run);
}

// deliberate: files of the machine that the deployment's own schema names are read, see
// HostileInputSchema. It is these and no more.
TEST_F(HostileInputSystemCalls, ForASchemaThatClimbsAreForTheFileThatItNames) {
  const std::string strUp = "../" + outside_.path().filename().string() + "/";
  for (const char* file : {"secret.xsd", "secret.txt", "missing.xsd"}) {
    SCOPED_TRACE(file);
    refer("<xs:import namespace='urn:o' schemaLocation='" + strUp + file + "'/>");
    const WatchedRun run = watch();
    EXPECT_THAT(run.outsiders, ElementsAre(secret(file)));
    EXPECT_THAT(run.calls.networkCalls, IsEmpty());
  }
}

TEST_F(HostileInputSystemCalls, ForASchemaUrlStayBelowThePageUnlessItClimbs) {
  const std::string strSecret = secret("secret.xsd");
  for (const std::string& strUrl :
       {strSecret, "/" + strSecret, "file://" + strSecret, "file:" + strSecret,
        "x/../file://" + strSecret, std::string("http://127.0.0.1:9/o.xsd"),
        "%2e%2e/" + outside_.path().filename().string() + "/secret.xsd",
        "..\\" + outside_.path().filename().string() + "\\secret.xsd"}) {
    SCOPED_TRACE(strUrl);
    expectNothingOutside(watch({"--schema-url", strUrl, "--schema-uri", "urn:o"}));
  }
  const WatchedRun climbing =
      watch({"--schema-url", "../" + outside_.path().filename().string() + "/secret.txt"});
  EXPECT_THAT(climbing.outsiders, ElementsAre(secret("secret.txt")));
  EXPECT_THAT(climbing.calls.networkCalls, IsEmpty());
}

TEST_F(HostileInputSystemCalls, AreNoneForALocationOnTheNetwork) {
  for (const Role& role : kConfigurationRoles) {
    for (const char* url : {"http://127.0.0.1:9/a.xml", "ftp://127.0.0.1:9/a.xml"}) {
      SCOPED_TRACE(std::string(role.option) + ": " + url);
      expectNothingOutside(watch({role.option, url, "--form", "long.form"}));
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
