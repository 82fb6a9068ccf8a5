#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../../result/Export.h"

// The elements that a schema declares, as those see them who ask a SchemaModel. Handles must not
// outlive it.

namespace Varnel_Tolv_XML_Creation {

struct ElementDeclaration;
struct Particle;
struct TypeDefinition;
struct Wildcard;
class SchemaComponents;

/// A namespace (empty: none) and a local name.
struct QualifiedName {
  std::string strUri;
  std::string strLocal;
  auto operator<=>(const QualifiedName&) const = default;
};

/// The values of a simple type. Facets stand under their names in XML Schema, derived ones in
/// place of those that they restrict; the bounds of a built-in type (255 of an unsignedByte) count
/// as facets of it.
struct ValueRules {
  enum class Variety : std::uint8_t { atomic, list, unionOf };
  Variety variety = Variety::atomic;
  // Of an atomic type: the built-in type that it comes from, and the primitive one behind that,
  // such as "int" and "decimal"; of xs:anySimpleType that name and "string".
  std::string strBuiltIn, strPrimitive;
  std::vector<std::pair<std::string, std::string>> facets;  // all but the two that follow
  std::vector<std::string> patterns, enumeration;
  std::vector<ValueRules> parts;  // the item of a list, the members of a union, one level deep

  /// The value of a facet such as "maxLength"; nothing when it is not in force.
  std::optional<std::string_view> facet(std::string_view strName) const noexcept;
  /// How many characters, octets or items a value may have; `length` is both.
  std::optional<std::size_t> minLength() const noexcept;
  std::optional<std::size_t> maxLength() const noexcept;
};

struct DeclaredAttribute {
  QualifiedName name;
  bool blnRequired = false;
  std::optional<std::string> strDefault, strFixed;
  ValueRules value;
};

class ContentOutline;

/// An element declaration; one without a declaration tests false and must not be asked.
class VARNEL_EXPORT DeclaredElement {
 public:
  DeclaredElement() = default;
  DeclaredElement(const SchemaComponents& schema, const ElementDeclaration& declaration)
      : schema_(&schema), declaration_(&declaration) {}

  explicit operator bool() const noexcept { return declaration_ != nullptr; }
  bool operator==(const DeclaredElement&) const = default;

  QualifiedName name() const;
  bool abstract() const noexcept;
  bool nillable() const noexcept;
  std::optional<std::string> defaultValue() const;
  std::optional<std::string> fixedValue() const;

  bool holdsText() const noexcept;  // a value, or text between children
  bool holdsElements() const noexcept;

  /// The same for all elements of one type, and for no others.
  const void* typeKey() const noexcept;

  /// The values of a simple type or simple content; nothing for other content.
  std::optional<ValueRules> value() const;

  /// Whether a text is such a value; true where there is no value to check. Otherwise `failed`, if
  /// given, gets the names of the facets that refuse it, none when it is of the wrong kind. No
  /// text is refused by a pattern that takes too much memory to be compared.
  bool accepts(std::string_view strText, std::vector<std::string>* failed = nullptr) const;

  std::vector<DeclaredAttribute> attributes() const;             // in the order of the schema
  bool declaresAttribute(const QualifiedName& attribute) const;  // itself or by a wildcard

  /// The concrete elements that may stand in its place, itself left out.
  std::vector<DeclaredElement> substitutes() const;

  /// What may stand in it.
  ContentOutline content() const;

 private:
  const TypeDefinition& type() const noexcept;

  const SchemaComponents* schema_ = nullptr;
  const ElementDeclaration* declaration_ = nullptr;
};

/// What a name is in the content of an element, or at a path: an element; something that nobody
/// checks, because a wildcard lets it pass; or nothing that may stand there.
struct DeclaredChild {
  enum class Kind : std::uint8_t { undeclared, anything, element };
  Kind kind = Kind::undeclared;
  DeclaredElement element;
};

/// The content of an element: its children in the order of the schema, and how they depend on each
/// other. Named groups are written out.
class VARNEL_EXPORT ContentOutline {
 public:
  static constexpr std::uint32_t kUnbounded = std::numeric_limits<std::uint32_t>::max();

  ContentOutline(const SchemaComponents& schema, const TypeDefinition& type);

  struct Child {
    DeclaredElement element;               // a wildcard when it tests false
    std::uint32_t lngMin = 1, lngMax = 1;  // here, in one occurrence of its group
    bool blnRequired = false;              // every valid content has it
    bool blnRepeatable = false;            // some valid content has it more than once
  };

  const std::vector<Child>& children() const noexcept { return children_; }

  /// Whether no child at all is enough.
  bool emptiable() const noexcept { return blnEmptiable_; }

  /// What a child of this name is.
  DeclaredChild child(const QualifiedName& name) const;

  /// Whether, in some valid content, a child of the second name stands somewhere behind one of the
  /// first. Of two that exclude each other neither may follow. True where anything goes.
  bool mayFollow(const QualifiedName& first, const QualifiedName& second) const;

  /// Whether a child of that name may occur more than once, and whether every valid content has it.
  bool mayRepeat(const QualifiedName& name) const { return mayFollow(name, name); }
  bool requiresChild(const QualifiedName& name) const;

  /// How many children of that name a valid content has at most; kUnbounded where nothing says it.
  /// In alternatives that exclude each other it is counted in each.
  std::uint32_t maxOccurs(const QualifiedName& name) const;

  /// How many children of that name, or of those that may stand in its place, every valid content
  /// has at least. Of alternatives none is counted.
  std::uint32_t minOccurs(const QualifiedName& name) const;

  /// The groups of alternatives of which every valid content has one, as far as none of them may be
  /// empty: for each the children (numbers of `children()`) that stand in it.
  std::vector<std::vector<std::size_t>> requiredChoices() const;

 private:
  enum class Order : std::uint8_t { sequence, choice, all };
  /// Where a child or a group stands: in which group, and where in that.
  struct Spot {
    std::uint32_t lngGroup = 0;
    std::uint32_t lngPlace = 0;
  };
  struct Group {
    Spot spot;  // group 0 is the whole, around all others
    std::uint32_t lngDepth = 0;
    Order order = Order::sequence;
    std::uint32_t lngMin = 1, lngMax = 1;
    std::uint32_t lngMembers = 0;
    bool blnRepeats = false;  // it or one around it may occur more than once
    bool blnNeeded = true;    // every valid content has it
  };

  /// The numbers of the children that a name can be.
  std::vector<std::size_t> places(const QualifiedName& name) const;
  bool mayFollow(std::size_t lngFirst, std::size_t lngSecond) const;
  void addParticles(const Particle& content);

  const SchemaComponents* schema_;
  const TypeDefinition* type_;
  std::vector<Child> children_;
  std::vector<Spot> spots_;                 // of the children
  std::vector<const Wildcard*> wildcards_;  // of each child that is one, else null
  std::vector<Group> groups_;
  std::map<QualifiedName, std::vector<std::size_t>> named_;  // children, by name and substitutes
  bool blnWildcards_ = false;
  bool blnEmptiable_ = true;
};

}  // namespace Varnel_Tolv_XML_Creation
