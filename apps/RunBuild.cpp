#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "CannotRun.h"
#include "Commands.h"
#include "Files.h"
#include "Options.h"
#include "OutputFile.h"
#include "Submission.h"
#include "TerminalText.h"
#include "TraceText.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"
#include "varnel_xml_creation/result/RuntimeError.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// What is to be said of an object list in which an earlier form left something: that stands in the
/// way of the answers to its tables.
std::string warningOf(const std::string& strFile) {
  return withoutControls("varnel-xml: warning: --object-list " + strFile +
                         ": it holds rows or hidden fields of an earlier form, so answers can be "
                         "lost; pass the object list that the form's page has") +
         '\n';
}

/// What could not be opened again takes no file's place.
void requireReadable(const char* option, const std::string& strPath, const Document& objXml) {
  try {
    objXml.requireReadable();
  } catch (const RuntimeError& error) {
    throw CannotRun(std::string(option) + " " + strPath + ": " + error.description());
  }
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
      input("--schema-url", schemaPathOf(PageServer(options.pageDirectory), options.strSchemaUrl));
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
  TraceText trace;
  const SubmissionOutputs run =
      runSubmission(options, request, {.traceSink = options.trace ? &trace : nullptr});

  if (parkFile) {
    requireReadable("--park-out", *options.parkOut, run.objParkXML);
    parkFile->write(run.objParkXML.xml());
  }
  if (sendFile && run.objSendXML) sendFile->write(run.objSendXML.xml());
  if (traceFile) traceFile->write(trace.text());
  const std::string strResult = resultOf(options, run);
  if (resultFile) resultFile->write(strResult);
  files.putInPlace();  // when all of them are on the disk

  // The standard streams last: when a file fails, only the line that says so stands there.
  if (options.form && run.blnEarlierForm) writeStandardError(warningOf(*options.objectList));
  if (options.trace && !blnTraceToFile) writeStandardError(trace.text());
  if (!resultFile) writeStandardOutput(strResult);
  return statusOf(options, run);
}
