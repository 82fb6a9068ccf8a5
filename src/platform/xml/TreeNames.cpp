#include "platform/xml/TreeNames.h"

#include <algorithm>
#include <utility>

#include "platform/text/ShortText.h"
#include "platform/xml/QualifiedName.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// By chance no bucket holds more than some ten names: so many are made to be slow.
constexpr std::size_t kMostAlike = 100;

/// The same in every table.
std::size_t hashOfName(std::string_view strPrefix, std::string_view strLocal,
                       std::string_view strUri) {
  std::size_t lngHash = hashOf(strLocal);
  if (!strPrefix.empty()) lngHash = (lngHash + hashOf(strPrefix)) * kHashFactor;
  if (!strUri.empty()) lngHash = (lngHash ^ hashOf(strUri)) * kHashFactor;
  return lngHash ^ (lngHash >> 29);  // not by 32, which would undo what `hashOf` did last
}

}  // namespace

/// Buckets that are too few are left behind in the arena: together never more than those in use.
template <class Entry>
void TreeNames::Buckets<Entry>::add(Arena& arena, Entry* entry) {
  std::size_t lngAlike = 0;
  for (const Entry* other = first(entry->lngHash); other; other = other->nextOfHash) ++lngAlike;
  if (lngAlike > kMostAlike) throw RuntimeError(kXmlFailure, "Too many names are alike.");
  if (lngCount == lngSize) {
    constexpr std::size_t kFirstSize = 8;
    const std::size_t lngMore = std::max(kFirstSize, 2 * lngSize);
    Entry** const more = arena.pointers<Entry>(lngMore);
    for (std::size_t bucket = 0; bucket < lngSize; ++bucket) {
      for (Entry* moved = buckets[bucket]; moved;) {
        Entry* const next = moved->nextOfHash;
        Entry*& first = more[moved->lngHash & (lngMore - 1)];
        moved->nextOfHash = first;
        first = moved;
        moved = next;
      }
    }
    buckets = more;
    lngSize = lngMore;
  }
  Entry*& first = buckets[entry->lngHash & (lngSize - 1)];
  entry->nextOfHash = first;
  first = entry;
  ++lngCount;
}

const TreeName* TreeNames::find(std::string_view strPrefix, std::string_view strLocal,
                                std::string_view strUri, std::size_t lngHash) const noexcept {
  const TreeName* name = names_.first(lngHash);
  while (name &&
         (name->lngHash != lngHash || !isSame(name->strLocal, strLocal) ||
          !isSame(name->uri->strText, strUri) || !isSame(name->prefix->strText, strPrefix))) {
    name = name->nextOfHash;
  }
  return name;
}

const TreeName* TreeNames::find(std::string_view strLocal, std::string_view strUri) const {
  return find({}, strLocal, strUri, hashOfName({}, strLocal, strUri));
}

const TreeName* TreeNames::get(Arena& arena, std::string_view strPrefix, std::string_view strLocal,
                               std::string_view strUri) {
  const std::size_t lngHash = hashOfName(strPrefix, strLocal, strUri);
  const TreeName* const known = find(strPrefix, strLocal, strUri, lngHash);
  return known ? known : make(arena, strPrefix, strLocal, strUri, lngHash);
}

const TreeName* TreeNames::get(Arena& arena, const TreeName& other) {
  const std::string_view strPrefix = other.prefix->strText;
  const std::string_view strUri = other.uri->strText;
  const TreeName* const known = find(strPrefix, other.strLocal, strUri, other.lngHash);
  return known ? known : make(arena, strPrefix, other.strLocal, strUri, other.lngHash);
}

const TreeName* TreeNames::make(Arena& arena, std::string_view strPrefix, std::string_view strLocal,
                                std::string_view strUri, std::size_t lngHash) {
  const bool blnPlain = strPrefix.empty();
  if (blnPlain && !strLocal.empty()) countOne();
  const TreeName* const plain = blnPlain ? nullptr : get(arena, {}, strLocal, strUri);
  const std::string_view strQualified = qualifiedName(arena, strPrefix, strLocal);

  auto* const name = arena.make<TreeName>();
  name->prefix = blnPlain ? part(arena, {}) : part(arena, strPrefix, lastPrefix_);
  name->uri = plain ? plain->uri : part(arena, strUri, lastUri_);
  name->strQualified = strQualified;
  name->strLocal = strQualified.substr(strQualified.size() - strLocal.size());
  name->plain = plain ? plain : name;
  name->blnColon = strUri.empty() && strLocal.find(':') != std::string_view::npos;
  if (name->blnColon) name->nextWithColon = std::exchange(withColon_, name);
  if (!blnPlain) {
    auto* const prefix = const_cast<NamePart*>(name->prefix);
    if (!prefix->uri) prefix->uri = name->uri;
    prefix->blnSeveral = prefix->blnSeveral || prefix->uri != name->uri;
  }
  lngLongest_ = std::max(lngLongest_, name->strQualified.size() + 6 * strUri.size());
  name->lngHash = lngHash;
  names_.add(arena, name);
  lngBytes_ += name->strQualified.size();
  return name;
}

void TreeNames::countOne() {
  if (++lngMade_ > kMaxNames) throw RuntimeError(kXmlFailure, kTooManyNames);
}

NamePart* TreeNames::findPart(std::string_view strText, std::size_t lngHash) const noexcept {
  NamePart* known = parts_.first(lngHash);
  while (known && known->strText != strText) known = known->nextOfHash;
  return known;
}

const NamePart* TreeNames::findPart(std::string_view strText) const noexcept {
  return findPart(strText, hashOf(strText));
}

/// The same; mostly it is that of the name that was made before.
const NamePart* TreeNames::part(Arena& arena, std::string_view strText, const NamePart*& last) {
  if (!last || !isSame(last->strText, strText)) last = part(arena, strText);
  return last;
}

const NamePart* TreeNames::part(Arena& arena, std::string_view strText) {
  if (parts_.lngCount == 0 && !strText.empty()) part(arena, {});  // which has the first number
  const std::size_t lngHash = hashOf(strText);
  if (const NamePart* const known = findPart(strText, lngHash)) return known;
  if (!strText.empty()) countOne();
  auto* const made = arena.make<NamePart>();
  made->strText = arena.copy(strText);
  made->lngNumber = static_cast<std::uint32_t>(parts_.lngCount);
  made->lngHash = lngHash;
  parts_.add(arena, made);
  return made;
}

}  // namespace Varnel_Tolv_XML_Creation
