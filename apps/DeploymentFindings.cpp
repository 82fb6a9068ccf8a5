#include "DeploymentFindings.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>

#include "interface/CheckDeployment.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

DeploymentFiles deploymentFiles(const Options& options) {
  return {
      .strTemplateXML = options.strTemplateXML,
      .strMsgObjectXML = options.strMsgObjectXML,
      .strSchemaTypeMapperXML = options.strSchemaTypeMapperXML,
      .strHiddenFieldXML = options.strHiddenFieldXML,
      .strNamespaceXML = options.strNamespaceXML,
      .strQuestionsXmlPath = options.strQuestionsXmlPath,
      .strReferenceXmlPath = options.strReferenceXmlPath,
      .strObjectList = options.objectList.value_or(""),
      .strProtocolInfo = options.protocolInfo.value_or(""),
      .strSchemaUrl = options.strSchemaUrl,
      .strSchemaUri = options.strSchemaUri,
      .strPageDirectory = options.pageDirectory,
      .strSchemaCatalog = options.strSchemaCatalog,
      .blnSubmit = options.blnSubmit,
      .blnValidateAgainstSchema = options.blnValidateAgainstSchema,
      .dateOrder = options.dateOrder,
  };
}

/// A file below the deployment's folder as it is named from there; any other as it is.
std::string withinDeployment(const std::string& strFile, const std::optional<std::string>& json) {
  if (!json) return strFile;
  const std::filesystem::path deployment(*json);
  if (strFile.empty()) return deployment.filename().string();
  const std::filesystem::path below =
      std::filesystem::path(strFile).lexically_normal().lexically_relative(
          deployment.parent_path().lexically_normal());
  return below.empty() || *below.begin() == ".." ? strFile : below.generic_string();
}

}  // namespace

std::vector<Finding> findingsOf(const Options& options) {
  std::vector<Finding> findings = checkDeployment(deploymentFiles(options));
  for (Finding& finding : findings) {
    finding.file = withinDeployment(finding.file, options.deploymentFile);
  }
  return findings;
}

bool hasErrors(const std::vector<Finding>& findings) {
  return std::ranges::any_of(
      findings, [](const Finding& finding) { return finding.severity == Severity::error; });
}
