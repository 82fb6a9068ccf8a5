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

[[noreturn]] void refuse(const std::string& strFile, const std::string& strReason) {
  throw CannotRun("--deployment " + strFile + ": " + strReason);
}

[[noreturn]] void refuseKey(const std::string& strFile, const std::string& strKey,
                            const char* reason) {
  refuse(strFile, '"' + strKey + "\" " + reason);
}

nlohmann::json parsed(const std::string& strFile) {
  try {
    return nlohmann::json::parse(readFile("--deployment", strFile));
  } catch (const nlohmann::json::exception& error) {
    refuse(strFile, error.what());
  }
}

}  // namespace

std::string deploymentFileOf(const std::string& strDirectory) {
  return (std::filesystem::path(strDirectory) / "deployment.json").string();
}

OptionValues readDeployment(const std::string& strDirectory) {
  const std::string strFile = deploymentFileOf(strDirectory);
  const nlohmann::json deployment = parsed(strFile);
  if (!deployment.is_object()) refuse(strFile, "is not one JSON object");

  OptionValues values;
  for (const auto& [strKey, value] : deployment.items()) {
    const OptionRow* const row = findOption(strKey);
    if (row == nullptr || row->kind == OptionKind::commandLineOnly ||
        row->kind == OptionKind::commandLineFlag) {
      refuseKey(strFile, strKey, "is an unknown key");
    }
    if (row->kind == OptionKind::flag) {
      if (!value.is_boolean()) refuseKey(strFile, strKey, "is no Boolean");
      values[strKey] = value.get<bool>() ? "true" : "false";
    } else {
      if (!value.is_string()) refuseKey(strFile, strKey, "is no text");
      values[strKey] = resolved(strDirectory, *row, value.get<std::string>());
    }
  }
  return values;
}
