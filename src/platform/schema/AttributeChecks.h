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
  void checkInstance(const StartTag& tag, std::size_t lngIndex, const MessageName& name);
  void checkByWildcard(const StartTag& tag, std::size_t lngIndex, const MessageName& name,
                       const TypeDefinition& type, std::vector<CheckedAttribute>* checked);
  void checkValue(const StartTag& tag, std::size_t lngIndex, const MessageName& name,
                  const AttributeDeclaration& declaration, const ValueConstraint& constraint,
                  std::vector<CheckedAttribute>* checked);
  void takeUnstated(const StartTag& tag, const TypeDefinition& type,
                    std::vector<CheckedAttribute>* checked);
  void reportValue(const MessageName& attribute, std::int32_t lngCode,
                   std::vector<ValueFaults::FailedFacet> facets, std::string strWords);
  void reportUndeclared(const MessageName& attribute, std::int32_t lngCode);

  const SchemaComponents& components_;
  MessageNames& names_;
  const PrefixLookup& lookup_;
  ViolationReporter& reporter_;
  DocumentIdentifiers& identifiers_;
  std::vector<char> stated_;  // which of the type's attributes the tag states
};

}  // namespace Varnel_Tolv_XML_Creation
