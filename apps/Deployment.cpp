#include "Deployment.h"

#include <filesystem>
#include <nlohmann/json.hpp>

#include "CannotRun.h"
#include "Files.h"
#include "interface/Deployment.h"
#include "result/RuntimeError.h"

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

/// Takes the flags that only a submission may have out of its JSON. What is no object, or no JSON
/// at all, stays for `deploymentValues` to refuse.
OptionValues takeFlags(std::string& strJson, const std::string& strFile) {
  OptionValues flags;
  nlohmann::json options = nlohmann::json::parse(strJson, nullptr, false);
  if (!options.is_object()) return flags;
  for (auto each = options.begin(); each != options.end();) {
    const OptionRow* const row = findOption(each.key());
    const bool blnFlag =
        row != nullptr && row->kind == OptionKind::commandLineFlag && (row->commands & kBuild) != 0;
    if (!blnFlag) {
      ++each;
      continue;
    }
    if (!each->is_boolean()) {
      throw CannotRun(strFile + ": \"" + each.key() + "\" is no Boolean");
    }
    flags[each.key()] = each->get<bool>() ? "true" : "false";
    each = options.erase(each);
  }
  if (!flags.empty()) strJson = options.dump();
  return flags;
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
  OptionValues flags = takeFlags(strJson, strFile);
  OptionValues values = valuesOf("", strJson, strFile, "deployment");
  values.merge(flags);
  return values;
}
