#include "platform/schema/ContentPaths.h"

#include <algorithm>
#include <functional>

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::int64_t kMaxExploration = 1'000'000;  // steps through the model
constexpr std::int64_t kMaxRevisiting = 200'000;     // of these, to names that are known already
constexpr std::int64_t kMaxTrying = 300'000;         // and to names that are not announced
constexpr std::int64_t kMaxRounds = 1'000'000;       // and to go rounds
constexpr std::size_t kMaxBridgeEdges = 20'000;
constexpr std::size_t kMaxStartEdges = 200'000;
constexpr std::size_t kMaxKept = 100'000;       // elements in ways that are kept for another time
constexpr int kMaxRepeats = 16;                 // up to here, one more of the same is another place
constexpr std::size_t kMaxRoundSteps = 20'000;  // in all the rounds at one place

/// Names to look many others up in; borrowed.
std::unordered_set<std::string_view> setOf(const std::vector<const xmlChar*>& values) {
  std::unordered_set<std::string_view> names;
  for (const xmlChar* value : values) names.insert(view(value));
  return names;
}

/// Whether what leads on is what is looked for.
bool isFor(const xmlChar* value, const std::string& strKey) {
  if (view(value) == strKey) return true;
  return isWildcard(value) && strKey.starts_with('*') && admits(value, strKey.substr(2));
}

}  // namespace

std::string wildcardKey(std::string_view strUri) { return "*|" + std::string(strUri); }

