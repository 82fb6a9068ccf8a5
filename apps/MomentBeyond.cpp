#include "MomentBeyond.h"

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace {

/// Takes a text apart from its front.
class Reader {
 public:
  explicit Reader(std::string_view strText) : strRest_(strText) {}

  bool take(char letter) {
    if (!strRest_.starts_with(letter)) return false;
    strRest_.remove_prefix(1);
    return true;
  }

  bool take(std::size_t lngDigits, int& lngNumber) {
    if (strRest_.size() < lngDigits) return false;
    lngNumber = 0;
    for (const char letter : strRest_.substr(0, lngDigits)) {
      if (letter < '0' || letter > '9') return false;
      lngNumber = lngNumber * 10 + (letter - '0');
    }
    strRest_.remove_prefix(lngDigits);
    return true;
  }

  void passFraction() {
    if (!take('.')) return;
    strRest_.remove_prefix(std::min(strRest_.find_first_not_of("0123456789"), strRest_.size()));
  }

  std::string_view rest() const { return strRest_; }

 private:
  std::string_view strRest_;
};

bool isZone(std::string_view strText) {
  if (strText.empty() || strText == "Z") return true;
  Reader zone(strText);
  int lngHours = 0;
  int lngMinutes = 0;
  return (zone.take('+') || zone.take('-')) && zone.take(2, lngHours) && zone.take(':') &&
         zone.take(2, lngMinutes) && zone.rest().empty();
}

std::string padded(int lngNumber, std::size_t lngDigits) {
  std::string strNumber = std::to_string(lngNumber);
  return std::string(lngDigits - std::min(lngDigits, strNumber.size()), '0') + strNumber;
}

}  // namespace

std::optional<std::string> momentBeyond(std::string_view strKind, std::string_view strBound,
                                        bool blnUpper) {
  using namespace std::chrono;
  const bool blnClock = strKind == "time" || strKind == "dateTime";
  const bool blnDay = strKind == "date" || strKind == "dateTime";
  const bool blnMonth = blnDay || strKind == "gYearMonth";
  const bool blnYear = blnMonth || strKind == "gYear";
  if (!blnYear && !blnClock) return std::nullopt;

  Reader bound(strBound);
  int lngYear = 2000, lngMonth = 1, lngDay = 1, lngHour = 0, lngMinute = 0, lngSecond = 0;
  bool blnRead = !blnYear || bound.take(4, lngYear);
  if (blnMonth) blnRead = blnRead && bound.take('-') && bound.take(2, lngMonth);
  if (blnDay) blnRead = blnRead && bound.take('-') && bound.take(2, lngDay);
  if (blnDay && blnClock) blnRead = blnRead && bound.take('T');
  if (blnClock) {
    blnRead = blnRead && bound.take(2, lngHour) && bound.take(':') && bound.take(2, lngMinute) &&
              bound.take(':') && bound.take(2, lngSecond);
    bound.passFraction();
  }
  year_month_day date{year(lngYear), month(static_cast<unsigned>(lngMonth)),
                      day(static_cast<unsigned>(lngDay))};
  if (!blnRead || !isZone(bound.rest()) || !date.ok()) return std::nullopt;

  const int lngStep = blnUpper ? 1 : -1;
  seconds clock = hours(lngHour) + minutes(lngMinute) + seconds(lngSecond);
  if (blnClock) {
    const sys_seconds moment = sys_days(date) + clock + seconds(lngStep);
    const sys_days midnight = floor<days>(moment);
    if (!blnDay && midnight != sys_days(date)) return std::nullopt;
    date = midnight;
    clock = moment - midnight;
  } else if (blnDay) {
    date = sys_days(date) + days(lngStep);
  } else if (blnMonth) {
    date += months(lngStep);
  } else {
    date += years(lngStep);
  }
  const int lngNewYear = static_cast<int>(date.year());
  if (lngNewYear < 1 || lngNewYear > 9999) return std::nullopt;

  std::string strMoment;
  if (blnYear) strMoment += padded(lngNewYear, 4);
  if (blnMonth) strMoment += '-' + padded(static_cast<int>(unsigned{date.month()}), 2);
  if (blnDay) strMoment += '-' + padded(static_cast<int>(unsigned{date.day()}), 2);
  if (blnDay && blnClock) strMoment += 'T';
  if (blnClock) {
    const hh_mm_ss time(clock);
    strMoment += padded(static_cast<int>(time.hours().count()), 2) + ':' +
                 padded(static_cast<int>(time.minutes().count()), 2) + ':' +
                 padded(static_cast<int>(time.seconds().count()), 2);
  }
  return strMoment.append(bound.rest());
}
