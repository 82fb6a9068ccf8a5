#include "OneLine.h"

std::string oneLine(const std::string& strText) {
  std::string strLine;
  for (const char letter : strText) {
    const auto byte = static_cast<unsigned char>(letter);
    if (letter == '\n') {
      strLine += " / ";
    } else if (byte >= ' ' && byte != 0x7F) {
      strLine += letter;
    }
  }
  return strLine;
}
