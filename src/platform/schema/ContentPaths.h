#pragma once

#include <libxml/xmlregexp.h>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/schema/ContentRun.h"
#include "platform/schema/SchemaClosure.h"

namespace Varnel_Tolv_XML_Creation {

/// A name in the two parts that the library takes it in.
struct ElementName {
  const xmlChar* local = nullptr;
  const xmlChar* uri = nullptr;  // null for none
};

/// The names that content models hold, split; they live as long as this.
class ElementNamePool {
 public:
  ElementName split(const xmlChar* value);
  const xmlChar* keep(const std::string& strValue);

 private:
  std::unordered_set<std::string> texts_;
  std::unordered_map<const xmlChar*, ElementName> split_;
};

/// The key of what a wildcard admits from a namespace.
std::string wildcardKey(std::string_view strUri);

/// The ways through one content model. The library tells what may come next but not what would come
/// after that, so the model is explored by trying: each place is known by what was accepted last
/// and what may follow. It also keeps to itself what may follow a number of occurrences; where
/// there are such, the names of the schema are tried, also after as many rounds as the schema may
/// demand. The work is bounded and some ways may stay unknown or be wrong, so a way is to be tried
/// out before it is relied on.
class ContentPaths {
 public:
  struct Step {
    ElementName name;
    bool blnSpare = false;  // one of a number of rounds, of which fewer may do
  };
  using Way = std::vector<Step>;

  /// Where a run stands in the model.
  struct Stand {
    std::string strLastKey;  // of the child accepted last
    int lngRepeats = 0;      // how many of these stand in a row
    void accept(const std::string& strKey);
  };

  /// `candidates` are the names to be tried; null where nothing is counted. `lngMaxRequired`: how
  /// many occurrences may be demanded.
  ContentPaths(xmlRegexp* model, ElementNamePool& names, const ElementNames* candidates,
               int lngMaxRequired);

  /// The elements between the start of the content and a child with this key, if there is a way.
  std::optional<Way> fromStart(const std::string& strKey);

  /// The same from where a run stands, given the key of what it accepted last; short ways only.
  std::optional<Way> from(const Stand& stand, const NextElements& next, const std::string& strKey);

  /// What it costs to go a way, which grows with the model: each step looks through its names.
  std::size_t costOf(const Way& way) const { return (way.size() + 1) * (1 + places_.size() / 256); }

  /// What a run that stands there and tells `next` allows, as far as is known.
  NextElements complete(const Stand& stand, NextElements next) const;

 private:
  struct Place {
    int parent = -1;
    const xmlChar* value = nullptr;  // what leads here
    Way rounds;                      // that must be gone at the parent before
    std::string strKey;
    int lngRepeats = 0;
    std::vector<const xmlChar*> next;
    bool blnTried = false;      // whether names were tried here that are not announced
    std::size_t lngListed = 0;  // of `next` by the library; what follows was found by trying
    std::vector<int> targets;   // the places that these lead to, where known
    std::map<std::size_t, Way> roundsBefore;  // the rounds that must be gone before some of these
  };

  void explore();
  void exploreFrom(int from);
  void exploreAll(int from);
  void exploreRounds();
  void revisit(int from, std::int64_t lngEnough);
  void tryCandidates(int from);
  bool goRounds(int from, std::int64_t lngEnough);
  Way roundFrom(int from);
  bool pushAll(ContentRun& run, const Way& way, std::size_t lngSteps);
  bool mayCount(int place) const;
  bool isNew(const xmlChar* value) const;
  int step(ContentRun& run, int place, std::size_t edge);
  int placeOf(int parent, const xmlChar* value, const std::string& strKey, NextElements next);
  std::uint64_t stateOf(std::string_view strLastKey, int lngRepeats,
                        const NextElements& next) const;
  Place& at(int place) { return places_[static_cast<std::size_t>(place)]; }
  const Place& at(int place) const { return places_[static_cast<std::size_t>(place)]; }
  std::optional<Way> known(int from, const std::string& strKey, std::size_t lngMaxEdges);
  bool goTo(ContentRun& run, int place);
  template <class IsGoal>
  std::optional<Way> findWay(int from, std::size_t lngMaxEdges, IsGoal&& isGoal) const;

  xmlRegexp* model_;
  ElementNamePool& names_;
  const ElementNames* candidates_;
  int lngMaxRequired_;
  std::vector<Place> places_;
  std::unordered_map<std::uint64_t, int> byState_;
  std::unordered_map<std::string, int> firstByKey_;
  std::map<std::pair<int, std::string>, std::optional<Way>> known_;
  std::size_t lngKept_ = 0;  // elements in these ways
  std::int64_t lngWork_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
