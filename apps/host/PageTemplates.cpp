#include "host/PageTemplates.h"

#include <algorithm>
#include <charconv>

#include "HtmlText.h"

namespace {

// Each cell has its row in its view. Those of a page with more would push out what everybody's
// pages are made of, and are made faster in one.
constexpr std::size_t kMostParts = 4000;

}  // namespace

/// Cuts a page at the places that stand in it.
PageTemplates::Template PageTemplates::cutAtPlaces(std::string_view strPage) {
  Template pieces;
  for (;;) {
    const std::size_t lngPlace = std::min(strPage.find(kValueBegin), strPage.find(kPartsBegin));
    if (lngPlace == std::string_view::npos) break;
    const std::string_view strAhead = strPage.substr(0, lngPlace);
    const bool blnParts = strPage.substr(lngPlace).starts_with(kPartsBegin);
    // Neither "<" nor ">" stands in a text or a value as it is.
    const std::size_t lngMark = strAhead.find_last_of("<>");
    const bool blnInTag = lngMark != std::string_view::npos
                              ? strAhead[lngMark] == '<'
                              : !pieces.empty() && pieces.back().kind == Kind::valueInTag;
    pieces.push_back({.kind = Kind::text, .strText = std::string(strAhead)});
    strPage.remove_prefix(lngPlace + kValueBegin.size());
    Piece place{.kind = blnParts ? Kind::parts : blnInTag ? Kind::valueInTag : Kind::value};
    const char* const end = strPage.data() + strPage.size();
    const auto [last, problem] = std::from_chars(strPage.data(), end, place.lngPlace);
    strPage.remove_prefix(static_cast<std::size_t>(last - strPage.data()));
    if (strPage.starts_with(kPlaceEnd)) strPage.remove_prefix(kPlaceEnd.size());
    pieces.push_back(std::move(place));
  }
  pieces.push_back({.kind = Kind::text, .strText = std::string(strPage)});
  return pieces;
}

/// Null when the stylesheet writes pages that depend on the texts themselves; that is kept too.
PageTemplates::Shared PageTemplates::make(const ViewPart& part, bool blnPage) const {
  const std::optional<std::string> strMade = stylesheet_.applyToPlaces(ViewDocument::parsed(
      blnPage ? std::string(part.strText) : "<part>" + std::string(part.strText) + "</part>"));
  if (!strMade) return nullptr;
  std::string_view strPage = *strMade;
  if (!blnPage) {
    // Its document type and line end are the page's.
    if (strPage.starts_with("<!DOCTYPE")) strPage.remove_prefix(strPage.find('\n') + 1);
    if (strPage.ends_with('\n')) strPage.remove_suffix(1);
  }
  return std::make_shared<const Template>(cutAtPlaces(strPage));
}

PageTemplates::Shared PageTemplates::templateOf(const ViewPart& part, bool blnPage) {
  {
    const std::scoped_lock lock(mutex_);
    const auto found = known_.find(part.strText);
    if (found != known_.end()) return found->second;
  }
  Shared made = make(part, blnPage);
  std::size_t lngBytes = part.strText.size();
  if (made != nullptr) {
    for (const Piece& piece : *made) lngBytes += sizeof(Piece) + piece.strText.size();
  }
  const std::scoped_lock lock(mutex_);
  ++lngMade_;
  if (lngBytes > lngMostBytes_ / 4) return made;  // too much would make room for it
  if (lngBytes_ + lngBytes > lngMostBytes_) {
    known_.clear();
    lngBytes_ = 0;
  }
  if (known_.try_emplace(std::string(part.strText), made).second) lngBytes_ += lngBytes;
  return made;
}

bool PageTemplates::fill(const ViewText& view, const ViewPart& part, bool blnPage,
                         std::string& strPage) {
  const Shared pieces = templateOf(part, blnPage);
  if (pieces == nullptr) return false;
  for (const Piece& piece : *pieces) {
    switch (piece.kind) {
      case Kind::text:
        strPage += piece.strText;
        break;
      case Kind::value:
      case Kind::valueInTag:
        if (piece.lngPlace >= part.values.size()) return false;
        appendHtml(strPage, part.values[piece.lngPlace], piece.kind == Kind::valueInTag);
        break;
      case Kind::parts: {
        if (!blnPage) return false;
        const auto [lngBegin, lngEnd] = view.run(piece.lngPlace);
        for (std::size_t at = lngBegin; at < lngEnd; ++at) {
          if (!fill(view, view.part(at), false, strPage)) return false;
        }
        break;
      }
    }
  }
  return true;
}

std::optional<std::string> PageTemplates::page(const ViewText& view) {
  if (view.parts() > kMostParts) return std::nullopt;
  std::string strPage;
  strPage.reserve(view.size());
  if (!fill(view, view.page(), true, strPage)) return std::nullopt;
  return strPage;
}

PageTemplates::Figures PageTemplates::figures() const {
  const std::scoped_lock lock(mutex_);
  return {.lngKept = known_.size(), .lngBytes = lngBytes_, .lngMade = lngMade_};
}
