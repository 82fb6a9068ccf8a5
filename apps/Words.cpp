#include "Words.h"

#include <algorithm>

bool isNoAnswer(std::string_view strText) {
  return strText.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string lowerCase(std::string_view strText) {
  std::string strLower(strText);
  for (char& character : strLower) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return strLower;
}

std::string_view beginningOf(std::string_view strText, std::size_t lngMost) {
  std::size_t end = std::min(strText.size(), lngMost);
  // Not inside a character: its further bytes begin with the bits 10.
  while (end > 0 && end < strText.size() &&
         (static_cast<unsigned char>(strText[end]) & 0xC0U) == 0x80U) {
    --end;
  }
  return strText.substr(0, end);
}

std::string shortened(std::string_view strText, std::size_t lngMost) {
  std::string strShort(beginningOf(strText, lngMost));
  const bool blnCut = strShort.size() < strText.size();
  std::ranges::replace_if(
      strShort, [](char character) { return static_cast<unsigned char>(character) < ' '; }, ' ');
  return blnCut ? strShort + "\xE2\x80\xA6" : strShort;
}
