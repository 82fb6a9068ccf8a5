#include "RunCheck.h"

#include <unistd.h>

#include "DeploymentFindings.h"
#include "Files.h"
#include "FindingText.h"
#include "Options.h"
#include "ReportPage.h"

using namespace Varnel_Tolv_XML_Creation;

ExitStatus runCheck(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const std::string strFormat = formatOf(values, {"text", "json"});
  const Options options = readOptions(values);
  const std::vector<Finding> findings = findingsOf(options, values);
  const bool blnTerminal = ::isatty(STDOUT_FILENO) == 1;
  writeStandardOutput(strFormat == "json" ? findingsJson(findings)
                                          : findingsText(findings, blnTerminal));
  return hasErrors(findings) ? kFailed : kSucceeded;
}
