#include "Parts.h"

namespace Varnel_Tolv_XML_Creation::fuzz {

namespace {
constexpr std::string_view kMark = "#! ";
}

Parts partsOf(std::string_view strText) {
  Parts parts;
  std::string* strPart = nullptr;
  while (!strText.empty()) {
    const std::string_view strLine = strText.substr(0, strText.find('\n'));
    const std::string_view strWithEnd = strText.substr(0, strLine.size() + 1);
    if (strLine.starts_with(kMark)) {
      strPart = &parts[std::string(strLine.substr(kMark.size()))];
    } else if (strPart) {
      *strPart += strWithEnd;
    }
    strText.remove_prefix(strWithEnd.size());
  }
  return parts;
}

std::string textOf(const Parts& parts) {
  std::string strText;
  for (const auto& [strName, strPart] : parts) {
    if (!strText.empty() && strText.back() != '\n') strText += '\n';
    strText.append(kMark).append(strName).append("\n").append(strPart);
  }
  return strText;
}

}  // namespace Varnel_Tolv_XML_Creation::fuzz
