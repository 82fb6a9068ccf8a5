#include "platform/schema/value/SimpleType.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include "platform/schema/value/SimpleTypeImpl.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::array<std::string_view, 12> kFacetNames = {
    "length",       "minLength",    "maxLength",    "pattern",
    "enumeration",  "whiteSpace",   "maxInclusive", "maxExclusive",
    "minInclusive", "minExclusive", "totalDigits",  "fractionDigits"};

/// The built-in lists, and what their items are.
constexpr std::array<std::array<std::string_view, 2>, 3> kLists = {
    {{"NMTOKENS", "NMTOKEN"}, {"IDREFS", "IDREF"}, {"ENTITIES", "ENTITY"}}};

}  // namespace

std::string_view facetName(Facet facet) noexcept {
  return kFacetNames.at(static_cast<std::size_t>(facet));
}

std::optional<Facet> facetNamed(std::string_view strName) noexcept {
  const auto found = std::find(kFacetNames.begin(), kFacetNames.end(), strName);
  if (found == kFacetNames.end()) return std::nullopt;
  return static_cast<Facet>(found - kFacetNames.begin());
}

SimpleType::SimpleType(std::unique_ptr<const Impl> impl) : impl_(std::move(impl)) {}
SimpleType::~SimpleType() = default;

const SimpleType* SimpleType::builtIn(std::string_view strName) {
  using Types = std::unordered_map<std::string_view, const SimpleType*>;
  // Never destroyed: whatever ends after this one may still ask its types.
  static const Types* const types = [] {
    auto made = std::make_unique<Types>();
    for (const AtomicType& atomic : AtomicType::all()) {
      auto impl = std::make_unique<Impl>(nullptr);
      impl->atomic = &atomic;
      impl->strBuiltIn = atomic.strName;
      impl->whiteSpace = atomic.whiteSpace;
      impl->blnIdentifiers = atomic.identifier != IdentifierKind::none;
      made->emplace(atomic.strName, new SimpleType(std::move(impl)));
    }
    for (const auto& [strList, strItem] : kLists) {
      const SimpleType& item = *made->at(strItem);
      std::unique_ptr<Impl> impl = Impl::listOf(item);
      impl->strBuiltIn = strList;
      impl->add({Facet::minLength, "1"}, item, {});
      made->emplace(strList, new SimpleType(std::move(impl)));
    }
    return made.release();
  }();
  const auto found = types->find(strName);
  return found == types->end() ? nullptr : found->second;
}

std::vector<BuiltInType> SimpleType::builtIns() {
  std::vector<BuiltInType> types;
  for (const AtomicType& atomic : AtomicType::all()) {
    types.push_back({atomic.strName, atomic.strBase});
  }
  for (const auto& [strList, strItem] : kLists) types.push_back({strList, "anySimpleType"});
  return types;
}

SimpleType::Variety SimpleType::variety() const noexcept { return impl_->variety; }

bool SimpleType::check(std::string_view strText, const PrefixLookup& lookup,
                       ValueFaults* faults) const {
  if (faults) {
    faults->lngCode = 0;
    faults->facets.clear();
  }
  return impl_->accepts(strText, lookup, faults);
}

std::string SimpleType::valueKey(std::string_view strText, const PrefixLookup& lookup) const {
  return impl_->key(strText, lookup);
}

void SimpleType::identifiers(
    std::string_view strText, const PrefixLookup& lookup,
    const std::function<void(IdentifierKind, std::string_view)>& tell) const {
  if (!impl_->blnIdentifiers) return;
  if (variety() == Variety::unionOf) {
    const SimpleType* member = impl_->acceptingMember(strText, lookup);
    if (member) member->identifiers(strText, lookup, tell);
    return;
  }
  if (variety() == Variety::atomic) {
    tell(impl_->atomic->identifier, Normalised(strText, impl_->whiteSpace).text());
    return;
  }
  while (true) {
    const std::string_view strItem = takeItem(strText);
    if (strItem.empty()) return;
    impl_->item->identifiers(strItem, lookup, tell);
  }
}

bool SimpleType::mayHoldIdentifiers() const noexcept { return impl_->blnIdentifiers; }

std::string SimpleType::normalised(std::string_view strText) const {
  const SimpleType* type = this;
  if (variety() == Variety::unionOf) type = impl_->acceptingMember(strText, {});
  return std::string(
      Normalised(strText, type ? type->impl_->whiteSpace : WhiteSpace::collapse).text());
}

std::string_view SimpleType::builtInName() const noexcept { return impl_->strBuiltIn; }

const SimpleType* SimpleType::item() const noexcept { return impl_->item; }

const std::vector<const SimpleType*>& SimpleType::members() const noexcept {
  return impl_->unionType ? impl_->unionType->ownMembers : impl_->ownMembers;
}

const std::vector<FacetDefinition>& SimpleType::facets() const {
  std::call_once(impl_->told, [&] {
    std::array<bool, kFacetNames.size()> overridden{};
    for (const Impl* level = impl_.get(); level; level = level->base) {
      for (const FacetDefinition& facet : level->ownFacets) {
        if (!overridden.at(static_cast<std::size_t>(facet.facet))) impl_->facets.push_back(facet);
      }
      for (const FacetDefinition& facet : level->ownFacets) {
        overridden.at(static_cast<std::size_t>(facet.facet)) = facet.facet != Facet::pattern;
      }
    }
  });
  return impl_->facets;
}

}  // namespace Varnel_Tolv_XML_Creation
