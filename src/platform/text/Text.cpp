#include "platform/text/Text.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/text/Replacement.h"
#include "platform/text/ShortText.h"
#include "platform/text/Utf8.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// How many bytes of a text that begins with no character are the beginning of one that is broken
/// off, but at least one: as many as some last bytes would make a character of.
std::size_t brokenBytes(std::string_view strText) {
  constexpr std::size_t kLongest = 4;
  for (std::size_t lngBytes = std::min(strText.size(), kLongest - 1); lngBytes > 1; --lngBytes) {
    for (const char last : {'\x80', '\xBF'}) {  // the first and the last that may continue one
      std::string strWhole(strText.substr(0, lngBytes));
      strWhole.resize(kLongest, last);
      if (firstCharacter(strWhole).isCharacter()) return lngBytes;
    }
  }
  return 1;
}

/// With how many bytes of ASCII a text begins.
std::size_t asciiBytes(std::string_view strText) {
  const auto first = std::find_if(strText.begin(), strText.end(), [](char byte) {
    return static_cast<unsigned char>(byte) >= 0x80;
  });
  return static_cast<std::size_t>(first - strText.begin());
}

/// The same for a byte that belongs to no character.
std::int32_t lowerCase(std::int32_t lngCodePoint) {
  if (lngCodePoint >= 0x80) return utf8proc_tolower(lngCodePoint);
  return lngCodePoint >= 'A' && lngCodePoint <= 'Z' ? lngCodePoint + ('a' - 'A') : lngCodePoint;
}

int hexDigit(char letter) {
  if (letter >= '0' && letter <= '9') return letter - '0';
  if (letter >= 'A' && letter <= 'F') return letter - 'A' + 10;
  if (letter >= 'a' && letter <= 'f') return letter - 'a' + 10;
  return -1;
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
  std::string strLower(strText);
  unsigned char seen = 0;
  for (char& byte : strLower) {
    seen |= static_cast<unsigned char>(byte);
    const auto lngLetter = static_cast<unsigned char>(byte - 'A');
    byte = static_cast<char>(byte + (lngLetter < 26 ? 'a' - 'A' : 0));
  }
  if (seen < 0x80) return strLower;
  strLower.clear();
  while (!strText.empty()) {
    const auto [lngCodePoint, lngBytes] = firstCharacter(strText);
    const std::int32_t lngLower = lowerCase(lngCodePoint);
    if (lngLower < 0x80 && lngLower >= 0) {
      strLower += static_cast<char>(lngLower);
    } else if (lngLower == lngCodePoint) {
      strLower += strText.substr(0, lngBytes);
    } else {
      std::array<utf8proc_uint8_t, 4> bytes{};
      const auto lngWritten = utf8proc_encode_char(lngLower, bytes.data());
      strLower.append(bytes.begin(), bytes.begin() + lngWritten);
    }
    strText.remove_prefix(lngBytes);
  }
  return strLower;
}

bool startsWithIgnoringCase(std::string_view strText, std::string_view strLowerCaseStart) {
  if (strText.size() < strLowerCaseStart.size()) return false;
  // Mostly the case is right as well.
  return isSame(strText.substr(0, strLowerCaseStart.size()), strLowerCaseStart) ||
         std::equal(strLowerCaseStart.begin(), strLowerCaseStart.end(), strText.begin(),
                    [](char wanted, char given) { return wanted == lowerCase(given); });
}

std::size_t characterCount(std::string_view strText) {
  std::size_t lngCount = 0;
  for (; !strText.empty(); ++lngCount) strText.remove_prefix(firstCharacter(strText).lngBytes);
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
  const std::vector<std::string_view> colPieces = pieces(strText, strSeparator);
  return {colPieces.begin(), colPieces.end()};
}

std::vector<std::string_view> pieces(std::string_view strText, std::string_view strSeparator) {
  std::vector<std::string_view> colPieces;
  if (strText.empty()) return colPieces;
  colPieces.reserve(4);  // as many as most texts have at most
  if (!strSeparator.empty()) {
    for (std::size_t lngFound = strText.find(strSeparator); lngFound != std::string_view::npos;
         lngFound = strText.find(strSeparator)) {
      colPieces.push_back(strText.substr(0, lngFound));
      strText.remove_prefix(lngFound + strSeparator.size());
    }
  }
  colPieces.push_back(strText);
  return colPieces;
}

std::string twoDigits(int lngNumber) {
  return {static_cast<char>('0' + lngNumber / 10), static_cast<char>('0' + lngNumber % 10)};
}

std::string replaceInvalidUtf8(std::string strBytes) {
  std::size_t lngAscii = asciiBytes(strBytes);
  if (lngAscii == strBytes.size()) return strBytes;
  std::string strText;
  strText.reserve(strBytes.size());
  std::string_view strRest(strBytes);
  while (true) {
    strText += strRest.substr(0, lngAscii);
    strRest.remove_prefix(lngAscii);
    if (strRest.empty()) return strText;
    const Utf8Character character = firstCharacter(strRest);
    const std::size_t lngBytes =
        character.isCharacter() ? character.lngBytes : brokenBytes(strRest);
    strText += character.isCharacter() ? strRest.substr(0, lngBytes) : kReplacementCharacter;
    strRest.remove_prefix(lngBytes);
    lngAscii = asciiBytes(strRest);
  }
}

std::string percentDecoded(std::string_view strEncoded) {
  std::string strDecoded(strEncoded);  // no longer than that
  if (strEncoded.find('%') == std::string_view::npos) return strDecoded;
  auto end = strDecoded.begin();
  for (std::size_t at = 0; at < strEncoded.size(); ++at) {
    char byte = strEncoded[at];
    if (byte == '%' && strEncoded.size() - at > 2) {
      const int lngHigh = hexDigit(strEncoded[at + 1]);
      const int lngLow = hexDigit(strEncoded[at + 2]);
      if (lngHigh >= 0 && lngLow >= 0) {
        byte = static_cast<char>(lngHigh * 16 + lngLow);
        at += 2;
      }
    }
    *end++ = byte;
  }
  strDecoded.erase(end, strDecoded.end());
  return strDecoded;
}

std::string_view beginningOf(std::string_view strText, std::size_t lngMost) noexcept {
  std::size_t end = std::min(strText.size(), lngMost);
  while (end > 0 && end < strText.size() && (strText[end] & 0xC0) == 0x80) --end;
  return strText.substr(0, end);
}

std::string oneLine(std::string_view strText) {
  std::string strLine(strText.substr(0, strText.find_last_not_of(" \t\r\n") + 1));
  const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < 0x20; };
  std::replace_if(strLine.begin(), strLine.end(), isControl, ' ');
  return strLine;
}

}  // namespace Varnel_Tolv_XML_Creation
