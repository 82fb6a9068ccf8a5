#include "Submission.h"

#include "CannotRun.h"
#include "Files.h"

using namespace Varnel_Tolv_XML_Creation;

std::string readForm(const std::optional<std::string>& form) {
  if (!form) return "";
  std::string strBody = *form == kStandardStream ? readStandardInput() : readFile("--form", *form);
  if (strBody.ends_with('\n')) {
    strBody.pop_back();
    if (strBody.ends_with('\r')) strBody.pop_back();
  }
  return strBody;
}

Document loaded(const char* option, const std::optional<std::string>& file,
                const DocumentSettings& settings) {
  if (!file) return {};
  Document objXml = Document::create(settings);
  if (!objXml.load(*file)) {
    const ParseError& error = objXml.parseError();
    throw CannotRun(std::string(option) + " " + *file + ": " + error.reason +
                    (error.line > 0 ? " (line " + std::to_string(error.line) + ")" : ""));
  }
  return objXml;
}

RunOutputs runSubmission(const Options& options, const FormCollection& request,
                         const RunServices& services) {
  const DocumentSettings settings{.cache = services.cache};
  return runDeployment(options, request, loaded("--object-list", options.objectList, settings),
                       loaded("--protocol-info", options.protocolInfo, settings), services);
}

void TraceText::write(std::string_view strLine) {
  // deliberate: only the line's own end changes. A line end inside, as in a document's text,
  // belongs to what was traced.
  constexpr std::string_view kLineEnd = "\r\n";
  if (strLine.ends_with(kLineEnd)) strLine.remove_suffix(kLineEnd.size());
  strText_.append(strLine).append("\n");
}
