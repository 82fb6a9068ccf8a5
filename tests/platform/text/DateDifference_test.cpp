#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "platform/text/Date.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

DateTime day(int year, int month, int dayOfMonth) {
  return {.year = year, .month = month, .day = dayOfMonth, .hour = 0, .minute = 0, .second = 0};
}

DateTime onNewYear(int hour, int minute, int second) {
  return {.year = 2012, .month = 1, .day = 1, .hour = hour, .minute = minute, .second = second};
}

TEST(DateDifference, CountsTheBoundariesCrossed) {
  const struct {
    const char *says, *interval;
    DateTime from, to;
    std::int64_t count;
  } cases[] = {
      {"thirty days of January", "d", day(2012, 1, 1), day(2012, 1, 31), 30},
      {"y is another word for days", "y", day(2012, 1, 1), day(2012, 1, 31), 30},
      {"a leap day counts", "d", day(2012, 2, 28), day(2012, 3, 1), 2},
      {"a century without one", "d", day(1900, 2, 28), day(1900, 3, 1), 1},
      {"the whole range", "d", day(100, 1, 1), day(9999, 12, 31), 3615899},
      {"one minute over midnight is a day",
       "d",
       {.year = 2012, .month = 1, .day = 1, .hour = 23, .minute = 59, .second = 30},
       {.year = 2012, .month = 1, .day = 2, .hour = 0, .minute = 0, .second = 30},
       1},
      {"a whole day without midnight is none", "d", onNewYear(0, 0, 0), onNewYear(23, 59, 59), 0},
      {"one day over New Year is a year", "yyyy", day(2011, 12, 31), day(2012, 1, 1), 1},
      {"and a quarter", "q", day(2011, 12, 31), day(2012, 1, 1), 1},
      {"and a month", "m", day(2011, 12, 31), day(2012, 1, 1), 1},
      {"a year all but a day is none", "yyyy", day(2012, 1, 1), day(2012, 12, 31), 0},
      {"it has three quarters' ends", "q", day(2012, 1, 1), day(2012, 12, 31), 3},
      {"and eleven months' ends", "m", day(2012, 1, 1), day(2012, 12, 31), 11},
      {"March to April is a quarter", "q", day(2012, 3, 31), day(2012, 4, 1), 1},
      {"April to June is none", "q", day(2012, 4, 1), day(2012, 6, 30), 0},
      {"a month all but a day is none", "m", day(2012, 1, 1), day(2012, 1, 31), 0},
      {"months over years", "m", day(2010, 11, 30), day(2012, 2, 1), 15},
      {"six days are no whole week", "w", day(2012, 1, 1), day(2012, 1, 7), 0},
      {"seven are", "w", day(2012, 1, 1), day(2012, 1, 8), 1},
      {"Saturday to Sunday is a calendar week", "ww", day(2011, 12, 31), day(2012, 1, 1), 1},
      {"the first operand's Sunday does not count", "ww", day(2012, 1, 1), day(2012, 1, 7), 0},
      {"the second operand's does", "ww", day(2012, 1, 1), day(2012, 1, 8), 1},
      {"Monday to the Sunday after next", "ww", day(2012, 1, 2), day(2012, 1, 15), 2},
      {"a second before the hour is an hour", "h", onNewYear(10, 59, 59), onNewYear(11, 0, 0), 1},
      {"an hour all but a second is none", "h", onNewYear(10, 0, 0), onNewYear(10, 59, 59), 0},
      {"hours over days", "h", onNewYear(23, 0, 0), day(2012, 1, 3), 25},
      {"a second before the minute is a minute", "n", onNewYear(10, 0, 59), onNewYear(10, 1, 0), 1},
      {"a minute all but a second is none", "n", onNewYear(10, 0, 0), onNewYear(10, 0, 59), 0},
      {"minutes over hours", "n", onNewYear(10, 30, 0), onNewYear(12, 15, 0), 105},
      {"seconds", "s", onNewYear(10, 0, 0), onNewYear(11, 1, 1), 3661},
      {"more seconds than 32 bits hold", "s", day(100, 1, 1), day(9999, 12, 31), 312413673600},
      {"a moment and itself", "s", onNewYear(1, 2, 3), onNewYear(1, 2, 3), 0},
      {"codes in capitals", "YYYY", day(2010, 1, 1), day(2012, 1, 1), 2},
      {"codes in any case", "wW", day(2012, 1, 1), day(2012, 1, 8), 1},
      {"from the dawn of the calendar", "ww", day(100, 1, 1), day(100, 1, 31), 5},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(dateDifference(c.interval, c.from, c.to), c.count);
    EXPECT_EQ(dateDifference(c.interval, c.to, c.from), -c.count);
  }
}

