#include <utility>

#include "Commands.h"
#include "ExplainText.h"
#include "ExplainView.h"
#include "Explanation.h"
#include "Files.h"
#include "Options.h"
#include "ReportPage.h"
#include "Submission.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"

using namespace Varnel_Tolv_XML_Creation;

ExitStatus runExplain(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const std::string strFormat = formatOf(values, {"text", "json", "html"});
  Options options = readOptions(std::move(values));
  options.blnSubmit = true;
  options.blnReport = options.blnExplain = true;
  const FormCollection request(readForm(options.form));
  const SubmissionOutputs run = runSubmission(options, request, {});
  if (strFormat == "json") {
    writeStandardOutput(resultOf(options, run));
  } else {
    const Explanation explanation = explain(options, run);
    writeStandardOutput(strFormat == "html" ? reportPage("explain.xsl", explainView(explanation))
                                            : explainText(explanation));
  }
  return run.objAck.Success() ? kSucceeded : kFailed;
}
