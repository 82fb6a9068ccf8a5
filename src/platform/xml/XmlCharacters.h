#pragma once

#include <string_view>

// What XML 1.0 allows in text and in names.

namespace Varnel_Tolv_XML_Creation {

/// Whether `strText` is UTF-8 and holds only characters that a document may hold.
bool isXmlText(std::string_view strText);

/// Whether `strName` is a name with at most one colon, and a name on each side of it.
bool isQualifiedName(std::string_view strName);

/// Whether nothing but XML's white space (blank, tab, CR, LF) is there.
bool isXmlWhiteSpace(std::string_view strText);

/// Raises kXmlFailure unless `isXmlText`.
void requireXmlText(std::string_view strText);

/// Raises kInvalidName, with a description of one line that names it, unless `isQualifiedName`.
void requireQualifiedName(std::string_view strName);

/// The part of a qualified name before its colon, empty without one; and the part after it.
std::string_view prefixOf(std::string_view strName);
std::string_view withoutPrefix(std::string_view strName);

}  // namespace Varnel_Tolv_XML_Creation
