#pragma once

#include <string>
#include <vector>

#include "platform/schema/DocumentIdentifiers.h"
#include "platform/schema/MessageNames.h"
#include "platform/schema/StartTag.h"
#include "platform/schema/Violation.h"
#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

/// An attribute that the schema knows, of the message or by default.
struct CheckedAttribute {
  const MessageName* name = nullptr;
  const SimpleType* type = nullptr;
  std::string strValue;
  bool blnValid = true;
};

/// Checks the attributes of elements.
class AttributeChecks {
 public:
  AttributeChecks(const SchemaComponents& components, MessageNames& names,
                  const PrefixLookup& lookup, ViolationReporter& reporter,
                  DocumentIdentifiers& identifiers)
      : components_(components),
        names_(names),
        lookup_(lookup),
        reporter_(reporter),
        identifiers_(identifiers) {}

  /// Reports what is wrong with the attributes of a tag, in document order, and then those that are
  /// missing, in the order of the schema. `names` are those of the tag's attributes. What the
  /// schema knows of them goes to `checked`, if given.
  void check(const StartTag& tag, const std::vector<const MessageName*>& names,
             const TypeDefinition& type, std::vector<CheckedAttribute>* checked);

 private:
  /// One of the attributes of the tag.
  struct Stated {
    std::size_t lngIndex;
    const MessageName& name;
  };

  void checkInstance(const Stated& attribute);
  void checkByWildcard(const Stated& attribute, const TypeDefinition& type);
  void checkValue(const Stated& attribute, const AttributeDeclaration& declaration,
                  const ValueConstraint& constraint);
  void takeUnstated(const TypeDefinition& type);
  void reportValue(const Stated& attribute, std::int32_t lngCode,
                   std::vector<ValueFaults::FailedFacet> facets, std::string strWords,
                   const SimpleType* type);
  void reportUndeclared(const Stated& attribute, std::int32_t lngCode);

  const SchemaComponents& components_;
  MessageNames& names_;
  const PrefixLookup& lookup_;
  ViolationReporter& reporter_;
  DocumentIdentifiers& identifiers_;

  // Of the tag that is being checked.
  const StartTag* tag_ = nullptr;
  std::vector<CheckedAttribute>* checked_ = nullptr;
  std::vector<char> stated_;  // which of the type's attributes it states
};

}  // namespace Varnel_Tolv_XML_Creation
