#include "ExampleRun.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "Check.h"
#include "interface/CheckDeployment.h"
#include "interface/RunDeployment.h"
#include "platform/xml/FileCache.h"

namespace Varnel_Tolv_XML_Creation::fuzz {

namespace {

namespace fs = std::filesystem;

void write(const fs::path& path, std::string_view strText) {
  fs::create_directories(path.parent_path());
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  stream << strText;
  require(stream.flush().good(), "the input files can be written");
}

std::string read(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  require(stream.good(), "the files of the example can be read");
  return {std::istreambuf_iterator<char>(stream), {}};
}

Parts readExample() {
  const fs::path root = VARNEL_EXAMPLE_DIR;
  Parts parts;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    const std::string strExtension = entry.path().extension().string();
    if (strExtension != ".xml" && strExtension != ".xsd") continue;
    parts[entry.path().lexically_relative(root).string()] = read(entry.path());
  }
  parts["form"] = read(root / "complete.form");
  parts["schema-url"] = "schema/inspection.xsd";
  parts["schema-uri"] = "urn:example:inspection:report";
  parts["date-order"] = "dmy";
  return parts;
}

/// Two copies of the example, in memory where the system has such a place. The first is never
/// written to, so that a cache keeps what was made of it; the other holds what a run changes.
class Copies {
 public:
  Copies() {
    const fs::path memory = "/dev/shm";
    std::string strName =
        ((fs::is_directory(memory) ? memory : fs::temp_directory_path()) / "fuzz-XXXXXX").string();
    require(mkdtemp(strName.data()), "a directory can be made");
    root_ = strName;
    for (const char* copy : {kExample, kChanged}) {
      fs::create_directories(root_ / copy / "pages");
      for (const auto& [strFile, strText] : exampleParts()) {
        if (isFile(strFile)) write(root_ / copy / strFile, strText);
      }
    }
  }
  ~Copies() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }
  Copies(const Copies&) = delete;
  Copies& operator=(const Copies&) = delete;

  void put(const Parts& replaced) const {
    for (const auto& [strName, strText] : replaced) {
      if (isFile(strName)) write(root_ / kChanged / strName, strText);
    }
  }
  void restore(const Parts& replaced) const {
    for (const auto& [strName, strText] : replaced) {
      if (isFile(strName)) write(root_ / kChanged / strName, exampleParts().at(strName));
    }
  }

  /// The file that a run reads which changes these.
  std::string at(const char* strName, const Parts& replaced) const {
    return (root_ / (replaced.contains(strName) ? kChanged : kExample) / strName).string();
  }

  /// The directory of the pages from which it finds the schema: what that includes stands around
  /// it.
  std::string pages(const Parts& replaced) const {
    const bool blnChanged = std::any_of(replaced.begin(), replaced.end(), [](const auto& part) {
      return part.first.ends_with(".xsd") || part.first == "schema-url";
    });
    return (root_ / (blnChanged ? kChanged : kExample) / "pages").string();
  }

 private:
  static constexpr const char* kExample = "example";
  static constexpr const char* kChanged = "changed";

  static bool isFile(const std::string& strName) {
    return strName.find('.') != std::string::npos && exampleParts().contains(strName);
  }

  fs::path root_;
};

std::string line(std::string_view strText) {
  return std::string(strText.substr(0, strText.find_first_of("\r\n")));
}

DateOrder dateOrder(std::string_view strName) {
  if (strName == "mdy") return DateOrder::monthDayYear;
  return strName == "ymd" ? DateOrder::yearMonthDay : DateOrder::dayMonthYear;
}

void requireStorable(const Document& objXml) {
  if (!objXml) return;
  const std::string strStored = objXml.xml();
  if (strStored.empty()) return;
  const Document objOpened = Document::create();
  require(objOpened.loadXML(strStored), "what was stored can be opened");
  const std::string strAgain = objOpened.xml();
  require(objOpened.loadXML(strAgain), "what was opened and stored can be opened");
  require(objOpened.xml() == strAgain, "opening and storing changes nothing");
}

const Copies& exampleCopies() {
  static const Copies copies;
  return copies;
}

std::string_view partOf(const char* strName, const Parts& replaced) {
  const auto found = replaced.find(strName);
  return found == replaced.end() ? exampleParts().at(strName) : found->second;
}

