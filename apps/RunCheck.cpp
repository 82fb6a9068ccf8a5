#include "RunCheck.h"

#include <unistd.h>

#include "CannotRun.h"
#include "DeploymentFindings.h"
#include "Files.h"
#include "FindingText.h"
#include "Options.h"

using namespace Varnel_Tolv_XML_Creation;

ExitStatus runCheck(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const auto format = values.find("format");
  const std::string strFormat = format == values.end() ? "text" : format->second;
  if (strFormat != "text" && strFormat != "json") {
    throw CannotRun("--format: \"" + strFormat + "\" is none of text, json");
  }
  const Options options = readOptions(values);
  const std::vector<Finding> findings = findingsOf(options, values);
  const bool blnTerminal = ::isatty(STDOUT_FILENO) == 1;
  writeStandardOutput(strFormat == "json" ? findingsJson(findings)
                                          : findingsText(findings, blnTerminal));
  return hasErrors(findings) ? kFailed : kSucceeded;
}
