#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/component/Names.h"
#include "platform/schema/component/SchemaDocuments.h"
#include "platform/schema/value/SimpleType.h"
#include "platform/xml/Tree.h"

// How the readers of the components see the elements of schema documents; internal to them. They
// recurse with the nesting of elements, which every document keeps within kMaxDepth, and with
// nothing else.

namespace Varnel_Tolv_XML_Creation {

/// A document in the part that it plays, and what its root element says of all that stands in it.
struct SchemaPart {
  const SchemaDocument* document = nullptr;
  bool blnElementsQualified = false;
  bool blnAttributesQualified = false;
  unsigned block = 0;
  unsigned final = 0;
};

/// What a schema document defines by a name.
enum class Symbol : std::uint8_t { type, element, attribute, group, attributeGroup };
inline constexpr std::size_t kSymbols = 5;

/// A definition that has a name: a child of the root element, or of a redefinition.
struct Definition {
  Symbol symbol = Symbol::type;
  NameId name = kNoName;
  const SchemaPart* part = nullptr;       // null: of a built-in type
  const TreeNode* node = nullptr;         // null: the same
  const Definition* redefined = nullptr;  // what it takes the place of
  std::size_t lngIndex = 0;               // among all definitions
};

/// An element of a schema document, and the definition that it belongs to: what it takes to know
/// what it means. A cheap value; one without an element tests false.
class SchemaElement {
 public:
  SchemaElement() = default;
  SchemaElement(const TreeNode* node, const Definition& definition)
      : node_(node), definition_(&definition) {}
  explicit SchemaElement(const Definition& definition)
      : SchemaElement(definition.node, definition) {}

  explicit operator bool() const noexcept { return node_ != nullptr; }
  const TreeNode* node() const noexcept { return node_; }
  const Definition& definition() const noexcept { return *definition_; }
  const SchemaPart& part() const noexcept { return *definition_->part; }

  bool is(std::string_view strKind) const noexcept;
  bool isOneOf(std::initializer_list<std::string_view> kinds) const noexcept;

  /// The first child and the next sibling that are of the namespace of XML Schema.
  SchemaElement child() const noexcept;
  SchemaElement next() const noexcept;
  /// The first child of one of these kinds.
  SchemaElement child(std::initializer_list<std::string_view> kinds) const noexcept;

  bool has(std::string_view strName) const noexcept;
  /// An attribute's value as it stands; empty without one.
  std::string_view attribute(std::string_view strName) const noexcept;
  /// Its first part between white space (of most attributes all there is), and all of them.
  std::string_view token(std::string_view strName) const noexcept;
  std::vector<std::string_view> tokens(std::string_view strName) const;
  bool flag(std::string_view strName) const;

  /// The Derivations that an attribute lists, or `otherwise` without one; `meant` bounds them.
  unsigned derivations(std::string_view strName, unsigned otherwise, unsigned meant) const;

  /// The name of what is declared here, inside another definition.
  NameId declaredName(bool blnQualifiedByDefault, NameTable& names) const;

  /// What a qualified name means here.
  struct Name {
    std::string_view strUri, strLocal;
    std::string text() const;
  };
  Name expand(std::string_view strName) const;

  /// The namespace that a prefix stands for here; the empty text for no prefix where there is no
  /// default namespace.
  std::optional<std::string_view> namespaceOf(std::string_view strPrefix) const noexcept;
  PrefixLookup prefixes() const;

 private:
  const TreeNode* node_ = nullptr;
  const Definition* definition_ = nullptr;
};

/// Raises kXmlFailure: the document of this element cannot be used, and why.
[[noreturn]] void refuse(const SchemaElement& at, std::string_view strReason);

/// Counts what grows by writing out in many places what the schema says in one.
class Allowance {
 public:
  static constexpr std::size_t kMost = 1'000'000;

  /// Raises kXmlFailure when it comes to more than `kMost`. `lngMore` itself is not much more.
  void spend(std::size_t lngMore, const SchemaElement& at);

 private:
  std::size_t lngSpent_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
