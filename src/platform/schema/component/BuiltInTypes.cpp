#include "platform/schema/component/BuiltInTypes.h"

#include <array>

namespace Varnel_Tolv_XML_Creation {

std::span<const BuiltInType> builtInTypes() noexcept {
  static constexpr auto kTypes = std::to_array<BuiltInType>({
      {"anySimpleType", "anyType", kByRestriction},
      {"string", "anySimpleType", kByRestriction},
      {"boolean", "anySimpleType", kByRestriction},
      {"decimal", "anySimpleType", kByRestriction},
      {"float", "anySimpleType", kByRestriction},
      {"double", "anySimpleType", kByRestriction},
      {"duration", "anySimpleType", kByRestriction},
      {"dateTime", "anySimpleType", kByRestriction},
      {"time", "anySimpleType", kByRestriction},
      {"date", "anySimpleType", kByRestriction},
      {"gYearMonth", "anySimpleType", kByRestriction},
      {"gYear", "anySimpleType", kByRestriction},
      {"gMonthDay", "anySimpleType", kByRestriction},
      {"gDay", "anySimpleType", kByRestriction},
      {"gMonth", "anySimpleType", kByRestriction},
      {"hexBinary", "anySimpleType", kByRestriction},
      {"base64Binary", "anySimpleType", kByRestriction},
      {"anyURI", "anySimpleType", kByRestriction},
      {"QName", "anySimpleType", kByRestriction},
      {"NOTATION", "anySimpleType", kByRestriction},
      {"normalizedString", "string", kByRestriction},
      {"token", "normalizedString", kByRestriction},
      {"language", "token", kByRestriction},
      {"NMTOKEN", "token", kByRestriction},
      {"NMTOKENS", "anySimpleType", kByList},
      {"Name", "token", kByRestriction},
      {"NCName", "Name", kByRestriction},
      {"ID", "NCName", kByRestriction},
      {"IDREF", "NCName", kByRestriction},
      {"IDREFS", "anySimpleType", kByList},
      {"ENTITY", "NCName", kByRestriction},
      {"ENTITIES", "anySimpleType", kByList},
      {"integer", "decimal", kByRestriction},
      {"nonPositiveInteger", "integer", kByRestriction},
      {"negativeInteger", "nonPositiveInteger", kByRestriction},
      {"long", "integer", kByRestriction},
      {"int", "long", kByRestriction},
      {"short", "int", kByRestriction},
      {"byte", "short", kByRestriction},
      {"nonNegativeInteger", "integer", kByRestriction},
      {"unsignedLong", "nonNegativeInteger", kByRestriction},
      {"unsignedInt", "unsignedLong", kByRestriction},
      {"unsignedShort", "unsignedInt", kByRestriction},
      {"unsignedByte", "unsignedShort", kByRestriction},
      {"positiveInteger", "nonNegativeInteger", kByRestriction},
  });
  return kTypes;
}

}  // namespace Varnel_Tolv_XML_Creation
