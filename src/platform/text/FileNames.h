#pragma once

#include <string>
#include <string_view>

#include "../../result/Export.h"

namespace Varnel_Tolv_XML_Creation {

/// Whether a name is a URL of the scheme "file", in any case, and no path.
VARNEL_EXPORT bool isFileUrl(std::string_view strName);

/// How a file is known from within a folder: by its path below that, however the two were written
/// ("./x", "DIR//x"); links are not followed. One that is not below it, a URL, and any file where
/// there is no folder (an empty name) keep the name that they have.
VARNEL_EXPORT std::string nameWithin(std::string_view strFolder, std::string_view strFile);

}  // namespace Varnel_Tolv_XML_Creation
