#include "ExampleRun.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Check.h"
#include "interface/BuildXML.h"

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

/// A copy of the example that runs can write to.
class Copy {
 public:
  Copy() {
    std::string strName = (fs::temp_directory_path() / "fuzz-XXXXXX").string();
    require(mkdtemp(strName.data()), "a directory can be made");
    root_ = strName;
    fs::create_directory(root_ / "pages");
    put(exampleParts());
  }
  ~Copy() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;

  void put(const Parts& parts) const {
    for (const auto& [strName, strText] : parts) {
      if (isFile(strName)) write(root_ / strName, strText);
    }
  }
  void restore(const Parts& replaced) const {
    for (const auto& [strName, strText] : replaced) {
      if (isFile(strName)) write(root_ / strName, exampleParts().at(strName));
    }
  }
  std::string at(const char* strName) const { return (root_ / strName).string(); }

 private:
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
  static const Copy copy;
  copy.put(replaced);
  const auto part = [&](const char* strName) -> std::string_view {
    const auto found = replaced.find(strName);
    return found == replaced.end() ? exampleParts().at(strName) : found->second;
  };

  const FormCollection form(part("form"));
  const PageServer server(copy.at("pages"));
  const ObjectContext context{.request = &form, .server = &server};
  const FixedClock clock(DateTime{2025, 10, 14, 12, 5, 0});
  Discard trace;
  HostServices host;
  host.objectContext = &context;
  host.clock = &clock;
  host.traceSink = &trace;
  host.dateOrder = dateOrder(line(part("date-order")));

  Document objParkXML = Document::create();
  if (!objParkXML.load(copy.at("object-list.xml"))) objParkXML = Document();
  Document objProtocol = Document::create();
  objProtocol.load(copy.at("protocol-info.xml"));
  Document objSendXML;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  BuildXML objBuild(host);
  const Acknowledge objAck = objBuild.buildXML(
      copy.at("template.xml"), copy.at("object-mapper.xml"), copy.at("schema-types.xml"),
      copy.at("hidden-fields.xml"), copy.at("namespaces.xml"), copy.at("questions.xml"),
      copy.at("reference.xml"), true, true, objParkXML, objSendXML, objProtocol.documentElement(),
      colUserErrors, colIntErrors, line(part("schema-url")), line(part("schema-uri")));
  copy.restore(replaced);

  require(objAck.Success() == (objAck.ErrorCode() == 0), "success and code agree");
  require(!objAck.Success() || objSendXML, "a successful submission has a message");
  const bool blnVerdict = objAck.ErrorCode() == SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED;
  require(!blnVerdict || !colUserErrors->empty() || !colIntErrors->empty(),
          "a message that the schema refuses has errors to show");
  requireStorable(objParkXML);
  requireStorable(objSendXML);
}

}  // namespace Varnel_Tolv_XML_Creation::fuzz
