#pragma once

#include <string>

namespace Varnel_Tolv_XML_Creation {

/// The number that a text is to XPath, blanks around it included; NaN for one that is none.
double xpathNumber(const std::string& strText);

}  // namespace Varnel_Tolv_XML_Creation
