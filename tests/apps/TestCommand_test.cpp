#include <fstream>

#include "Program.h"

// `varnel-xml test`: folders that are submissions with what is expected of them.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class TestCommand : public ProgramTest {
 protected:
  /// A folder "one" with a submission of the deployment.
  TestCommand() {
    std::filesystem::create_directories(directory_.at("one"));
    write(
        "one/submission.json",
        R"({"deployment": "..", "form": "one.form", "submit": true, "now": "2026-03-05T09:05:07"})");
    write("one/one.form", kForm);
    write("one/park.xml", kParkedXml);
    write("one/send.xml", kMessageXml);
    write("one/result.json", kSuccessJson);
  }

  ProgramRun test(std::vector<std::string> words = {"one"}) const {
    words.insert(words.begin(), "test");
    return runProgram(directory_.path(), words);
  }
  void remove(std::string_view strName) const { std::filesystem::remove(directory_.at(strName)); }
};

TEST_F(TestCommand, IsContentWithWhatIsExpected) {
  const ProgramRun run = test();
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "ok    one\n1 submissions, 0 different, 0 not run\n");
  EXPECT_EQ(run.err, "");
}

TEST_F(TestCommand, ComparesOnlyWhatIsThere) {
  for (const char* name : {"one/park.xml", "one/send.xml"}) {
    remove(name);
    EXPECT_EQ(test().status, 0) << "without " << name;
  }
  remove("one/result.json");
  const ProgramRun run = test();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(
      run.out,
      HasSubstr(
          "nothing is expected: no park.xml, send.xml or result.json, which --update writes"));
}

TEST_F(TestCommand, ShowsADifferenceByQuestion) {
  write("questions.xml",
        "<questions><question id='name'><xpath>/c:card/c:name</xpath></question></questions>");
  const struct {
    const char *says, *file, *find, *replacement, *shown;
  } cases[] = {
      {"another answer", "park.xml", "value=\"Ada\"", "value=\"Eva\"",
       R"(park.xml: question "name": expected "Eva", got "Ada")"},
      {"another label", "park.xml", "fieldlabel=\"Your name\"", "fieldlabel=\"Name\"",
       R"(park.xml: question "name", @fieldlabel: expected "Name", got "Your name")"},
      {"an attribute too many", "park.xml", " type=\"text\"", "",
       R"(park.xml: question "name", @type: expected nothing, got "text")"},
      {"an attribute too few", "park.xml", " type=\"text\"", " type=\"text\" group=\"g\"",
       R"(park.xml: question "name", @group: expected "g", got nothing)"},
      {"a question too few", "park.xml", "<hdnflds/>",
       "<prtobjct id=\"more\" value=\"x\"/><hdnflds/>",
       R"(park.xml: question "more": expected "x", got nothing)"},
      {"a hidden field too few", "park.xml", "<hdnflds/>",
       "<hdnflds><hdnfld id=\"h\" value=\"x\"/></hdnflds>",
       R"(park.xml: question "h": expected "x", got nothing)"},
      {"another text in the message", "send.xml", ">Ada<", ">Eva<",
       R"(send.xml: question "name" (/c:card[1]/c:name[1]): expected "Eva", got "Ada")"},
      {"an element of no question", "send.xml", "<c:date>2026-03-05<", "<c:date>2026-03-06<",
       R"(send.xml: /c:card[1]/c:date[1]: expected "2026-03-06", got "2026-03-05")"},
      {"an element too many", "send.xml", "<c:name>Ada</c:name>", "",
       R"(send.xml: question "name" (/c:card[1]/c:name[1]): expected nothing, got "Ada")"},
      {"elements in another order", "send.xml",
       "<c:date>2026-03-05</c:date><c:time>09:05:07</c:time>",
       "<c:time>09:05:07</c:time><c:date>2026-03-05</c:date>",
       R"(send.xml: /c:card[1], order: expected "c:time", got "c:date")"},
      {"another namespace", "send.xml", "urn:card", "urn:cards",
       R"(send.xml: /c:card[1], namespace: expected "urn:cards", got "urn:card")"},
      {"a comment too few", "send.xml", "<c:name>", "<!--note--><c:name>",
       R"(send.xml: /c:card[1], #comment: expected "note", got nothing)"},
      {"another root", "send.xml", "<c:card xmlns:c=\"urn:card\">",
       "<c:card xmlns:c=\"urn:card\" kind=\"1\">",
       R"(send.xml: /c:card[1], @kind: expected "1", got nothing)"},
      {"a field of the result", "result.json", "true", "false",
       "result.json: success: expected false, got true"},
      {"a field too few", "result.json", "\"errorSource\": \"\"",
       "\"errorSource\": \"\", \"more\": \"x\"", R"(result.json: more: expected "x", got nothing)"},
      {"an error that did not come", "result.json", "\"userErrors\": null",
       R"("userErrors": [{"questionId": "name"}])", "result.json: userErrors: expected "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strFile = std::string("one/") + c.file;
    write("one/submission.json",
          R"({"deployment": "..", "questions": "../questions.xml", "form": "one.form",
              "submit": true, "now": "2026-03-05T09:05:07"})");
    const std::string strGood = read(strFile);
    write(strFile, replaceOnce(strGood, c.find, c.replacement));
    const ProgramRun run = test();
    write(strFile, strGood);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("DIFF  one\n      " + std::string(c.shown)));
    EXPECT_THAT(run.out, HasSubstr("\n1 submissions, 1 different, 0 not run\n"));
  }
}

