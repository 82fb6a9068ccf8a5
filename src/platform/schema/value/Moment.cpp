#include "platform/schema/value/Moment.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>

#include "platform/text/Ascii.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::int64_t kSecondsOfDay = 86400;
constexpr std::size_t kMostDigits = 15;
constexpr std::int64_t kFarthestHours = 14;  // of a zone from UTC

/// The days from 1 January 1970 to a day, whose month need not be one of its year.
std::int64_t dayNumber(std::int64_t lngYear, std::int64_t lngMonth, std::int64_t lngDay) noexcept {
  // Years are counted from March on, in periods of 400 years, so that leap days come last.
  const std::int64_t lngMonths = lngYear * 12 + lngMonth - 3;
  const std::int64_t lngFromMarch = (lngMonths % 12 + 12) % 12;
  lngYear = (lngMonths - lngFromMarch) / 12;
  const std::int64_t lngOfPeriod = (lngYear % 400 + 400) % 400;
  const std::int64_t lngPeriod = (lngYear - lngOfPeriod) / 400;
  return lngPeriod * 146097 + lngOfPeriod * 365 + lngOfPeriod / 4 - lngOfPeriod / 100 +
         (153 * lngFromMarch + 2) / 5 + lngDay - 1 - 719468;
}

std::int64_t daysOfMonth(std::int64_t lngYear, std::int64_t lngMonth) noexcept {
  return dayNumber(lngYear, lngMonth + 1, 1) - dayNumber(lngYear, lngMonth, 1);
}

/// Takes pieces off the front of a text. After the first that is not there it takes none.
class Pieces {
 public:
  explicit Pieces(std::string_view strText) noexcept : strRest_(strText) {}

  bool take(char mark) noexcept {
    if (!blnGood_ || strRest_.empty() || strRest_[0] != mark) return false;
    strRest_.remove_prefix(1);
    return true;
  }

  void need(std::string_view strMarks) noexcept {
    for (const char mark : strMarks) blnGood_ = take(mark);
  }

  /// All digits that stand here, of which there must be some.
  std::string_view digits() noexcept {
    const auto end = std::find_if_not(strRest_.begin(), strRest_.end(), isDigit);
    const auto lngDigits = static_cast<std::size_t>(end - strRest_.begin());
    const std::string_view strDigits = strRest_.substr(0, lngDigits);
    strRest_.remove_prefix(lngDigits);
    if (strDigits.empty()) blnGood_ = false;
    return strDigits;
  }

  bool atDigit() const noexcept { return blnGood_ && !strRest_.empty() && isDigit(strRest_[0]); }

  std::int64_t number(std::string_view strDigits) noexcept {
    if (strDigits.size() > kMostDigits) blnGood_ = false;
    if (!blnGood_) return 0;
    std::int64_t lngNumber = 0;
    for (const char digit : strDigits) lngNumber = lngNumber * 10 + (digit - '0');
    return lngNumber;
  }

  /// A number of two digits within these bounds.
  std::int64_t two(std::int64_t lngLeast, std::int64_t lngMost) noexcept {
    const std::string_view strDigits = digits();
    const std::int64_t lngNumber = number(strDigits);
    if (strDigits.size() != 2 || lngNumber < lngLeast || lngNumber > lngMost) blnGood_ = false;
    return lngNumber;
  }

  /// What stands behind a decimal point, if there is one.
  std::string_view fraction() noexcept {
    if (!take('.')) return {};
    const std::string_view strDigits = digits();
    return strDigits.substr(0, strDigits.find_last_not_of('0') + 1);
  }

  void fail() noexcept { blnGood_ = false; }
  bool good() const noexcept { return blnGood_; }
  bool ended() const noexcept { return blnGood_ && strRest_.empty(); }

 private:
  std::string_view strRest_;
  bool blnGood_ = true;
};

/// There is no year 0: the year before 1 is -1.
std::int64_t takeYear(Pieces& pieces) noexcept {
  const bool blnNegative = pieces.take('-');
  const std::string_view strDigits = pieces.digits();
  const std::int64_t lngYear = pieces.number(strDigits);
  if (strDigits.size() < 4 || (strDigits.size() > 4 && strDigits[0] == '0') || lngYear == 0) {
    pieces.fail();
  }
  return blnNegative ? -lngYear : lngYear;
}

