#include "platform/ContentPaths.h"

#include <algorithm>
#include <functional>

#include "platform/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::int64_t kMaxExploration = 1'000'000;  // steps through the model
constexpr std::int64_t kMaxRevisiting = 200'000;     // of these, to names that are known already
constexpr std::int64_t kMaxTrying = 300'000;         // and to names that are not announced
constexpr std::size_t kMaxBridgeEdges = 20'000;
constexpr std::size_t kMaxStartEdges = 200'000;
constexpr std::size_t kMaxKept = 100'000;  // elements in ways that are kept for another time
constexpr int kMaxRepeats = 16;            // up to here, one more of the same is another place

}  // namespace

ElementName ElementNamePool::split(const xmlChar* value) {
  const auto [known, blnNew] = split_.try_emplace(value);
  if (blnNew) {
    const std::string strValue(view(value));
    const std::size_t bar = std::min(strValue.find('|'), strValue.size());
    known->second.local = keep(strValue.substr(0, bar));
    if (bar < strValue.size()) known->second.uri = keep(strValue.substr(bar + 1));
  }
  return known->second;
}

const xmlChar* ElementNamePool::keep(const std::string& strValue) {
  return xmlText(texts_.insert(strValue).first->c_str());
}

void ContentPaths::Stand::accept(const std::string& strKey) {
  lngRepeats = strKey == strLastKey ? std::min(lngRepeats + 1, kMaxRepeats) : 1;
  strLastKey = strKey;
}

ContentPaths::ContentPaths(xmlRegexp* model, ElementNamePool& names, const ElementNames* candidates)
    : model_(model), names_(names), candidates_(candidates) {
  explore();
}

std::uint64_t ContentPaths::stateOf(std::string_view strLastKey, int lngRepeats,
                                    const NextElements& next) const {
  // The library keeps one text for each element of a model, so their addresses tell them apart.
  std::uint64_t lngState = std::hash<std::string_view>()(strLastKey);
  if (candidates_) lngState += static_cast<std::uint64_t>(lngRepeats);
  for (const xmlChar* value : next.values) {
    lngState = lngState * 0x100000001b3U ^ reinterpret_cast<std::uintptr_t>(value);
  }
  return lngState;
}

int ContentPaths::placeOf(int parent, const xmlChar* value, NextElements next) {
  int lngRepeats = parent < 0 ? 0 : 1;
  if (parent > 0 && view(at(parent).value) == view(value)) {
    lngRepeats = std::min(at(parent).lngRepeats + 1, kMaxRepeats);
  }
  const auto [known, blnNew] = byState_.try_emplace(stateOf(view(value), lngRepeats, next),
                                                    static_cast<int>(places_.size()));
  if (blnNew) {
    Place place;
    place.parent = parent;
    place.value = value;
    place.lngRepeats = lngRepeats;
    std::erase_if(next.values, isWildcard);
    place.targets.assign(next.values.size(), -1);
    place.next = std::move(next.values);
    place.lngListed = place.next.size();
    places_.push_back(std::move(place));
    firstByKey_.try_emplace(std::string(view(value)), known->second);
  }
  return known->second;
}

int ContentPaths::step(ContentRun& run, int place, std::size_t edge) {
  const xmlChar* value = at(place).next[edge];
  const ElementName name = names_.split(value);
  ++lngWork_;
  if (!run.push(name.local, name.uri)) return -1;
  const int target = placeOf(place, value, run.next());
  at(place).targets[edge] = target;
  return target;
}

bool ContentPaths::goTo(ContentRun& run, int place) {
  std::vector<const xmlChar*> way;
  for (int on = place; on > 0; on = at(on).parent) way.push_back(at(on).value);
  lngWork_ += static_cast<std::int64_t>(way.size());
  return std::all_of(way.rbegin(), way.rend(), [&](const xmlChar* value) {
    const ElementName name = names_.split(value);
    return run.push(name.local, name.uri) != nullptr;
  });
}

bool ContentPaths::isNew(const xmlChar* value) const {
  return !firstByKey_.contains(std::string(view(value)));
}

void ContentPaths::explore() {
  placeOf(-1, nullptr, ContentRun(model_).next());
  // First every name once.
  for (int from = 0; from < static_cast<int>(places_.size()); ++from) exploreFrom(from);
  // Then the names that come up in more than one place, as far as the work allows, and what comes
  // to light by that.
  const std::int64_t lngEnough = lngWork_ + kMaxRevisiting;
  for (int from = 0; from < static_cast<int>(places_.size()); ++from) {
    for (std::size_t edge = 0; edge < at(from).next.size() && lngWork_ < lngEnough; ++edge) {
      if (at(from).targets[edge] >= 0) continue;
      ContentRun run(model_);
      if (!goTo(run, from)) break;
      step(run, from, edge);
    }
    if (candidates_ && lngWork_ < lngEnough && mayCount(from)) tryCandidates(from);
    exploreFrom(from);
  }
  // What is still unknown is taken to be as where the name came up first.
  for (Place& place : places_) {
    for (std::size_t edge = 0; edge < place.next.size(); ++edge) {
      if (place.targets[edge] >= 0) continue;
      const auto first = firstByKey_.find(std::string(view(place.next[edge])));
      if (first != firstByKey_.end()) place.targets[edge] = first->second;
    }
  }
}

