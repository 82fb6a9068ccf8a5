#pragma once

#include <string>

#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Escapes the markup characters of `strValue` in place: "&", then "<", and nothing else.
Acknowledge encodeValue(std::string& strValue);

}  // namespace Varnel_Tolv_XML_Creation
