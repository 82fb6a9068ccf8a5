#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/xml/ParseError.h"

namespace Varnel_Tolv_XML_Creation {

class FilesRead;

/// The path that a location names: the location itself, or the decoded path of a file: URL of this
/// machine. None for a file: URL of another host or without an absolute path, and for a path that
/// is empty or holds a NUL.
std::optional<std::string> filePath(std::string_view strLocation);

/// The bytes of the regular file at `strLocation`. None, with the reason in `error`, when it cannot
/// be opened, is a directory, pipe or device, or is larger than `lngMaxBytes`. One that changes
/// meanwhile is read again, some times. `files`, if any, is told of it.
std::optional<std::string> readXmlFile(std::string_view strLocation, std::size_t lngMaxBytes,
                                       ParseError& error, FilesRead* files = nullptr);

/// Why an input of more than `lngMaxBytes` is refused.
ParseError tooLarge(std::size_t lngMaxBytes);

}  // namespace Varnel_Tolv_XML_Creation
