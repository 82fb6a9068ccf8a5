#include "RunExplain.h"

#include <utility>

#include "CannotRun.h"
#include "ExplainText.h"
#include "ExplainView.h"
#include "Explanation.h"
#include "Files.h"
#include "Options.h"
#include "Pages.h"
#include "Stylesheet.h"
#include "Submission.h"
#include "platform/host/WebRequest.h"
#include "platform/json/ResultJson.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

std::string page(const Explanation& explanation) {
  prepareStylesheets(
      pageFile, [](const std::string& strReason) { throw CannotRun("explain.xsl: " + strReason); });
  return Stylesheet("", "explain.xsl").apply(explainView(explanation));
}

}  // namespace

ExitStatus runExplain(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const auto format = values.find("format");
  const std::string strFormat = format == values.end() ? "text" : format->second;
  if (strFormat != "text" && strFormat != "json" && strFormat != "html") {
    throw CannotRun("--format: \"" + strFormat + "\" is none of text, json, html");
  }
  Options options = readOptions(std::move(values));
  options.blnSubmit = true;
  const FormCollection request(readForm(options.form));
  const SubmissionOutputs run = runSubmission(options, request, {.blnJournal = true});
  if (strFormat == "json") {
    writeStandardOutput(resultJson(run.objAck, run.colUserErrors, run.colInternalErrors,
                                   {&run.report, true, options.deploymentDirectory}));
  } else {
    const Explanation explanation = explain(options, run);
    writeStandardOutput(strFormat == "html" ? page(explanation) : explainText(explanation));
  }
  return run.objAck.Success() ? kSucceeded : kFailed;
}
