#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/schema/value/LexicalForms.h"

// The values of XML Schema's types of date and time. Years and the numbers of a duration have at
// most 15 digits (a text with more is no value), the fractions of a second any number.

namespace Varnel_Tolv_XML_Creation {

/// A moment on the time line: of a day or a longer span its beginning. What the type leaves out is
/// filled in, the same for all values, so that they can be compared. With a zone it is in UTC; two
/// times of day that are one instant of UTC are then the same time.
struct Moment {
  std::int64_t lngDay = 0;  // of the Gregorian calendar, from 1 January 1970
  std::int32_t lngSecond = 0;
  std::string_view strFraction;  // of the second, without zeros at the end
  bool blnZone = false;

  /// `type` is one of those of dates and times.
  static std::optional<Moment> parse(Primitive type, std::string_view strText) noexcept;

  /// The one text that all texts of this value share.
  std::string canonical() const;

  bool operator==(const Moment&) const noexcept = default;
};

/// The order of two values of one type; none when only one has a zone and they are not more than
/// the 14 hours apart that a zone can make.
std::partial_ordering operator<=>(const Moment& left, const Moment& right) noexcept;

/// A span of time: months, and seconds (counted in days and the rest), which no rule turns into
/// each other.
struct Duration {
  bool blnNegative = false;  // never of no time at all
  std::int64_t lngMonths = 0;
  std::int64_t lngDays = 0;
  std::int64_t lngSeconds = 0;  // less than a day
  std::string_view strFraction;

  static std::optional<Duration> parse(std::string_view strText) noexcept;
  std::string canonical() const;

  bool operator==(const Duration&) const noexcept = default;
};

/// One duration is less than another only if it is after whatever moment both begin.
std::partial_ordering operator<=>(const Duration& left, const Duration& right) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
