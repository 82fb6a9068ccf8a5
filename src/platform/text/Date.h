#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "../../result/Export.h"

namespace Varnel_Tolv_XML_Creation {

/// A local date and time of day of the Gregorian calendar, years 100 to 9999.
struct DateTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;

  bool operator==(const DateTime&) const = default;
};

/// The order in which the groups of an all-numeric date are read first.
enum class DateOrder { dayMonthYear, monthDayYear, yearMonthDay };

/// The date that `strText` writes, blanks around it ignored; none when it is no date. A time alone
/// stands on 30 December 1899, a date alone on midnight.
///
/// A date is three numbers with one kind of separator among "/", "-" and "." (a first number of
/// three or four digits is the year), or has an English month's name, whole or its first three
/// letters. A year of one or two digits is 2000 to 2029 for 0 to 29 and 1930 to 1999 for 30 to 99.
/// A time is h:m or h:m:s, with AM or PM if wanted, or hours alone before AM or PM. There are no
/// zones, no fractions of a second, no "T" between date and time.
VARNEL_EXPORT std::optional<DateTime> parseDate(std::string_view strText, DateOrder order);

/// How many interval boundaries lie between two moments that exist; exchanging the moments changes
/// the sign alone. Intervals, in any case: yyyy years, q quarters, m months, y and d days, w whole
/// weeks (days divided by seven, cut towards zero), ww calendar weeks (the Sundays after the
/// earlier day up to and including the later), h hours, n minutes, s seconds. Raises run-time
/// error 5 for any other.
VARNEL_EXPORT std::int64_t dateDifference(std::string_view strInterval, const DateTime& from,
                                          const DateTime& to);

}  // namespace Varnel_Tolv_XML_Creation
