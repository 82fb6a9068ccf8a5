#pragma once

#include <map>
#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation::fuzz {

/// Texts by name. As one text, each part stands behind a line "#! name"; what stands before the
/// first such line belongs to none.
using Parts = std::map<std::string, std::string, std::less<>>;

Parts partsOf(std::string_view strText);
std::string textOf(const Parts& parts);

}  // namespace Varnel_Tolv_XML_Creation::fuzz
