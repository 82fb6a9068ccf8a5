#include "platform/text/Text.h"

#include <utf8proc.h>

#include <array>
#include <cstdint>

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";  // U+FFFD

/// What stands at one place of a text: a whole character, or the longest beginning of one (at
/// least a byte) that is not continued as UTF-8 demands.
struct Sequence {
  std::size_t lngBytes = 1;
  bool blnCharacter = false;
  std::int32_t lngCodePoint = 0;  // of a whole character
};

std::uint8_t byteAt(std::string_view strText, std::size_t lngAt) {
  return static_cast<std::uint8_t>(strText[lngAt]);
}

Sequence sequenceAt(std::string_view strText, std::size_t lngAt) {
  const std::uint8_t lngLead = byteAt(strText, lngAt);
  if (lngLead < 0x80) return {1, true, lngLead};
  if (lngLead < 0xC2 || lngLead > 0xF4) return {};

  const std::size_t lngLength = lngLead < 0xE0 ? 2 : lngLead < 0xF0 ? 3 : 4;
  // The second byte's range leaves out overlong forms, surrogates and what is above U+10FFFF.
  const std::uint8_t lngLowest = lngLead == 0xE0 ? 0xA0 : lngLead == 0xF0 ? 0x90 : 0x80;
  const std::uint8_t lngHighest = lngLead == 0xED ? 0x9F : lngLead == 0xF4 ? 0x8F : 0xBF;

  std::int32_t lngCodePoint = lngLead & (0x7F >> lngLength);
  for (std::size_t lngTaken = 1; lngTaken < lngLength; ++lngTaken) {
    if (lngAt + lngTaken == strText.size()) return {lngTaken};
    const std::uint8_t lngNext = byteAt(strText, lngAt + lngTaken);
    const bool blnFits =
        lngTaken == 1 ? lngNext >= lngLowest && lngNext <= lngHighest : (lngNext & 0xC0) == 0x80;
    if (!blnFits) return {lngTaken};
    lngCodePoint = (lngCodePoint << 6) | (lngNext & 0x3F);
  }
  return {lngLength, true, lngCodePoint};
}

}  // namespace

std::string_view trim(std::string_view strText) {
  const std::size_t lngFirst = strText.find_first_not_of(' ');
  if (lngFirst == std::string_view::npos) return strText.substr(strText.size());
  return strText.substr(lngFirst, strText.find_last_not_of(' ') - lngFirst + 1);
}

bool isBlank(std::string_view strText) {
  return strText.find_first_not_of(' ') == std::string_view::npos;
}

std::string toLower(std::string_view strText) {
  std::string strLower;
  strLower.reserve(strText.size());
  for (std::size_t lngAt = 0; lngAt < strText.size();) {
    const char letter = strText[lngAt];
    if (static_cast<std::uint8_t>(letter) < 0x80) {
      strLower += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
      ++lngAt;
      continue;
    }
    const Sequence sequence = sequenceAt(strText, lngAt);
    const std::int32_t lngLower =
        sequence.blnCharacter ? utf8proc_tolower(sequence.lngCodePoint) : sequence.lngCodePoint;
    if (lngLower == sequence.lngCodePoint) {
      strLower.append(strText, lngAt, sequence.lngBytes);
    } else {
      std::array<utf8proc_uint8_t, 4> bytes{};
      const auto lngBytes = utf8proc_encode_char(lngLower, bytes.data());
      strLower.append(bytes.begin(), bytes.begin() + lngBytes);
    }
    lngAt += sequence.lngBytes;
  }
  return strLower;
}

std::size_t characterCount(std::string_view strText) {
  std::size_t lngCount = 0;
  for (std::size_t lngAt = 0; lngAt < strText.size();) {
    const Sequence sequence = sequenceAt(strText, lngAt);
    lngCount += sequence.blnCharacter ? 1 : sequence.lngBytes;
    lngAt += sequence.lngBytes;
  }
  return lngCount;
}

std::string replaceAll(std::string_view strText, std::string_view strFind,
                       std::string_view strReplacement) {
  if (strFind.empty()) return std::string(strText);
  std::string strResult;
  std::size_t lngFrom = 0;
  for (std::size_t lngFound = strText.find(strFind); lngFound != std::string_view::npos;
       lngFound = strText.find(strFind, lngFrom)) {
    strResult.append(strText, lngFrom, lngFound - lngFrom);
    strResult += strReplacement;
    lngFrom = lngFound + strFind.size();
  }
  strResult.append(strText, lngFrom);
  return strResult;
}

std::vector<std::string> split(std::string_view strText, std::string_view strSeparator) {
  std::vector<std::string> colPieces;
  if (strText.empty()) return colPieces;
  std::size_t lngFrom = 0;
  if (!strSeparator.empty()) {
    for (std::size_t lngFound = strText.find(strSeparator); lngFound != std::string_view::npos;
         lngFound = strText.find(strSeparator, lngFrom)) {
      colPieces.emplace_back(strText.substr(lngFrom, lngFound - lngFrom));
      lngFrom = lngFound + strSeparator.size();
    }
  }
  colPieces.emplace_back(strText.substr(lngFrom));
  return colPieces;
}

std::string twoDigits(int lngNumber) {
  return {static_cast<char>('0' + lngNumber / 10), static_cast<char>('0' + lngNumber % 10)};
}

std::string replaceInvalidUtf8(std::string_view strBytes) {
  std::string strText;
  strText.reserve(strBytes.size());
  for (std::size_t lngAt = 0; lngAt < strBytes.size();) {
    const Sequence sequence = sequenceAt(strBytes, lngAt);
    if (sequence.blnCharacter) {
      strText.append(strBytes, lngAt, sequence.lngBytes);
    } else {
      strText += kReplacementCharacter;
    }
    lngAt += sequence.lngBytes;
  }
  return strText;
}

}  // namespace Varnel_Tolv_XML_Creation