/// Takes every way that begins with a new name, as far as it leads to new names: to go back means
/// to begin anew.
void ContentPaths::exploreFrom(int from) {
  const auto isNewValue = [this](const xmlChar* value) { return isNew(value); };
  for (std::size_t edge = 0; edge < at(from).next.size(); ++edge) {
    if (lngWork_ >= kMaxExploration || !isNew(at(from).next[edge])) continue;
    ContentRun run(model_);
    if (!goTo(run, from)) return;
    std::size_t way = edge;
    for (int place = from; lngWork_ < kMaxExploration;) {
      place = step(run, place, way);
      if (place < 0) break;
      const std::vector<const xmlChar*>& next = at(place).next;
      const auto onward = std::find_if(next.begin(), next.end(), isNewValue);
      if (onward == next.end()) break;
      way = static_cast<std::size_t>(onward - next.begin());
    }
  }
}

/// Whether something may be counted here: a name of the way to this place may come again, or
/// nothing is announced.
bool ContentPaths::mayCount(int place) const {
  const std::vector<const xmlChar*>& next = at(place).next;
  if (place == 0 || next.empty()) return place != 0;
  for (int on = place; on > 0; on = at(on).parent) {
    if (std::find(next.begin(), next.end(), at(on).value) != next.end()) return true;
  }
  return false;
}

void ContentPaths::tryCandidates(int from) {
  const std::int64_t lngEnough = lngWork_ + kMaxTrying;
  for (const std::string& strKey : *candidates_) {
    if (lngWork_ >= lngEnough) return;
    const auto isListed = [&](const xmlChar* value) { return view(value) == strKey; };
    const std::vector<const xmlChar*>& next = at(from).next;
    if (std::any_of(next.begin(), next.end(), isListed)) continue;
    ContentRun run(model_);
    if (!goTo(run, from)) return;
    const xmlChar* value = names_.keep(strKey);
    const ElementName name = names_.split(value);
    ++lngWork_;
    const xmlSchemaElement* matched = run.push(name.local, name.uri);
    if (!matched || matched->type != XML_SCHEMA_TYPE_ELEMENT) continue;
    const int target = placeOf(from, value, run.next());
    at(from).next.push_back(value);
    at(from).targets.push_back(target);
  }
}

std::optional<ContentPaths::Way> ContentPaths::findWay(int from, const std::string& strKey,
                                                       std::size_t lngMaxEdges) const {
  std::unordered_map<int, std::pair<int, const xmlChar*>> cameFrom = {{from, {-1, nullptr}}};
  std::deque<int> open = {from};
  std::size_t lngEdges = 0;
  while (!open.empty() && lngEdges < lngMaxEdges) {
    const int on = open.front();
    open.pop_front();
    const Place& place = at(on);
    for (std::size_t edge = 0; edge < place.next.size(); ++edge, ++lngEdges) {
      if (view(place.next[edge]) == strKey) {
        Way way;
        for (int back = on; back != from; back = cameFrom[back].first) {
          way.push_back(names_.split(cameFrom[back].second));
        }
        std::reverse(way.begin(), way.end());
        return way;
      }
      const int target = place.targets[edge];
      if (target < 0) continue;
      const bool blnNew = cameFrom.try_emplace(target, on, place.next[edge]).second;
      if (blnNew) open.push_back(target);
    }
  }
  return std::nullopt;
}

std::optional<ContentPaths::Way> ContentPaths::known(int from, const std::string& strKey,
                                                     std::size_t lngMaxEdges) {
  const auto found = known_.find({from, strKey});
  if (found != known_.end()) return found->second;
  std::optional<Way> way = findWay(from, strKey, lngMaxEdges);
  lngKept_ += way ? way->size() + 1 : 1;
  if (lngKept_ > kMaxKept) {
    known_.clear();
    lngKept_ = 0;
  }
  return known_.emplace(std::pair(from, strKey), std::move(way)).first->second;
}

std::optional<ContentPaths::Way> ContentPaths::fromStart(const std::string& strKey) {
  return known(0, strKey, kMaxStartEdges);
}

std::optional<ContentPaths::Way> ContentPaths::from(const Stand& stand, const NextElements& next,
                                                    const std::string& strKey) {
  const auto state = byState_.find(stateOf(stand.strLastKey, stand.lngRepeats, next));
  if (state == byState_.end()) return std::nullopt;
  return known(state->second, strKey, kMaxBridgeEdges);
}

NextElements ContentPaths::complete(const Stand& stand, NextElements next) const {
  const auto state = byState_.find(stateOf(stand.strLastKey, stand.lngRepeats, next));
  if (state == byState_.end()) return next;
  const Place& place = at(state->second);
  const auto found = place.next.begin() + static_cast<std::ptrdiff_t>(place.lngListed);
  next.values.insert(next.values.end(), found, place.next.end());
  return next;
}

}  // namespace Varnel_Tolv_XML_Creation
