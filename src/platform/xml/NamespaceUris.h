#pragma once

#include <string_view>

namespace Varnel_Tolv_XML_Creation {

inline constexpr std::string_view kXmlUri = "http://www.w3.org/XML/1998/namespace";
inline constexpr std::string_view kXmlnsUri = "http://www.w3.org/2000/xmlns/";
inline constexpr std::string_view kSchemaUri = "http://www.w3.org/2001/XMLSchema";
inline constexpr std::string_view kInstanceUri = "http://www.w3.org/2001/XMLSchema-instance";

}  // namespace Varnel_Tolv_XML_Creation
