#pragma once

#include <optional>
#include <string_view>

#include "platform/schema/Violation.h"
#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

/// What a message itself says of an element: its xsi:type and xsi:nil, as written. Borrowed.
struct InstanceValues {
  std::optional<std::string_view> strType;
  std::optional<std::string_view> strNil;
};

/// As what an element is to be checked.
struct ElementType {
  const TypeDefinition* type = nullptr;
  bool blnNilled = false;      // it has no content
  bool blnNilRefused = false;  // it is said to have none, which it may not
};

/// Finds the type of an element, and reports what is wrong with that. Without a declaration (null)
/// it is the type that the message names, or else any type.
ElementType typeOfElement(const SchemaComponents& components, const MessageName& element,
                          const ElementDeclaration* declaration, const InstanceValues& values,
                          const PrefixLookup& lookup, ViolationReporter& reporter);

/// Whether a value of xsi:type has the form of a name at all, and whether it names a type.
bool isTypeName(std::string_view strValue);
bool namesType(const SchemaComponents& components, std::string_view strValue,
               const PrefixLookup& lookup);

}  // namespace Varnel_Tolv_XML_Creation
