#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/xml/ParseError.h"

namespace Varnel_Tolv_XML_Creation {

/// The characters of an XML document in UTF-8, without the mark at the beginning: `strBytes` itself
/// where it is that already, else `strDecoded`. Its encoding is told by the mark, by how the first
/// characters are written, or by its declaration. None, with the reason in `error`, for what is in
/// none of the encodings that docs/formats.md lists, or not what it says.
///
/// All that looks at a document before it is parsed sees the characters that the parser sees: in
/// UTF-7, in EBCDIC and in the like a tag hides from it.
std::optional<std::string_view> decodeXml(std::string_view strBytes, std::string& strDecoded,
                                          ParseError& error);

}  // namespace Varnel_Tolv_XML_Creation
