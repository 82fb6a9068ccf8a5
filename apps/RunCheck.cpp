#include "RunCheck.h"

#include <unistd.h>

#include "CannotRun.h"
#include "DeploymentFindings.h"
#include "Files.h"
#include "FindingText.h"
#include "Options.h"
#include "ReportPage.h"

using namespace Varnel_Tolv_XML_Creation;

ExitStatus runCheck(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const std::string strFormat = formatOf(values, {"text", "json"});
  const Options options = readOptions(values);
  if (!options.deploymentFile && !options.objectList) {
    throw CannotRun("name the folder of a deployment with --deployment, or its files one by one");
  }
  const std::vector<Finding> findings = findingsOf(options, values);
  const auto hints = values.find("hints");
  const bool blnAsked = hints != values.end() && hints->second == "true";
  const bool blnHints = blnAsked || ::isatty(STDOUT_FILENO) == 1;
  writeStandardOutput(strFormat == "json" ? findingsJson(findings)
                                          : findingsText(findings, blnHints));
  return hasErrors(findings) ? kFailed : kSucceeded;
}
