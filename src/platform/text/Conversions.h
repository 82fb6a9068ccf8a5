#pragma once

#include <cstdint>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// Whether a text is this word of the configuration, which is ASCII, in any case: `toLower` of the
/// text equals it.
bool equalsLower(std::string_view strText, std::string_view strLowerCaseWord);

/// The Boolean that a text writes: "true" or "false" in any case, or a number (True unless zero).
/// Any other text, the empty one included, is run-time error 13.
bool toBoolean(std::string_view strText);

/// Whether a text is a number: digits, perhaps with a sign, thousands marks ("," between digits),
/// a fraction after "." and an exponent (e or d), and blanks around the whole.
bool isNumeric(std::string_view strText);

/// The number in a text, rounded to the nearest whole, a half to the even neighbour. Run-time
/// error 13 for a text that is no number, 6 for a number outside 32 bits.
std::int32_t toInt32(std::string_view strText);

/// How a Boolean stands in an attribute: "true" or "false".
constexpr std::string_view booleanWord(bool blnValue) { return blnValue ? "true" : "false"; }

}  // namespace Varnel_Tolv_XML_Creation
