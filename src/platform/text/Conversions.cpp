#include "platform/text/Conversions.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "platform/text/Ascii.h"
#include "platform/text/Text.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

// Numbers are read digit by digit and never become floating point: a text of any length is rounded
// exactly, and the result depends on no locale and no rounding mode.

namespace {

/// The parts of a number's text; the value is 0.<whole><fraction> * 10^(whole digits + exponent).
struct Number {
  bool blnNegative = false;
  std::string_view strWhole;  // thousands marks included
  std::string_view strFraction;
  std::int64_t lngExponent = 0;
};

std::size_t countDigits(std::string_view strText) {
  return static_cast<std::size_t>(std::find_if_not(strText.begin(), strText.end(), isDigit) -
                                  strText.begin());
}

std::string_view take(std::string_view& strRest, std::size_t lngCount) {
  const std::string_view strTaken = strRest.substr(0, lngCount);
  strRest.remove_prefix(lngCount);
  return strTaken;
}

/// Takes a sign away; whether it was a minus.
bool takeSign(std::string_view& strRest) {
  if (strRest.empty() || (strRest[0] != '-' && strRest[0] != '+')) return false;
  return take(strRest, 1) == "-";
}

/// Digits with single thousands marks between them.
std::string_view takeWhole(std::string_view& strRest) {
  std::size_t lngLength = countDigits(strRest);
  while (lngLength > 0 && lngLength + 1 < strRest.size() && strRest[lngLength] == ',' &&
         isDigit(strRest[lngLength + 1])) {
    lngLength += 1 + countDigits(strRest.substr(lngLength + 1));
  }
  return take(strRest, lngLength);
}

/// The number that digits write, or something that is larger than any text is long.
std::int64_t exponentOf(std::string_view strDigits) {
  constexpr std::int64_t kBeyondEveryText = std::numeric_limits<std::int64_t>::max() / 100;
  std::int64_t lngExponent = 0;
  for (const char digit : strDigits) {
    lngExponent = std::min(lngExponent * 10 + (digit - '0'), kBeyondEveryText);
  }
  return lngExponent;
}

std::optional<Number> parseNumber(std::string_view strText) {
  std::string_view strRest = trim(strText);
  Number number;
  number.blnNegative = takeSign(strRest);
  number.strWhole = takeWhole(strRest);
  if (strRest.starts_with('.')) {
    take(strRest, 1);
    number.strFraction = take(strRest, countDigits(strRest));
  }
  if (number.strWhole.empty() && number.strFraction.empty()) return std::nullopt;
  if (!strRest.empty() && std::string_view("eEdD").find(strRest[0]) != std::string_view::npos) {
    take(strRest, 1);
    const bool blnNegative = takeSign(strRest);
    const std::string_view strDigits = take(strRest, countDigits(strRest));
    if (strDigits.empty()) return std::nullopt;
    number.lngExponent = blnNegative ? -exponentOf(strDigits) : exponentOf(strDigits);
  }
  if (!strRest.empty()) return std::nullopt;
  return number;
}

bool isZero(const Number& number) {
  constexpr std::string_view kNonZero = "123456789";
  return number.strWhole.find_first_of(kNonZero) == std::string_view::npos &&
         number.strFraction.find_first_of(kNonZero) == std::string_view::npos;
}

/// The digits of a number from the first that is not zero, in their places around the point.
class Rounding {
 public:
  explicit Rounding(const Number& number)
      : lngPlacesBeforePoint_(
            std::count_if(number.strWhole.begin(), number.strWhole.end(), isDigit) +
            number.lngExponent) {
    for (const char letter : number.strWhole) {
      if (letter != ',') add(letter - '0');
    }
    for (const char letter : number.strFraction) add(letter - '0');
    // Zeros that only the exponent writes, such as those of "1e3".
    while (lngWhole_ != 0 && lngWhole_ <= kEnough && lngPlacesBeforePoint_ > 0) add(0);
  }

  /// The magnitude, rounded; `kEnough` or more for anything that large.
  std::int64_t rounded() const {
    const bool blnUp =
        lngFirstDecimal_ > 5 || (lngFirstDecimal_ == 5 && (blnMoreDecimals_ || lngWhole_ % 2 != 0));
    return lngWhole_ + (blnUp ? 1 : 0);
  }

 private:
  static constexpr std::int64_t kEnough = 10'000'000'000;  // well outside 32 bits

  void add(int lngDigit) {
    if (lngPlacesBeforePoint_ > 0) {
      lngWhole_ = std::min(lngWhole_ * 10 + lngDigit, kEnough + 1);
    } else if (lngPlacesBeforePoint_ == 0) {
      lngFirstDecimal_ = lngDigit;
    } else if (lngDigit != 0) {
      blnMoreDecimals_ = true;
    }
    --lngPlacesBeforePoint_;
  }

  std::int64_t lngPlacesBeforePoint_;
  std::int64_t lngWhole_ = 0;
  int lngFirstDecimal_ = 0;
  bool blnMoreDecimals_ = false;
};

bool equalsWord(std::string_view strText, std::string_view strLowerWord) {
  return strText.size() == strLowerWord.size() && startsWithIgnoringCase(strText, strLowerWord);
}

}  // namespace

bool equalsLower(std::string_view strText, std::string_view strLowerCaseWord) {
  if (strText.size() == strLowerCaseWord.size()) {
    return startsWithIgnoringCase(strText, strLowerCaseWord);
  }
  // A letter beyond ASCII may become one of it, which takes fewer bytes.
  const bool blnBeyond = std::any_of(strText.begin(), strText.end(), [](char byte) {
    return static_cast<unsigned char>(byte) >= 0x80;
  });
  return blnBeyond && toLower(strText) == strLowerCaseWord;
}

bool toBoolean(std::string_view strText) {
  if (equalsWord(strText, "true")) return true;
  if (equalsWord(strText, "false")) return false;
  const std::optional<Number> number = parseNumber(strText);
  if (!number) throw RuntimeError(kTypeMismatch);
  return !isZero(*number);
}

bool isNumeric(std::string_view strText) { return parseNumber(strText).has_value(); }

std::int32_t toInt32(std::string_view strText) {
  const std::optional<Number> number = parseNumber(strText);
  if (!number) throw RuntimeError(kTypeMismatch);
  const std::int64_t lngMagnitude = Rounding(*number).rounded();
  const std::int64_t lngValue = number->blnNegative ? -lngMagnitude : lngMagnitude;
  if (lngValue < std::numeric_limits<std::int32_t>::min() ||
      lngValue > std::numeric_limits<std::int32_t>::max()) {
    throw RuntimeError(kOverflow);
  }
  return static_cast<std::int32_t>(lngValue);
}

}  // namespace Varnel_Tolv_XML_Creation
