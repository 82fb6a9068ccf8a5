#include <unistd.h>

#include <algorithm>

#include "CannotRun.h"
#include "Commands.h"
#include "DeploymentFindings.h"
#include "Files.h"
#include "FindingText.h"
#include "OptionFiles.h"
#include "Options.h"
#include "ReportPage.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// Whether what to do is shown in a text that goes to this stream.
bool showsHints(const OptionValues& values, int lngStream) {
  return isSet(values, "hints") || ::isatty(lngStream) == 1;
}

/// Whether a deployment is named, or a file of one.
bool namesSomething(const OptionValues& values) {
  return values.contains("deployment") ||
         std::ranges::any_of(deploymentKeys(), [&](const DeploymentKey& key) {
           return key.kind == DeploymentValueKind::file && values.contains(key.name);
         });
}

/// The options; without a usable deployment.json the check cannot run, and says why as it tells
/// everything else: in plain words, and as JSON where that is wanted.
Options optionsOf(const OptionValues& values, const std::string& strFormat) {
  try {
    return readOptions(values);
  } catch (const CannotRun&) {
    const std::optional<std::string> strDirectory = valueOf(values, "deployment");
    if (!strDirectory) throw;
    const std::vector<Finding> findings = findingsOfOptions(*strDirectory);
    if (findings.empty()) throw;
    if (strFormat == "json") writeStandardOutput(findingsJson(findings));
    std::string strReason = findings[0].message;
    strReason.pop_back();  // its full stop
    strReason += " (line " + std::to_string(findings[0].line) + ')';
    if (showsHints(values, STDERR_FILENO)) strReason += ". " + findings[0].hint;
    throw CannotRun(nameOf("--deployment", deploymentFileOf(*strDirectory)) + ": " + strReason);
  }
}

}  // namespace

ExitStatus runCheck(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const std::string strFormat = formatOf(values, {"text", "json"});
  if (!namesSomething(values)) {
    throw CannotRun("name the folder of a deployment with --deployment, or its files one by one");
  }
  const Options options = optionsOf(values, strFormat);
  const std::vector<Finding> findings = findingsOf(options, values);
  writeStandardOutput(strFormat == "json"
                          ? findingsJson(findings)
                          : findingsText(findings, showsHints(values, STDOUT_FILENO)));
  return hasErrors(findings) ? kFailed : kSucceeded;
}
