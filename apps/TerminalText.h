#pragma once

#include <string>
#include <string_view>

// What the programs write for people may quote what was answered, and a terminal would obey the
// control characters in it. All of it goes through one of these.

/// `strText` with each control character and line end written as an escape that can be read: \n,
/// \r, \t, \x1b, \u0085, \u2028. A backslash stays as it is.
std::string withoutControls(std::string_view strText);

/// The same, but a plain line end (LF, CR LF) becomes `strLineEnd`.
std::string oneLine(std::string_view strText, std::string_view strLineEnd = " / ");
