#include "RunCheck.h"

#include <unistd.h>

#include <algorithm>

#include "CannotRun.h"
#include "DeploymentFindings.h"
#include "Files.h"
#include "FindingText.h"
#include "Options.h"
#include "ReportPage.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// Whether a deployment is named, or a file of one.
bool namesSomething(const OptionValues& values) {
  return values.contains("deployment") ||
         std::ranges::any_of(deploymentKeys(), [&](const DeploymentKey& key) {
           return key.kind == DeploymentValueKind::file && values.contains(key.name);
         });
}

}  // namespace

ExitStatus runCheck(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const std::string strFormat = formatOf(values, {"text", "json"});
  if (!namesSomething(values)) {
    throw CannotRun("name the folder of a deployment with --deployment, or its files one by one");
  }
  const Options options = readOptions(values);
  const std::vector<Finding> findings = findingsOf(options, values);
  const bool blnHints = isSet(values, "hints") || ::isatty(STDOUT_FILENO) == 1;
  writeStandardOutput(strFormat == "json" ? findingsJson(findings)
                                          : findingsText(findings, blnHints));
  return hasErrors(findings) ? kFailed : kSucceeded;
}
