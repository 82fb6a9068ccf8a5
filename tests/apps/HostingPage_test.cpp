#include "Program.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;

class HostingPage : public ProgramTest {
 protected:
  /// The value of the first question after a run with this form.
  std::string nameFrom(std::string_view strForm) const {
    write("form.txt", strForm);
    const ProgramRun run = buildDeployment({"--form", "form.txt", "--park-out", "park.xml"});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    return parsed(read("park.xml")).selectSingleNode("//prtobjct[@id='name']/@value").text();
  }

  /// The message's element of this name for a submitted form.
  std::string messageElement(const char* element, std::vector<std::string> words) const {
    words.insert(words.end(), {"--submit", "--send-out", "send.xml"});
    const ProgramRun run = buildDeployment(words);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    const Document objSend = parsed(read("send.xml"));
    objSend.setSelectionNamespaces("xmlns:c='urn:card'");
    return objSend.selectSingleNode("/c:card/" + std::string(element)).text();
  }
};

TEST_F(HostingPage, DecodesTheForm) {
  EXPECT_EQ(nameFrom("name=%C3%85sa+%26+Co&other=1"), "\xC3\x85sa & Co");
}

TEST_F(HostingPage, IgnoresOneLineEndAfterTheForm) {
  const struct {
    const char *says, *form, *value;
  } cases[] = {
      {"no line end", "name=Ada", "Ada"},
      {"LF", "name=Ada\n", "Ada"},
      {"CR LF", "name=Ada\r\n", "Ada"},
      {"only the last of two", "name=Ada\n\n", "Ada\n"},
      {"a CR alone is part of the value", "name=Ada\r", "Ada\r"},
      {"an encoded one is part of the value", "name=Ada%0A", "Ada\n"},
      {"an empty form", "", ""},
      {"nothing but a line end", "\r\n", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(nameFrom(c.form), c.value);
  }
}

TEST_F(HostingPage, ReadsTheFormFromStandardInput) {
  const ProgramRun run = buildDeployment({"--form", "-", "--park-out", "park.xml"},
                                         {.strInput = std::string(kForm) + "\r\n"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(read("park.xml"), kParkedXml);
}

TEST_F(HostingPage, SubmitsAnEmptyFormByDefault) {
  const ProgramRun run =
      buildDeployment({"--park-out", "park.xml"}, {.strInput = "name=not+asked+for"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_THAT(read("park.xml"), HasSubstr("dynamic=\"false\" value=\"\" fieldlabel=\"\"/>"));
  EXPECT_EQ(read("park.xml").find("not asked for"), std::string::npos);
}

TEST_F(HostingPage, RefusesAFormThatCannotBeRead) {
  EXPECT_TRUE(CouldNotRun(buildDeployment({"--form", "missing.form"}), "missing.form"));
  EXPECT_TRUE(CouldNotRun(buildDeployment({"--form", "."}), "--form .: "));
  EXPECT_TRUE(CouldNotRun(buildDeployment({"--form", ""}), "--form"));
  EXPECT_TRUE(CouldNotRun(buildDeployment({"--form", "missing", "--no-context"}), "missing"));
}

TEST_F(HostingPage, TakesAnyBytesAsAForm) {
  std::string strBytes = "name=";
  for (int byte = 0; byte < 256; ++byte) strBytes += static_cast<char>(byte);
  write("form.txt", strBytes);
  const ProgramRun run = buildDeployment({"--form", "form.txt"});
  EXPECT_EQ(run.status, 1);  // a NUL is no character of an XML document
  EXPECT_THAT(run.out, HasSubstr("\"errorCode\": -2147467259,\n  \"errorName\": null,"));
}

TEST_F(HostingPage, WithoutContextFailsAtTheFirstAnswer) {
  const ProgramRun run = buildDeployment({"--no-context"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("\"errorName\": \"SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING\""));
}

TEST_F(HostingPage, WithoutServerStillReadsTheForm) {
  const ProgramRun run = buildDeployment({"--no-server", "--form", "-", "--park-out", "park.xml"},
                                         {.strInput = kForm});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(read("park.xml"), kParkedXml);
}

TEST_F(HostingPage, ReadsAllNumericDatesInTheOrderAsked) {
  write("form.txt", "name=Ada&born=04-05-06");
  const struct {
    std::vector<std::string> words;
    const char* date;
  } cases[] = {
      {{}, "2006-05-04"},
      {{"--date-order", "dmy"}, "2006-05-04"},
      {{"--date-order", "mdy"}, "2006-04-05"},
      {{"--date-order", "ymd"}, "2004-05-06"},
  };
  for (auto c : cases) {
    SCOPED_TRACE(c.date);
    c.words.insert(c.words.end(), {"--form", "form.txt"});
    EXPECT_EQ(messageElement("c:born", c.words), c.date);
  }
  for (const char* order : {"", "DMY", "ydm", "dmy "}) {
    EXPECT_TRUE(CouldNotRun(buildDeployment({"--date-order", order}), "--date-order")) << order;
  }
}

TEST_F(HostingPage, StopsTheClockAtTheMomentAsked) {
  const std::vector<std::string> words{"--now", "2024-02-29T23:59:00"};
  EXPECT_EQ(messageElement("c:date", words), "2024-02-29");
  EXPECT_EQ(messageElement("c:time", words), "23:59:00");
}

TEST_F(HostingPage, RefusesAMomentThatIsNone) {
  for (const char* now : {"",
                          "2026-03-05",
                          "2026-03-05 09:05:07",
                          "2026-03-05T09:05",
                          "2026-03-05T09:05:07Z",
                          "2026-03-05T09:05:07.5",
                          " 2026-03-05T09:05:07",
                          "2026-3-05T09:05:07",
                          "26-03-05T09:05:07",
                          "2026-02-29T00:00:00",
                          "2026-13-01T00:00:00",
                          "2026-00-01T00:00:00",
                          "2026-01-00T00:00:00",
                          "2026-04-31T00:00:00",
                          "2026-03-05T24:00:00",
                          "2026-03-05T09:60:00",
                          "2026-03-05T09:05:60",
                          "0000-01-01T00:00:00",
                          "2026-03-05t09:05:07",
                          "2026/03/05T09:05:07",
                          "now"}) {
    EXPECT_TRUE(CouldNotRun(buildDeployment({"--now", now}), "--now")) << now;
  }
}

TEST_F(HostingPage, TakesAPageDirectory) {
  const ProgramRun run =
      buildDeployment({"--page-dir", "pages", "--form", "-"}, {.strInput = kForm});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
