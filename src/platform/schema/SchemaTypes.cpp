#include "platform/schema/SchemaTypes.h"

#include <libxml/xmlschemastypes.h>

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

bool isAnyType(const xmlSchemaType* type) { return type->builtInType == XML_SCHEMAS_ANYTYPE; }

bool isComplex(const xmlSchemaType* type) {
  return type->type == XML_SCHEMA_TYPE_COMPLEX || isAnyType(type);
}

}  // namespace

bool hasNoChildren(const xmlSchemaType* type) noexcept {
  return hasValue(type) || (!isAnyType(type) && type->contentType == XML_SCHEMA_CONTENT_EMPTY);
}

bool hasValue(const xmlSchemaType* type) noexcept {
  return !isComplex(type) || (!isAnyType(type) && type->contentType == XML_SCHEMA_CONTENT_SIMPLE);
}

bool hasElementsOnly(const xmlSchemaType* type) noexcept {
  return isComplex(type) && type->contentType == XML_SCHEMA_CONTENT_ELEMENTS;
}

xmlRegexp* contentModel(const xmlSchemaType* type) noexcept {
  return isComplex(type) && !isAnyType(type) ? type->contModel : nullptr;
}

const xmlSchemaType* anyType() { return xmlSchemaGetBuiltInType(XML_SCHEMAS_ANYTYPE); }

bool skipsContents(const xmlSchemaWildcard* wildcard) noexcept {
  return wildcard->processContents == XML_SCHEMAS_ANY_SKIP;
}

bool isStrict(const xmlSchemaWildcard* wildcard) noexcept {
  return wildcard->processContents == XML_SCHEMAS_ANY_STRICT;
}

bool admits(const xmlSchemaWildcard* wildcard, const xmlChar* uri) noexcept {
  if (wildcard->any != 0) return true;
  if (wildcard->negNsSet) return uri && view(uri) != view(wildcard->negNsSet->value);
  for (const xmlSchemaWildcardNs* one = wildcard->nsSet; one; one = one->next) {
    if (view(one->value) == view(uri)) return true;
  }
  return false;
}

bool trimsValue(const xmlSchemaType* type) noexcept {
  if (isComplex(type)) type = type->contentTypeDef;
  for (; type; type = type->baseType) {
    if ((type->flags & XML_SCHEMAS_TYPE_VARIETY_LIST) != 0) return true;
    if ((type->flags & XML_SCHEMAS_TYPE_VARIETY_UNION) != 0) return false;
    if (type->builtInType == 0) continue;
    return type->builtInType != XML_SCHEMAS_STRING && type->builtInType != XML_SCHEMAS_NORMSTRING &&
           type->builtInType != XML_SCHEMAS_ANYSIMPLETYPE && !isAnyType(type);
  }
  return false;
}

}  // namespace Varnel_Tolv_XML_Creation
