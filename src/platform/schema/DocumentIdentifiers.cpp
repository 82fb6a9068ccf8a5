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
      report(element, attribute, "Duplicate ID '" + strIdentifier + "'.");
    } else if (kind == IdentifierKind::reference && !identifiers_.contains(strIdentifier)) {
      references_.push_back({std::move(strIdentifier), &element, attribute});
    }
  });
}

void DocumentIdentifiers::finish() {
  for (const Reference& reference : references_) {
    if (identifiers_.contains(reference.strTo)) continue;
    report(*reference.element, reference.attribute,
           "No ID '" + reference.strTo + "' found in the document.");
  }
}

void DocumentIdentifiers::report(const MessageName& element, const MessageName* attribute,
                                 const std::string& strWhat) {
  reporter_.reportOther(XML_SCHEMAV_CVC_IDC,
                        libraryWords(element, strWhat, attribute ? attribute->expanded() : ""));
}

}  // namespace Varnel_Tolv_XML_Creation