ElementName ElementNamePool::split(const xmlChar* value) {
  const auto [known, blnNew] = split_.try_emplace(value);
  if (blnNew) {
    std::string strValue(view(value));
    if (isWildcard(value)) {
      // Something that it admits; no document and no schema can hold such a name.
      const std::string strUri = strValue.substr(std::min(strValue.find('|'), strValue.size()));
      strValue = " any" + (strValue.starts_with("not ") || strUri == "|*" ? "| any" : strUri);
    }
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

ContentPaths::ContentPaths(xmlRegexp* model, ElementNamePool& names, const ElementNames* candidates,
                           int lngMaxRequired)
    : model_(model), names_(names), candidates_(candidates), lngMaxRequired_(lngMaxRequired) {
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

int ContentPaths::placeOf(int parent, const xmlChar* value, const std::string& strKey,
                          NextElements next) {
  int lngRepeats = parent < 0 ? 0 : 1;
  if (parent > 0 && at(parent).strKey == strKey) {
    lngRepeats = std::min(at(parent).lngRepeats + 1, kMaxRepeats);
  }
  const auto [known, blnNew] =
      byState_.try_emplace(stateOf(strKey, lngRepeats, next), static_cast<int>(places_.size()));
  if (blnNew) {
    Place place;
    place.parent = parent;
    place.value = value;
    place.strKey = strKey;
    place.lngRepeats = lngRepeats;
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
  const xmlSchemaElement* matched = run.push(name.local, name.uri);
  if (!matched) return -1;
  const int target = placeOf(place, value, keyOf(name.local, name.uri, matched), run.next());
  at(place).targets[edge] = target;
  return target;
}

bool ContentPaths::goTo(ContentRun& run, int place) {
  std::vector<int> way;
  for (int on = place; on > 0; on = at(on).parent) way.push_back(on);
  lngWork_ += static_cast<std::int64_t>(way.size());
  return std::all_of(way.rbegin(), way.rend(), [&](int on) {
    const Way& rounds = at(on).rounds;
    if (!pushAll(run, rounds, rounds.size())) return false;
    const ElementName name = names_.split(at(on).value);
    return run.push(name.local, name.uri) != nullptr;
  });
}

bool ContentPaths::pushAll(ContentRun& run, const Way& way, std::size_t lngSteps) {
  lngWork_ += static_cast<std::int64_t>(lngSteps);
  return std::all_of(way.begin(), way.begin() + static_cast<std::ptrdiff_t>(lngSteps),
                     [&](const Step& step) { return run.push(step.name.local, step.name.uri); });
}

bool ContentPaths::isNew(const xmlChar* value) const {
  return !firstByKey_.contains(std::string(view(value)));
}

void ContentPaths::explore() {
  placeOf(-1, nullptr, "", ContentRun(model_).next());
  exploreAll(0);
  if (candidates_ && lngMaxRequired_ > 1) exploreRounds();
  // What is still unknown is taken to be as where the name came up first.
  for (Place& place : places_) {
    for (std::size_t edge = 0; edge < place.next.size(); ++edge) {
      if (place.targets[edge] >= 0) continue;
      const auto first = firstByKey_.find(std::string(view(place.next[edge])));
      if (first != firstByKey_.end()) place.targets[edge] = first->second;
    }
  }
}

/// From this place on: first every name once. Then the names that come up in more than one place,
/// as far as the work allows, and what comes to light by that.
void ContentPaths::exploreAll(int from) {
  const int lngFirst = from;
  for (; from < static_cast<int>(places_.size()); ++from) exploreFrom(from);
  const std::int64_t lngEnough = lngWork_ + kMaxRevisiting;
  for (from = lngFirst; from < static_cast<int>(places_.size()); ++from) {
    revisit(from, lngEnough);
    if (candidates_ && lngWork_ < lngEnough && mayCount(from)) tryCandidates(from);
    exploreFrom(from);
  }
}

/// What can be reached only by going rounds, and what lies behind. It is looked for where something
/// may be counted only, so the work reaches further.
void ContentPaths::exploreRounds() {
  const std::int64_t lngEnough = lngWork_ + kMaxRounds;
  for (int from = 0; from < static_cast<int>(places_.size()) && lngWork_ < lngEnough; ++from) {
    if (!mayCount(from)) continue;
    revisit(from, lngEnough);
    if (!at(from).blnTried) tryCandidates(from);
    const int lngKnown = static_cast<int>(places_.size());
    if (goRounds(from, lngEnough)) exploreAll(lngKnown);
  }
}

/// Goes on to the names that a place announces and that came up before.
void ContentPaths::revisit(int from, std::int64_t lngEnough) {
  for (std::size_t edge = 0; edge < at(from).next.size() && lngWork_ < lngEnough; ++edge) {
    if (at(from).targets[edge] >= 0) continue;
    ContentRun run(model_);
    if (!goTo(run, from)) break;
    step(run, from, edge);
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
  const std::unordered_set<std::string_view> names = setOf(next);
  for (int on = place; on > 0; on = at(on).parent) {
    if (names.contains(view(at(on).value))) return true;
  }
  return false;
}

void ContentPaths::tryCandidates(int from) {
  at(from).blnTried = true;
  const std::int64_t lngEnough = lngWork_ + kMaxTrying;
  const std::unordered_set<std::string_view> listed = setOf(at(from).next);
  for (const std::string& strKey : *candidates_) {
    if (lngWork_ >= lngEnough) return;
    if (listed.contains(strKey)) continue;
    ContentRun run(model_);
    if (!goTo(run, from)) return;
    const xmlChar* value = names_.keep(strKey);
    const ElementName name = names_.split(value);
    ++lngWork_;
    const xmlSchemaElement* matched = run.push(name.local, name.uri);
    if (!matched || matched->type != XML_SCHEMA_TYPE_ELEMENT) continue;
    const int target = placeOf(from, value, strKey, run.next());
    at(from).next.push_back(value);
    at(from).targets.push_back(target);
  }
}

/// The elements before an edge that is the goal, over the fewest edges.
template <class IsGoal>
std::optional<ContentPaths::Way> ContentPaths::findWay(int from, std::size_t lngMaxEdges,
                                                       IsGoal&& isGoal) const {
  std::unordered_map<int, std::pair<int, std::size_t>> cameFrom = {{from, {-1, 0}}};
  std::deque<int> open = {from};
  std::size_t lngEdges = 0;
  const auto addRounds = [](Way& way, const Place& place, std::size_t edge) {
    const auto rounds = place.roundsBefore.find(edge);
    if (rounds == place.roundsBefore.end()) return;
    way.insert(way.end(), rounds->second.rbegin(), rounds->second.rend());
  };
  while (!open.empty() && lngEdges < lngMaxEdges) {
    const int on = open.front();
    open.pop_front();
    const Place& place = at(on);
    for (std::size_t edge = 0; edge < place.next.size(); ++edge, ++lngEdges) {
      if (isGoal(place, edge)) {
        Way way;  // backwards
        addRounds(way, place, edge);
        for (int back = on; back != from; back = cameFrom[back].first) {
          const auto [before, edgeBefore] = cameFrom[back];
          way.push_back({names_.split(at(before).next[edgeBefore])});
          addRounds(way, at(before), edgeBefore);
        }
        std::reverse(way.begin(), way.end());
        return way;
      }
      const int target = place.targets[edge];
      if (target < 0) continue;
      const bool blnNew = cameFrom.try_emplace(target, on, edge).second;
      if (blnNew) open.push_back(target);
    }
  }
  return std::nullopt;
}

/// The elements of a shortest way from a place back to it; none if there is no such way.
ContentPaths::Way ContentPaths::roundFrom(int from) {
  if (from == 0) return {};
  std::optional<Way> way =
      findWay(from, kMaxBridgeEdges, [&](const Place& place, std::size_t edge) {
        ++lngWork_;
        return place.targets[edge] == from;
      });
  if (!way) return {};
  way->push_back({names_.split(at(from).value)});
  for (Step& step : *way) step.blnSpare = true;
  return *std::move(way);
}

/// Tries the names that are not known to follow at a place after rounds that lead back to it: as
/// many as may be demanded, or as there may be. Whether any of them did.
bool ContentPaths::goRounds(int from, std::int64_t lngEnough) {
  const Way round = roundFrom(from);
  if (round.empty()) return false;
  Way rounds;
  for (int times = 1; times < lngMaxRequired_ && rounds.size() < kMaxRoundSteps; ++times) {
    rounds.insert(rounds.end(), round.begin(), round.end());
  }
  ContentRun whole(model_);
  if (!goTo(whole, from)) return false;
  std::size_t lngMost = 0;
  for (const Step& step : rounds) {
    if (!whole.push(step.name.local, step.name.uri)) break;
    ++lngMost;
  }
  lngMost /= round.size();
  bool blnFound = false;
  const std::unordered_set<std::string_view> listed = setOf(at(from).next);
  for (const std::string& strKey : *candidates_) {
    if (lngMost == 0 || lngWork_ >= lngEnough) break;
    if (listed.contains(strKey)) continue;
    const xmlChar* value = names_.keep(strKey);
    const ElementName name = names_.split(value);
    const auto follows = [&](std::size_t lngRounds) -> std::optional<NextElements> {
      ContentRun run(model_);
      if (!goTo(run, from) || !pushAll(run, rounds, lngRounds * round.size())) return std::nullopt;
      const xmlSchemaElement* matched = run.push(name.local, name.uri);
      if (!matched || matched->type != XML_SCHEMA_TYPE_ELEMENT) return std::nullopt;
      return run.next();
    };
    std::optional<NextElements> after = follows(lngMost);
    if (!after) continue;
    std::size_t lngTooFew = 0;  // the fewest that do lie above these
    std::size_t lngEnoughRounds = lngMost;
    while (lngEnoughRounds - lngTooFew > 1) {
      const std::size_t lngMiddle = (lngTooFew + lngEnoughRounds) / 2;
      std::optional<NextElements> afterFewer = follows(lngMiddle);
      (afterFewer ? lngEnoughRounds : lngTooFew) = lngMiddle;
      if (afterFewer) after = std::move(afterFewer);
    }
    const Way needed(rounds.begin(),
                     rounds.begin() + static_cast<std::ptrdiff_t>(lngEnoughRounds * round.size()));
    const auto lngKnown = static_cast<int>(places_.size());
    const int target = placeOf(from, value, strKey, *std::move(after));
    if (target == lngKnown) at(target).rounds = needed;
    Place& place = at(from);
    place.roundsBefore.emplace(place.next.size(), needed);
    place.next.push_back(value);
    place.targets.push_back(target);
    blnFound = true;
  }
  return blnFound;
}

std::optional<ContentPaths::Way> ContentPaths::known(int from, const std::string& strKey,
                                                     std::size_t lngMaxEdges) {
  const auto found = known_.find({from, strKey});
  if (found != known_.end()) return found->second;
  std::optional<Way> way = findWay(from, lngMaxEdges, [&](const Place& place, std::size_t edge) {
    return isFor(place.next[edge], strKey);
  });
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
  for (std::size_t edge = place.lngListed; edge < place.next.size(); ++edge) {
    if (!place.roundsBefore.contains(edge)) next.values.push_back(place.next[edge]);
  }
  return next;
}

}  // namespace Varnel_Tolv_XML_Creation
