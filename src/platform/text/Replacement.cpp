#include "platform/text/Replacement.h"

#include <algorithm>

namespace Varnel_Tolv_XML_Creation {
namespace {

bool isControl(char letter) {
  const auto byte = static_cast<unsigned char>(letter);
  return byte < ' ' && byte != '\t' && byte != '\n' && byte != '\r';
}

/// Whether one that XML cannot hold may begin here.
bool isSuspect(char letter) { return isControl(letter) || letter == '\xEF'; }

}  // namespace

// Only control characters and the two last code points of the first plane can be written in UTF-8
// and not in XML.
std::string withXmlCharacters(std::string_view strText) {
  if (std::ranges::none_of(strText, isSuspect)) return std::string(strText);
  std::string strClean;
  strClean.reserve(strText.size());
  for (std::size_t at = 0; at < strText.size(); ++at) {
    const std::string_view strThree = strText.substr(at, 3);
    if (isControl(strText[at])) {
      strClean += kReplacementCharacter;
    } else if (strThree == "\xEF\xBF\xBE" || strThree == "\xEF\xBF\xBF") {
      strClean += kReplacementCharacter;
      at += 2;
    } else {
      strClean += strText[at];
    }
  }
  return strClean;
}

bool hasReplacement(std::string_view strText) {
  return strText.find(kReplacementCharacter) != std::string_view::npos;
}

}  // namespace Varnel_Tolv_XML_Creation
