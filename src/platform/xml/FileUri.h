#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// The file: URL of an absolute path.
std::string uriOfPath(std::string_view strPath);

/// An xs:anyURI as a URI: without the white space around it, letters beyond ASCII as escapes.
std::string escapedUri(std::string_view strText);

/// The absolute URI that an xs:anyURI means in a document at `strBase`. None for what is none.
std::optional<std::string> resolveUri(std::string_view strReference, const std::string& strBase);

/// The path of a file: URL of this machine, without "." and ".." where it leads; none otherwise.
std::optional<std::string> pathOfUri(std::string_view strUri);

}  // namespace Varnel_Tolv_XML_Creation
