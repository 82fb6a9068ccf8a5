#pragma once

#include <string>
#include <string_view>

/// `strText`, which is UTF-8, with U+FFFD for each character that XML cannot hold.
std::string withXmlCharacters(std::string_view strText);
