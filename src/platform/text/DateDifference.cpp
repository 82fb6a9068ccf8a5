#include <chrono>

#include "platform/text/Date.h"
#include "platform/text/Text.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

// Each interval but whole weeks is a way of numbering the units of time one after the other; the
// boundaries crossed between two moments are then the difference of their units' numbers, and going
// back crosses as many as going forth.

namespace {

std::int64_t dayNumber(const DateTime& moment) {
  const std::chrono::sys_days day = std::chrono::year(moment.year) /
                                    std::chrono::month(static_cast<unsigned>(moment.month)) /
                                    std::chrono::day(static_cast<unsigned>(moment.day));
  return day.time_since_epoch().count();
}

std::int64_t monthNumber(const DateTime& moment) {
  return std::int64_t{moment.year} * 12 + moment.month - 1;
}

/// Weeks start on Sunday.
std::int64_t calendarWeekNumber(const DateTime& moment) {
  // Day 0 is Thursday 1 January 1970, four days after a Sunday. 146097 days are 400 years and whole
  // weeks; five such spans make the numbers of all years from 100 on positive, so that the division
  // cuts in one direction only.
  return (dayNumber(moment) + 4 + std::int64_t{5} * 146097) / 7;
}

std::int64_t hourNumber(const DateTime& moment) { return dayNumber(moment) * 24 + moment.hour; }

std::int64_t minuteNumber(const DateTime& moment) {
  return hourNumber(moment) * 60 + moment.minute;
}

std::int64_t secondNumber(const DateTime& moment) {
  return minuteNumber(moment) * 60 + moment.second;
}

}  // namespace

std::int64_t dateDifference(std::string_view strInterval, const DateTime& from,
                            const DateTime& to) {
  const std::string strCode = toLower(strInterval);
  if (strCode == "yyyy") return to.year - from.year;
  if (strCode == "q") return monthNumber(to) / 3 - monthNumber(from) / 3;
  if (strCode == "m") return monthNumber(to) - monthNumber(from);
  if (strCode == "y" || strCode == "d") return dayNumber(to) - dayNumber(from);
  if (strCode == "w") return (dayNumber(to) - dayNumber(from)) / 7;
  if (strCode == "ww") return calendarWeekNumber(to) - calendarWeekNumber(from);
  if (strCode == "h") return hourNumber(to) - hourNumber(from);
  if (strCode == "n") return minuteNumber(to) - minuteNumber(from);
  if (strCode == "s") return secondNumber(to) - secondNumber(from);
  throw RuntimeError(kInvalidArgument);
}

}  // namespace Varnel_Tolv_XML_Creation
