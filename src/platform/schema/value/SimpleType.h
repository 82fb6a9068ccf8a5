#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// The constraining facets of XML Schema 1.0.
enum class Facet : std::uint8_t {
  length,
  minLength,
  maxLength,
  pattern,
  enumeration,
  whiteSpace,
  maxInclusive,
  maxExclusive,
  minInclusive,
  minExclusive,
  totalDigits,
  fractionDigits,
};

/// The name that XML Schema gives a facet, such as "maxLength".
std::string_view facetName(Facet facet) noexcept;
std::optional<Facet> facetNamed(std::string_view strName) noexcept;

/// The namespace that a prefix (empty: none) stands for where a value stands; nothing when the
/// prefix is not bound. Values of the types QName and NOTATION mean nothing without it.
using PrefixLookup = std::function<std::optional<std::string_view>(std::string_view strPrefix)>;

/// What is wrong with one value.
struct ValueFaults {
  struct FailedFacet {
    Facet facet;
    std::string strLimit;  // the facet's value as the schema has it; a list for an enumeration
  };

  /// The library's number of the first fault: 1824 to 1826 for a text that is no value of an
  /// atomic, a list or a union type, else that of the first failed facet (1829 to 1840).
  std::int32_t lngCode = 0;
  std::vector<FailedFacet> facets;  // in the order in which the library tells them, each once
};

/// A facet as a schema document states it.
struct FacetDefinition {
  Facet facet;
  std::string strValue;
};

/// Whether a type's values are identifiers of the whole document.
enum class IdentifierKind : std::uint8_t { none, id, reference };

/// A type of the namespace of XML Schema, and the one that it derives from.
struct BuiltInType {
  std::string_view strName, strBase;
};

/// A simple type definition: whether a text is one of its values, and which. Immutable: any number
/// of threads may ask it. Checking takes time linear in the text, whatever the type's patterns.
///
/// What values there are is as XML Schema 1.0 has it, with these limits: years and the numbers of a
/// duration have at most 15 digits; nothing is an ENTITY, since no message declares any.
class SimpleType {
 public:
  enum class Variety : std::uint8_t { atomic, list, unionOf };

  /// A type of the namespace of XML Schema by its local name, "anySimpleType" included; null when
  /// there is none of that name. It lives as long as the process.
  static const SimpleType* builtIn(std::string_view strName);

  /// All of them, each behind its base; xs:anyType, the base of the first, is none.
  static std::vector<BuiltInType> builtIns();

  /// Derivations. The types that they derive from are borrowed and must outlive the result.
  /// `restriction` raises kXmlFailure, with a description of one line, for a facet that the base
  /// does not have or whose value is none; `lookup` resolves prefixes in enumerations.
  static std::unique_ptr<const SimpleType> restriction(const SimpleType& base,
                                                       const std::vector<FacetDefinition>& facets,
                                                       const PrefixLookup& lookup);
  static std::unique_ptr<const SimpleType> listOf(const SimpleType& item);
  static std::unique_ptr<const SimpleType> unionOf(std::vector<const SimpleType*> members);

  ~SimpleType();
  SimpleType(const SimpleType&) = delete;
  SimpleType& operator=(const SimpleType&) = delete;

  Variety variety() const noexcept;

  /// Whether `strText` (as written, white space not yet normalised) is a value of the type. When it
  /// is not and `faults` is given, `faults` tells everything that is wrong with it. Raises
  /// kXmlFailure for a pattern that takes too much memory to be checked; so do all that follow
  /// where a union has to know its member.
  bool check(std::string_view strText, const PrefixLookup& lookup, ValueFaults* faults) const;

  /// What tells the value of a valid text from others: two texts have the same key exactly if they
  /// mean the same value of the same primitive type ("1.0" and "01" of xs:decimal and of xs:int).
  std::string valueKey(std::string_view strText, const PrefixLookup& lookup) const;

  /// How the library tells the value of a valid text: in canonical form, a qualified name as it is.
  std::string canonical(std::string_view strText, const PrefixLookup& lookup) const;

  /// The identifiers and references in a valid text, each one told.
  void identifiers(std::string_view strText, const PrefixLookup& lookup,
                   const std::function<void(IdentifierKind, std::string_view strName)>& tell) const;

  /// Whether `identifiers` can ever tell any, so that it need not be asked.
  bool mayHoldIdentifiers() const noexcept;

  /// The text after the type's white-space normalisation.
  std::string normalised(std::string_view strText) const;

  /// For whoever describes a type: the built-in type that it comes from (for an atomic type), the
  /// item of a list, the members of a union, and the facets in force.
  std::string_view builtInName() const noexcept;
  const SimpleType* item() const noexcept;
  const std::vector<const SimpleType*>& members() const noexcept;
  const std::vector<FacetDefinition>& facets() const;

 private:
  struct Impl;
  explicit SimpleType(std::unique_ptr<const Impl> impl);
  std::unique_ptr<const Impl> impl_;
};

}  // namespace Varnel_Tolv_XML_Creation