/// Seconds of a day, up to and with 24:00:00.
std::int64_t takeTime(Pieces& pieces, std::string_view& strFraction) noexcept {
  const std::int64_t lngHour = pieces.two(0, 24);
  pieces.need(":");
  const std::int64_t lngMinute = pieces.two(0, 59);
  pieces.need(":");
  const std::int64_t lngSecond = (lngHour * 60 + lngMinute) * 60 + pieces.two(0, 59);
  strFraction = pieces.fraction();
  if (lngSecond > kSecondsOfDay || (lngSecond == kSecondsOfDay && !strFraction.empty())) {
    pieces.fail();
  }
  return lngSecond;
}

/// Seconds that a zone is ahead of UTC, at most 14 hours; none where no zone stands.
std::optional<std::int64_t> takeZone(Pieces& pieces) noexcept {
  if (pieces.take('Z')) return 0;
  const bool blnBehind = pieces.take('-');
  if (!blnBehind && !pieces.take('+')) return std::nullopt;
  const std::int64_t lngHour = pieces.two(0, kFarthestHours);
  pieces.need(":");
  const std::int64_t lngMinutes = lngHour * 60 + pieces.two(0, 59);
  if (lngMinutes > kFarthestHours * 60) pieces.fail();
  return blnBehind ? -lngMinutes * 60 : lngMinutes * 60;
}

/// The numbers that stand before units, and whether there is any.
struct Units {
  std::array<std::int64_t, 3> numbers{};
  bool blnAny = false;
};

/// Numbers with a unit behind each; the units come in their order, and some may be missing. Only
/// seconds have a fraction.
Units takeUnits(Pieces& pieces, std::string_view strUnits, std::string_view& strFraction) noexcept {
  Units units;
  std::size_t next = 0;
  while (pieces.atDigit()) {
    const std::int64_t lngNumber = pieces.number(pieces.digits());
    if (pieces.take('.')) {
      const std::string_view strDigits = pieces.digits();
      strFraction = strDigits.substr(0, strDigits.find_last_not_of('0') + 1);
      while (next < strUnits.size() && strUnits[next] != 'S') ++next;
    }
    while (next < strUnits.size() && !pieces.take(strUnits[next])) ++next;
    if (next == strUnits.size()) {
      pieces.fail();
      break;
    }
    units.numbers.at(next++) = lngNumber;
    units.blnAny = true;
  }
  return units;
}

auto order(const Moment& moment, std::int64_t lngShift) noexcept {
  const std::int64_t lngSecond = moment.lngSecond + lngShift;
  const std::int64_t lngOfDay = (lngSecond % kSecondsOfDay + kSecondsOfDay) % kSecondsOfDay;
  return std::tuple(moment.lngDay + (lngSecond - lngOfDay) / kSecondsOfDay, lngOfDay,
                    moment.strFraction);
}

}  // namespace

std::optional<Moment> Moment::parse(Primitive type, std::string_view strText) noexcept {
  using enum Primitive;
  const bool blnYear = type == dateTime || type == date || type == gYearMonth || type == gYear;
  const bool blnMonth = type != time && type != gYear && type != gDay;
  const bool blnDay = type == dateTime || type == date || type == gMonthDay || type == gDay;

  Pieces pieces(strText);
  std::int64_t lngYear = 1972;  // a leap year
  std::int64_t lngMonth = 1;
  std::int64_t lngDayOfMonth = 1;
  if (blnYear) lngYear = takeYear(pieces);
  if (blnMonth) {
    pieces.need(blnYear ? "-" : "--");
    lngMonth = pieces.two(1, 12);
  }
  if (blnDay) {
    pieces.need(blnMonth ? "-" : "---");
    lngDayOfMonth = pieces.two(1, 31);
  }
  if (!pieces.good() || lngDayOfMonth > daysOfMonth(lngYear, lngMonth)) return std::nullopt;

  Moment moment;
  std::int64_t lngSeconds = 0;
  if (type == dateTime) pieces.need("T");
  if (type == dateTime || type == time) lngSeconds = takeTime(pieces, moment.strFraction);
  const std::optional<std::int64_t> lngZone = takeZone(pieces);
  if (!pieces.ended()) return std::nullopt;

  moment.blnZone = lngZone.has_value();
  moment.lngDay = dayNumber(lngYear, lngMonth, lngDayOfMonth);
  constexpr std::int64_t kDaysOfYearZero = 366;  // which numbers count and the calendar has not
  if (lngYear < 0) moment.lngDay += kDaysOfYearZero;
  lngSeconds -= lngZone.value_or(0);
  const std::int64_t lngOfDay = (lngSeconds % kSecondsOfDay + kSecondsOfDay) % kSecondsOfDay;
  if (type != time) moment.lngDay += (lngSeconds - lngOfDay) / kSecondsOfDay;
  moment.lngSecond = static_cast<std::int32_t>(lngOfDay);
  return moment;
}