TEST_F(TestCommand, ShowsTheEntriesOfAListThatTheOtherSideHasNot) {
  const std::string strResult = read("one/result.json");
  write("one/result.json",
        replaceOnce(strResult, "\"userErrors\": null",
                    R"("userErrors": [{"questionId": "name", "message": "Too long"},
                     {"questionId": "rows", "rowIndex": "2", "columnId": "c"}])"));
  const ProgramRun run = test();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(
      run.out,
      "DIFF  one\n"
      "      result.json: userErrors: expected a list of 2, got null\n"
      "      result.json: userErrors: question \"name\": expected \"Too long\", got nothing\n"
      "      result.json: userErrors: question \"rows\", row 2, column \"c\": expected an entry, "
      "got nothing\n"
      "1 submissions, 1 different, 0 not run\n");

  write("one/result.json",
        replaceOnce(strResult, "\"internalErrors\": null", "\"internalErrors\": []"));
  EXPECT_THAT(test().out,
              HasSubstr("      result.json: internalErrors: expected a list of 0, got null\n1 "));
}

TEST_F(TestCommand, NamesTheFileThatCannotBeRead) {
  const struct {
    const char *says, *file, *text, *told;
  } cases[] = {
      {"no JSON", "result.json", "{\n  \"success\": yes\n}",
       "varnel-xml: one: result.json: parse error at line 2, byte 14: invalid literal\n"},
      {"JSON that ends too early", "result.json", "{\n  \"success\": true",
       "varnel-xml: one: result.json: parse error at line 2, byte 18: unexpected end of input; "
       "expected '}'\n"},
      {"no XML", "send.xml", "<a>", "varnel-xml: one: send.xml: "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strFile = std::string("one/") + c.file;
    const std::string strGood = read(strFile);
    write(strFile, c.text);
    const ProgramRun run = test();
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, StartsWith(c.told));
    write(strFile, strGood);
  }
}

TEST_F(TestCommand, EscapesWhatATerminalWouldObey) {
  write("one/park.xml", replaceOnce(read("one/park.xml"), "value=\"Ada\"",
                                    "value=\"A\xC2\x9B"
                                    "2J\""));
  EXPECT_THAT(test().out, HasSubstr(R"(question "name": expected "A\u009b2J", got "Ada")"));
}

