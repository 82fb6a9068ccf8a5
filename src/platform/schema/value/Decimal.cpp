#include "platform/schema/value/Decimal.h"

#include <algorithm>
#include <limits>

namespace Varnel_Tolv_XML_Creation {

namespace {

bool areDigits(std::string_view strText) noexcept {
  return std::all_of(strText.begin(), strText.end(),
                     [](char letter) { return letter >= '0' && letter <= '9'; });
}

/// Takes the sign off the front: whether it was a minus.
bool takeSign(std::string_view& strRest) noexcept {
  if (strRest.empty() || (strRest[0] != '-' && strRest[0] != '+')) return false;
  const bool blnNegative = strRest[0] == '-';
  strRest.remove_prefix(1);
  return blnNegative;
}

}  // namespace

std::optional<Decimal> Decimal::parse(std::string_view strText) noexcept {
  Decimal number;
  number.blnNegative = takeSign(strText);
  const std::size_t point = std::min(strText.find('.'), strText.size());
  number.strWhole = strText.substr(0, point);
  if (point < strText.size()) number.strFraction = strText.substr(point + 1);
  if (number.digits() == 0 || !areDigits(number.strWhole) || !areDigits(number.strFraction)) {
    return std::nullopt;
  }
  while (number.strWhole.starts_with('0')) number.strWhole.remove_prefix(1);
  while (number.strFraction.ends_with('0')) number.strFraction.remove_suffix(1);
  if (number.digits() == 0) number.blnNegative = false;
  return number;
}

std::string Decimal::canonical() const {
  std::string strNumber = blnNegative ? "-" : "";
  return strNumber.append(strWhole).append(".").append(strFraction);
}

std::strong_ordering operator<=>(const Decimal& left, const Decimal& right) noexcept {
  if (left.blnNegative != right.blnNegative) {
    return left.blnNegative ? std::strong_ordering::less : std::strong_ordering::greater;
  }
  // With equally many digits before the point, and none at the end of the fraction that do not
  // count, the order of the numbers is that of their texts.
  const Decimal& small = left.blnNegative ? right : left;
  const Decimal& large = left.blnNegative ? left : right;
  if (small.strWhole.size() != large.strWhole.size()) {
    return small.strWhole.size() <=> large.strWhole.size();
  }
  const std::strong_ordering order = small.strWhole <=> large.strWhole;
  return std::is_neq(order) ? order : small.strFraction <=> large.strFraction;
}

std::optional<std::size_t> parseCount(std::string_view strText) noexcept {
  constexpr std::size_t kLargest = std::numeric_limits<std::size_t>::max();
  const bool blnNegative = takeSign(strText);
  if (strText.empty() || !areDigits(strText)) return std::nullopt;
  std::size_t lngCount = 0;
  for (const char digit : strText) {
    const auto lngDigit = static_cast<std::size_t>(digit - '0');
    lngCount = lngCount > (kLargest - lngDigit) / 10 ? kLargest : lngCount * 10 + lngDigit;
    if (lngCount == kLargest) break;
  }
  if (blnNegative && lngCount != 0) return std::nullopt;
  return lngCount;
}

}  // namespace Varnel_Tolv_XML_Creation
