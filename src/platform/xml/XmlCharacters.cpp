#include "platform/xml/XmlCharacters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/text/ShortText.h"
#include "platform/text/Text.h"
#include "platform/text/Utf8.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

struct Range {
  std::int32_t first, last;
};

// Without the colon, which stands between two names. The most frequent come first.
constexpr std::array<Range, 15> kNameStart = {{
    {'a', 'z'},
    {'A', 'Z'},
    {'_', '_'},
    {0xC0, 0xD6},
    {0xD8, 0xF6},
    {0xF8, 0x2FF},
    {0x370, 0x37D},
    {0x37F, 0x1FFF},
    {0x200C, 0x200D},
    {0x2070, 0x218F},
    {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF},
    {0xF900, 0xFDCF},
    {0xFDF0, 0xFFFD},
    {0x10000, 0xEFFFF},
}};

constexpr std::array<Range, 5> kNameOnlyLater = {{
    {'-', '.'},
    {'0', '9'},
    {0xB7, 0xB7},
    {0x300, 0x36F},
    {0x203F, 0x2040},
}};

template <std::size_t size>
bool isIn(const std::array<Range, size>& ranges, std::int32_t character) {
  return std::any_of(ranges.begin(), ranges.end(), [=](const Range& range) {
    return range.first <= character && character <= range.last;
  });
}

/// Whether all bytes are ASCII and none is below the blank, as most texts are.
bool isPlainAscii(std::string_view strText) {
  return everyWord(strText, [](std::uint64_t lngBytes) {
    return ((lngBytes | (lngBytes - 0x20 * kEveryByte)) & 0x80 * kEveryByte) == 0;
  });
}

/// Takes the first character off a text that is not empty; negative where there is none.
std::int32_t takeCharacter(std::string_view& strRest) {
  const auto [lngCodePoint, lngBytes] = firstCharacter(strRest);
  strRest.remove_prefix(lngBytes);
  return lngCodePoint;
}

}  // namespace

bool isXmlText(std::string_view strText) {
  if (isPlainAscii(strText)) return true;
  while (!strText.empty()) {
    const auto byte = static_cast<unsigned char>(strText.front());
    std::size_t lngBytes = 1;
    if (byte >= 0x80) {
      const Utf8Character character = firstBeyondAscii(strText);
      lngBytes = character.lngBytes;
      // Negative for what is not UTF-8.
      const std::int32_t lngCodePoint = character.lngCodePoint;
      if (lngCodePoint < 0 || lngCodePoint == 0xFFFE || lngCodePoint == 0xFFFF) return false;
    } else if (byte < 0x20 && !isXmlSpace(strText.front())) {
      return false;
    }
    strText.remove_prefix(lngBytes);
  }
  return true;
}

bool isXmlWhiteSpace(std::string_view strText) {
  return std::all_of(strText.begin(), strText.end(), isXmlSpace);
}

std::string_view withoutXmlSpaceAround(std::string_view strText) noexcept {
  while (!strText.empty() && isXmlSpace(strText.front())) strText.remove_prefix(1);
  while (!strText.empty() && isXmlSpace(strText.back())) strText.remove_suffix(1);
  return strText;
}

bool isNCName(std::string_view strName) {
  if (strName.empty() || !isIn(kNameStart, takeCharacter(strName))) return false;
  while (!strName.empty()) {
    const std::int32_t character = takeCharacter(strName);
    if (!isIn(kNameStart, character) && !isIn(kNameOnlyLater, character)) return false;
  }
  return true;
}

bool isQualifiedName(std::string_view strName) {
  const std::size_t colon = strName.find(':');
  if (colon == std::string_view::npos) return isNCName(strName);
  return isNCName(strName.substr(0, colon)) && isNCName(strName.substr(colon + 1));
}

void requireXmlText(std::string_view strText) {
  if (isXmlText(strText)) return;
  throw RuntimeError(kXmlFailure, "An invalid character was found in text content.");
}

void requireQualifiedName(std::string_view strName) {
  if (isQualifiedName(strName)) return;
  constexpr std::size_t kLongestShown = 100;
  const std::string strShown(beginningOf(strName, kLongestShown));
  throw RuntimeError(kInvalidName, oneLine("The name '" + strShown + "' is not allowed in XML."));
}

std::string_view prefixOf(std::string_view strName) {
  const std::size_t colon = strName.find(':');
  return colon == std::string_view::npos ? std::string_view() : strName.substr(0, colon);
}

std::string_view withoutPrefix(std::string_view strName) {
  return strName.substr(strName.find(':') + 1);  // npos + 1 is 0: the whole name
}

}  // namespace Varnel_Tolv_XML_Creation
