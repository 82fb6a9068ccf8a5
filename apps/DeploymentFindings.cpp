#include "DeploymentFindings.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "Files.h"
#include "OptionFiles.h"
#include "varnel_xml_creation/interface/CheckDeployment.h"
#include "varnel_xml_creation/interface/Deployment.h"
#include "varnel_xml_creation/platform/text/FileNames.h"
#include "varnel_xml_creation/result/RuntimeError.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// Where in deployment.json each option stands that the command line does not have.
void findLines(const Options& options, const OptionValues& given, DeploymentFiles& files) {
  if (!options.deploymentFile) return;
  files.strOptionFile = *options.deploymentFile;
  files.optionLines = deploymentLines(readFile("--deployment", files.strOptionFile));
  for (const auto& [strName, strValue] : given) files.optionLines.erase(strName);
}

/// What the web host reads from beside deployment.json, where it is there.
void findPage(const Options& options, DeploymentFiles& files) {
  if (!options.deploymentFile) return;
  const std::filesystem::path page =
      std::filesystem::path(*options.deploymentFile).parent_path() / "page.xml";
  std::error_code error;  // what cannot be looked at is not there
  if (std::filesystem::exists(page, error)) files.strPageXml = page.string();
}

/// A file below the deployment's folder as it is named from there; any other as it is.
std::string withinDeployment(const std::string& strFile, const std::optional<std::string>& json) {
  if (!json) return strFile;
  const std::filesystem::path deployment(*json);
  if (strFile.empty()) return deployment.filename().string();
  const std::filesystem::path folder = deployment.parent_path();
  return nameWithin(folder.empty() ? "." : folder.string(), strFile);
}

}  // namespace

std::vector<Finding> findingsOf(const Options& options, const OptionValues& given) {
  DeploymentFiles files = filesOf(options);
  findLines(options, given, files);
  findPage(options, files);
  std::vector<Finding> findings = checkDeployment(files);
  for (Finding& finding : findings) {
    finding.file = withinDeployment(finding.file, options.deploymentFile);
  }
  return findings;
}

std::vector<Finding> findingsOfOptions(const std::string& strDirectory) {
  DeploymentFiles files;
  files.strOptionFile = deploymentFileOf(strDirectory);
  std::error_code error;  // what cannot be looked at is not there
  if (!std::filesystem::is_regular_file(files.strOptionFile, error)) return {};
  try {
    deploymentValues(readFile("--deployment", files.strOptionFile), files.strOptionFile);
    return {};
  } catch (const RuntimeError& refusal) {
    files.strOptionReason = refusal.description();
    const std::string strFile = files.strOptionFile + ": ";
    if (files.strOptionReason.starts_with(strFile)) files.strOptionReason.erase(0, strFile.size());
    for (const DeploymentKey& key : deploymentKeys()) files.optionKeys.emplace_back(key.name);
  }
  std::vector<Finding> findings = checkDeployment(files);
  for (Finding& finding : findings) {
    finding.file = withinDeployment(finding.file, files.strOptionFile);
  }
  return findings;
}

bool hasErrors(const std::vector<Finding>& findings) {
  return std::ranges::any_of(
      findings, [](const Finding& finding) { return finding.severity == Severity::error; });
}
