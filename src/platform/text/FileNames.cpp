#include "platform/text/FileNames.h"

#include <filesystem>
#include <system_error>

#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

bool isFileUrl(std::string_view strName) { return startsWithIgnoringCase(strName, "file:"); }

std::string nameWithin(std::string_view strFolder, std::string_view strFile) {
  std::string strName(strFile);
  if (strFolder.empty() || strFile.empty() || isFileUrl(strFile)) return strName;
  const auto absolute = [](std::string_view strPath) {
    std::error_code error;  // of a current folder that is gone
    return std::filesystem::absolute(strPath, error).lexically_normal();
  };
  const std::filesystem::path below = absolute(strFile).lexically_relative(absolute(strFolder));
  const bool blnBelow = !below.empty() && *below.begin() != ".." && *below.begin() != ".";
  return blnBelow ? below.generic_string() : strName;
}

}  // namespace Varnel_Tolv_XML_Creation
