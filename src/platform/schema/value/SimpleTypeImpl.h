#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/value/AtomicType.h"
#include "platform/schema/value/LexicalForms.h"
#include "platform/schema/value/Pattern.h"
#include "platform/schema/value/SimpleType.h"

namespace Varnel_Tolv_XML_Creation {

/// A facet that a value is measured by.
struct Limit {
  Facet facet;
  std::string strValue;      // of a bound: its white space is normalised
  std::size_t lngCount = 0;  // of lengths and digits
};

/// The patterns of one derivation: alternatives. All levels of a type have to accept a value.
struct PatternLevel {
  std::vector<Pattern> alternatives;
  const PatternLevel* base = nullptr;
};

/// The values of an enumeration.
struct Enumeration {
  std::vector<std::string> keys;  // sorted; of types whose texts are the values: the texts
  std::string strValues;          // how a fault shows them: as far as there is room
  bool blnAllShown = true;

  void add(std::string strKey, std::string_view strText);
  void complete();  // after the last
  bool contains(std::string_view strKey) const;
};

/// A type is what it was derived from plus what its own derivation added. What a check needs is at
/// hand without a walk along the derivations; the patterns, of which any number may be in force,
/// are chained. Nothing is copied whose size grows with the number of derivations.
struct SimpleType::Impl {
  Variety variety = Variety::atomic;
  const AtomicType* atomic = nullptr;  // the built-in type that an atomic type comes from
  std::string_view strBuiltIn;
  WhiteSpace whiteSpace = WhiteSpace::collapse;
  bool blnIdentifiers = false;
  bool blnLists = false;  // it is a list, or a member is one
  const SimpleType* item = nullptr;
  std::vector<const SimpleType*> ownMembers;
  const Impl* unionType = nullptr;  // whose members these are

  std::vector<Limit> limits;  // own ones, then the base's of other kinds, each once
  std::ptrdiff_t lngOwnLimits = 0;
  std::unique_ptr<Enumeration> ownEnumeration;
  const Enumeration* enumeration = nullptr;  // the one of the latest derivation that has any
  std::unique_ptr<PatternLevel> ownPatterns;
  const PatternLevel* patterns = nullptr;

  std::vector<FacetDefinition> ownFacets;
  const Impl* base = nullptr;  // of a restriction
  mutable std::once_flag told;
  mutable std::vector<FacetDefinition> facets;  // in force; made for the first who asks

  /// What is taken over from the base, null for a type that has none.
  explicit Impl(const Impl* restricted);
  static std::unique_ptr<Impl> listOf(const SimpleType& item);

  /// One facet of the derivation more; a value of an enumeration is one of `baseType`.
  void add(const FacetDefinition& facet, const SimpleType& baseType, const PrefixLookup& lookup);

  bool accepts(std::string_view strText, const PrefixLookup& lookup, ValueFaults* faults) const;
  std::string key(std::string_view strText, const PrefixLookup& lookup) const;

  /// The first of a union's members that accepts a text, itself no union; null when none does.
  const SimpleType* acceptingMember(std::string_view strText, const PrefixLookup& lookup) const;

 private:
  bool acceptsList(std::string_view strText, const PrefixLookup& lookup, ValueFaults* faults) const;
  bool acceptsUnion(std::string_view strText, const PrefixLookup& lookup,
                    ValueFaults* faults) const;

  /// Whether a value is what the facets want: of a list with so many items, of a union as `member`
  /// makes it.
  bool meetsFacets(std::string_view strValue, std::size_t lngItems, const SimpleType* member,
                   const PrefixLookup& lookup, ValueFaults* faults) const;
  bool meets(const Limit& limit, std::string_view strValue, std::size_t lngItems) const;
  bool isListed(std::string_view strValue, const SimpleType* member,
                const PrefixLookup& lookup) const;
  bool listsTexts() const noexcept;

  void addLimit(const FacetDefinition& facet, std::string_view strValue);
  bool isLexical(std::string_view strText, const PrefixLookup& lookup) const;
};

}  // namespace Varnel_Tolv_XML_Creation
