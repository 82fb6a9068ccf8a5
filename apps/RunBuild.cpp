#include "RunBuild.h"

#include <optional>
#include <string>
#include <string_view>

#include "CannotRun.h"
#include "Files.h"
#include "ResultJson.h"
#include "interface/BuildXML.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

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

std::optional<OutputFile> opened(const char* option, const std::optional<std::string>& file) {
  return file ? std::optional<OutputFile>(std::in_place, option, *file) : std::nullopt;
}

}  // namespace

bool runBuild(const Options& options) {
  const FormCollection request(readForm(options.form));
  Document objParkXML = loaded("--object-list", options.objectList);
  const Document objProtocolInfo = loaded("--protocol-info", options.protocolInfo);

  const bool blnTraceToFile = options.trace && *options.trace != kStandardStream;
  auto parkFile = opened("--park-out", objParkXML ? options.parkOut : std::nullopt);
  auto sendFile = opened("--send-out", options.sendOut);
  auto resultFile = opened("--result", options.result);
  auto traceFile = opened("--trace", blnTraceToFile ? options.trace : std::nullopt);

  const PageServer server(options.pageDirectory);
  const ObjectContext context{.request = &request, .server = options.blnServer ? &server : nullptr};
  TraceText trace;
  BuildXML objBuild(HostServices{
      .objectContext = options.blnContext ? &context : nullptr,
      .clock = options.clock ? &*options.clock : nullptr,
      .traceSink = options.trace ? &trace : nullptr,
      .dateOrder = options.dateOrder,
      .documentSettings = {},
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

  // The standard streams last: when a file fails, only the line that says so stands there.
  const std::string strResult = resultJson(objAck, colUserErrors, colInternalErrors);
  if (resultFile) resultFile->write(strResult);
  if (options.trace && !blnTraceToFile) writeStandardError(trace.text());
  if (!resultFile) writeStandardOutput(strResult);
  return objAck.Success();
}
