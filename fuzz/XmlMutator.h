#pragma once

#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation::fuzz {

/// The document with a few changes of its structure: elements repeated, taken out, moved, exchanged
/// or copied from `strOther`; attributes and texts taken out, exchanged or replaced by values at
/// the edge of what is allowed. None when `strText` is no document.
std::optional<std::string> mutatedXml(std::string_view strText, std::string_view strOther,
                                      std::minstd_rand& dice);

}  // namespace Varnel_Tolv_XML_Creation::fuzz