TEST(DateDifference, CutsWholeWeeksTowardsZero) {
  EXPECT_EQ(dateDifference("w", day(2012, 1, 14), day(2012, 1, 1)), -1);
  EXPECT_EQ(dateDifference("w", day(2012, 1, 7), day(2012, 1, 1)), 0);
}

TEST(DateDifference, RaisesInvalidArgumentForAnyOtherInterval) {
  for (const char* interval : {"", "x", "yy", "yyy", "days", "mm", "hh", "ss", " d", "d ", "www"}) {
    SCOPED_TRACE(interval);
    try {
      static_cast<void>(dateDifference(interval, day(2012, 1, 1), day(2012, 1, 2)));
      ADD_FAILURE() << "nothing was raised";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 5);
      EXPECT_EQ(error.description(), "Invalid procedure call or argument");
    }
  }
}

/// A day, and how many boundaries of each interval lie between the first day of all and it.
struct CountedDay {
  DateTime date;
  std::map<std::string, std::int64_t> boundaries;
};

/// Every day of `yearCount` years, counted one at a time from a known weekday (0 is Sunday).
std::vector<CountedDay> countDays(int firstYear, int yearCount, int weekday) {
  std::vector<CountedDay> colDays;
  CountedDay counted{day(firstYear, 1, 1), {}};
  while (counted.date.year < firstYear + yearCount) {
    colDays.push_back(counted);
    const int lngYear = counted.date.year;
    const bool blnLeap = lngYear % 4 == 0 && (lngYear % 100 != 0 || lngYear % 400 == 0);
    const int lngLengths[] = {31, blnLeap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

    ++counted.boundaries["d"];
    weekday = (weekday + 1) % 7;
    if (weekday == 0) ++counted.boundaries["ww"];
    if (++counted.date.day <= lngLengths[counted.date.month - 1]) continue;
    counted.date.day = 1;
    ++counted.boundaries["m"];
    if (counted.date.month % 3 == 0) ++counted.boundaries["q"];
    if (++counted.date.month <= 12) continue;
    counted.date.month = 1;
    ++counted.boundaries["yyyy"];
    ++counted.date.year;
  }
  return colDays;
}

TEST(DateDifference, AgreesWithCountingDayByDay) {
  struct Span {
    const char* says;
    int firstYear, weekdayOfNewYear;
  };
  // New Year's Day was a Saturday in 1898 and a Friday in 1999. Weekdays come again after 400
  // years, so that of 100 is that of 2100.
  for (const Span& span : {Span{"around a century without a leap day", 1898, 6},
                           Span{"around one with a leap day", 1999, 5},
                           Span{"at the beginning of the range", 100, 5}}) {
    SCOPED_TRACE(span.says);
    const std::vector<CountedDay> colDays = countDays(span.firstYear, 4, span.weekdayOfNewYear);
    // Strides without a common divisor with 7 meet every pair of weekdays.
    for (std::size_t lngFrom = 0; lngFrom < colDays.size(); lngFrom += 11) {
      for (std::size_t lngTo = 0; lngTo < colDays.size(); lngTo += 5) {
        CountedDay from = colDays[lngFrom];
        CountedDay to = colDays[lngTo];
        for (const char* interval : {"d", "ww", "m", "q", "yyyy"}) {
          ASSERT_EQ(dateDifference(interval, from.date, to.date),
                    to.boundaries[interval] - from.boundaries[interval])
              << interval << ", days " << lngFrom << " to " << lngTo;
        }
        ASSERT_EQ(dateDifference("w", from.date, to.date),
                  (to.boundaries["d"] - from.boundaries["d"]) / 7)
            << "w, days " << lngFrom << " to " << lngTo;
      }
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
