#include "platform/schema/value/LexicalForms.h"

#include <libxml/tree.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

#include "platform/text/Ascii.h"
#include "platform/text/Text.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

bool isHexDigit(char byte) noexcept {
  return isDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
}

/// Whether the library says 0, no fault, of a text.
bool passes(int (*validate)(const xmlChar*, int), std::string_view strText) {
  const std::string strTerminated(strText);
  return validate(reinterpret_cast<const xmlChar*>(strTerminated.c_str()), 0) == 0;
}

/// Whether a number that does not fit is too large, not too small: by the power of ten of its first
/// digit other than 0.
bool isTooLarge(std::string_view strText) noexcept {
  const std::size_t exponent = std::min(strText.find_first_of("eE"), strText.size());
  const auto point = static_cast<std::int64_t>(std::min(strText.find('.'), exponent));
  const auto first = static_cast<std::int64_t>(strText.find_first_of("123456789"));
  if (exponent == strText.size()) return first < point;
  strText.remove_prefix(exponent + 1);
  if (strText[0] == '+') strText.remove_prefix(1);
  std::int64_t lngPower = 0;
  const auto read = std::from_chars(strText.data(), strText.data() + strText.size(), lngPower);
  if (read.ec == std::errc::result_out_of_range) return strText[0] != '-';
  return lngPower > first - point;
}

template <class Number>
std::optional<double> parseNumber(std::string_view strText) noexcept {
  constexpr Number kInfinity = std::numeric_limits<Number>::infinity();
  if (strText == "INF") return kInfinity;
  if (strText == "-INF") return -kInfinity;
  if (strText == "NaN") return std::numeric_limits<Number>::quiet_NaN();
  const bool blnNegative = strText.starts_with('-');
  if (blnNegative || strText.starts_with('+')) strText.remove_prefix(1);
  // No second sign, and none of the names that are understood besides.
  if (strText.empty() || !(isDigit(strText[0]) || strText[0] == '.')) return std::nullopt;
  Number number = 0;
  const char* const last = strText.data() + strText.size();
  const auto [end, error] = std::from_chars(strText.data(), last, number);
  if (end != last || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) number = isTooLarge(strText) ? kInfinity : 0;
  if (number == 0) return 0;  // there is one zero
  return blnNegative ? -number : number;
}

}  // namespace

Normalised::Normalised(std::string_view strText, WhiteSpace whiteSpace) : strView_(strText) {
  if (whiteSpace == WhiteSpace::preserve) return;
  if (whiteSpace == WhiteSpace::collapse) strView_ = withoutXmlSpaceAround(strView_);
  if (std::none_of(strView_.begin(), strView_.end(), isXmlSpace)) return;
  // From the first place on that has to change the text is made anew.
  bool blnAfterBlank = false;
  std::size_t at = 0;
  for (; at < strView_.size(); ++at) {
    const bool blnSpace = isXmlSpace(strView_[at]);
    if (blnSpace && (strView_[at] != ' ' || (blnAfterBlank && whiteSpace == WhiteSpace::collapse)))
      break;
    blnAfterBlank = blnSpace;
  }
  if (at == strView_.size()) return;
  strChanged_.reserve(strView_.size());
  strChanged_ = strView_.substr(0, at);
  for (; at < strView_.size(); ++at) {
    const bool blnSpace = isXmlSpace(strView_[at]);
    if (!(blnSpace && blnAfterBlank && whiteSpace == WhiteSpace::collapse)) {
      strChanged_ += blnSpace ? ' ' : strView_[at];
    }
    blnAfterBlank = blnSpace;
  }
  strView_ = strChanged_;
}

std::string_view takeItem(std::string_view& strList) noexcept {
  const auto begin = std::find_if_not(strList.begin(), strList.end(), isXmlSpace);
  const auto end = std::find_if(begin, strList.end(), isXmlSpace);
  strList.remove_prefix(static_cast<std::size_t>(end - strList.begin()));
  return {begin, end};
}

std::string shown(std::string_view strText) {
  constexpr std::size_t kLongestShown = 100;
  std::string strShown(beginningOf(strText, kLongestShown));
  const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < 0x20; };
  std::replace_if(strShown.begin(), strShown.end(), isControl, '?');
  return strShown;
}

bool isName(std::string_view strText) { return passes(xmlValidateName, strText); }

bool isNmtoken(std::string_view strText) { return passes(xmlValidateNMToken, strText); }

bool isLanguage(std::string_view strText) noexcept {
  std::size_t lngLength = 0;
  bool blnFirst = true;
  for (const char byte : strText) {
    if (byte == '-') {
      if (lngLength == 0) return false;
      lngLength = 0;
      blnFirst = false;
    } else if (!(isLetter(byte) || (isDigit(byte) && !blnFirst)) || ++lngLength > 8) {
      return false;
    }
  }
  return lngLength > 0;
}

bool isAnyUri(std::string_view strText) noexcept {
  // What escapes something must be whole, there is one fragment, and what looks like a scheme must
  // be one.
  for (std::size_t at = strText.find('%'); at != std::string_view::npos;
       at = strText.find('%', at + 1)) {
    if (at + 2 >= strText.size() || !isHexDigit(strText[at + 1]) || !isHexDigit(strText[at + 2])) {
      return false;
    }
  }
  const std::size_t hash = strText.find('#');
  if (hash != std::string_view::npos && strText.find('#', hash + 1) != std::string_view::npos) {
    return false;
  }
  const std::size_t end = strText.find_first_of(":/?#");
  if (end == std::string_view::npos || strText[end] != ':') return true;
  const std::string_view strScheme = strText.substr(0, end);
  return !strScheme.empty() && isLetter(strScheme[0]) &&
         std::all_of(strScheme.begin(), strScheme.end(), [](char byte) {
           return isLetter(byte) || isDigit(byte) || byte == '+' || byte == '-' || byte == '.';
         });
}

std::optional<std::size_t> hexOctets(std::string_view strText) noexcept {
  if (strText.size() % 2 != 0 || !std::all_of(strText.begin(), strText.end(), isHexDigit)) {
    return std::nullopt;
  }
  return strText.size() / 2;
}

std::optional<std::size_t> base64Octets(std::string_view strText) noexcept {
  // Four letters stand for three octets. At the end "=" stands in place of letters without octets,
  // and the letter before it has no bits to spare. Single blanks may stand between any two.
  std::size_t lngLetters = 0;
  std::size_t lngFilled = 0;
  char last = 0;
  for (const char byte : strText) {
    if (byte == ' ') continue;
    if (byte == '=') {
      ++lngFilled;
      continue;
    }
    if (lngFilled > 0 || !(isLetter(byte) || isDigit(byte) || byte == '+' || byte == '/')) {
      return std::nullopt;
    }
    ++lngLetters;
    last = byte;
  }
  if (lngFilled > 2 || (lngLetters + lngFilled) % 4 != 0) return std::nullopt;
  constexpr std::string_view kTwoBitsFree = "AEIMQUYcgkosw048";
  constexpr std::string_view kFourBitsFree = "AQgw";
  if (lngFilled == 1 && kTwoBitsFree.find(last) == std::string_view::npos) return std::nullopt;
  if (lngFilled == 2 && kFourBitsFree.find(last) == std::string_view::npos) return std::nullopt;
  return (lngLetters + lngFilled) / 4 * 3 - lngFilled;
}

std::optional<double> parseFloat(std::string_view strText) noexcept {
  return parseNumber<float>(strText);
}

std::optional<double> parseDouble(std::string_view strText) noexcept {
  return parseNumber<double>(strText);
}

}  // namespace Varnel_Tolv_XML_Creation
