#pragma once

#include <deque>
#include <vector>

#include "platform/schema/component/CompleteInOrder.h"
#include "platform/schema/component/Components.h"
#include "platform/schema/component/Definitions.h"

namespace Varnel_Tolv_XML_Creation {

struct Readers;

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

}  // namespace Varnel_Tolv_XML_Creation
