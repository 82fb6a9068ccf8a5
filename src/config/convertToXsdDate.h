#pragma once

#include <string>
#include <string_view>

#include "config/Session.h"

namespace Varnel_Tolv_XML_Creation {

/// The XML Schema form, year-month-day, of a date that a person typed, read in the host's date
/// order. With the data type "time", in exactly this case, "T00:00:00" follows. A text that is no
/// date comes back unchanged.
std::string convertToXsdDate(const Session& session, std::string_view strDataType,
                             std::string_view strValue);

/// Whether that is done to answers of a data type: "date" or "time" in any case.
bool isConverted(std::string_view strDataType);

/// The same for an answer of such a data type; any other answer comes back unchanged.
std::string convertAnswer(const Session& session, std::string_view strDataType,
                          std::string_view strAnswer);

}  // namespace Varnel_Tolv_XML_Creation
