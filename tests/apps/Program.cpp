#include "Program.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace Varnel_Tolv_XML_Creation::test {

const char* const kForm = "name=Ada&name_hiddenName=Your+name&born=5.3.2026";

const char* const kParkedXml =
    "<?xml version=\"1.0\"?>\r\n"
    "<prtobjcts>"
    "<prtobjct id=\"name\" objecttype=\"field\" type=\"text\" dynamic=\"false\" value=\"Ada\""
    " fieldlabel=\"Your name\"/>"
    "<prtobjct id=\"born\" objecttype=\"field\" type=\"date\" dynamic=\"false\" value=\"5.3.2026\""
    " fieldlabel=\"\"/>"
    "<hdnflds/>"
    "</prtobjcts>\r\n";

const char* const kMessageXml =
    "<?xml version=\"1.0\"?>\r\n"
    "<c:card xmlns:c=\"urn:card\">"
    "<c:date>2026-03-05</c:date><c:time>09:05:07</c:time>"
    "<c:name>Ada</c:name><c:born>2026-03-05</c:born>"
    "</c:card>\r\n";

const char* const kSuccessJson =
    "{\n"
    "  \"success\": true,\n"
    "  \"errorCode\": 0,\n"
    "  \"errorName\": null,\n"
    "  \"errorDetail\": \"\",\n"
    "  \"userMessage\": \"\",\n"
    "  \"errorSource\": \"\",\n"
    "  \"userErrors\": null,\n"
    "  \"internalErrors\": null\n"
    "}\n";

namespace {

constexpr std::pair<const char*, const char*> kDeploymentFiles[] = {
    {"deployment.json",
     R"({"template": "template.xml", "object-mapper": "mapper.xml", "schema-types": "types.xml",
         "hidden-fields": "hidden.xml", "namespaces": "namespaces.xml",
         "reference": "reference.xml", "object-list": "objects.xml",
         "now": "2026-03-05T09:05:07"})"},
    {"objects.xml",
     "<?xml version=\"1.0\"?><prtobjcts>"
     "<prtobjct id=\"name\" objecttype=\"field\" type=\"text\" dynamic=\"false\"/>"
     "<prtobjct id=\"born\" objecttype=\"field\" type=\"date\" dynamic=\"false\"/>"
     "<hdnflds/></prtobjcts>"},
    {"template.xml",
     "<?xml version=\"1.0\"?><c:card xmlns:c=\"urn:card\"><c:form/><c:date/><c:time/></c:card>"},
    {"mapper.xml", R"(<message>
  <messageitem id="name" toschema="true">
    <parentxpath>/c:card</parentxpath><node>c:name</node></messageitem>
  <messageitem id="born" toschema="true">
    <parentxpath>/c:card</parentxpath><node>c:born</node></messageitem>
  <docdata>
    <docinfo id="protocolname"><parentxpath>/c:card</parentxpath><node>c:form</node>
      <action id="buildprotocolname"><parameter id="protname" attribute="name"/>
        <parameter id="protregion" attribute="region"/>
        <parameter id="protversion" attribute="version"/></action></docinfo>
    <docinfo id="attestationdate"><parentxpath>/c:card</parentxpath><node>c:date</node></docinfo>
    <docinfo id="attestationtime"><parentxpath>/c:card</parentxpath><node>c:time</node></docinfo>
    <docnodes/>
  </docdata>
</message>)"},
    {"types.xml", "<SchemaTypeMapperDocument><schematypes/></SchemaTypeMapperDocument>"},
    {"hidden.xml", "<hiddenfields/>"},
    {"namespaces.xml",
     "<namespaces><namespace id=\"c\" name=\"urn:card\" ref=\"urn:card\"/></namespaces>"},
    {"reference.xml", "<c:card xmlns:c=\"urn:card\" mandatory=\"true\"/>"},
    {"protocol.xml", "<protocol name=\"Card\" region=\"North\" version=\"2\"/>"},
};

void redirect(const std::string& strFile, int flags, int stream) {
  const int descriptor = ::open(strFile.c_str(), flags, 0600);
  if (descriptor < 0 || ::dup2(descriptor, stream) < 0) ::_exit(126);
  ::close(descriptor);
}

