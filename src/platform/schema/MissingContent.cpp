#include "platform/schema/MissingContent.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::size_t kMostPlaces = 100;  // of one search
constexpr std::size_t kMostPlacesInAll = 1000;
constexpr std::size_t kMostExpected = 64;  // of one place

/// A place that a search has come to, and how.
struct Place {
  ContentCursor cursor;
  std::size_t lngFrom;
  const ElementDeclaration* taken;
};

}  // namespace

template <class Reached>
std::optional<MissingContent::Gap> MissingContent::search(const ContentCursor& from,
                                                          const Reached& reached) {
  std::vector<Place> places = {{from, 0, nullptr}};
  std::set<std::pair<std::vector<const ElementDeclaration*>, bool>> seen;
  for (std::size_t at = 0; at < places.size(); ++at) {
    if (at == kMostPlaces || lngPlaces_ == kMostPlacesInAll) return std::nullopt;
    ++lngPlaces_;
    std::vector<const ElementDeclaration*> expected = places[at].cursor.expected(kMostExpected);
    if (!seen.emplace(expected, places[at].cursor.complete()).second) continue;
    for (const ElementDeclaration* element : expected) {
      ContentCursor behind = places[at].cursor;
      if (!behind.accept(element->name, names_[element->name].strUri)) continue;
      places.push_back({behind, at, element});
      if (!reached(behind)) continue;
      Gap gap = {{}, std::move(behind)};
      for (std::size_t step = places.size() - 1; step != 0; step = places[step].lngFrom) {
        gap.missing.push_back(places[step].taken);
      }
      std::reverse(gap.missing.begin(), gap.missing.end());
      return gap;
    }
  }
  return std::nullopt;
}

std::vector<const ElementDeclaration*> MissingContent::atEnd(const ContentCursor& cursor) {
  std::optional<Gap> gap =
      search(cursor, [](const ContentCursor& behind) { return behind.complete(); });
  return gap ? std::move(gap->missing) : std::vector<const ElementDeclaration*>();
}

void MissingContent::begin(std::size_t lngDepth, const ContentCursor& cursor,
                           const MessageName& child, Violation violation) {
  contents_.push_back({lngDepth, cursor, {}, {}});
  misplaced(contents_.back(), child, std::move(violation));
}

void MissingContent::next(std::size_t lngDepth, const MessageName& child) {
  Content* content = contentAt(lngDepth);
  if (!content || content->cursor.accept(child.id, child.strUri) || isLate(*content, child)) return;
  misplaced(*content, child,
            {.kind = ViolationKind::unexpectedChild, .expected = expectedBy(content->cursor)});
}

std::vector<const ElementDeclaration*> MissingContent::expectedBy(
    const ContentCursor& cursor) const {
  if (lngPlaces_ == kMostPlacesInAll) return {};
  return cursor.expected(kMostExpected);
}

void MissingContent::misplaced(Content& content, const MessageName& child, Violation violation) {
  std::optional<Gap> gap = search(content.cursor, [&](ContentCursor& behind) {
    return static_cast<bool>(behind.accept(child.id, child.strUri));
  });
  if (gap) {
    for (const ElementDeclaration* element : gap->missing) {
      content.missing.emplace(element->name, content.violations.size());
    }
    violation.missing = std::move(gap->missing);
    content.cursor = std::move(gap->behind);
  }
  content.violations.push_back(reporter_.partsOf(violation));
}

/// Whether a child is one that was taken for missing. Then it is the other that was too early.
bool MissingContent::isLate(Content& content, const MessageName& child) const {
  const auto late = content.missing.find(child.id);
  if (late == content.missing.end()) return false;
  std::vector<ExpandedName>& missing = content.violations[late->second].missing;
  const auto one = std::ranges::find(missing, names_[child.id]);
  if (one != missing.end()) missing.erase(one);
  content.missing.erase(late);
  return true;
}

void MissingContent::end(std::size_t lngDepth) {
  Content* content = contentAt(lngDepth);
  if (!content) return;
  if (!content->cursor.complete()) {
    content->violations.push_back(reporter_.partsOf({.kind = ViolationKind::missingChild,
                                                     .expected = expectedBy(content->cursor),
                                                     .missing = atEnd(content->cursor)}));
  }
  tell(*content);
  contents_.pop_back();
}

void MissingContent::flush() {
  for (Content& content : contents_) tell(content);
  contents_.clear();
}

MissingContent::Content* MissingContent::contentAt(std::size_t lngDepth) {
  const bool blnThere = !contents_.empty() && contents_.back().lngDepth == lngDepth;
  return blnThere ? &contents_.back() : nullptr;
}

void MissingContent::tell(Content& content) {
  for (ViolationParts& violation : content.violations) {
    reporter_.reportParts(std::move(violation));
  }
}

}  // namespace Varnel_Tolv_XML_Creation
