#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Text is UTF-8. Bytes that are not UTF-8 pass through these functions as they stand.

namespace Varnel_Tolv_XML_Creation {

/// Without the blanks (U+0020) at both ends; nothing else is trimmed.
std::string_view trim(std::string_view strText);

/// Whether nothing but blanks is there. False for a tab or a line end.
bool isBlank(std::string_view strText);

/// Unicode's simple lower-case mapping, code point by code point, in no locale.
std::string toLower(std::string_view strText);

/// Whether a text begins with this, which is ASCII without capital letters, in any case.
bool startsWithIgnoringCase(std::string_view strText, std::string_view strLowerCaseStart);

/// The length in characters (code points); each byte that belongs to none counts as one.
std::size_t characterCount(std::string_view strText);

/// Every `strFind`, from left to right, replaced. An empty `strFind` replaces nothing.
std::string replaceAll(std::string_view strText, std::string_view strFind,
                       std::string_view strReplacement);

/// The pieces between the separators, which are matched exactly: one more than there are
/// separators, but none at all for the empty text. An empty separator gives the text as one piece.
std::vector<std::string> split(std::string_view strText, std::string_view strSeparator);

/// The same, as parts of that text.
std::vector<std::string_view> pieces(std::string_view strText, std::string_view strSeparator);

/// A number from 0 to 99 as two digits.
std::string twoDigits(int lngNumber);

/// The text as one line: without white space at its end, each control character a blank.
std::string oneLine(std::string_view strText);

/// The first bytes of a text, `lngMost` at most, that end with a whole character.
std::string_view beginningOf(std::string_view strText, std::size_t lngMost) noexcept;

/// Each %XX a byte; a malformed escape stands as it is.
std::string percentDecoded(std::string_view strEncoded);

/// Each byte sequence that is not UTF-8 replaced by U+FFFD, one for each maximal part of a
/// character.
std::string replaceInvalidUtf8(std::string strBytes);

}  // namespace Varnel_Tolv_XML_Creation
