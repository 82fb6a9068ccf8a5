#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/schema/component/ContentModel.h"
#include "platform/schema/component/Names.h"
#include "platform/schema/value/SimpleType.h"

// The components of a schema, as XML Schema 1.0 names them: what its documents define, references
// resolved, derivations carried out. Whoever checks a message needs no schema document any more.
// They are plain data that nothing changes once they are made; pointers among them stay within one
// SchemaComponents.

namespace Varnel_Tolv_XML_Creation {

/// How a type is derived, and what `block` and `final` speak of: a set of bits.
enum Derivation : unsigned {
  kByExtension = 1,
  kByRestriction = 2,
  kBySubstitution = 4,
  kByList = 8,
  kByUnion = 16,
};

/// A default or fixed value; as the document states it.
struct ValueConstraint {
  enum class Kind : std::uint8_t { none, byDefault, fixed };
  Kind kind = Kind::none;
  std::string strValue;
  std::string strKey;  // SimpleType::valueKey of a fixed value
};

struct AttributeDeclaration {
  NameId name = kNoName;
  const SimpleType* type = nullptr;
  ValueConstraint value;
};

/// An attribute of a complex type.
struct AttributeUse {
  const AttributeDeclaration* declaration = nullptr;
  bool blnRequired = false;
  ValueConstraint value;  // its own, else the declaration's
};

struct ElementDeclaration;

/// A type definition, simple or complex.
struct TypeDefinition {
  enum class Content : std::uint8_t { empty, simple, elementOnly, mixed };

  NameId name = kNoName;  // kNoName: anonymous
  bool blnComplex = false;
  const TypeDefinition* base = nullptr;  // null for anyType alone
  unsigned derivedBy = 0;                // one Derivation
  bool blnAbstract = false;
  unsigned block = 0;
  Content content = Content::empty;
  const SimpleType* simple = nullptr;         // the type of the value; content is simple
  std::unique_ptr<const ContentModel> model;  // of elementOnly and mixed content
  std::vector<AttributeUse> attributes;       // in the order of the schema, inherited ones first
  std::optional<Wildcard> attributeWildcard;

  std::vector<std::uint32_t> byName;  // the attributes' numbers, in the order of their names' ids

  /// To be called when `attributes` is complete.
  void indexAttributes();

  /// The use of an attribute, or null.
  const AttributeUse* attribute(NameId attributeName) const noexcept;
};

/// One path of a selector or field: steps down from an element, each a name, or any name of a
/// namespace, or any name at all; a field's may end in an attribute.
struct IdentityPath {
  struct Step {
    enum class Test : std::uint8_t { name, anyOfNamespace, any };
    Test test = Test::any;
    NameId name = kNoName;
    std::string strUri;  // of anyOfNamespace
  };
  bool blnAnywhereBelow = false;  // it began with ".//"
  std::vector<Step> steps;        // of elements; none: the element itself
  std::optional<Step> attribute;
};

struct IdentityConstraint {
  enum class Kind : std::uint8_t { unique, key, keyref };
  Kind kind = Kind::unique;
  NameId name = kNoName;
  std::vector<IdentityPath> selector;             // alternatives
  std::vector<std::vector<IdentityPath>> fields;  // alternatives of each
  std::vector<std::string> fieldTexts;            // the XPath of each, as the schema has it
  const IdentityConstraint* refer = nullptr;      // of a keyref
};

struct ElementDeclaration {
  NameId name = kNoName;
  const TypeDefinition* type = nullptr;
  bool blnNillable = false;
  bool blnAbstract = false;
  unsigned block = 0;
  ValueConstraint value;
  /// All that may stand in its place, itself left out: its substitution group as far as block and
  /// final allow, in the order of the schema.
  std::vector<const ElementDeclaration*> substitutes;
  std::vector<const IdentityConstraint*> constraints;
};

/// What SchemaComponents consists of, open to those who read it. A deque never moves what it holds.
struct ComponentStore {
  NameTable names;
  NameMap<const ElementDeclaration*> elementsByName;
  NameMap<const AttributeDeclaration*> attributesByName;
  NameMap<const TypeDefinition*> typesByName;
  NameMap<char> declared;  // whether an element has the name, globally or inside a type
  std::vector<const ElementDeclaration*> globalElements;
  const TypeDefinition* anyType = nullptr;

  std::deque<ElementDeclaration> elements;
  std::deque<AttributeDeclaration> attributes;
  std::deque<TypeDefinition> types;
  std::deque<IdentityConstraint> constraints;
  std::deque<std::unique_ptr<const SimpleType>> simpleTypes;  // those that are not built in
};

/// All components of one schema, those of imported namespaces included.
class SchemaComponents {
 public:
  explicit SchemaComponents(ComponentStore store);

  const NameTable& names() const noexcept { return store_.names; }

  /// Global components by name; null when there is none.
  const ElementDeclaration* element(NameId name) const noexcept {
    return store_.elementsByName.find(name);
  }
  const AttributeDeclaration* attribute(NameId name) const noexcept {
    return store_.attributesByName.find(name);
  }
  const TypeDefinition* type(NameId name) const noexcept {  // the built-in types included
    return store_.typesByName.find(name);
  }
  const TypeDefinition& anyType() const noexcept { return *store_.anyType; }

  /// Whether it may refuse an attribute in no namespace whose name it does not know otherwise than
  /// as one that is not declared: a wildcard demands that there is a declaration.
  bool judgesUnknownAttributes() const noexcept { return blnJudgesUnknownAttributes_; }

  /// Whether an element of this name is declared anywhere, globally or inside a type.
  bool declaresElement(NameId name) const noexcept { return store_.declared.find(name) != 0; }

  /// The global elements in the order of the schema.
  const std::vector<const ElementDeclaration*>& elements() const noexcept {
    return store_.globalElements;
  }

 private:
  ComponentStore store_;
  bool blnJudgesUnknownAttributes_;
};

}  // namespace Varnel_Tolv_XML_Creation