/// The example with these parts replaced.
Deployment deploymentOf(const Copies& copies, const Parts& replaced) {
  const auto file = [&](const char* strName) { return copies.at(strName, replaced); };
  const auto part = [&](const char* strName) { return line(partOf(strName, replaced)); };
  return {
      .strTemplateXML = file("template.xml"),
      .strMsgObjectXML = file("object-mapper.xml"),
      .strSchemaTypeMapperXML = file("schema-types.xml"),
      .strHiddenFieldXML = file("hidden-fields.xml"),
      .strNamespaceXML = file("namespaces.xml"),
      .strQuestionsXmlPath = file("questions.xml"),
      .strReferenceXmlPath = file("reference.xml"),
      .blnSubmit = true,
      .blnValidateAgainstSchema = true,
      .objectList = file("object-list.xml"),
      .protocolInfo = file("protocol-info.xml"),
      .strSchemaUrl = part("schema-url"),
      .strSchemaUri = part("schema-uri"),
      .strSchemaCatalog = {},
      .form = {},
      .pageDirectory = copies.pages(replaced),
      .dateOrder = dateOrder(part("date-order")),
      .clock = FixedClock(DateTime{2025, 10, 14, 12, 5, 0}),
  };
}

/// Whether the report agrees with itself, of a run which asked for the verdict and the journal.
void requireSound(const RunReport& report) {
  require(report.verdict != Verdict::valid || report.violations.empty(),
          "a valid message has no violation");
  require(report.verdict != Verdict::invalid || !report.violations.empty(),
          "an invalid one has some");
  require((report.verdict == Verdict::notChecked) == !report.reason.empty(),
          "what was not checked has a reason, nothing else has one");
  for (const SchemaViolation& violation : report.violations) {
    require(!violation.message.empty() && !violation.path.empty(),
            "a violation says what is wrong and where");
  }
  const auto isLost = [](const JournalEntry& entry) {
    return entry.outcome == JournalOutcome::lost;
  };
  require(report.losses.size() == static_cast<std::size_t>(std::count_if(
                                      report.journal.begin(), report.journal.end(), isLost)),
          "the journal loses what the list of losses names");
  for (const AnswerLoss& loss : report.losses) {
    require(!loss.reason.empty(), "a loss has its reason");
  }
}

/// Takes every trace line, so that composing them is tried too.
class Discard : public TraceSink {
 public:
  void write(std::string_view) override {}
};

}  // namespace

const Parts& exampleParts() {
  static const Parts parts = readExample();
  return parts;
}

void runExample(const Parts& replaced) {
  const Copies& copies = exampleCopies();
  static FileCache cache;
  copies.put(replaced);
  const Deployment deployment = deploymentOf(copies, replaced);
  const auto loaded = [&](const std::optional<std::string>& file) {
    Document objXml = Document::create({.cache = &cache});
    return objXml.load(*file) ? objXml : Document();
  };
  Discard trace;
  RunReport report;
  const RunOutputs run =
      runDeployment(deployment, FormCollection(partOf("form", replaced)),
                    loaded(deployment.objectList), loaded(deployment.protocolInfo),
                    {.traceSink = &trace, .cache = &cache, .report = &report, .blnJournal = true});
  copies.restore(replaced);

  const Acknowledge& objAck = run.objAck;
  require(objAck.Success() == (objAck.ErrorCode() == 0), "success and code agree");
  require(!objAck.Success() || run.objSendXML, "a successful submission has a message");
  const bool blnVerdict = objAck.ErrorCode() == SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED;
  require(!blnVerdict || !run.colUserErrors->empty() || !run.colInternalErrors->empty(),
          "a message that the schema refuses has errors to show");
  requireSound(report);
  requireStorable(run.objParkXML);
  requireStorable(run.objSendXML);
}

void checkExample(const Parts& replaced) {
  const Copies& copies = exampleCopies();
  copies.put(replaced);
  const std::vector<Finding> findings = checkDeployment(filesOf(deploymentOf(copies, replaced)));
  copies.restore(replaced);
  require(findings.empty() || !replaced.empty(), "the example has no finding");
  for (const Finding& finding : findings) {
    require(!finding.code.empty() && !finding.message.empty() && finding.line > 0,
            "a finding says what is wrong and where");
    require(finding.message.find('\n') == std::string::npos, "a message is one line");
  }
}

}  // namespace Varnel_Tolv_XML_Creation::fuzz
