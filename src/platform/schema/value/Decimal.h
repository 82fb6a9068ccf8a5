#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// A decimal number of any number of digits, as views of the text that it was read from; that
/// digits which do not count are left out makes equal numbers equal in every member.
struct Decimal {
  bool blnNegative = false;      // never of zero
  std::string_view strWhole;     // without zeros in front
  std::string_view strFraction;  // without zeros at the end

  /// The number that a text writes in XML Schema's form of a decimal: an optional sign, digits, and
  /// a point anywhere among them.
  static std::optional<Decimal> parse(std::string_view strText) noexcept;

  /// How many digits count in all; those between the point and the first other than 0 do.
  std::size_t digits() const noexcept { return strWhole.size() + strFraction.size(); }

  /// The one text that all texts of this number share.
  std::string canonical() const;

  friend std::strong_ordering operator<=>(const Decimal& left, const Decimal& right) noexcept;
  friend bool operator==(const Decimal& left, const Decimal& right) noexcept = default;
};

/// The number that a text writes as an integer from 0; one that is too large is the largest.
std::optional<std::size_t> parseCount(std::string_view strText) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
