#include "platform/host/WebRequest.h"

#include <algorithm>
#include <utility>

#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

std::string decode(std::string_view strEncoded) {
  std::string strSpaced(strEncoded);
  std::replace(strSpaced.begin(), strSpaced.end(), '+', ' ');
  return replaceInvalidUtf8(percentDecoded(strSpaced));
}

}  // namespace

std::string fieldNameOf(std::string_view strId) { return toLower(strId); }

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
