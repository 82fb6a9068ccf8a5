#pragma once

#include <vector>

#include "platform/schema/component/Components.h"
#include "platform/schema/component/SchemaElement.h"

namespace Varnel_Tolv_XML_Creation {

struct Readers;

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

}  // namespace Varnel_Tolv_XML_Creation