TEST_F(TestCommand, LeadsDifferencesOfTablesToRowsAndColumns) {
  write("objects.xml",
        "<?xml version=\"1.0\"?><prtobjcts><prtobjct id='t' objecttype='table' type='dynatable'"
        " dynamic='false'><column id='a'/><column id='b'/></prtobjct><hdnflds/></prtobjcts>");
  write("one/submission.json", R"({"deployment": "..", "form": "one.form"})");
  write("one/one.form", "t_rowCount=4&t___a_1=1&t___b_2=2&t___a_4=4");
  remove("one/send.xml");
  ASSERT_EQ(test({"--update", "one"}).status, 0);
  const std::string strPark = read("one/park.xml");
  const struct {
    const char *says, *find, *replacement, *shown;
  } cases[] = {
      {"a cell", "value=\"2\"", "value=\"3\"",
       R"(park.xml: question "t", row 2, column "b": expected "3", got "2")"},
      {"a row too few", "</prtobjct>", R"(<row id="9"><column id="a" value="x"/></row></prtobjct>)",
       R"(park.xml: question "t", row 9: expected "x", got nothing)"},
      {"a row between others too many",
       "<row id=\"2\"><column id=\"a\" value=\"\"/><column id=\"b\" value=\"2\"/></row>", "",
       R"(park.xml: question "t", row 2: expected nothing, got "2")"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    write("one/park.xml", replaceOnce(strPark, c.find, c.replacement));
    const ProgramRun run = test();
    EXPECT_EQ(run.status, 1);
    // Nothing else is different: rows and cells are found by their ids.
    EXPECT_EQ(run.out, "DIFF  one\n      " + std::string(c.shown) +
                           "\n1 submissions, 1 different, 0 not run\n");
  }
}

TEST_F(TestCommand, LeadsDifferencesOfErrorsToTheirQuestions) {
  std::filesystem::create_directories(directory_.at("pages"));
  write("card.xsd", R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"
    targetNamespace="urn:card" elementFormDefault="qualified"><xs:element name="card">
    <xs:complexType><xs:sequence><xs:element name="date"/><xs:element name="time"/>
    <xs:element name="name"><xs:simpleType><xs:restriction base="xs:string">
    <xs:maxLength value="2"/></xs:restriction></xs:simpleType></xs:element>
    <xs:element name="born"/></xs:sequence></xs:complexType></xs:element></xs:schema>)");
  write("questions.xml",
        "<questions><question id='name' maxLength='2'><xpath>/c:card/c:name</xpath></question>"
        "</questions>");
  write("one/submission.json",
        R"({"deployment": "..", "form": "one.form", "submit": true, "validate": true,
            "questions": "../questions.xml", "page-dir": "../pages", "schema-url": "card.xsd",
            "schema-uri": "urn:card", "now": "2026-03-05T09:05:07"})");
  ASSERT_EQ(test({"--update", "one"}).status, 0);
  const std::string strResult = read("one/result.json");
  ASSERT_THAT(strResult, HasSubstr("allowed (2)"));
  const struct {
    const char *says, *find, *replacement, *shown;
  } cases[] = {
      {"another message", "allowed (2)", "allowed (7)",
       "userErrors: question \"name\": message: expected "},
      {"another label", "Your name", "Name",
       "userErrors: question \"name\": questionText: expected \"Name\", got \"Your name\""},
      {"an error that did not come", "\"userErrors\": [",
       R"("userErrors": [{"questionId": "born", "message": "m"},)",
       "userErrors: question \"born\": expected \"m\", got nothing"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    write("one/result.json", replaceOnce(strResult, c.find, c.replacement));
    const ProgramRun run = test();
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("\n      result.json: " + std::string(c.shown)));
  }
}

