#include "RunBuild.h"

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "CannotRun.h"
#include "Files.h"
#include "Options.h"
#include "OutputFile.h"
#include "ReportJson.h"
#include "ResultJson.h"
#include "interface/BuildXML.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// What --strict does not let pass: a check that was asked for and did not find the message valid,
/// and answers that were lost.
bool showsOtherwise(const RunReport& report) {
  const bool blnGood = report.verdict == Verdict::valid || report.verdict == Verdict::notAsked;
  return !blnGood || !report.losses.empty();
}

/// Keeps the trace until the run is over.
class TraceText : public TraceSink {
 public:
  void write(std::string_view strLine) override {
    // deliberate: only the line's own end changes. A line end inside, as in a document's text,
    // belongs to what was traced.
    constexpr std::string_view kLineEnd = "\r\n";
    if (strLine.ends_with(kLineEnd)) strLine.remove_suffix(kLineEnd.size());
    strText_.append(strLine).append("\n");
  }
  const std::string& text() const { return strText_; }

 private:
  std::string strText_;
};

std::string readForm(const std::optional<std::string>& form) {
  if (!form) return "";
  std::string strBody = *form == kStandardStream ? readStandardInput() : readFile("--form", *form);
  if (strBody.ends_with('\n')) {
    strBody.pop_back();
    if (strBody.ends_with('\r')) strBody.pop_back();
  }
  return strBody;
}

/// The document of a file that an option names; Nothing without the option.
Document loaded(const char* option, const std::optional<std::string>& file) {
  if (!file) return {};
  Document objXml = Document::create();
  if (!objXml.load(*file)) {
    const ParseError& error = objXml.parseError();
    throw CannotRun(std::string(option) + " " + *file + ": " + error.reason +
                    (error.line > 0 ? " (line " + std::to_string(error.line) + ")" : ""));
  }
  return objXml;
}

/// A file that an option names.
struct NamedFile {
  const char* option;
  std::string strPath;
};

/// The files of one run. No two outputs may be one file, and none an input: what is read would be
/// what an earlier run wrote. Only the parked form may take the place of the object list.
class RunFiles {
 public:
  explicit RunFiles(const Options& options) {
    const auto input = [&](const char* option, const std::optional<std::string>& file) {
      // What is missing is no file that an output could replace.
      std::error_code error;
      if (file && *file != kStandardStream && std::filesystem::exists(*file, error)) {
        named_.push_back({option, *file});
      }
    };
    input("--template", options.strTemplateXML);
    input("--object-mapper", options.strMsgObjectXML);
    input("--schema-types", options.strSchemaTypeMapperXML);
    input("--hidden-fields", options.strHiddenFieldXML);
    input("--namespaces", options.strNamespaceXML);
    input("--questions", options.strQuestionsXmlPath);
    input("--reference", options.strReferenceXmlPath);
    input("--object-list", options.objectList);
    input("--protocol-info", options.protocolInfo);
    input("--form", options.form);
    input("--deployment", options.deploymentFile);
    if (!options.strSchemaUrl.empty()) {
      input("--schema-url",
            PageServer(options.pageDirectory).MapPath("../" + options.strSchemaUrl));
    }
  }

  /// The output that an option names, nothing without it.
  OutputFile* output(const char* option, const std::optional<std::string>& file) {
    if (!file) return nullptr;
    outputs_.push_back(std::make_unique<OutputFile>(option, *file));
    if (outputs_.back()->isReplaced()) keepApart({option, *file});
    return outputs_.back().get();
  }

  void putInPlace() {
    for (const auto& output : outputs_) output->putInPlace();
  }

 private:
  void keepApart(const NamedFile& output) {
    const std::optional<FilePlace> place = placeOf(output.strPath);
    const bool blnParkedForm = std::string_view(output.option) == "--park-out";
    for (const NamedFile& file : named_) {
      if (blnParkedForm && std::string_view(file.option) == "--object-list") continue;
      if (!place || placeOf(file.strPath) != place) continue;
      throw CannotRun(std::string(output.option) + ' ' + output.strPath + ": it is the file of " +
                      file.option + " too");
    }
    named_.push_back(output);
  }

  std::vector<NamedFile> named_;  // the inputs, and the outputs so far
  std::vector<std::unique_ptr<OutputFile>> outputs_;
};

}  // namespace

ExitStatus runBuild(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const Options options = readOptions(std::move(values));
  RunFiles files(options);
  const bool blnTraceToFile = options.trace && *options.trace != kStandardStream;
  OutputFile* const parkFile =
      files.output("--park-out", options.objectList ? options.parkOut : std::nullopt);
  OutputFile* const sendFile = files.output("--send-out", options.sendOut);
  OutputFile* const resultFile = files.output("--result", options.result);
  OutputFile* const traceFile =
      files.output("--trace", blnTraceToFile ? options.trace : std::nullopt);

  const FormCollection request(readForm(options.form));
  Document objParkXML = loaded("--object-list", options.objectList);
  const Document objProtocolInfo = loaded("--protocol-info", options.protocolInfo);

  const PageServer server(options.pageDirectory);
  const ObjectContext context{.request = &request, .server = options.blnServer ? &server : nullptr};
  TraceText trace;
  RunReport report;
  BuildXML objBuild(HostServices{
      .objectContext = options.blnContext ? &context : nullptr,
      .clock = options.clock ? &*options.clock : nullptr,
      .traceSink = options.trace ? &trace : nullptr,
      .dateOrder = options.dateOrder,
      .documentSettings = {},
      .strSchemaCatalog = options.strSchemaCatalog,
      .report = options.blnReport || options.blnStrict ? &report : nullptr,
      .blnJournal = options.blnExplain,
  });

  Document objSendXML;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colInternalErrors;
  const Acknowledge objAck = objBuild.buildXML(
      options.strTemplateXML, options.strMsgObjectXML, options.strSchemaTypeMapperXML,
      options.strHiddenFieldXML, options.strNamespaceXML, options.strQuestionsXmlPath,
      options.strReferenceXmlPath, options.blnSubmit, options.blnValidateAgainstSchema, objParkXML,
      objSendXML, objProtocolInfo ? objProtocolInfo.documentElement() : Node(), colUserErrors,
      colInternalErrors, options.strSchemaUrl, options.strSchemaUri);

  if (parkFile) parkFile->write(objParkXML.xml());
  if (sendFile && objSendXML) sendFile->write(objSendXML.xml());
  if (traceFile) traceFile->write(trace.text());
  std::optional<nlohmann::ordered_json> reported;
  if (options.blnReport) {
    reported = reportJson(report, options.blnExplain, options.deploymentDirectory);
  }
  const std::string strResult =
      resultJson(objAck, colUserErrors, colInternalErrors, reported ? &*reported : nullptr);
  if (resultFile) resultFile->write(strResult);
  files.putInPlace();  // when all of them are on the disk

  // The standard streams last: when a file fails, only the line that says so stands there.
  if (options.trace && !blnTraceToFile) writeStandardError(trace.text());
  if (!resultFile) writeStandardOutput(strResult);
  if (!objAck.Success()) return kFailed;
  return options.blnStrict && showsOtherwise(report) ? kReportedOtherwise : kSucceeded;
}
