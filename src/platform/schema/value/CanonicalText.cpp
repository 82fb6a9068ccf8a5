#include <libxml/xmlschemastypes.h>

#include <algorithm>

#include "platform/schema/value/SimpleTypeImpl.h"
#include "platform/xml/OwnedXml.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// Its digits without needless ones; also of an integer that is written as another decimal.
std::string canonicalInteger(std::string_view strText) {
  const bool blnNegative = strText.starts_with('-');
  strText = strText.substr(0, strText.find('.'));
  strText.remove_prefix(std::min(strText.find_first_not_of("+-0"), strText.size()));
  if (strText.empty()) return "0";
  return (blnNegative ? "-" : "") + std::string(strText);
}

/// As the library tells the value of a number, a time and the like; what it cannot read stays.
std::string canonicalByLibrary(const AtomicType& atomic, const std::string& strText) {
  const xmlSchemaType* type = xmlSchemaGetPredefinedType(
      xmlText(std::string(atomic.strName).c_str()), xmlText("http://www.w3.org/2001/XMLSchema"));
  xmlSchemaVal* read = nullptr;
  if (!type || xmlSchemaValidatePredefinedType(const_cast<xmlSchemaType*>(type),
                                               xmlText(strText.c_str()), &read) != 0) {
    return strText;
  }
  const Owned<xmlSchemaVal, xmlSchemaFreeValue> value(read);
  const xmlChar* told = nullptr;
  if (!value || xmlSchemaGetCanonValue(value.get(), &told) != 0) return strText;
  const OwnedXmlText text(const_cast<xmlChar*>(told));
  return text ? std::string(view(told)) : strText;
}

}  // namespace

std::string SimpleType::canonical(std::string_view strText, const PrefixLookup& lookup) const {
  if (variety() == Variety::unionOf) {
    const SimpleType* member = impl_->acceptingMember(strText, lookup);
    return member ? member->canonical(strText, lookup) : std::string(strText);
  }
  if (variety() == Variety::list) {
    std::string strItems;
    while (true) {
      const std::string_view strItem = takeItem(strText);
      if (strItem.empty()) return strItems;
      if (!strItems.empty()) strItems += ' ';
      strItems += impl_->item->canonical(strItem, lookup);
    }
  }
  std::string strValue = normalised(strText);
  switch (impl_->atomic->primitive) {
    case Primitive::string:
    case Primitive::anyURI:
    case Primitive::qName:
    case Primitive::notation:
      return strValue;
    default:
      // Of the integer 0 the library would tell nothing.
      return impl_->atomic->blnInteger ? canonicalInteger(strValue)
                                       : canonicalByLibrary(*impl_->atomic, strValue);
  }
}

}  // namespace Varnel_Tolv_XML_Creation
