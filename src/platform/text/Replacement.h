#pragma once

#include <string>
#include <string_view>

#include "../../result/Export.h"

namespace Varnel_Tolv_XML_Creation {

/// U+FFFD, which stands for what did not arrive as a character, or can be kept in no document.
inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// `strText`, which is UTF-8, with U+FFFD for each character that XML cannot hold: the control
/// characters but tab, line feed and carriage return, U+FFFE and U+FFFF.
VARNEL_EXPORT std::string withXmlCharacters(std::string_view strText);

/// Whether something was replaced in a text. Such an answer can be kept until somebody types it
/// again; nobody typed what is there now, so it should not be sent.
VARNEL_EXPORT bool hasReplacement(std::string_view strText);

}  // namespace Varnel_Tolv_XML_Creation
