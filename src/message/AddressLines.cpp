#include "message/AddressLines.h"

#include <algorithm>

#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kLines = 4;

/// `strText` without blanks around commas, and with each run of commas made one.
std::string tidyCommas(std::string_view strText) {
  std::string strTidy;
  strTidy.reserve(strText.size());
  for (;;) {
    const std::size_t lngComma = strText.find(',');
    strTidy.append(strText.substr(0, lngComma));
    if (lngComma == std::string_view::npos) return strTidy;
    while (!strTidy.empty() && strTidy.back() == ' ') strTidy.pop_back();
    if (strTidy.empty() || strTidy.back() != ',') strTidy += ',';
    strText.remove_prefix(std::min(strText.find_first_not_of(' ', lngComma + 1), strText.size()));
  }
}

}  // namespace

std::string ReplaceLineBreaks(std::string_view strValue, std::string_view strReplacement) {
  return replaceAll(replaceAll(replaceAll(strValue, "\r\n", strReplacement), "\r", strReplacement),
                    "\n", strReplacement);
}

Acknowledge MakeAddressLines(std::string_view strAddress,
                             std::optional<AddressLines>& arrAddressLines) {
  return Guarded("MakeAddressLines", [&]() -> Acknowledge {
    const std::string strTidy = tidyCommas(trim(strAddress));
    std::string_view strRest = strTidy;
    if (!strRest.empty() && strRest.front() == ',') strRest.remove_prefix(1);
    if (!strRest.empty() && strRest.back() == ',') strRest.remove_suffix(1);

    AddressLines lines(kLines);
    for (std::size_t lngLine = kLines; lngLine > 1 && !strRest.empty();) {
      const std::size_t lngComma = strRest.rfind(',');
      const bool blnLast = lngComma == std::string_view::npos;
      lines[--lngLine] = trim(blnLast ? strRest : strRest.substr(lngComma + 1));
      strRest = blnLast ? std::string_view() : strRest.substr(0, lngComma);
    }
    lines[0] = replaceAll(trim(strRest), ",", ", ");
    arrAddressLines = std::move(lines);
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