TEST_F(TestCommand, ComparesDocumentsAsXmlAndTheirBytesOnRequest) {
  const struct {
    const char *says, *file, *text;
  } cases[] = {
      {"indented", "send.xml",
       "<c:card xmlns:c='urn:card'>\n  <c:date>2026-03-05</c:date>\n  <c:time>09:05:07</c:time>\n"
       "  <c:name>A&#100;a</c:name>\n  <c:born>2026-03-05</c:born>\n</c:card>"},
      {"with another prefix", "send.xml",
       "<card xmlns='urn:card'><date>2026-03-05</date><time>09:05:07</time>"
       "<name><![CDATA[Ada]]></name><born>2026-03-05</born></card>"},
      {"with attributes in another order", "park.xml",
       "<prtobjcts><prtobjct objecttype='field' id='name' type='text' dynamic='false'"
       " fieldlabel='Your name' value='Ada'/><prtobjct id='born' objecttype='field' type='date'"
       " dynamic='false' value='5.3.2026' fieldlabel=''/><hdnflds></hdnflds></prtobjcts>"},
      {"in one line", "result.json",
       R"({"userErrors":null,"success":true,"errorCode":0,"errorName":null,"errorDetail":"",
           "userMessage":"","errorSource":"","internalErrors":null})"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strFile = std::string("one/") + c.file;
    const std::string strGood = read(strFile);
    write(strFile, c.text);
    const ProgramRun run = test();
    EXPECT_EQ(run.status, 0) << run.out;
    const ProgramRun exact = test({"--exact", "one"});
    EXPECT_EQ(exact.status, 1);
    EXPECT_THAT(exact.out,
                HasSubstr(std::string(c.file) + ": the same, written otherwise: line 1"));
    write(strFile, strGood);
    EXPECT_EQ(test({"--exact", "one"}).status, 0);
  }
}

TEST_F(TestCommand, TakesAnEmptyFileForNone) {
  write("one/send.xml", "");
  const ProgramRun run = test();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("send.xml: expected none, got one"));

  write("one/submission.json", R"({"deployment": "..", "form": "one.form"})");
  EXPECT_EQ(test().status, 0);
  write("one/send.xml", kMessageXml);
  const ProgramRun parked = test();
  EXPECT_EQ(parked.status, 1);
  EXPECT_THAT(parked.out, HasSubstr("send.xml: expected one, got none"));
}

TEST_F(TestCommand, ComparesTheTraceWhereItIsThere) {
  write("one/trace.txt", "");
  ASSERT_EQ(test({"--update", "one"}).status, 0);
  const std::string strTrace = read("one/trace.txt");
  EXPECT_THAT(strTrace, HasSubstr(": BuildXml - strTemplateXML =./../template.xml\n"));
  EXPECT_EQ(test().status, 0);
  write("one/trace.txt", replaceOnce(strTrace, "blnSubmit =True", "blnSubmit =False"));
  const ProgramRun run = test();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              HasSubstr("trace.txt: line 8: expected \": BuildXml - blnSubmit =False\", got "
                        "\": BuildXml - blnSubmit =True\"\n"));
}

TEST_F(TestCommand, ComparesTheReportWhereTheSubmissionAsksForIt) {
  write("one/submission.json",
        R"({"deployment": "..", "form": "one.form", "submit": true, "report": true,
            "language": "de", "now": "2026-03-05T09:05:07"})");
  const ProgramRun run = test();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("      result.json: report: expected nothing, got "));
  ASSERT_EQ(test({"--update", "one"}).status, 0);
  EXPECT_THAT(read("one/result.json"), HasSubstr("Niemand hat danach gefragt"));
}

