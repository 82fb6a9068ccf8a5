#pragma once

#include <string>
#include <string_view>
#include <vector>

/// In what the JSON result of a run is not as expected, one line for each field or error. Entries
/// of lists are compared with those of the same question, row and column, in their order; null is a
/// list of none. Raises CannotRun, which names the file, for what is expected when that is no JSON
/// or is nested more than 32 levels deep.
std::vector<std::string> compareResult(const std::string& strFile, const std::string& strExpected,
                                       const std::string& strActual);

/// A value as people read it in a difference: in quotes, in one line, cut when it is long.
std::string quotedValue(std::string_view strValue);

/// "question "q", row 3, column "c"", as far as there are such marks; else empty.
std::string namedPlace(std::string_view strQuestion, std::string_view strRow,
                       std::string_view strColumn);
