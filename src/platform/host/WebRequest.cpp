#include "platform/host/WebRequest.h"

#include <algorithm>
#include <utility>

#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The value of a hexadecimal digit; -1 for any other character.
int hexValue(char letter) {
  if (letter >= '0' && letter <= '9') return letter - '0';
  if (letter >= 'A' && letter <= 'F') return letter - 'A' + 10;
  if (letter >= 'a' && letter <= 'f') return letter - 'a' + 10;
  return -1;
}

std::string decode(std::string_view strEncoded) {
  std::string strBytes;
  strBytes.reserve(strEncoded.size());
  for (std::size_t lngAt = 0; lngAt < strEncoded.size(); ++lngAt) {
    const char letter = strEncoded[lngAt];
    if (letter == '%' && lngAt + 2 < strEncoded.size()) {
      const int lngHigh = hexValue(strEncoded[lngAt + 1]);
      const int lngLow = hexValue(strEncoded[lngAt + 2]);
      if (lngHigh >= 0 && lngLow >= 0) {
        strBytes += static_cast<char>(lngHigh * 16 + lngLow);
        lngAt += 2;
        continue;
      }
    }
    strBytes += letter == '+' ? ' ' : letter;
  }
  return replaceInvalidUtf8(strBytes);
}

}  // namespace

FormCollection::FormCollection(std::string_view strBody) {
  for (std::string_view strRest = strBody; !strRest.empty();) {
    const std::size_t lngEnd = std::min(strRest.find('&'), strRest.size());
    const std::string_view strPair = strRest.substr(0, lngEnd);
    strRest.remove_prefix(std::min(lngEnd + 1, strRest.size()));
    if (strPair.empty()) continue;

    const std::size_t lngEquals = std::min(strPair.find('='), strPair.size());
    const std::size_t lngValue = std::min(lngEquals + 1, strPair.size());
    add(decode(strPair.substr(0, lngEquals)), decode(strPair.substr(lngValue)));
  }
}

void FormCollection::add(std::string_view strName, std::string_view strValue) {
  const auto item = items_.find(strName);
  if (item == items_.end()) {
    items_.emplace(strName, strValue);
  } else {
    item->second.append(", ").append(strValue);
  }
}

std::string FormCollection::formItem(std::string_view strName) const {
  const auto item = items_.find(strName);
  return item == items_.end() ? std::string() : item->second;
}

std::vector<std::string> FormCollection::formNames(std::string_view strPrefix) const {
  // Names that begin alike stand side by side in the map.
  std::vector<std::string> colNames;
  for (auto item = items_.lower_bound(strPrefix);
       item != items_.end() && item->first.starts_with(strPrefix); ++item) {
    colNames.push_back(item->first);
  }
  return colNames;
}

PageServer::PageServer(std::filesystem::path pageDirectory)
    : pageDirectory_(std::move(pageDirectory)) {}

std::string PageServer::MapPath(std::string_view strLocation) const {
  // Joined below the page's directory whatever the location looks like: left alone, a leading "/"
  // would replace that directory by the root of this machine.
  std::string_view strBelow = strLocation;
  strBelow.remove_prefix(std::min(strBelow.find_first_not_of('/'), strBelow.size()));
  std::string strPath = (pageDirectory_ / strBelow).lexically_normal().string();
  // A path, also where its first step is "file:" or the like: that would be read as a URL, which
  // leads anywhere on this machine.
  const bool blnColonInFirstStep = strPath.find(':') < strPath.find('/');
  return blnColonInFirstStep ? "./" + strPath : strPath;
}

}  // namespace Varnel_Tolv_XML_Creation
