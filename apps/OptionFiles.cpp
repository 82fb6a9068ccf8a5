#include "OptionFiles.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string_view>

#include "CannotRun.h"
#include "Files.h"
#include "varnel_xml_creation/interface/Deployment.h"
#include "varnel_xml_creation/result/RuntimeError.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// `option` names the file; empty when a folder does. `strFolderKey` as in `deploymentValues`.
OptionValues valuesOf(const char* option, const std::string& strJson, const std::string& strFile,
                      std::string_view strFolderKey) {
  try {
    return deploymentValues(strJson, strFile, strFolderKey);
  } catch (const RuntimeError& error) {
    throw CannotRun(nameOf(option, error.description()));
  }
}

/// Whether an option is one that a submission may have and a deployment may not: what its result
/// tells.
bool isOfSubmission(const OptionRow& row) {
  if ((row.commands & kBuild) == 0) return false;
  if (row.kind == OptionKind::commandLineFlag) return true;
  const auto isKey = [&](const DeploymentKey& key) {
    return std::string_view(key.name) == row.name;
  };
  return row.kind == OptionKind::text && std::ranges::none_of(deploymentKeys(), isKey);
}

/// Takes those options out of the JSON of a submission. What is no object, or no JSON at all, stays
/// for `deploymentValues` to refuse.
OptionValues takeOptions(std::string& strJson, const std::string& strFile) {
  OptionValues taken;
  nlohmann::json options = nlohmann::json::parse(strJson, nullptr, false);
  if (!options.is_object()) return taken;
  for (auto each = options.begin(); each != options.end();) {
    const OptionRow* const row = findOption(each.key());
    if (row == nullptr || !isOfSubmission(*row)) {
      ++each;
      continue;
    }
    const bool blnFlag = row->kind == OptionKind::commandLineFlag;
    if (blnFlag ? !each->is_boolean() : !each->is_string()) {
      throw CannotRun(strFile + ": \"" + each.key() +
                      (blnFlag ? "\" is no Boolean" : "\" is no text"));
    }
    taken[each.key()] = blnFlag ? (each->get<bool>() ? "true" : "false") : each->get<std::string>();
    each = options.erase(each);
  }
  if (!taken.empty()) strJson = options.dump();
  return taken;
}

}  // namespace

std::string deploymentFileOf(const std::string& strDirectory) {
  return (std::filesystem::path(strDirectory) / "deployment.json").string();
}

OptionValues readDeployment(const std::string& strDirectory) {
  const std::string strFile = deploymentFileOf(strDirectory);
  return valuesOf("--deployment", readFile("--deployment", strFile), strFile, "");
}

OptionValues readSubmission(const std::string& strDirectory) {
  const std::string strFile = (std::filesystem::path(strDirectory) / "submission.json").string();
  std::string strJson = readFile("", strFile);
  OptionValues taken = takeOptions(strJson, strFile);
  OptionValues values = valuesOf("", strJson, strFile, "deployment");
  values.merge(taken);
  return values;
}
