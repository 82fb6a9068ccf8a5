#include <csignal>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>

#include "HostileInput.h"
#include "Program.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using nlohmann::json;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

std::string lineOf(const json& object) { return object.dump() + '\n'; }

class Batch : public ProgramTest {
 protected:
  /// `varnel-xml batch` of the deployment with these words and this input.
  ProgramRun batch(std::string strInput, std::vector<std::string> words = {},
                   std::vector<std::string> under = {}) const {
    words.insert(words.begin(), {"batch", "--deployment", "."});
    return runProgram(directory_.path(), words,
                      {.strInput = std::move(strInput), .under = std::move(under)});
  }

  static std::vector<json> linesOf(const std::string& strOutput) {
    std::vector<json> lines;
    for (std::size_t at = 0; at < strOutput.size();) {
      const std::size_t end = strOutput.find('\n', at);
      if (end == std::string::npos) throw std::runtime_error("the last line has no end");
      lines.push_back(json::parse(strOutput.substr(at, end - at)));
      at = end + 1;
    }
    return lines;
  }
};

TEST_F(Batch, AnswersEachLineAsABuildDoes) {
  const ProgramRun run =
      batch(lineOf({{"id", "1"}, {"form", kForm}}) + lineOf({{"id", "2"}, {"form", kForm}}),
            {"--submit"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const std::vector<json> lines = linesOf(run.out);
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_EQ(lines[0]["id"], "1");
  EXPECT_EQ(lines[1]["id"], "2");
  for (const json& line : lines) {
    EXPECT_EQ(line["result"], json::parse(kSuccessJson));
    EXPECT_EQ(line["park"], kParkedXml);
    EXPECT_EQ(line["send"], kMessageXml);
  }
}

TEST_F(Batch, WritesItsKeysInTheirOrder) {
  const ProgramRun run = batch(lineOf({{"id", "a"}, {"form", kForm}}));
  const std::string strExpected =
      R"({"id":"a","result":{"success":true,"errorCode":0,"errorName":null,"errorDetail":"",)"
      R"("userMessage":"","errorSource":"","userErrors":null,"internalErrors":null},"park":)" +
      json(kParkedXml).dump() + R"(,"send":null})" + '\n';
  EXPECT_EQ(run.out, strExpected);
}

TEST_F(Batch, KeepsTheOrderOfTheLinesWhateverTheThreads) {
  std::string strInput;
  for (int at = 0; at < 200; ++at) {
    // Every tenth takes much longer than those behind it.
    const std::string strValue(at % 10 == 0 ? 30'000 : 1, 'x');
    strInput += lineOf({{"id", std::to_string(at)}, {"form", "name=" + strValue}});
  }
  const ProgramRun one = batch(strInput, {"--submit"});
  const ProgramRun four = batch(strInput, {"--submit", "--threads", "4"});
  EXPECT_EQ(one.status, 0);
  EXPECT_EQ(four.status, 0);
  EXPECT_TRUE(one.out == four.out) << "the outputs differ";
  const std::vector<json> lines = linesOf(four.out);
  ASSERT_THAT(lines, SizeIs(200));
  for (int at = 0; at < 200; ++at)
    EXPECT_EQ(lines[static_cast<std::size_t>(at)]["id"], std::to_string(at));
}

TEST_F(Batch, TellsWhatIsWrongWithALineAndGoesOn) {
  const struct {
    const char *says, *line, *id, *error;
  } cases[] = {
      {"no JSON", "nonsense", "null", "parse error"},
      {"an object that is cut off", R"({"id": "a", "form": "na)", "null", "parse error"},
      {"two objects", R"({"id": "a", "form": ""}{})", "null", "parse error"},
      {"an array", R"([{"id": "a", "form": ""}])", "null", "no JSON object"},
      {"a text", R"("a")", "null", "no JSON object"},
      {"no id", R"({"form": ""})", "null", "\"id\" is missing"},
      {"an id that is no text", R"({"id": 7, "form": ""})", "null", "\"id\" is no text"},
      {"neither form nor park", R"({"id": "a"})", "\"a\"", "neither \"form\" nor \"park\""},
      {"both", R"({"id": "a", "form": "", "park": "<prtobjcts/>"})", "\"a\"", "both"},
      {"a form that is no text", R"({"id": "a", "form": ["x"]})", "\"a\"", "\"form\" is no text"},
      {"a form that is a number", R"({"id": "a", "form": 1})", "\"a\"", "\"form\" is no text"},
      {"a stored form that is no XML", R"({"id": "a", "park": "<prtobjcts>"})", "\"a\"",
       "\"park\": "},
      {"a stored form that is something else", R"({"id": "a", "park": "<message/>"})", "\"a\"",
       "no root prtobjcts"},
      {"a stored form with a character that XML has not",
       R"({"id": "a", "park": "<prtobjcts>\u0000</prtobjcts>"})", "\"a\"", "\"park\": "},
      {"a row that cannot be posted",
       R"({"id": "a", "park": "<prtobjcts><prtobjct id='t' objecttype='table' type='dynatable'><row id='x'><column id='c' value='1'/></row></prtobjct></prtobjcts>"})",
       "\"a\"", "row \"x\" in the table \"t\""},
      {"bytes that are not UTF-8", "{\"id\": \"\xFF\", \"form\": \"\"}", "null", "UTF-8"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const ProgramRun run =
        batch("\n" + std::string(c.line) + "\n" + lineOf({{"id", "next"}, {"form", kForm}}));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "");
    const std::vector<json> lines = linesOf(run.out);
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_EQ(lines[0]["id"], json::parse(c.id));
    EXPECT_THAT(lines[0]["error"].get<std::string>(), HasSubstr(c.error));
    EXPECT_EQ(lines[0]["line"], 2);
    EXPECT_THAT(lines[0], SizeIs(3));
    EXPECT_EQ(lines[1]["id"], "next");
    EXPECT_EQ(lines[1]["park"], kParkedXml);
  }
}

TEST_F(Batch, TellsWhatIsWrongWithoutWhatWasAnswered) {
  const struct {
    const char *says, *line, *error;
  } cases[] = {
      {"a word that is no value", R"({"id": "a", "form": Smith})",
       "parse error at byte 21: invalid literal"},
      {"a text that does not end", R"({"id": "a", "form": "name=Smith)",
       "parse error at byte 32: invalid string: missing closing quote"},
      {"bytes that are not UTF-8", "{\"id\": \"a\", \"form\": \"Smith\xFF\"}",
       "parse error at byte 27: invalid string: ill-formed UTF-8 byte"},
      {"something behind the object", R"({"id": "a", "form": ""} "Smith")",
       "parse error at byte 31: unexpected string literal; expected end of input"},
      {"a number beyond all bounds", R"({"id": "a", "form": 4711e999})", "a number is too large"},
      {"a stored form that is no XML", R"({"id": "a", "park": "<prtobjcts>\n<Smith x=&Smith;>"})",
       "\"park\": it is no well-formed XML, seen in its line 2"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const ProgramRun run = batch("\n" + std::string(c.line) + "\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "");
    const std::vector<json> lines = linesOf(run.out);
    ASSERT_THAT(lines, SizeIs(1));
    EXPECT_EQ(lines[0]["error"], c.error);
    EXPECT_EQ(lines[0]["line"], 2);
    EXPECT_THAT(run.out, Not(AnyOf(HasSubstr("Smith"), HasSubstr("4711"))));
  }
}

TEST_F(Batch, TakesLinesAsTheyCome) {
  const std::string strGood = R"({"id": "a", "form": ""})";
  const struct {
    const char* says;
    std::string input;
    std::size_t lines;
  } cases[] = {
      {"nothing", "", 0},
      {"no line end behind the last one", strGood, 1},
      {"empty lines, and lines of blanks", "\n \t\n" + strGood + "\n\r\n\n" + strGood + "\n", 2},
      {"line ends of two characters", strGood + "\r\n" + strGood + "\r\n", 2},
      {"blanks around the object", "  " + strGood + " \n", 1},
      {"other keys, however deep",
       R"({"id": "a", "form": "", "of": {"b": [)" + std::string(100'000, '[') +
           std::string(100'000, ']') + "]}}\n",
       1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const ProgramRun run = batch(c.input);
    EXPECT_EQ(run.status, 0) << run.out.substr(0, 1000);
    EXPECT_THAT(linesOf(run.out), SizeIs(c.lines));
  }
}

TEST_F(Batch, FailsWithTheFailedRunOfALine) {
  write("hidden.xml", "<hiddenfields><hiddenfield id='a'/></hiddenfields>");
  const ProgramRun run = batch(lineOf({{"id", "a"}, {"form", kForm}}));
  EXPECT_EQ(run.status, 1);
  const std::vector<json> lines = linesOf(run.out);
  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_EQ(lines[0]["result"]["errorCode"], 94);
  EXPECT_EQ(lines[0]["park"], kParkedXml);  // also after a failure
  EXPECT_EQ(lines[0]["send"], nullptr);
}

TEST_F(Batch, GivesEveryLineTheResultThatABuildGives) {
  // A library instance that once failed to load its namespaces fails otherwise after that.
  const ProgramRun run =
      batch(lineOf({{"id", "a"}, {"form", ""}}) + lineOf({{"id", "b"}, {"form", ""}}),
            {"--namespaces", "missing.xml"});
  const ProgramRun built = buildDeployment({"--namespaces", "missing.xml"});
  const std::vector<json> lines = linesOf(run.out);
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_EQ(lines[0]["result"], json::parse(built.out));
  EXPECT_EQ(lines[1]["result"], json::parse(built.out));
}

TEST_F(Batch, TellsReportsAndIsAsStrictAsABuild) {
  const std::string strLine = lineOf({{"id", "a"}, {"form", kForm}});
  // A check was asked for and cannot be carried out, which a run passes over.
  const ProgramRun plain = batch(strLine, {"--submit", "--validate"});
  EXPECT_EQ(plain.status, 0);
  EXPECT_FALSE(linesOf(plain.out)[0]["result"].contains("report"));

  const ProgramRun run = batch(strLine, {"--submit", "--validate", "--report", "--strict"});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(linesOf(run.out)[0]["result"]["report"]["verdict"], "not-checked");
  EXPECT_EQ(batch(strLine, {"--submit", "--report", "--strict"}).status, 0);
  EXPECT_EQ(batch("nonsense\n" + strLine, {"--submit", "--validate", "--strict"}).status, 1);
}

TEST_F(Batch, ReadsALineThatIsTooLongToItsEnd) {
  const std::string strInput = R"({"id": "a", "form": ")" +
                               std::string(std::size_t{64} << 20, 'x') + "\"}\n" +
                               lineOf({{"id", "b"}, {"form", kForm}});
  const ProgramRun run = batch(strInput);
  EXPECT_EQ(run.status, 1);
  const std::vector<json> lines = linesOf(run.out);
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_EQ(lines[0]["id"], nullptr);
  EXPECT_THAT(lines[0]["error"].get<std::string>(), HasSubstr("longer than 67108864 bytes"));
  EXPECT_EQ(lines[1]["id"], "b");
}

TEST_F(Batch, TakesNoMoreMemoryForMoreLines) {
  // From file to file: the memory of a program counts from the moment at which this one makes it.
  const std::string strLine =
      lineOf({{"id", "a"}, {"form", "name=A&padding=" + std::string(100'000, 'x')}});
  const auto peakOf = [&](int lngLines) {
    std::ofstream lines(directory_.at("lines"), std::ios::binary);
    for (int at = 0; at < lngLines; ++at) lines << strLine;
    lines.close();
    const ProgramRun run =
        batch("", {"--threads", "2"}, {"bash", "-c", R"(exec "$0" "$@" <lines >answers)"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(linesOf(read("answers")), SizeIs(static_cast<std::size_t>(lngLines)));
    return run.lngPeakMegabytes;
  };
  const std::size_t lngFew = peakOf(40);
  const std::size_t lngMany = peakOf(280);  // 24 MB more
  if (!kSanitized) {
    EXPECT_LT(lngMany, lngFew + 12);
  }
}

TEST_F(Batch, CannotRunWithoutWhatEveryLineNeeds) {
  const struct {
    const char* says;
    std::vector<std::string> words;
    const char* reason;
  } cases[] = {
      {"an object list that is missing", {"--object-list", "none.xml"}, "--object-list none.xml"},
      {"protocol information that is missing", {"--protocol-info", "none.xml"}, "none.xml"},
      {"no thread at all", {"--threads", "0"}, "--threads"},
      {"more threads than are allowed", {"--threads", "257"}, "--threads"},
      {"threads that are no number", {"--threads", "2x"}, "--threads"},
      {"one form for all", {"--form", "form.txt"}, "--form"},
      {"one output for all", {"--park-out", "park.xml"}, "--park-out"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_TRUE(CouldNotRun(batch(lineOf({{"id", "a"}, {"form", ""}}), c.words), c.reason));
  }
}

TEST_F(Batch, EndsWhenItsReaderGoesAway) {
  std::string strInput;
  for (int at = 0; at < 5000; ++at) strInput += lineOf({{"id", "a"}, {"form", kForm}});
  const ProgramRun run = batch(strInput, {"--threads", "2"},
                               {"bash", "-c", R"("$0" "$@" | head -n 1; exit "${PIPESTATUS[0]}")"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(linesOf(run.out), SizeIs(1));
  EXPECT_EQ(run.err, "varnel-xml: standard output: Broken pipe\n");
}

TEST_F(Batch, EndsThoughNoInputComesWhenItsOutputFails) {
  const ProgramRun run = runProgram(directory_.path(), {"batch", "--deployment", "."},
                                    {.under = {"bash", "-c",
                                               R"(coproc P { "$0" "$@" >/dev/full; }
                    echo '{"id":"a","form":""}' >&"${P[1]}"
                    wait "$P_PID")"},
                                     .lngSeconds = 60});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "varnel-xml: standard output: No space left on device\n");
}

TEST_F(Batch, AnswersALineBeforeTheNextOneComes) {
  // The signal asks it to end; what is begun is finished, and the signal still tells how it ended.
  const ProgramRun run =
      runProgram(directory_.path(), {"batch", "--deployment", ".", "--threads", "2"},
                 {.under = {"bash", "-c",
                            R"(coproc P { exec "$0" "$@"; }
                    pid=$P_PID
                    exec 5<&"${P[0]}"
                    printf '{"id":"a","form":""}\n{"id":"half' >&"${P[1]}"
                    read -r line <&5; echo "$line"
                    kill -TERM "$pid"
                    cat <&5
                    wait "$pid")"},
                  .lngSeconds = 60});
  EXPECT_EQ(run.status, 128 + SIGTERM);
  const std::vector<json> lines = linesOf(run.out);
  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_EQ(lines[0]["id"], "a");
}

TEST_F(Batch, ShowsOnATerminalHowFarItIs) {
  if (std::system("command -v script >/dev/null") != 0) GTEST_SKIP() << "no program \"script\"";
  write("lines", lineOf({{"id", "a"}, {"form", kForm}}) + "nonsense\n");
  const ProgramRun run = runProgram(
      directory_.path(), {"batch", "--deployment", "."},
      {.under = {"bash", "-c",
                 R"(script -qec "$(printf '%q ' "$0" "$@") <lines >answers" /dev/null)"}});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("varnel-xml: 2 done, 1 failed"));
  EXPECT_THAT(linesOf(read("answers")), SizeIs(2));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