TEST_F(TestCommand, WritesWhatCameOutOverWhatIsThere) {
  write("one/park.xml", "<old/>");
  write("one/send.xml", "no XML");
  remove("one/result.json");
  const ProgramRun run = test({"one", "--update"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(read("one/park.xml"), kParkedXml);
  EXPECT_EQ(read("one/send.xml"), kMessageXml);
  EXPECT_FALSE(exists("one/result.json"));
}

TEST_F(TestCommand, WritesAllThatCameOutWhereNothingIsThere) {
  for (const char* name : {"one/park.xml", "one/send.xml", "one/result.json"}) remove(name);
  EXPECT_EQ(test({"one", "--update"}).status, 0);
  EXPECT_EQ(read("one/park.xml"), kParkedXml);
  EXPECT_EQ(read("one/send.xml"), kMessageXml);
  EXPECT_EQ(read("one/result.json"), kSuccessJson);
  EXPECT_FALSE(exists("one/trace.txt"));
}

TEST_F(TestCommand, RunsEveryFolderFromWhereverItIs) {
  std::filesystem::create_directories(directory_.at("two"));
  write("two/submission.json", R"({"deployment": "..", "form": "../one/one.form"})");
  write("two/park.xml", kParkedXml);
  const ProgramRun run = test({"one", directory_.at("two"), "three", "./one/"});
  EXPECT_TRUE(CouldNotRun(run, "varnel-xml: three: No such file or directory\n"));
  const ProgramRun others = test({"one", directory_.at("two"), "./one/"});
  EXPECT_EQ(others.status, 0);
  EXPECT_EQ(others.out, "ok    one\nok    " + directory_.at("two") +
                            "\nok    ./one/\n3 submissions, 0 different, 0 not run\n");
}

TEST_F(TestCommand, TellsDifferencesAlsoWhereAFolderCouldNotBeRun) {
  write("one/park.xml", replaceOnce(read("one/park.xml"), "Ada", "Eve"));
  const ProgramRun run = test({"three", "one"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, StartsWith("varnel-xml: three: No such file or directory\nDIFF  one\n"));
}

TEST_F(TestCommand, CannotRunWhatIsNoSubmission) {
  const std::string strDeep = std::string(100'000, '[') + std::string(100'000, ']');
  const struct {
    const char *says, *file, *text, *reason;
  } cases[] = {
      {"no file", "submission.json", nullptr, "submission.json: No such file or directory"},
      {"no JSON", "submission.json", "{", "parse error"},
      {"a key that is none", "submission.json", R"({"forms": "x"})", "\"forms\" is an unknown key"},
      {"an output", "submission.json", R"({"park-out": "x"})", "\"park-out\" is an unknown key"},
      {"an option of this command", "submission.json", R"({"update": true})",
       "\"update\" is an unknown key"},
      {"a deployment that is none", "submission.json", R"({"deployment": "none"})",
       "none/deployment.json: No such file or directory"},
      {"a form that is missing", "submission.json", R"({"form": "none"})", "--form ./none"},
      {"an expected document that is no XML", "send.xml", "<c:card", "send.xml: "},
      {"an expected result that is no JSON", "result.json", "true]", "parse error"},
      {"an expected result of many levels", "result.json", strDeep.c_str(), "levels of JSON"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strFile = std::string("one/") + c.file;
    const std::string strGood = read(strFile);
    if (c.text) {
      write(strFile, c.text);
    } else {
      remove(strFile);
    }
    const ProgramRun run = test();
    write(strFile, strGood);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("varnel-xml: one: "));
    EXPECT_TRUE(CouldNotRun(run, c.reason));
  }
  EXPECT_TRUE(CouldNotRun(test({}), "DIR"));
}

TEST_F(TestCommand, ShowsOnlySoManyDifferences) {
  std::string strPark = "<prtobjcts>";
  for (int at = 0; at < 5000; ++at) {
    strPark += "<prtobjct id='q" + std::to_string(at) + "' value='x'/>";
  }
  write("one/park.xml", strPark + "</prtobjcts>");
  const ProgramRun run = test();
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              HasSubstr("question \"q99\": expected \"x\", got nothing\n      and 4903 more"));
  EXPECT_THAT(run.out, Not(HasSubstr("\"q100\"")));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
