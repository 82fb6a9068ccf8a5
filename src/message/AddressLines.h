#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// The lines of an address: `MakeAddressLines` gives exactly four, filled from the end.
using AddressLines = std::vector<std::string>;

/// `strValue` with every CR LF, then every CR, then every LF replaced.
std::string ReplaceLineBreaks(std::string_view strValue, std::string_view strReplacement);

/// Splits a free-text address with commas into four lines: the last part is the last line, the one
/// before it the line before, and whatever there is beyond four parts shares the first line.
/// Blanks around commas and empty parts go.
Acknowledge MakeAddressLines(std::string_view strAddress,
                             std::optional<AddressLines>& arrAddressLines);

}  // namespace Varnel_Tolv_XML_Creation
