#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/schema/Violation.h"
#include "platform/schema/value/SimpleType.h"

namespace Varnel_Tolv_XML_Creation {

/// The values of a message that identify something in it (xs:ID), and those that refer to one of
/// them (xs:IDREF).
class DocumentIdentifiers {
 public:
  explicit DocumentIdentifiers(ViolationReporter& reporter) : reporter_(reporter) {}

  /// Takes in a valid value of an element, or of an attribute of it, and reports each identifier
  /// that was there before.
  void add(const SimpleType& type, std::string_view strValue, const PrefixLookup& lookup,
           const MessageName& element, const MessageName* attribute);

  /// Reports every reference that leads nowhere, in document order; at the end of the message.
  void finish();

 private:
  struct Reference {
    std::string strTo;
    const MessageName* element;
    const MessageName* attribute;  // null: the element's own value
    MessagePlace place;
  };

  void report(const Reference& identifier, IdentityFault fault, const std::string& strWhat);

  ViolationReporter& reporter_;
  std::unordered_set<std::string> identifiers_;
  std::vector<Reference> references_;  // those that led nowhere when they came
};

}  // namespace Varnel_Tolv_XML_Creation
