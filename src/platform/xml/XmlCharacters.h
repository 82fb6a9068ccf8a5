#pragma once

#include <string_view>

#include "platform/text/Ascii.h"

// What XML 1.0 allows in text and in names.

namespace Varnel_Tolv_XML_Creation {

/// Whether `strText` is UTF-8 and holds only characters that a document may hold.
bool isXmlText(std::string_view strText);

/// Whether the byte is white space of XML: a blank, tab, CR or LF.
constexpr bool isXmlSpace(char byte) noexcept {
  return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

/// Whether nothing but that is there.
bool isXmlWhiteSpace(std::string_view strText);

/// A text without what there is of it at both ends.
std::string_view withoutXmlSpaceAround(std::string_view strText) noexcept;

/// Whether `strName` is a name without a colon, as prefixes and local names are.
bool isNCName(std::string_view strName);

/// Whether the byte may stand in such a name. Of bytes beyond ASCII it only says that they can
/// belong to a letter: `isNCName` decides.
constexpr bool isNameByte(char byte) noexcept {
  return isLetter(byte) || isDigit(byte) || byte == '_' || byte == '-' || byte == '.' ||
         static_cast<unsigned char>(byte) >= 0x80;
}

/// Whether `strName` is such a name, or two with a colon between them.
bool isQualifiedName(std::string_view strName);

/// Raises kXmlFailure unless `isXmlText`.
void requireXmlText(std::string_view strText);

/// Raises kInvalidName, with a description of one line that names it, unless `isQualifiedName`.
void requireQualifiedName(std::string_view strName);

/// The part of a qualified name before its colon, empty without one; and the part after it.
std::string_view prefixOf(std::string_view strName);
std::string_view withoutPrefix(std::string_view strName);

}  // namespace Varnel_Tolv_XML_Creation
