#include <libxml/xmlerror.h>

#include <algorithm>
#include <array>
#include <compare>

#include "platform/schema/value/Decimal.h"
#include "platform/schema/value/SimpleTypeImpl.h"

// Whether a text is a value. A text that is no value of its built-in type has no facets; else they
// are checked in the order in which the library's own validator does: limits, enumeration,
// patterns.

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The library's numbers of failed facets, in the order of Facet.
constexpr std::array<std::int32_t, 12> kCodes = {
    XML_SCHEMAV_CVC_LENGTH_VALID,       XML_SCHEMAV_CVC_MINLENGTH_VALID,
    XML_SCHEMAV_CVC_MAXLENGTH_VALID,    XML_SCHEMAV_CVC_PATTERN_VALID,
    XML_SCHEMAV_CVC_ENUMERATION_VALID,  XML_SCHEMAV_CVC_FACET_VALID,
    XML_SCHEMAV_CVC_MAXINCLUSIVE_VALID, XML_SCHEMAV_CVC_MAXEXCLUSIVE_VALID,
    XML_SCHEMAV_CVC_MININCLUSIVE_VALID, XML_SCHEMAV_CVC_MINEXCLUSIVE_VALID,
    XML_SCHEMAV_CVC_TOTALDIGITS_VALID,  XML_SCHEMAV_CVC_FRACTIONDIGITS_VALID};

/// The number of what is wrong, if it is the first; false, for whoever wants no more than that.
bool tell(ValueFaults* faults, std::int32_t lngCode) noexcept {
  if (faults && faults->lngCode == 0) faults->lngCode = lngCode;
  return false;
}

void tell(ValueFaults& faults, Facet facet, std::string_view strLimit) {
  tell(&faults, kCodes.at(static_cast<std::size_t>(facet)));
  const bool blnTold =
      std::any_of(faults.facets.begin(), faults.facets.end(),
                  [=](const ValueFaults::FailedFacet& told) { return told.facet == facet; });
  if (!blnTold) faults.facets.push_back({facet, std::string(strLimit)});
}

/// The level of patterns that refuses a text; null when none does.
const PatternLevel* refusingLevel(const PatternLevel* level, std::string_view strText) {
  for (; level; level = level->base) {
    if (std::none_of(level->alternatives.begin(), level->alternatives.end(),
                     [=](const Pattern& pattern) { return pattern.matches(strText); })) {
      return level;
    }
  }
  return nullptr;
}

}  // namespace

bool SimpleType::Impl::accepts(std::string_view strText, const PrefixLookup& lookup,
                               ValueFaults* faults) const {
  if (variety == Variety::list) return acceptsList(strText, lookup, faults);
  if (variety == Variety::unionOf) return acceptsUnion(strText, lookup, faults);
  const Normalised value(strText, whiteSpace);
  if (!atomic->isValue(value.text(), lookup)) {
    return tell(faults, XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_1);
  }
  return meetsFacets(value.text(), 0, nullptr, lookup, faults);
}

bool SimpleType::Impl::acceptsList(std::string_view strText, const PrefixLookup& lookup,
                                   ValueFaults* faults) const {
  std::size_t lngItems = 0;
  std::string_view strRest = strText;
  while (true) {
    const std::string_view strItem = takeItem(strRest);
    if (strItem.empty()) break;
    ++lngItems;
    if (!item->impl_->accepts(strItem, lookup, faults)) {
      return tell(faults, XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_2);
    }
  }
  if (limits.empty() && !enumeration && !patterns) return true;
  const Normalised value(strText, WhiteSpace::collapse);
  return meetsFacets(value.text(), lngItems, nullptr, lookup, faults);
}

bool SimpleType::Impl::acceptsUnion(std::string_view strText, const PrefixLookup& lookup,
                                    ValueFaults* faults) const {
  const SimpleType* member = acceptingMember(strText, lookup);
  if (!member) return tell(faults, XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_3);
  return meetsFacets(Normalised(strText, member->impl_->whiteSpace).text(), 0, member, lookup,
                     faults);
}

bool SimpleType::Impl::meetsFacets(std::string_view strValue, std::size_t lngItems,
                                   const SimpleType* member, const PrefixLookup& lookup,
                                   ValueFaults* faults) const {
  bool blnMet = true;
  for (const Limit& limit : limits) {
    if (meets(limit, strValue, lngItems)) continue;
    blnMet = false;
    if (!faults) return false;
    tell(*faults, limit.facet, limit.strValue);
  }
  if (enumeration && !isListed(strValue, member, lookup)) {
    blnMet = false;
    if (!faults) return false;
    tell(*faults, Facet::enumeration, enumeration->strValues);
  }
  if (const PatternLevel* refusing = refusingLevel(patterns, strValue)) {
    blnMet = false;
    if (!faults) return false;
    tell(*faults, Facet::pattern, refusing->alternatives.back().expression());
  }
  return blnMet;
}

