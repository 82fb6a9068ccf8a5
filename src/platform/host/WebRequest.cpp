#include "platform/host/WebRequest.h"

#include <algorithm>
#include <utility>

#include "platform/text/Replacement.h"
#include "platform/text/ShortText.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kLabelSuffix = "_hiddenName";
constexpr std::string_view kRowCountSuffix = "_rowCount";

std::string decode(std::string_view strEncoded) {
  if (strEncoded.find('+') == std::string_view::npos) {
    return replaceInvalidUtf8(percentDecoded(strEncoded));
  }
  std::string strSpaced(strEncoded);
  std::replace(strSpaced.begin(), strSpaced.end(), '+', ' ');
  return replaceInvalidUtf8(percentDecoded(strSpaced));
}

}  // namespace

std::string fieldNameOf(std::string_view strId) { return toLower(strId); }

std::string labelNameOf(std::string_view strId) { return fieldNameOf(strId).append(kLabelSuffix); }

std::string rowCountNameOf(std::string_view strId) {
  return fieldNameOf(strId).append(kRowCountSuffix);
}

bool isLabelOrRowCount(std::string_view strName) {
  return strName.ends_with(kLabelSuffix) || strName.ends_with(kRowCountSuffix);
}

std::string cellNameOf(std::string_view strTableId, std::string_view strColumnId,
                       std::string_view strRow) {
  return cellPrefixOf(strTableId).append(strColumnId).append("_").append(strRow);
}

std::string cellPrefixOf(std::string_view strTableId) {
  return std::string(strTableId).append("___");
}

FormCollection::FormCollection(std::string_view strBody) {
  // A field takes two places, and most have more bytes with their names than these. Few long texts
  // would make of it more than they need.
  constexpr std::size_t kBytesOfPlace = 8;
  constexpr std::size_t kMostAtFirst = 1 << 14;
  byHash_.resize(std::min(strBody.size() / kBytesOfPlace, kMostAtFirst));
  // A name mostly comes behind the one before: a label behind its question, a cell behind another.
  auto hint = byName_.end();
  for (std::string_view strRest = strBody; !strRest.empty();) {
    const std::size_t lngEnd = std::min(strRest.find('&'), strRest.size());
    const std::string_view strPair = strRest.substr(0, lngEnd);
    strRest.remove_prefix(std::min(lngEnd + 1, strRest.size()));
    if (strPair.empty()) continue;

    const std::size_t lngEquals = std::min(strPair.find('='), strPair.size());
    const std::size_t lngValue = std::min(lngEquals + 1, strPair.size());
    hint = add(decode(strPair.substr(0, lngEquals)), decode(strPair.substr(lngValue)), hint);
  }
}

void FormCollection::add(std::string_view strName, std::string_view strValue) {
  add(std::string(strName), std::string(strValue), byName_.end());
}

FormCollection::ByName::iterator FormCollection::add(std::string strName, std::string strValue,
                                                     ByName::iterator hint) {
  if (const Item* const known = find(strName)) {
    items_[static_cast<std::size_t>(known - items_.data())].strValue.append(", ").append(strValue);
    return hint;
  }
  const std::size_t lngItem = items_.size();
  items_.push_back({strName, std::move(strValue)});
  hint = byName_.emplace_hint(hint, std::move(strName), lngItem);
  if (2 * items_.size() <= byHash_.size()) {
    enter(lngItem);
  } else {
    byHash_.assign(std::max<std::size_t>(64, 2 * byHash_.size()), 0);
    for (std::size_t lngEach = 0; lngEach < items_.size(); ++lngEach) enter(lngEach);
  }
  return ++hint;
}

void FormCollection::replaceUnstorable() {
  for (Item& item : items_) item.strValue = withXmlCharacters(item.strValue);
}

std::size_t FormCollection::unreadableFields() const {
  return static_cast<std::size_t>(std::ranges::count_if(items_, hasReplacement, &Item::strValue));
}

// The names come from outside and may be made to have one hash. So each is within a few places of
// its own, or not in that table at all: then the sorted one has it.
constexpr std::size_t kPlaces = 8;

/// Its own place, by the high half of the hash: there the last letters tell, in which names differ.
std::size_t firstPlace(std::string_view strName, std::size_t lngSize) {
  return (hashOf(strName) >> 32U) * lngSize >> 32U;
}

void FormCollection::enter(std::size_t lngItem) {
  const std::size_t lngFirst = firstPlace(items_[lngItem].strName, byHash_.size());
  for (std::size_t lngPlace = 0; lngPlace < kPlaces; ++lngPlace) {
    std::size_t& place = byHash_[(lngFirst + lngPlace) % byHash_.size()];
    if (place != 0) continue;
    place = lngItem + 1;
    return;
  }
}

const FormCollection::Item* FormCollection::find(std::string_view strName) const {
  if (items_.empty()) return nullptr;
  const std::size_t lngFirst = firstPlace(strName, byHash_.size());
  for (std::size_t lngPlace = 0; lngPlace < kPlaces; ++lngPlace) {
    const std::size_t place = byHash_[(lngFirst + lngPlace) % byHash_.size()];
    if (place == 0) return nullptr;
    if (isSame(items_[place - 1].strName, strName)) return &items_[place - 1];
  }
  const auto known = byName_.find(strName);
  return known == byName_.end() ? nullptr : &items_[known->second];
}

std::string FormCollection::formItem(std::string_view strName) const {
  const Item* const item = find(strName);
  return item ? item->strValue : std::string();
}

std::vector<std::string> FormCollection::formNames(std::string_view strPrefix) const {
  // Names that begin alike stand side by side in the map.
  std::vector<std::string> colNames;
  for (auto item = byName_.lower_bound(strPrefix);
       item != byName_.end() && item->first.starts_with(strPrefix); ++item) {
    colNames.push_back(item->first);
  }
  return colNames;
}

std::string schemaPathOf(const Server& server, std::string_view strSchemaUrl) {
  return server.MapPath("../" + std::string(strSchemaUrl));
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
