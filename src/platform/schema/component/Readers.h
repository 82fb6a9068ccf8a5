#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/schema/component/CompleteInOrder.h"
#include "platform/schema/component/Components.h"
#include "platform/schema/component/ContentModel.h"
#include "platform/schema/component/Definitions.h"

// What reads the components of one schema: a class for each subject, in a file of its name.

namespace Varnel_Tolv_XML_Creation {

struct Readers;

/// A type while it is read.
struct TypeDraft {
  TypeDefinition* type = nullptr;
  SchemaElement source;  // none: of a built-in type
  Progress progress = Progress::untouched;
  std::vector<TypeDraft*> needs;    // the base; of a list the item; of a union the members
  std::optional<Particle> content;  // until all types are complete
};

/// Reads the type definitions: here the simple ones and the order of all, in ComplexTypeReader.cpp
/// the complex ones.
class TypeReader {
 public:
  explicit TypeReader(Readers& readers) : readers_(readers) {}

  void addBuiltIn();

  /// The type of a declaration, by its attribute `type` or within it; null when it states none.
  /// It may not be complete yet.
  const TypeDefinition* declaredAt(const SchemaElement& declaration);

  /// The same for what can only have a simple type, which is completed.
  const SimpleType& simpleTypeAt(const SchemaElement& declaration);

  /// Completes the types that have names and those that were met on the way.
  void completeAll();

  /// Makes the content models, once all element declarations are complete.
  void makeModels();

 private:
  TypeDraft& draftOf(const Definition& definition);
  TypeDraft& anonymous(const SchemaElement& source);
  TypeDraft& addDraft(NameId name, const SchemaElement& source);
  TypeDraft* draftAt(const SchemaElement& declaration, std::string_view strAttribute);

  void complete(TypeDraft& first);
  void findNeeds(TypeDraft& draft);
  void completeSimple(TypeDraft& draft);
  const SimpleType& restrict(const SimpleType& base, const SchemaElement& restriction);
  const SimpleType& keep(std::unique_ptr<const SimpleType> type);

  void findComplexNeeds(TypeDraft& draft);
  void completeComplex(TypeDraft& draft);
  void readSimpleContent(TypeDraft& draft, const SchemaElement& body);
  void readComplexContent(TypeDraft& draft, const SchemaElement& body);

  Readers& readers_;
  std::deque<TypeDraft> drafts_;
  std::vector<TypeDraft*> byDefinition_;
  Allowance allowance_;  // of names in content models that substitution groups add
};

/// The default or fixed value that a declaration states. The key of a fixed one is that of `type`,
/// which is null where there is none: in mixed content texts are compared as they stand. Raises
/// kXmlFailure when a fixed value is none of the type.
ValueConstraint readValue(const SchemaElement& declaration, const SimpleType* type);

/// Reads attribute declarations and what the attributes of a complex type are.
class AttributeReader {
 public:
  explicit AttributeReader(Readers& readers) : readers_(readers) {}

  void declareGlobal();

  /// Gives a type the attributes that its definition states in `body`, and those of its base, which
  /// is complete.
  void complete(TypeDefinition& type, const SchemaElement& body);

 private:
  /// What is stated in one place, attribute groups included.
  struct AttributeSet {
    std::vector<AttributeUse> uses;
    std::unordered_set<NameId> prohibited;
    std::optional<Wildcard> wildcard;
  };
  struct GroupDraft {
    SchemaElement source;
    Progress progress = Progress::untouched;
    std::vector<GroupDraft*> needs;
    AttributeSet set;
  };

  AttributeSet read(const SchemaElement& body);
  void readUse(const SchemaElement& source, AttributeSet& set);
  NameId localName(const SchemaElement& source);
  AttributeDeclaration& declare(const SchemaElement& source, NameId name);
  const AttributeSet& groupAt(const SchemaElement& reference);
  GroupDraft& draftAt(const SchemaElement& reference);
  void spendOn(const std::vector<AttributeUse>& uses, const SchemaElement& at);