[[noreturn]] void become(const std::filesystem::path& directory, std::vector<std::string> words,
                         const TemporaryDirectory& streams, const ProgramStreams& how) {
  redirect(streams.at("in"), O_RDONLY, STDIN_FILENO);
  redirect(how.strOutput.empty() ? streams.at("out") : how.strOutput, O_WRONLY | O_CREAT,
           STDOUT_FILENO);
  redirect(streams.at("err"), O_WRONLY | O_CREAT, STDERR_FILENO);
  if (how.blnCloseOutput) ::close(STDOUT_FILENO);
  if (::chdir(directory.c_str()) != 0) ::_exit(126);

  std::vector<std::string> variables = how.variables;
  for (std::string& strVariable : variables) ::putenv(strVariable.data());
  ::alarm(how.lngSeconds);

  words.insert(words.begin(), VARNEL_PROGRAM);
  words.insert(words.begin(), how.under.begin(), how.under.end());
  std::vector<char*> arguments;
  for (std::string& strWord : words) arguments.push_back(strWord.data());
  arguments.push_back(nullptr);
  ::execvp(arguments.front(), arguments.data());
  ::_exit(127);
}

}  // namespace

ProgramRun runProgram(const std::filesystem::path& directory, const std::vector<std::string>& words,
                      const ProgramStreams& streams) {
  const TemporaryDirectory files;
  files.file("in", streams.strInput);
  files.file("out", "");
  files.file("err", "");
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) become(directory, words, files, streams);

  int status = 0;
  struct rusage usage = {};
  if (::wait4(child, &status, 0, &usage) != child) throw std::runtime_error("wait4");
  return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          .out = textOfFile(files.at("out")),
          .err = textOfFile(files.at("err")),
          .lngPeakMegabytes = static_cast<std::size_t>(usage.ru_maxrss) / 1024};
}

::testing::AssertionResult CouldNotRun(const ProgramRun& run, std::string_view strReason) {
  const bool isOneLine = std::ranges::count(run.err, '\n') == 1 && run.err.ends_with('\n');
  if (run.status == 2 && run.out.empty() && isOneLine && run.err.starts_with("varnel-xml: ") &&
      run.err.find(strReason) != std::string::npos) {
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure()
         << "expected status 2 and one line with \"" << strReason << "\", but the status is "
         << run.status << ", standard output \"" << run.out << "\", standard error \"" << run.err
         << '"';
}

void expectPageOfItsOwn(const ProgramRun& run, const std::string& strTitle) {
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, ::testing::HasSubstr("<!DOCTYPE html"));
  EXPECT_THAT(run.out, ::testing::HasSubstr("<title>" + strTitle + "</title>"));
  EXPECT_THAT(run.out, ::testing::HasSubstr("@media print"));
  for (const char* const strOutside : {"http:", "https:", "<script", "src=", "@import", "url("}) {
    EXPECT_THAT(run.out, ::testing::Not(::testing::HasSubstr(strOutside)));
  }
}

ProgramTest::ProgramTest() {
  for (const auto& [strName, strText] : kDeploymentFiles) write(strName, strText);
}

ProgramRun ProgramTest::build(std::vector<std::string> words, const ProgramStreams& streams) const {
  words.insert(words.begin(), "build");
  return runProgram(directory_.path(), words, streams);
}

ProgramRun ProgramTest::buildDeployment(std::vector<std::string> words,
                                        const ProgramStreams& streams) const {
  words.insert(words.begin(), {"--deployment", "."});
  return build(std::move(words), streams);
}

void ProgramTest::write(std::string_view strName, std::string_view strText) const {
  directory_.file(strName, strText);
}

std::string ProgramTest::read(std::string_view strName) const {
  return textOfFile(directory_.at(strName));
}

bool ProgramTest::exists(std::string_view strName) const {
  return std::filesystem::exists(directory_.at(strName));
}

std::vector<std::string> ProgramTest::traceOf(std::vector<std::string> words) const {
  words.insert(words.end(), {"--trace", "trace.txt"});
  const ProgramRun run = build(std::move(words));
  if (run.status > 1) throw std::runtime_error(run.err);
  const std::string strTrace = read("trace.txt");
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < strTrace.size();) {
    const std::size_t end = strTrace.find('\n', at);
    lines.push_back(strTrace.substr(at, end - at));
    at = end == std::string::npos ? strTrace.size() : end + 1;
  }
  return lines;
}

}  // namespace Varnel_Tolv_XML_Creation::test
