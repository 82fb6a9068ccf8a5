#include <gmock/gmock.h>

#include <csignal>

#include "Program.h"
#include "SystemCalls.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;

class Outputs : public ProgramTest {
 protected:
  Outputs() { write("form.txt", kForm); }

  ProgramRun buildForm(std::vector<std::string> words, const ProgramStreams& streams = {}) const {
    words.insert(words.end(), {"--form", "form.txt"});
    return buildDeployment(std::move(words), streams);
  }
};

TEST_F(Outputs, HoldTheParkedFormAndTheMessage) {
  const ProgramRun run =
      buildForm({"--submit", "--park-out", "park.xml", "--send-out", "send.xml"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kSuccessJson);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(read("park.xml"), kParkedXml);
  EXPECT_EQ(read("send.xml"), kMessageXml);
}

TEST_F(Outputs, WithoutSubmitHoldTheParkedFormAlone) {
  const ProgramRun run = buildForm({"--park-out", "park.xml", "--send-out", "send.xml"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kSuccessJson);
  EXPECT_EQ(read("park.xml"), kParkedXml);
  EXPECT_FALSE(exists("send.xml"));
}

TEST_F(Outputs, HaveNoDeclarationWhereTheDocumentHasNone) {
  write("plain.xml", "<prtobjcts><hdnflds/></prtobjcts>");
  EXPECT_EQ(buildForm({"--object-list", "plain.xml", "--park-out", "park.xml"}).status, 0);
  EXPECT_EQ(read("park.xml"), "<prtobjcts><hdnflds/></prtobjcts>\r\n");
}

TEST_F(Outputs, AreUtf8) {
  write("form.txt", "name=%C3%85sa");
  EXPECT_EQ(buildForm({"--park-out", "park.xml"}).status, 0);
  EXPECT_THAT(read("park.xml"), HasSubstr("value=\"\xC3\x85sa\""));
}

TEST_F(Outputs, HoldTheParkedFormAlsoAfterAFailure) {
  write("objects.xml",
        "<prtobjcts><prtobjct id=\"name\" objecttype=\"field\" dynamic=\"false\"/>"
        "<prtobjct id=\"born\" objecttype=\"field\"/></prtobjcts>");
  const ProgramRun run = buildForm({"--park-out", "park.xml", "--send-out", "send.xml"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("\"errorDetail\": \"ParkProtField - Type mismatch\""));
  EXPECT_EQ(read("park.xml"),
            "<prtobjcts><prtobjct id=\"name\" objecttype=\"field\" dynamic=\"false\" value=\"Ada\""
            " fieldlabel=\"Your name\"/><prtobjct id=\"born\" objecttype=\"field\"/>"
            "</prtobjcts>\r\n");
  EXPECT_FALSE(exists("send.xml"));
}

TEST_F(Outputs, HoldNoParkedFormWithoutAnObjectList) {
  const ProgramRun run = build({"--park-out", "park.xml"});
  EXPECT_EQ(run.status, 1);
  EXPECT_FALSE(exists("park.xml"));
}

TEST_F(Outputs, ReplaceWhatStoodThere) {
  write("park.xml", std::string(10000, 'x'));
  write("result.json", std::string(10000, 'x'));
  EXPECT_EQ(buildForm({"--park-out", "park.xml", "--result", "result.json"}).status, 0);
  EXPECT_EQ(read("park.xml"), kParkedXml);
  EXPECT_EQ(read("result.json"), kSuccessJson);
}

TEST_F(Outputs, LeaveAnEarlierMessageAloneWhenTheRunMadeNone) {
  write("send.xml", "earlier");
  EXPECT_EQ(buildForm({"--send-out", "send.xml"}).status, 0);
  EXPECT_EQ(read("send.xml"), "earlier");
}

TEST_F(Outputs, MayReplaceAnInput) {
  EXPECT_EQ(buildForm({"--park-out", "objects.xml"}).status, 0);
  EXPECT_EQ(read("objects.xml"), kParkedXml);
}

TEST_F(Outputs, HoldTheResultInsteadOfStandardOutput) {
  const ProgramRun run = buildForm({"--result", "result.json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(read("result.json"), kSuccessJson);
}

TEST_F(Outputs, HoldTheTraceWithPlainLineEnds) {
  const ProgramRun run = build({"--template", "T", "--trace", "trace.txt"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(read("trace.txt"),
            ": BuildXml - strTemplateXML =T\n"
            ": BuildXml - strMsgObjectXML =\n"
            ": BuildXml - strSchemaTypeMapperXML =\n"
            ": BuildXml - strHiddenFieldXML =\n"
            ": BuildXml - strNamespaceXML =\n"
            ": BuildXml - strQuestionsXmlPath =\n"
            ": BuildXml - strReferenceXmlPath =\n"
            ": BuildXml - blnSubmit =False\n"
            ": BuildXml - blnValidateAgainstSchema =False\n"
            ": BuildXml - strSchemaUrl =\n"
            ": BuildXml - strSchemaUri =\n");
}

TEST_F(Outputs, EscapeTheLineEndsInsideATracedText) {
  EXPECT_EQ(buildForm({"--trace", "trace.txt"}).status, 0);
  EXPECT_THAT(read("trace.txt"),
              HasSubstr(": BuildXml - objParkXMl = <?xml version=\"1.0\"?>\\r\\n<prtobjcts>"));
  EXPECT_THAT(read("trace.txt"), HasSubstr("</prtobjcts>\\r\\n\nbuildXML: Set objAck = "));
}

TEST_F(Outputs, LetNoAnswerForgeATraceLine) {
  write("objects.xml",
        "<prtobjcts><prtobjct id='a&#10;buildXML: forged&#13;&#9;&#x85;&#x2028;\xC3\xA9\\' "
        "objecttype='field'/></prtobjcts>");
  for (const char* trace : {"trace.txt", "-"}) {
    const ProgramRun run =
        build({"--object-list", "objects.xml", "--trace", trace, "--template", "T\x1b\x7f"});
    const std::string strTrace = *trace == '-' ? run.err : read(trace);
    EXPECT_THAT(strTrace,
                HasSubstr("id=\"a&#10;buildXML: forged&#13;&#9;\\u0085\\u2028\xC3\xA9\\\""));
    EXPECT_THAT(strTrace, HasSubstr(": BuildXml - strTemplateXML =T\\x1b\\x7f\n"));
  }
  write("objects.xml", "<prtobjcts><t>x\nbuildXML: forged\r\ty</t></prtobjcts>");
  build({"--object-list", "objects.xml", "--trace", "trace.txt"});
  EXPECT_THAT(read("trace.txt"), HasSubstr("<t>x\\nbuildXML: forged\\n\\ty</t>"));
}

TEST_F(Outputs, HoldNothingThatCouldNotBeOpenedAgain) {
  const std::string strBefore = read("objects.xml");
  write("form.txt", "name=" + std::string(std::size_t{12} << 20, '"'));
  const ProgramRun run = buildForm({"--object-list", "objects.xml", "--park-out", "objects.xml"});
  EXPECT_TRUE(
      CouldNotRun(run, "--park-out objects.xml: The document is larger than 67108864 bytes."));
  EXPECT_EQ(read("objects.xml"), strBefore);
}

TEST_F(Outputs, WarnOfAnObjectListThatHoldsAnEarlierForm) {
  const std::string strWarning =
      "varnel-xml: warning: --object-list list.xml: it holds rows or hidden fields of an earlier "
      "form, so answers can be lost; pass the object list that the form's page has\n";
  const struct {
    const char *says, *objects;
    bool blnWarned;
  } cases[] = {
      {"as the page has it",
       "<prtobjct id='t' objecttype='table' type='dynatable' dynamic='false'><column id='c'/>"
       "</prtobjct><prtobjct id='g' objecttype='table' type='table' dynamic='false'><column "
       "id='c'/>"
       "<row id='1'/></prtobjct><hdnflds/>",
       false},
      {"a parked row",
       "<prtobjct id='t' objecttype='table' type='dynatable' dynamic='false'><row id='1'>"
       "<column id='c' value='v'/></row></prtobjct><hdnflds/>",
       true},
      {"a parked hidden field", "<hdnflds><hdnfld id='h' value=''/></hdnflds>", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    write("list.xml", "<?xml version='1.0'?><prtobjcts>" + std::string(c.objects) + "</prtobjcts>");
    EXPECT_EQ(buildForm({"--object-list", "list.xml"}).err, c.blnWarned ? strWarning : "");
    EXPECT_EQ(buildDeployment({"--object-list", "list.xml"}).err, "") << "nothing is posted";
  }
}

TEST_F(Outputs, SendTheTraceToStandardError) {
  EXPECT_EQ(build({"--trace", "trace.txt"}).status, 1);
  const ProgramRun run = build({"--trace", "-"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, read("trace.txt"));
  EXPECT_THAT(run.out, HasSubstr("\"success\": false"));
  EXPECT_FALSE(exists("-"));
}

TEST_F(Outputs, ThatCannotBeWrittenLeaveNothingBehind) {
  const std::pair<const char*, const char*> places[] = {
      {"missing/out", "No such file or directory"},
      {".", "Is a directory"},
      {"", "No such file or directory"},
      {"form.txt/out", "Not a directory"}};
  for (const char* option : {"--park-out", "--send-out", "--result", "--trace"}) {
    for (const auto& [place, reason] : places) {
      SCOPED_TRACE(std::string(option) + " " + place);
      std::vector<std::string> words{"--submit", option, place};
      const auto add = [&](const char* other, const char* file) {
        if (std::string_view(other) != option) words.insert(words.end(), {other, file});
      };
      add("--park-out", "park.xml");
      add("--send-out", "send.xml");
      add("--trace", "trace.txt");
      const std::string strReason = std::string(option) + " " + place + ": " + reason;
      EXPECT_TRUE(CouldNotRun(buildForm(words), strReason));
      for (const char* file : {"park.xml", "send.xml", "trace.txt"}) {
        EXPECT_FALSE(exists(file)) << file;
      }
    }
  }
}

TEST_F(Outputs, OnAFullDeviceAreAFailure) {
  for (const char* option : {"--park-out", "--send-out", "--result", "--trace"}) {
    SCOPED_TRACE(option);
    EXPECT_TRUE(CouldNotRun(buildForm({"--submit", option, "/dev/full"}), "/dev/full"));
  }
}

TEST_F(Outputs, OnAStandardOutputThatTakesNothingAreAFailure) {
  EXPECT_TRUE(CouldNotRun(buildForm({}, {.strOutput = "/dev/full"}), "standard output"));
  EXPECT_TRUE(CouldNotRun(buildForm({}, {.blnCloseOutput = true}), "standard output"));
}

TEST_F(Outputs, DoNotTakeThePlaceOfAClosedStandardOutput) {
  const ProgramRun run = buildForm({"--park-out", "park.xml"}, {.blnCloseOutput = true});
  EXPECT_TRUE(CouldNotRun(run, "standard output"));
  EXPECT_EQ(read("park.xml"), kParkedXml);
}

TEST_F(Outputs, FollowLinksAndLeaveThemInPlace) {
  std::filesystem::create_directory(directory_.path() / "store");
  std::filesystem::create_symlink("store/kept.xml", directory_.at("park.xml"));
  EXPECT_EQ(buildForm({"--park-out", "park.xml"}).status, 0);  // it leads to nothing yet
  EXPECT_TRUE(std::filesystem::is_symlink(directory_.at("park.xml")));
  EXPECT_EQ(read("store/kept.xml"), kParkedXml);

  write("store/kept.xml", "earlier");
  EXPECT_TRUE(CouldNotRun(
      buildForm({"--park-out", "park.xml", "--send-out", "/dev/full", "--submit"}), "/dev/full"));
  EXPECT_TRUE(std::filesystem::is_symlink(directory_.at("park.xml")));
  EXPECT_EQ(read("store/kept.xml"), "earlier");
}

TEST_F(Outputs, KeepThePermissionsOfAFileAndHideANewOne) {
  namespace fs = std::filesystem;
  constexpr fs::perms kShared = fs::perms::owner_read | fs::perms::owner_write |
                                fs::perms::group_read | fs::perms::others_read;
  write("park.xml", "earlier");
  fs::permissions(directory_.at("park.xml"), kShared);
  EXPECT_EQ(buildForm({"--park-out", "park.xml", "--trace", "trace.txt"}).status, 0);
  EXPECT_EQ(fs::status(directory_.at("park.xml")).permissions(), kShared);
  EXPECT_EQ(fs::status(directory_.at("trace.txt")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Outputs, AreRefusedWhereTwoAreOneFile) {
  std::filesystem::create_symlink("park.xml", directory_.at("alias.xml"));
  write("form.txt", kForm);
  const struct {
    const char* says;
    std::vector<std::string> words;
    const char* reason;
  } cases[] = {
      {"one name",
       {"--park-out", "a", "--send-out", "a"},
       "--send-out a: it is the file of --park"},
      {"two names", {"--park-out", "./a", "--result", "a"}, "--result a: it is the file of --park"},
      {"a link", {"--park-out", "park.xml", "--trace", "alias.xml"}, "--trace alias.xml: it is"},
      {"an input", {"--send-out", "form.txt"}, "--send-out form.txt: it is the file of --form"},
      {"an input of the deployment", {"--result", "template.xml"}, "it is the file of --template"},
      {"what tells the options", {"--trace", "deployment.json"}, "it is the file of --deployment"},
      {"the object list, by another", {"--send-out", "objects.xml"}, "it is the file of --object"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strBefore = read("template.xml") + read("form.txt") + read("objects.xml");
    EXPECT_TRUE(CouldNotRun(buildForm(c.words), c.reason));
    EXPECT_EQ(read("template.xml") + read("form.txt") + read("objects.xml"), strBefore);
    EXPECT_FALSE(exists("a"));
  }
}

/// What a run that is broken off leaves of the two files that it replaces.
class OutputsBrokenOff : public Outputs {
 protected:
  void SetUp() override {
    if (kSanitized) GTEST_SKIP() << "the sanitizer makes hundreds of such calls of its own";
    if (!canTrace()) GTEST_SKIP() << "strace is missing, or may not watch other programs here";
  }

  /// Runs with the n-th call of this name disturbed; true while there is such a call.
  bool runDisturbed(const std::string& strCall, const std::string& strHow, int lngCall) {
    write("park.xml", "earlier");
    write("result.json", "earlier");
    std::filesystem::remove(directory_.at("send.xml"));
    ProgramStreams streams;
    streams.under = {"strace",
                     "-f",
                     "-qq",
                     "-o",
                     directory_.at("calls"),
                     "-e",
                     "trace=" + strCall,
                     "-e",
                     "inject=" + strCall + ":" + strHow + ":when=" + std::to_string(lngCall)};
    run_ = buildForm(
        {"--submit", "--park-out", "park.xml", "--send-out", "send.xml", "--result", "result.json"},
        streams);
    if (strHow == "signal=SIGTERM") return run_.status == 128 + SIGTERM;
    if (strHow == "signal=SIGKILL") return run_.status == 128 + SIGKILL;
    return textOfFile(directory_.at("calls")).find("(INJECTED)") != std::string::npos;
  }

  void expectOldOrNew() const {
    EXPECT_THAT(read("park.xml"), ::testing::AnyOf("earlier", strParked_));
    EXPECT_THAT(read("result.json"), ::testing::AnyOf("earlier", kSuccessJson));
    EXPECT_THAT(exists("send.xml") ? read("send.xml") : "", ::testing::AnyOf("", kMessageXml));
  }

  void expectNoRest() const {
    for (const auto& entry : std::filesystem::directory_iterator(directory_.path())) {
      EXPECT_FALSE(entry.path().filename().string().starts_with(".")) << entry.path();
    }
  }

  ProgramRun run_;
  std::string strParked_;
};

constexpr const char* kCalls[] = {"write", "fsync", "linkat", "rename", "openat"};
constexpr int kMostCalls = 300;

TEST_F(OutputsBrokenOff, AreTheOldOnesOrTheNewOnesWhole) {
  ASSERT_EQ(buildForm({"--submit", "--park-out", "whole.xml"}).status, 0);
  strParked_ = read("whole.xml");
  for (const char* call : kCalls) {
    for (const char* how : {"signal=SIGTERM", "signal=SIGKILL", "error=ENOSPC"}) {
      // Programs open their libraries too: a failure there is none of an output.
      if (std::string_view(call) == "openat" && std::string_view(how) == "error=ENOSPC") continue;
      int lngCall = 1;
      for (; lngCall < kMostCalls && runDisturbed(call, how, lngCall); ++lngCall) {
        SCOPED_TRACE(std::string(call) + " " + how + " " + std::to_string(lngCall));
        expectOldOrNew();
        if (std::string_view(how) != "signal=SIGKILL") expectNoRest();
        if (std::string_view(how) == "error=ENOSPC") {
          EXPECT_EQ(run_.status, 2);
        }
        for (const auto& entry : std::filesystem::directory_iterator(directory_.path())) {
          if (entry.path().filename().string().starts_with(".")) remove(entry.path());
        }
      }
      EXPECT_GT(lngCall, 1) << call << " is never made";
      EXPECT_LT(lngCall, kMostCalls) << call;
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