std::string Moment::canonical() const {
  std::string strValue = std::to_string(lngDay) + ":" + std::to_string(lngSecond) + ".";
  return strValue.append(strFraction).append(blnZone ? "Z" : "");
}

std::partial_ordering operator<=>(const Moment& left, const Moment& right) noexcept {
  if (left.blnZone == right.blnZone) return order(left, 0) <=> order(right, 0);
  constexpr std::int64_t kFarthestZone = kFarthestHours * 3600;
  const std::int64_t lngShift = left.blnZone ? 0 : kFarthestZone;
  const std::int64_t lngOtherShift = right.blnZone ? 0 : kFarthestZone;
  if (order(left, lngShift) < order(right, -lngOtherShift)) return std::partial_ordering::less;
  if (order(left, -lngShift) > order(right, lngOtherShift)) return std::partial_ordering::greater;
  return std::partial_ordering::unordered;
}

std::optional<Duration> Duration::parse(std::string_view strText) noexcept {
  Pieces pieces(strText);
  Duration duration;
  duration.blnNegative = pieces.take('-');
  pieces.need("P");
  const Units date = takeUnits(pieces, "YMD", duration.strFraction);
  const bool blnTime = pieces.take('T');
  const Units time = blnTime ? takeUnits(pieces, "HMS", duration.strFraction) : Units{};
  if (!pieces.ended() || (blnTime ? !time.blnAny : !date.blnAny)) return std::nullopt;

  duration.lngMonths = date.numbers[0] * 12 + date.numbers[1];
  const std::int64_t lngSeconds = (time.numbers[0] * 60 + time.numbers[1]) * 60 + time.numbers[2];
  duration.lngDays = date.numbers[2] + lngSeconds / kSecondsOfDay;
  duration.lngSeconds = lngSeconds % kSecondsOfDay;
  if (duration.lngMonths == 0 && duration.lngDays == 0 && duration.lngSeconds == 0 &&
      duration.strFraction.empty()) {
    duration.blnNegative = false;
  }
  return duration;
}

std::string Duration::canonical() const {
  std::string strValue = blnNegative ? "-" : "";
  strValue += std::to_string(lngMonths) + "M" + std::to_string(lngDays) + "D" +
              std::to_string(lngSeconds) + ".";
  return strValue.append(strFraction);
}

std::partial_ordering operator<=>(const Duration& left, const Duration& right) noexcept {
  if (left.blnNegative != right.blnNegative) {
    return left.blnNegative ? std::partial_ordering::less : std::partial_ordering::greater;
  }
  const int sign = left.blnNegative ? -1 : 1;
  const auto rest =
      std::tie(left.lngSeconds, left.strFraction) <=> std::tie(right.lngSeconds, right.strFraction);
  // The moments that XML Schema chose: what comes after them are months of all lengths.
  constexpr std::array<std::array<int, 2>, 4> kBegins = {
      {{1696, 9}, {1697, 2}, {1903, 3}, {1903, 7}}};
  std::optional<std::strong_ordering> common;
  for (const auto& [lngYear, lngMonth] : kBegins) {
    // Clang 14 lets no lambda capture a structured binding by its own name.
    const auto end = [&, lngFirstYear = lngYear,
                      lngFirstMonth = lngMonth](const Duration& duration) {
      return dayNumber(lngFirstYear, lngFirstMonth + sign * duration.lngMonths, 1) +
             sign * duration.lngDays;
    };
    std::strong_ordering order = end(left) <=> end(right);
    if (std::is_eq(order)) order = left.blnNegative ? 0 <=> rest : rest;
    if (common && *common != order) return std::partial_ordering::unordered;
    common = order;
  }
  return *common;
}

}  // namespace Varnel_Tolv_XML_Creation
