#pragma once

#include <string_view>
#include <vector>

#include "check/DeploymentFiles.h"

namespace Varnel_Tolv_XML_Creation {

/// An option that names a file which another option should name, or does.
struct WrongFile {
  std::string_view strOption;
  std::string_view strOther;
  bool blnExchanged = false;  // each names the other's file; else both name the same
};

/// Those of a deployment, among the kinds of files whose root may have any name: of two options
/// with one file the one whose kind of file it is not. Reads no more than the beginnings of the
/// files.
std::vector<WrongFile> wrongFilesOf(const DeploymentFiles& files);

}  // namespace Varnel_Tolv_XML_Creation
