#include <algorithm>
#include <utility>

#include "platform/schema/value/Decimal.h"
#include "platform/schema/value/SimpleTypeImpl.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

[[noreturn]] void fail(const FacetDefinition& facet, std::string_view strWhy) {
  throw RuntimeError(kXmlFailure, "The facet '" + std::string(facetName(facet.facet)) +
                                      "' with the value '" + shown(facet.strValue) + "' " +
                                      std::string(strWhy));
}

bool isBound(Facet facet) noexcept {
  return facet >= Facet::maxInclusive && facet <= Facet::minExclusive;
}

/// Whether a type can have a facet; `atomic` is the built-in type of an atomic one.
bool allows(SimpleType::Variety variety, const AtomicType* atomic, Facet facet) noexcept {
  if (facet == Facet::pattern || facet == Facet::enumeration || facet == Facet::whiteSpace) {
    return true;
  }
  const bool blnLength = facet <= Facet::maxLength;
  if (!atomic) return blnLength && variety == SimpleType::Variety::list;
  const Primitive primitive = atomic->primitive;
  if (blnLength) return primitive == Primitive::string || primitive >= Primitive::hexBinary;
  if (isBound(facet)) return primitive >= Primitive::decimal && primitive <= Primitive::gMonth;
  return primitive == Primitive::decimal;
}

bool hasLimit(const std::vector<Limit>& limits, Facet facet) {
  return std::any_of(limits.begin(), limits.end(),
                     [=](const Limit& limit) { return limit.facet == facet; });
}

WhiteSpace whiteSpaceNamed(const FacetDefinition& facet, std::string_view strName) {
  if (strName == "preserve") return WhiteSpace::preserve;
  if (strName == "replace") return WhiteSpace::replace;
  if (strName == "collapse") return WhiteSpace::collapse;
  fail(facet, "has none of the values that there are.");
}

}  // namespace

void Enumeration::add(std::string strKey, std::string_view strText) {
  constexpr std::size_t kLongestShown = 1000;
  if (blnAllShown) {
    blnAllShown = strValues.size() + strText.size() <= kLongestShown;
    if (!strValues.empty()) strValues += ", ";
    strValues += blnAllShown ? "'" + std::string(strText) + "'" : "...";
  }
  keys.push_back(std::move(strKey));
}

void Enumeration::complete() {
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
}

bool Enumeration::contains(std::string_view strKey) const {
  return std::binary_search(keys.begin(), keys.end(), strKey, std::less<>());
}

SimpleType::Impl::Impl(const Impl* restricted) : base(restricted) {
  if (!base) return;
  variety = base->variety;
  atomic = base->atomic;
  strBuiltIn = base->strBuiltIn;
  whiteSpace = base->whiteSpace;
  blnIdentifiers = base->blnIdentifiers;
  item = base->item;
  blnLists = base->blnLists;
  unionType = base->unionType ? base->unionType : base;
  for (const Limit& limit : base->limits) {
    if (!hasLimit(limits, limit.facet)) limits.push_back(limit);
  }
  enumeration = base->enumeration;
  patterns = base->patterns;
}

void SimpleType::Impl::add(const FacetDefinition& facet, const SimpleType& baseType,
                           const PrefixLookup& lookup) {
  if (!allows(variety, atomic, facet.facet)) fail(facet, "is not one that the type can have.");

  const Normalised collapsed(facet.strValue, WhiteSpace::collapse);
  switch (facet.facet) {
    case Facet::pattern:
      if (!ownPatterns) {
        ownPatterns = std::make_unique<PatternLevel>();
        ownPatterns->base = patterns;
        patterns = ownPatterns.get();
      }
      ownPatterns->alternatives.emplace_back(facet.strValue);
      break;
    case Facet::whiteSpace:
      whiteSpace = std::max(whiteSpace, whiteSpaceNamed(facet, collapsed.text()));
      break;
    case Facet::enumeration:
      if (!baseType.impl_->isLexical(facet.strValue, lookup))
        fail(facet, "is no value of its type.");
      if (!ownEnumeration) {
        ownEnumeration = std::make_unique<Enumeration>();
        enumeration = ownEnumeration.get();
      }
      ownEnumeration->add(listsTexts() ? baseType.normalised(facet.strValue)
                                       : baseType.valueKey(facet.strValue, lookup),
                          facet.strValue);
      break;
    default:
      addLimit(facet, collapsed.text());
  }
  ownFacets.push_back(facet);
}

void SimpleType::Impl::addLimit(const FacetDefinition& facet, std::string_view strValue) {
  Limit limit{facet.facet, std::string(strValue)};
  if (isBound(facet.facet)) {
    if (!atomic->isValue(strValue, {})) fail(facet, "is no value of its type.");
  } else {
    const std::optional<std::size_t> lngCount = parseCount(strValue);
    if (!lngCount || (facet.facet == Facet::totalDigits && *lngCount == 0)) {
      fail(facet, "is no such number.");
    }
    limit.lngCount = *lngCount;
  }
  const auto inherited =
      std::remove_if(limits.begin() + lngOwnLimits, limits.end(),
                     [&](const Limit& other) { return other.facet == facet.facet; });
  limits.erase(inherited, limits.end());
  limits.insert(limits.begin() + lngOwnLimits++, std::move(limit));
}

bool SimpleType::Impl::isLexical(std::string_view strText, const PrefixLookup& lookup) const {
  if (variety != Variety::atomic) return accepts(strText, lookup, nullptr);
  return atomic->isValue(Normalised(strText, whiteSpace).text(), lookup);
}

std::unique_ptr<const SimpleType> SimpleType::restriction(
    const SimpleType& base, const std::vector<FacetDefinition>& facets,
    const PrefixLookup& lookup) {
  auto impl = std::make_unique<Impl>(base.impl_.get());
  for (const FacetDefinition& facet : facets) impl->add(facet, base, lookup);
  if (impl->ownEnumeration) impl->ownEnumeration->complete();
  return std::unique_ptr<const SimpleType>(new SimpleType(std::move(impl)));
}

std::unique_ptr<SimpleType::Impl> SimpleType::Impl::listOf(const SimpleType& item) {
  // What a text of a list is checked for would otherwise be nested as deep as the schema likes.
  if (item.impl_->blnLists) {
    throw RuntimeError(kXmlFailure, "The items of a list type are lists themselves.");
  }
  auto impl = std::make_unique<Impl>(nullptr);
  impl->variety = Variety::list;
  impl->item = &item;
  impl->blnIdentifiers = item.mayHoldIdentifiers();
  impl->blnLists = true;
  return impl;
}

std::unique_ptr<const SimpleType> SimpleType::listOf(const SimpleType& item) {
  return std::unique_ptr<const SimpleType>(new SimpleType(Impl::listOf(item)));
}

std::unique_ptr<const SimpleType> SimpleType::unionOf(std::vector<const SimpleType*> members) {
  auto impl = std::make_unique<Impl>(nullptr);
  impl->variety = Variety::unionOf;
  for (const SimpleType* member : members) {
    impl->blnIdentifiers = impl->blnIdentifiers || member->mayHoldIdentifiers();
    impl->blnLists = impl->blnLists || member->impl_->blnLists;
  }
  impl->ownMembers = std::move(members);
  return std::unique_ptr<const SimpleType>(new SimpleType(std::move(impl)));
}

}  // namespace Varnel_Tolv_XML_Creation
