#include "Program.h"

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

TEST_F(Outputs, KeepTheLineEndsInsideATracedText) {
  EXPECT_EQ(buildForm({"--trace", "trace.txt"}).status, 0);
  EXPECT_THAT(read("trace.txt"),
              HasSubstr(": BuildXml - objParkXMl = <?xml version=\"1.0\"?>\r\n<prtobjcts>"));
  EXPECT_THAT(read("trace.txt"), HasSubstr("</prtobjcts>\r\n\nbuildXML: Set objAck = "));
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
  for (const char* option : {"--park-out", "--send-out", "--result", "--trace"}) {
    for (const char* place : {"missing/out", ".", "", "form.txt/out"}) {
      SCOPED_TRACE(std::string(option) + " " + place);
      std::vector<std::string> words{"--submit", option, place};
      const auto add = [&](const char* other, const char* file) {
        if (std::string_view(other) != option) words.insert(words.end(), {other, file});
      };
      add("--park-out", "park.xml");
      add("--send-out", "send.xml");
      add("--trace", "trace.txt");
      EXPECT_TRUE(CouldNotRun(buildForm(words), place));
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

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
