#include "Deployment.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string_view>

#include "CannotRun.h"
#include "Files.h"

namespace {

bool isFileUrl(std::string_view strName) {
  constexpr std::string_view kScheme = "file:";
  return strName.size() >= kScheme.size() &&
         std::equal(kScheme.begin(), kScheme.end(), strName.begin(), [](char scheme, char letter) {
           return scheme == (letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter);
         });
}

std::string resolved(const std::string& strDirectory, const OptionRow& row, std::string strName) {
  if (row.kind != OptionKind::file || strName.empty() || isFileUrl(strName)) return strName;
  if (strName == kStandardStream && std::string_view(row.name) == "form") return strName;
  return (std::filesystem::path(strDirectory) / strName).string();  // an absolute name stays
}

/// A file whose keys are options.
struct OptionFile {
  std::string strPath;
  std::string strDirectory;  // where the file names in it start
  const char* option;        // what names it; empty when a folder does
};

[[noreturn]] void refuse(const OptionFile& file, const std::string& strReason) {
  cannotUse(nameOf(file.option, file.strPath), strReason);
}

[[noreturn]] void refuseKey(const OptionFile& file, const std::string& strKey, const char* reason) {
  refuse(file, '"' + strKey + "\" " + reason);
}

nlohmann::json parsed(const OptionFile& file) {
  const std::string strText = readFile(file.option, file.strPath);
  try {
    return nlohmann::json::parse(strText);
  } catch (const nlohmann::json::exception& error) {
    refuse(file, error.what());
  }
}

/// `extraKey` is a folder's name that this file may hold beside the options.
OptionValues readOptionFile(const OptionFile& file, std::string_view extraKey) {
  const nlohmann::json options = parsed(file);
  if (!options.is_object()) refuse(file, "is not one JSON object");

  OptionValues values;
  for (const auto& [strKey, value] : options.items()) {
    const OptionRow* const row = findOption(strKey);
    const bool blnExtra = !extraKey.empty() && strKey == extraKey;
    const bool blnKey = row != nullptr && (row->commands & kBuild) != 0 &&
                        row->kind != OptionKind::commandLineOnly &&
                        row->kind != OptionKind::commandLineFlag;
    if (!blnKey && !blnExtra) {
      refuseKey(file, strKey, "is an unknown key");
    }
    if (row->kind == OptionKind::flag) {
      if (!value.is_boolean()) refuseKey(file, strKey, "is no Boolean");
      values[strKey] = value.get<bool>() ? "true" : "false";
    } else {
      if (!value.is_string()) refuseKey(file, strKey, "is no text");
      const auto strValue = value.get<std::string>();
      values[strKey] = blnExtra ? (std::filesystem::path(file.strDirectory) / strValue).string()
                                : resolved(file.strDirectory, *row, strValue);
    }
  }
  return values;
}

}  // namespace

std::string deploymentFileOf(const std::string& strDirectory) {
  return (std::filesystem::path(strDirectory) / "deployment.json").string();
}

OptionValues readDeployment(const std::string& strDirectory) {
  const std::string strFile = deploymentFileOf(strDirectory);
  return readOptionFile({strFile, strDirectory, "--deployment"}, "");
}

OptionValues readSubmission(const std::string& strDirectory) {
  const std::string strFile = (std::filesystem::path(strDirectory) / "submission.json").string();
  return readOptionFile({strFile, strDirectory, ""}, "deployment");
}
