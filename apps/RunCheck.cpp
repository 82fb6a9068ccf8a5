#include "RunCheck.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>

#include "CannotRun.h"
#include "Files.h"
#include "FindingText.h"
#include "Options.h"
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

/// A file as it is named from within the deployment; as it is where it does not lie below it. What
/// concerns no file concerns deployment.json, which should name one.
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

ExitStatus runCheck(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const auto format = values.find("format");
  const std::string strFormat = format == values.end() ? "text" : format->second;
  if (strFormat != "text" && strFormat != "json") {
    throw CannotRun("--format: \"" + strFormat + "\" is none of text, json");
  }
  const Options options = readOptions(std::move(values));
  std::vector<Finding> findings = checkDeployment(deploymentFiles(options));
  for (Finding& finding : findings) {
    finding.file = withinDeployment(finding.file, options.deploymentFile);
  }
  writeStandardOutput(strFormat == "json" ? findingsJson(findings) : findingsText(findings));
  const bool blnErrors = std::ranges::any_of(
      findings, [](const Finding& finding) { return finding.severity == Severity::error; });
  return blnErrors ? kFailed : kSucceeded;
}
