#pragma once

#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/schema/component/CompleteInOrder.h"
#include "platform/schema/component/Components.h"
#include "platform/schema/component/Definitions.h"

namespace Varnel_Tolv_XML_Creation {

struct Readers;

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

}  // namespace Varnel_Tolv_XML_Creation
