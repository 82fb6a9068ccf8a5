#include "platform/xml/TreeNames.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "platform/text/ShortText.h"
#include "platform/xml/QualifiedName.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// By chance no name stands more than some twenty steps from its slot: those are made to be slow.
constexpr std::size_t kMostAlike = 100;

// Hashes of names, the same in every table.
std::size_t hashOfPlain(std::string_view strLocal, std::string_view strUri) {
  std::size_t lngHash = hashOf(strLocal);
  if (!strUri.empty()) lngHash = (lngHash ^ hashOf(strUri)) * kHashFactor;
  return lngHash ^ (lngHash >> 29);  // not by 32, which would undo what `hashOf` did last
}

std::size_t hashOfName(std::string_view strPrefix, std::size_t lngPlain) {
  if (strPrefix.empty()) return lngPlain;
  const std::size_t lngHash = (lngPlain ^ hashOf(strPrefix)) * kHashFactor;
  return lngHash ^ (lngHash >> 29);
}

}  // namespace

/// Slots that are too few are left behind in the arena: together fewer than those in use.
template <class Entry>
void TreeNames::Slots<Entry>::add(Arena& arena, const Entry* entry) {
  // The steps, each longer than the one before, come to every slot.
  const auto put = [this](const Entry* added, std::size_t lngMostSteps) {
    std::size_t at = added->lngHash;
    for (std::size_t lngStep = 0; slots[at & (lngSize - 1)]; at += lngStep) {
      if (++lngStep > lngMostSteps) throw RuntimeError(kXmlFailure, "Too many names are alike.");
    }
    slots[at & (lngSize - 1)] = added;
  };
  if (blnShared || 2 * lngCount == lngSize) {
    constexpr std::size_t kFirstSize = 16;
    const std::size_t lngBefore = lngSize;
    const Entry* const* const before = slots;
    const std::size_t lngMore = std::max(kFirstSize, std::bit_ceil(4 * lngCount));
    slots = arena.pointers<const Entry>(lngMore);
    lngSize = lngMore;
    blnShared = false;
    for (std::size_t slot = 0; slot < lngBefore; ++slot) {
      if (before[slot]) put(before[slot], lngSize);
    }
  }
  put(entry, kMostAlike);
  ++lngCount;
}

void TreeNames::startFrom(const TreeNames& base) noexcept {
  *this = base;
  parts_.blnShared = names_.blnShared = true;
  lngSharedParts_ = base.parts();
}

const TreeName* TreeNames::find(std::string_view strPrefix, std::string_view strLocal,
                                std::string_view strUri, std::size_t lngHash) const noexcept {
  return names_.find(lngHash, [&](const TreeName& name) {
    return isSame(name.strLocal, strLocal) && isSame(name.uri->strText, strUri) &&
           isSame(name.prefix->strText, strPrefix);
  });
}

const TreeName* TreeNames::find(std::string_view strLocal, std::string_view strUri) const {
  return find({}, strLocal, strUri, hashOfPlain(strLocal, strUri));
}

const TreeName* TreeNames::get(Arena& arena, std::string_view strPrefix, std::string_view strLocal,
                               std::string_view strUri) {
  const std::size_t lngPlain = hashOfPlain(strLocal, strUri);
  return get(arena, strPrefix, strLocal, strUri, hashOfName(strPrefix, lngPlain), lngPlain);
}

const TreeName* TreeNames::get(Arena& arena, const TreeName& other) {
  return get(arena, other.prefix->strText, other.strLocal, other.uri->strText, other.lngHash,
             other.plain->lngHash);
}

const TreeName* TreeNames::get(Arena& arena, std::string_view strPrefix, std::string_view strLocal,
                               std::string_view strUri, std::size_t lngHash, std::size_t lngPlain) {
  const TreeName* const known = find(strPrefix, strLocal, strUri, lngHash);
  if (known) return known;
  if (!empty_) empty_ = part(arena, {});  // which has the first number
  const bool blnPlain = strPrefix.empty();
  if (blnPlain && !strLocal.empty()) countOne();
  const TreeName* const plain =
      blnPlain ? nullptr : get(arena, {}, strLocal, strUri, lngPlain, lngPlain);
  const std::string_view strQualified = qualifiedName(arena, strPrefix, strLocal);

  auto* const name = arena.make<TreeName>();
  name->prefix = part(arena, strPrefix, lastPrefix_);
  name->uri = plain ? plain->uri : part(arena, strUri, lastUri_);
  name->strQualified = strQualified;
  name->strLocal = strQualified.substr(strQualified.size() - strLocal.size());
  name->plain = plain ? plain : name;
  name->blnColon = strUri.empty() && strLocal.find(':') != std::string_view::npos;
  if (name->blnColon) name->nextWithColon = std::exchange(withColon_, name);
  if (!blnPlain) {
    const NamePart* const prefix = name->prefix;
    const bool blnOwn = prefix->lngNumber >= lngSharedParts_;  // others read what is shared
    if (blnOwn && !prefix->uri) const_cast<NamePart*>(prefix)->uri = name->uri;
    blnBoundOnce_ = blnBoundOnce_ && prefix->uri == name->uri;
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

const NamePart* TreeNames::findPart(std::string_view strText, std::size_t lngHash) const noexcept {
  return parts_.find(lngHash, [&](const NamePart& part) { return isSame(part.strText, strText); });
}

const NamePart* TreeNames::findPart(std::string_view strText) const noexcept {
  return findPart(strText, hashOf(strText));
}

/// The same; mostly it is that of the name that was made before, or empty.
const NamePart* TreeNames::part(Arena& arena, std::string_view strText, const NamePart*& last) {
  if (strText.empty()) return empty_;
  if (!last || !isSame(last->strText, strText)) last = part(arena, strText);
  return last;
}

const NamePart* TreeNames::part(Arena& arena, std::string_view strText) {
  const std::size_t lngHash = hashOf(strText);
  if (const NamePart* const known = findPart(strText, lngHash)) return known;
  if (!strText.empty()) countOne();
  auto* const made = arena.make<NamePart>();
  made->strText = arena.copy(strText);
  made->lngNumber = static_cast<std::uint32_t>(parts());
  made->lngHash = lngHash;
  parts_.add(arena, made);
  return made;
}

}  // namespace Varnel_Tolv_XML_Creation
