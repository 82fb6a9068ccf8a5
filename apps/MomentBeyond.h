#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The value that comes next behind a bound, or the last before it, in the lexical form of the
/// schema and with the bound's time zone: of a date the next day, of a dateTime or a time the next
/// second, of a gYear or gYearMonth the next year or month. None for other kinds, for what is no
/// value of its kind, and where there is no such value of four digits' years or on the same day.
///
/// A run's conversion of dates keeps each of them: it reads days year first, and nothing with a "T"
/// or a zone.
std::optional<std::string> momentBeyond(std::string_view strKind, std::string_view strBound,
                                        bool blnUpper);
