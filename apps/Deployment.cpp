#include "Deployment.h"

#include <filesystem>

#include "CannotRun.h"
#include "Files.h"
#include "interface/Deployment.h"
#include "result/RuntimeError.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// `option` names the file; empty when a folder does. `strFolderKey` as in `deploymentValues`.
OptionValues readOptionFile(const char* option, const std::string& strFile,
                            std::string_view strFolderKey) {
  const std::string strJson = readFile(option, strFile);
  try {
    return deploymentValues(strJson, strFile, strFolderKey);
  } catch (const RuntimeError& error) {
    throw CannotRun(nameOf(option, error.description()));
  }
}

}  // namespace

std::string deploymentFileOf(const std::string& strDirectory) {
  return (std::filesystem::path(strDirectory) / "deployment.json").string();
}

OptionValues readDeployment(const std::string& strDirectory) {
  return readOptionFile("--deployment", deploymentFileOf(strDirectory), "");
}

OptionValues readSubmission(const std::string& strDirectory) {
  const std::string strFile = (std::filesystem::path(strDirectory) / "submission.json").string();
  return readOptionFile("", strFile, "deployment");
}
