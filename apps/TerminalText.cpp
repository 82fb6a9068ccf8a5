#include "TerminalText.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

/// How many bytes of the text's beginning are to be escaped, as one character.
std::size_t controlAt(std::string_view strText) {
  const auto byte = static_cast<unsigned char>(strText.front());
  if (byte < 0x20 || byte == 0x7F) return 1;
  const auto isNext = [&](std::size_t at, unsigned char least, unsigned char most) {
    const auto next = at < strText.size() ? static_cast<unsigned char>(strText[at]) : 0U;
    return next >= least && next <= most;
  };
  if (byte == 0xC2 && isNext(1, 0x80, 0x9F)) return 2;                           // U+0080 to U+009F
  if (byte == 0xE2 && isNext(1, 0x80, 0x80) && isNext(2, 0xA8, 0xA9)) return 3;  // U+2028, U+2029
  return 0;
}

std::string escaped(std::string_view strCharacter) {
  const auto last = static_cast<unsigned char>(strCharacter.back());
  const std::string strDigits = {kHexDigits[last >> 4U], kHexDigits[last & 0xFU]};
  if (strCharacter.size() == 2) return "\\u00" + strDigits;
  if (strCharacter.size() == 3) return last == 0xA8 ? "\\u2028" : "\\u2029";
  switch (last) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      return "\\x" + strDigits;
  }
}

}  // namespace

std::string withoutControls(std::string_view strText) {
  std::string strResult;
  std::size_t written = 0;
  for (std::size_t at = 0; at < strText.size();) {
    const std::size_t lngBytes = controlAt(strText.substr(at));
    if (lngBytes == 0) {
      ++at;
      continue;
    }
    strResult.append(strText.substr(written, at - written));
    strResult += escaped(strText.substr(at, lngBytes));
    at += lngBytes;
    written = at;
  }
  return strResult.append(strText.substr(written));
}

std::string oneLine(std::string_view strText, std::string_view strLineEnd) {
  std::string strLine;
  while (!strText.empty()) {
    const std::size_t lngEnd = std::min(strText.find('\n'), strText.size());
    const bool blnEnds = lngEnd < strText.size();
    std::string_view strPart = strText.substr(0, lngEnd);
    if (blnEnds && strPart.ends_with('\r')) strPart.remove_suffix(1);
    strLine += withoutControls(strPart);
    if (blnEnds) strLine += strLineEnd;
    strText.remove_prefix(lngEnd + (blnEnds ? 1 : 0));
  }
  return strLine;
}
