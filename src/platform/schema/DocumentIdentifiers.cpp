#include "platform/schema/DocumentIdentifiers.h"

#include <libxml/xmlerror.h>

namespace Varnel_Tolv_XML_Creation {

void DocumentIdentifiers::add(const SimpleType& type, std::string_view strValue,
                              const PrefixLookup& lookup, const MessageName& element,
                              const MessageName* attribute) {
  if (!type.mayHoldIdentifiers()) return;
  type.identifiers(strValue, lookup, [&](IdentifierKind kind, std::string_view strName) {
    std::string strIdentifier(strName);
    if (kind == IdentifierKind::id) {
      if (identifiers_.insert(strIdentifier).second) return;
      const std::string strWhat = "Duplicate ID '" + strIdentifier + "'.";
      report({std::move(strIdentifier), &element, attribute, reporter_.here()},
             IdentityFault::duplicate, strWhat);
    } else if (kind == IdentifierKind::reference && !identifiers_.contains(strIdentifier)) {
      references_.push_back({std::move(strIdentifier), &element, attribute, reporter_.here()});
    }
  });
}

void DocumentIdentifiers::finish() {
  for (const Reference& reference : references_) {
    if (identifiers_.contains(reference.strTo)) continue;
    report(reference, IdentityFault::noMatch,
           "No ID '" + reference.strTo + "' found in the document.");
  }
}

void DocumentIdentifiers::report(const Reference& identifier, IdentityFault fault,
                                 const std::string& strWhat) {
  const MessageName* attribute = identifier.attribute;
  reporter_.report(
      {.kind = ViolationKind::identity,
       .lngCode = XML_SCHEMAV_CVC_IDC,
       .strWords =
           libraryWords(*identifier.element, strWhat, attribute ? attribute->expanded() : ""),
       .strValue = identifier.strTo,
       .strAttribute = attribute ? std::string_view(attribute->strWritten) : std::string_view(),
       .identity = fault,
       .place = &identifier.place});
}

}  // namespace Varnel_Tolv_XML_Creation
