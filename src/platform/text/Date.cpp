#include "platform/text/Date.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>

#include "platform/text/Ascii.h"
#include "platform/text/Text.h"

// A text is read by taking pieces off its front. Each piece is decided by what stands there,
// without going back, so a text of any length is read once at most.

namespace Varnel_Tolv_XML_Creation {

namespace {

/// A group of one to four digits.
struct Digits {
  int lngValue = 0;
  std::size_t lngLength = 0;
};

/// The digits at the front; none when there are none or more than `lngMost`.
std::optional<Digits> takeDigits(std::string_view& strRest, std::size_t lngMost) {
  Digits digits;
  while (digits.lngLength < strRest.size() && isDigit(strRest[digits.lngLength])) {
    if (digits.lngLength == lngMost) return std::nullopt;
    digits.lngValue = digits.lngValue * 10 + (strRest[digits.lngLength] - '0');
    ++digits.lngLength;
  }
  if (digits.lngLength == 0) return std::nullopt;
  strRest.remove_prefix(digits.lngLength);
  return digits;
}

/// Whether blanks stood at the front.
bool takeBlanks(std::string_view& strRest) {
  const std::size_t lngBlanks = std::min(strRest.find_first_not_of(' '), strRest.size());
  strRest.remove_prefix(lngBlanks);
  return lngBlanks > 0;
}

/// One of `strMarks`; 0 when none of them stands at the front.
char takeMark(std::string_view& strRest, std::string_view strMarks) {
  if (strRest.empty() || strMarks.find(strRest[0]) == std::string_view::npos) return 0;
  const char mark = strRest[0];
  strRest.remove_prefix(1);
  return mark;
}

bool isShort(const Digits& digits) { return digits.lngLength <= 2; }

/// The day that three groups write; none when there is no such day.
std::optional<DateTime> makeDay(const Digits& year, const Digits& month, const Digits& day) {
  if (!isShort(month) || !isShort(day)) return std::nullopt;
  int lngYear = year.lngValue;
  if (isShort(year)) lngYear += lngYear < 30 ? 2000 : 1900;
  if (lngYear < 100) return std::nullopt;
  const std::chrono::year_month_day calendarDay{
      std::chrono::year(lngYear), std::chrono::month(static_cast<unsigned>(month.lngValue)),
      std::chrono::day(static_cast<unsigned>(day.lngValue))};
  if (!calendarDay.ok()) return std::nullopt;
  return DateTime{.year = lngYear, .month = month.lngValue, .day = day.lngValue};
}

std::optional<DateTime> makeDay(const std::array<Digits, 3>& groups, DateOrder order) {
  const auto& [first, second, third] = groups;
  switch (order) {
    case DateOrder::dayMonthYear:
      return makeDay(third, second, first);
    case DateOrder::monthDayYear:
      return makeDay(third, first, second);
    case DateOrder::yearMonthDay:
      break;
  }
  return makeDay(first, second, third);
}

/// Day, month and year all in digits, such as "5/3/2012" or "2012-03-05".
std::optional<DateTime> takeNumericDay(std::string_view& strRest, DateOrder order) {
  std::array<Digits, 3> groups;
  char separator = 0;
  for (std::size_t lngGroup = 0; lngGroup < groups.size(); ++lngGroup) {
    if (lngGroup > 0) {
      const char mark = takeMark(strRest, "/-.");
      if (mark == 0 || (separator != 0 && mark != separator)) return std::nullopt;
      separator = mark;
    }
    const std::optional<Digits> digits = takeDigits(strRest, 4);
    if (!digits) return std::nullopt;
    groups[lngGroup] = *digits;
  }

  // The order that the user is known to write in, then whatever else gives a date. Days and months
  // have two digits at most, so only the last order takes a longer first group: as the year.
  // Trying one order twice gives what it gave before.
  for (const DateOrder tried :
       {order, DateOrder::dayMonthYear, DateOrder::monthDayYear, DateOrder::yearMonthDay}) {
    if (const std::optional<DateTime> day = makeDay(groups, tried)) return day;
  }
  return std::nullopt;
}

/// The month named at the front, in full or by its first three letters.
std::optional<Digits> takeMonthName(std::string_view& strRest) {
  constexpr std::array<std::string_view, 12> kMonths = {
      "january", "february", "march",     "april",   "may",      "june",
      "july",    "august",   "september", "october", "november", "december"};
  constexpr std::size_t kShortName = 3;

  const auto lngLetters = static_cast<std::size_t>(
      std::find_if_not(strRest.begin(), strRest.end(), isLetter) - strRest.begin());
  const std::string_view strWord = strRest.substr(0, lngLetters);
  for (std::size_t lngMonth = 0; lngMonth < kMonths.size(); ++lngMonth) {
    const std::string_view strMonth = kMonths[lngMonth];
    if ((lngLetters == strMonth.size() && startsWithIgnoringCase(strWord, strMonth)) ||
        (lngLetters == kShortName &&
         startsWithIgnoringCase(strWord, strMonth.substr(0, kShortName)))) {
      strRest.remove_prefix(lngLetters);
      return Digits{.lngValue = static_cast<int>(lngMonth) + 1, .lngLength = 2};
    }
  }
  return std::nullopt;
}

/// Whether something that may stand beside a month's name was taken: blanks, a mark, or both.
bool takeNameSeparator(std::string_view& strRest) {
  const bool blnBlanks = takeBlanks(strRest);
  const bool blnMark = takeMark(strRest, "-/.,") != 0;
  takeBlanks(strRest);
  return blnBlanks || blnMark;
}

/// A day with a month's name, such as "5 March 2012" or "March 5, 2012".
std::optional<DateTime> takeNamedDay(std::string_view& strRest) {
  std::optional<Digits> month = takeMonthName(strRest);
  if (month && !takeNameSeparator(strRest)) return std::nullopt;
  const std::optional<Digits> day = takeDigits(strRest, 2);
  if (!day || !takeNameSeparator(strRest)) return std::nullopt;
  if (!month) {
    month = takeMonthName(strRest);
    if (!month || !takeNameSeparator(strRest)) return std::nullopt;
  }
  const std::optional<Digits> year = takeDigits(strRest, 4);
  if (!year) return std::nullopt;
  return makeDay(*year, *month, *day);
}

enum class HalfDay { none, am, pm };

/// AM or PM, with blanks before it if there are any. Takes nothing when there is no such mark.
HalfDay takeHalfDay(std::string_view& strRest) {
  std::string_view strMark = strRest;
  takeBlanks(strMark);
  const bool blnAm = startsWithIgnoringCase(strMark, "am");
  if (!blnAm && !startsWithIgnoringCase(strMark, "pm")) return HalfDay::none;
  strMark.remove_prefix(2);
  strRest = strMark;
  return blnAm ? HalfDay::am : HalfDay::pm;
}

/// The hour of the day; none for an hour that the half-day mark does not allow.
std::optional<int> hourOfDay(int lngHour, HalfDay halfDay) {
  constexpr int kNoon = 12;
  if (halfDay == HalfDay::none) return lngHour < 24 ? std::optional(lngHour) : std::nullopt;
  if (lngHour > kNoon) return std::nullopt;
  // deliberate: midnight may be written "0:00 AM" as well as "12:00 AM", but there is no "0 PM".
  if (lngHour == 0 && halfDay == HalfDay::pm) return std::nullopt;
  return lngHour % kNoon + (halfDay == HalfDay::pm ? kNoon : 0);
}

/// A time of day, such as "14:30", "2:30:15 pm" or "2 PM", put onto `day`.
std::optional<DateTime> takeTime(std::string_view& strRest, DateTime day) {
  const std::optional<Digits> hour = takeDigits(strRest, 2);
  if (!hour) return std::nullopt;

  bool blnMinutes = false;
  for (int* part : {&day.minute, &day.second}) {
    if (takeMark(strRest, ":") == 0) break;
    const std::optional<Digits> digits = takeDigits(strRest, 2);
    if (!digits || digits->lngValue > 59) return std::nullopt;
    *part = digits->lngValue;
    blnMinutes = true;
  }

  const HalfDay halfDay = takeHalfDay(strRest);
  if (!blnMinutes && halfDay == HalfDay::none) return std::nullopt;
  const std::optional<int> lngHour = hourOfDay(hour->lngValue, halfDay);
  if (!lngHour) return std::nullopt;
  day.hour = *lngHour;
  return day;
}

/// The date part at the front of `strRest`, which is left as it was when there is none.
std::optional<DateTime> takeDay(std::string_view& strRest, DateOrder order) {
  for (const bool blnNamed : {false, true}) {
    std::string_view strTried = strRest;
    const std::optional<DateTime> day =
        blnNamed ? takeNamedDay(strTried) : takeNumericDay(strTried, order);
    if (day) {
      strRest = strTried;
      return day;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<DateTime> parseDate(std::string_view strText, DateOrder order) {
  std::string_view strRest = trim(strText);
  std::optional<DateTime> moment = takeDay(strRest, order);
  if (!moment) {
    moment = takeTime(strRest, DateTime{});
  } else if (takeBlanks(strRest)) {
    moment = takeTime(strRest, *moment);
  }
  if (!strRest.empty()) return std::nullopt;
  return moment;
}

}  // namespace Varnel_Tolv_XML_Creation