bool SimpleType::Impl::meets(const Limit& limit, std::string_view strValue,
                             std::size_t lngItems) const {
  const auto length = [&] {
    if (variety == Variety::list) return std::optional(lngItems);
    return lengthOf(atomic->primitive, strValue);
  };
  const auto order = [&] { return compareValues(atomic->primitive, strValue, limit.strValue); };
  switch (limit.facet) {
    case Facet::length:
      return length().value_or(limit.lngCount) == limit.lngCount;
    case Facet::minLength:  // of a text at least a quarter of its bytes
      return (listsTexts() && strValue.size() / 4 >= limit.lngCount) ||
             length().value_or(limit.lngCount) >= limit.lngCount;
    case Facet::maxLength:  // of no value more than its bytes
      return strValue.size() <= limit.lngCount ||
             length().value_or(limit.lngCount) <= limit.lngCount;
    case Facet::totalDigits:
      return Decimal::parse(strValue)->digits() <= limit.lngCount;
    case Facet::fractionDigits:
      return Decimal::parse(strValue)->strFraction.size() <= limit.lngCount;
    case Facet::minInclusive:
      return std::is_gteq(order());
    case Facet::minExclusive:
      return std::is_gt(order());
    case Facet::maxInclusive:
      return std::is_lteq(order());
    default:
      return std::is_lt(order());
  }
}

bool SimpleType::Impl::isListed(std::string_view strValue, const SimpleType* member,
                                const PrefixLookup& lookup) const {
  if (listsTexts()) return enumeration->contains(strValue);
  return enumeration->contains(member ? member->impl_->key(strValue, lookup)
                                      : key(strValue, lookup));
}

/// The unions inside a union are gone through depth first, with the way there kept apart from the
/// stack, and each is asked once, however many ways lead to it: what it said is kept. So the time
/// is that of the members of all these unions, each counted once for the union that names it.
const SimpleType* SimpleType::Impl::acceptingMember(std::string_view strText,
                                                    const PrefixLookup& lookup) const {
  struct Open {
    const SimpleType* type;
    std::size_t next = 0;
  };
  std::unordered_map<const SimpleType*, const SimpleType*> verdicts;
  std::vector<Open> open;
  const auto meets = [&](const SimpleType& type, const SimpleType& member) {
    const Normalised value(strText, member.impl_->whiteSpace);
    return type.impl_->meetsFacets(value.text(), 0, &member, lookup, nullptr);
  };
  const auto& ownTypes = unionType ? unionType->ownMembers : ownMembers;
  std::size_t ownNext = 0;
  while (true) {
    const std::vector<const SimpleType*>& types =
        open.empty() ? ownTypes : open.back().type->members();
    std::size_t& next = open.empty() ? ownNext : open.back().next;
    const SimpleType* accepting = nullptr;
    if (next < types.size()) {
      const SimpleType* type = types[next++];
      if (type->variety() != Variety::unionOf) {
        if (type->impl_->accepts(strText, lookup, nullptr)) accepting = type;
      } else if (const auto known = verdicts.find(type); known != verdicts.end()) {
        accepting = known->second;
      } else {
        open.push_back({type});
      }
      if (!accepting) continue;
    } else {
      if (open.empty()) return nullptr;
      verdicts.emplace(open.back().type, nullptr);
      open.pop_back();
      continue;
    }
    // A member has accepted. So do the unions around it, as far as their own facets let them.
    bool blnMet = true;
    while (blnMet && !open.empty()) {
      blnMet = meets(*open.back().type, *accepting);
      verdicts.emplace(open.back().type, blnMet ? accepting : nullptr);
      open.pop_back();
    }
    if (blnMet) return accepting;
  }
}

std::string SimpleType::Impl::key(std::string_view strText, const PrefixLookup& lookup) const {
  if (variety == Variety::unionOf) {
    const SimpleType* member = acceptingMember(strText, lookup);
    return member ? member->impl_->key(strText, lookup) : "?" + std::string(strText);
  }
  if (variety == Variety::atomic) {
    return atomicKey(atomic->primitive, Normalised(strText, whiteSpace).text(), lookup);
  }
  std::string strKey = "L";  // each item has its length before it
  while (true) {
    const std::string_view strItem = takeItem(strText);
    if (strItem.empty()) return strKey;
    const std::string strItemKey = item->impl_->key(strItem, lookup);
    strKey.append(std::to_string(strItemKey.size())).append(":").append(strItemKey);
  }
}

bool SimpleType::Impl::listsTexts() const noexcept {
  return variety == Variety::atomic &&
         (atomic->primitive == Primitive::string || atomic->primitive == Primitive::anyURI);
}

}  // namespace Varnel_Tolv_XML_Creation
