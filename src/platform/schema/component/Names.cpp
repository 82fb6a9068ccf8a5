#include "platform/schema/component/Names.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/text/ShortText.h"

namespace Varnel_Tolv_XML_Creation {

std::string ExpandedName::text() const {
  return strUri.empty() ? strLocal : '{' + strUri + '}' + strLocal;
}

namespace {

constexpr std::size_t kFirstBuckets = 64;  // a power of two, as all that follow

// By chance no bucket holds so many: there are as many buckets as names.
constexpr std::size_t kMostAlike = 20;

}  // namespace

NameTable::NameTable() : names_(1), entries_(1), buckets_(kFirstBuckets) {}  // one is kNoName

/// Few names of a schema are the same in several namespaces.
std::size_t NameTable::hashOfName(std::string_view strUri,
                                  std::string_view strLocal) const noexcept {
  if (!blnManyAlike_) return hashOf(strLocal);
  const std::hash<std::string_view> hash;
  return hash(strLocal) * 31 + hash(strUri);
}

NameId NameTable::intern(std::string_view strUri, std::string_view strLocal) {
  const std::size_t lngHash = hashOfName(strUri, strLocal);
  const NameId known = find(strUri, strLocal, lngHash);
  if (known != kNoName) return known;
  const auto name = static_cast<NameId>(names_.size());
  const ExpandedName& kept =
      names_.emplace_back(ExpandedName{std::string(strUri), std::string(strLocal)});
  entries_.push_back({lngHash, bucket(lngHash), kept.strUri, kept.strLocal});
  bucket(lngHash) = name;
  if (entries_.size() > buckets_.size()) fillBuckets(2 * buckets_.size());
  if (!blnManyAlike_ && alikeFrom(bucket(lngHash)) > kMostAlike) {
    blnManyAlike_ = true;
    for (Entry& entry : entries_) entry.lngHash = hashOfName(entry.strUri, entry.strLocal);
    fillBuckets(buckets_.size());
  }
  return name;
}

void NameTable::fillBuckets(std::size_t lngBuckets) {
  buckets_.assign(lngBuckets, kNoName);
  for (NameId name = kNoName + 1; name < entries_.size(); ++name) {
    Entry& entry = entries_[name];
    entry.nextOfBucket = std::exchange(bucket(entry.lngHash), name);
  }
}

NameId NameTable::find(std::string_view strUri, std::string_view strLocal) const noexcept {
  return find(strUri, strLocal, hashOfName(strUri, strLocal));
}

NameId NameTable::find(std::string_view strUri, std::string_view strLocal,
                       std::size_t lngHash) const noexcept {
  NameId name = buckets_[lngHash & (buckets_.size() - 1)];
  while (name != kNoName) {
    const Entry& entry = entries_[name];
    if (entry.lngHash == lngHash && isSame(entry.strLocal, strLocal) &&
        isSame(entry.strUri, strUri)) {
      break;
    }
    name = entry.nextOfBucket;
  }
  return name;
}

/// How many names a bucket holds from this one on.
std::size_t NameTable::alikeFrom(NameId name) const noexcept {
  std::size_t lngAlike = 0;
  for (; name != kNoName; name = entries_[name].nextOfBucket) ++lngAlike;
  return lngAlike;
}

std::size_t NameTable::mostAlike() const noexcept {
  std::size_t lngMost = 0;
  for (const NameId first : buckets_) lngMost = std::max(lngMost, alikeFrom(first));
  return lngMost;
}

}  // namespace Varnel_Tolv_XML_Creation
