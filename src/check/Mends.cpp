#include "check/Mends.h"

#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Replaces each occurrence behind which no name goes on. One pass.
std::string replaced(const std::string& strText, const TextMend& mend) {
  std::string strChanged;
  std::size_t at = 0;
  for (std::size_t lngFound; (lngFound = strText.find(mend.strFrom, at)) != std::string::npos;) {
    const std::size_t lngEnd = lngFound + mend.strFrom.size();
    const bool blnPartOfName = isNameByte(mend.strFrom.back()) && lngEnd < strText.size() &&
                               (isNameByte(strText[lngEnd]) || strText[lngEnd] == ':');
    strChanged.append(strText, at, lngFound - at);
    strChanged += blnPartOfName ? mend.strFrom : mend.strTo;
    at = lngEnd;
  }
  return strChanged.append(strText, at);
}

}  // namespace

std::string mended(std::string strText, const std::string& strPath, const Mends& mends) {
  for (const TextMend& mend : mends.texts) {
    if (mend.strPath == strPath && !mend.strFrom.empty()) strText = replaced(strText, mend);
  }
  return strText;
}

}  // namespace Varnel_Tolv_XML_Creation
