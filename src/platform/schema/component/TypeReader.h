#pragma once

#include <deque>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/schema/component/CompleteInOrder.h"
#include "platform/schema/component/Components.h"
#include "platform/schema/component/Definitions.h"

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

}  // namespace Varnel_Tolv_XML_Creation