  Readers& readers_;
  std::unordered_map<const Definition*, GroupDraft> groups_;
  Allowance allowance_;
};

/// A number of occurrences; one that is too large to count to is the largest that is not unbounded.
std::uint32_t occurrences(const SchemaElement& source, std::string_view strAttribute);

/// The model group that a definition or derivation states, or its reference to a named one.
SchemaElement modelGroupOf(const SchemaElement& body);

/// Reads the particles of content models. References to named groups are written out, and a
/// sequence within a sequence, or a choice within a choice, that occurs once is made part of it.
class ParticleReader {
 public:
  explicit ParticleReader(Readers& readers) : readers_(readers) {}

  /// Reads all named groups: what they declare is declared even where no type refers to them.
  void completeGroups();

  /// The content that a type states, or that its extension or restriction does; nothing when it is
  /// empty.
  std::optional<Particle> contentOf(const SchemaElement& body);

  /// Raises kXmlFailure when all copies come to too much, or when it nests deeper than kMaxDepth.
  Particle copyOf(const Particle& particle, const SchemaElement& at);

 private:
  struct GroupDraft {
    SchemaElement source;  // its all, choice or sequence
    Progress progress = Progress::untouched;
    std::vector<GroupDraft*> needs;
    Particle particle;
  };

  GroupDraft& draftOf(const Definition& definition);
  const Particle& complete(GroupDraft& first);
  void findNeeds(const SchemaElement& group, std::vector<GroupDraft*>& needs);

  void readGroup(const SchemaElement& source, Particle& group);
  void appendNamedGroup(const SchemaElement& reference, Particle& group);
  void appendGroup(const SchemaElement& source, Particle& parent);
  void appendTerm(const SchemaElement& source, Particle& parent);
  const Particle& named(const SchemaElement& reference);
  Particle::Term termOf(const SchemaElement& group);

  Readers& readers_;
  std::unordered_map<const Definition*, GroupDraft> groups_;
  Allowance allowance_;
};

/// Reads element declarations and forms the substitution groups.
class ElementReader {
 public:
  explicit ElementReader(Readers& readers) : readers_(readers) {}

  void declareGlobal();

  /// What an element of a content model declares or refers to; complete only after `completeAll`.
  const ElementDeclaration& declaredAt(const SchemaElement& source);

  /// Once all types are complete.
  void completeAll();

 private:
  struct GlobalDraft {
    ElementDeclaration* element = nullptr;
    SchemaElement source;
    Progress progress = Progress::untouched;
    std::vector<GlobalDraft*> needs{};  // the head of its substitution group
    GlobalDraft* head = nullptr;        // the same, unless that does not let it in
  };
  struct ValuedElement {
    ElementDeclaration* element;
    SchemaElement source;
  };

  ElementDeclaration& declare(const SchemaElement& source, NameId name);
  void findHead(GlobalDraft& draft);
  void completeGlobal(GlobalDraft& draft);
  void substitute(const GlobalDraft& member);

  Readers& readers_;
  std::deque<GlobalDraft> globals_;
  NameMap<GlobalDraft*> globalsByName_;
  std::vector<ValuedElement> valued_;
  Allowance allowance_;
};

/// Reads identity constraints.
class IdentityReader {
 public:
  explicit IdentityReader(Readers& readers) : readers_(readers) {}

  std::vector<const IdentityConstraint*> constraintsOf(const SchemaElement& element);

  /// Connects each keyref with what it refers to, once all are read.
  void connect();

 private:
  struct Reference {
    IdentityConstraint* keyref;
    SchemaElement source;
  };

  Readers& readers_;
  NameMap<const IdentityConstraint*> byName_;
  std::vector<Reference> references_;
};

/// All that reads the components of one schema, each for its subject and each able to ask the
/// others. What one of them hands out before it is complete keeps its place.
struct Readers {
  explicit Readers(const SchemaDocuments& documents) : definitions(documents, store.names) {}
  Readers(const Readers&) = delete;
  Readers& operator=(const Readers&) = delete;

  ComponentStore store;
  Definitions definitions;
  TypeReader types{*this};
  AttributeReader attributes{*this};
  ParticleReader particles{*this};
  ElementReader elements{*this};
  IdentityReader identities{*this};
};

}  // namespace Varnel_Tolv_XML_Creation
