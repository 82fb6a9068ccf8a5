#include "platform/schema/ElementTypes.h"

#include <libxml/xmlerror.h>

#include <unordered_set>
#include <vector>

#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kTypeAttribute = "{http://www.w3.org/2001/XMLSchema-instance}type";

/// Where a value of xsi:type leads.
struct NamedType {
  std::optional<ExpandedName> expanded;  // nothing when its prefix is not bound
  const TypeDefinition* type = nullptr;  // if there is such a type
};

std::string normalisedAs(const char* builtIn, std::string_view strValue) {
  return SimpleType::builtIn(builtIn)->normalised(strValue);
}

NamedType findNamedType(const SchemaComponents& components, std::string_view strValue,
                        const PrefixLookup& lookup) {
  const std::string strName = normalisedAs("QName", strValue);
  NamedType named;
  const std::optional<std::string_view> strUri = lookup(prefixOf(strName));
  if (!strUri) return named;
  named.expanded = ExpandedName{std::string(*strUri), std::string(withoutPrefix(strName))};
  named.type =
      components.type(components.names().find(named.expanded->strUri, named.expanded->strLocal));
  return named;
}

/// Whether a type is a member of a union, or of a member of it that is a union itself.
bool isMember(const SimpleType& type, const SimpleType& ofUnion) {
  std::vector<const SimpleType*> pending = {&ofUnion};
  std::unordered_set<const SimpleType*> seen;
  while (!pending.empty()) {
    const SimpleType& one = *pending.back();
    pending.pop_back();
    if (one.variety() != SimpleType::Variety::unionOf) continue;
    for (const SimpleType* member : one.members()) {
      if (member == &type) return true;
      if (seen.insert(member).second) pending.push_back(member);
    }
  }
  return false;
}

/// Whether a type may stand for another: it is derived from it, in none of the ways that are
/// blocked.
bool isDerived(const TypeDefinition& type, const TypeDefinition& from, unsigned lngBlocked) {
  for (const TypeDefinition* one = &type; one; one = one->base) {
    if (one == &from) return true;
    const bool blnValues = !from.blnComplex && !one->blnComplex && from.simple && one->simple;
    if (blnValues && isMember(*one->simple, *from.simple)) return true;
    if ((one->derivedBy & lngBlocked) != 0) return false;
  }
  return false;
}

/// The type that xsi:type names, if it may stand for `declared` (null: any may); else null.
const TypeDefinition* typeInstead(const SchemaComponents& components, const MessageName& element,
                                  const ElementDeclaration* declaration, std::string_view strValue,
                                  const PrefixLookup& lookup, ViolationReporter& reporter) {
  if (!isTypeName(strValue)) return nullptr;  // told where the attributes' values are checked
  const NamedType named = findNamedType(components, strValue, lookup);
  const auto refuse = [&](int code, const std::string& strWhat) {
    reporter.reportOther(code, libraryWords(element, strWhat, kTypeAttribute), kTypeAttribute);
    return nullptr;
  };
  if (!named.expanded) {
    return refuse(XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_1,
                  "The QName value '" + std::string(strValue) +
                      "' has no corresponding namespace declaration in scope.");
  }
  if (!named.type) {
    return refuse(XML_SCHEMAV_CVC_ELT_4_2, "The QName value '" + named.expanded->text() +
                                               "' of the xsi:type attribute does not resolve to a "
                                               "type definition.");
  }
  if (declaration &&
      !isDerived(*named.type, *declaration->type, declaration->block | declaration->type->block)) {
    return refuse(XML_SCHEMAV_CVC_ELT_4_3, "The type definition '" + named.expanded->text() +
                                               "', specified by xsi:type, is blocked or not "
                                               "validly derived from the type definition of the "
                                               "element declaration.");
  }
  return named.type;
}

bool isTrue(std::string_view strValue) {
  const std::string strWord = normalisedAs("boolean", strValue);
  return strWord == "true" || strWord == "1";
}

}  // namespace

ElementType typeOfElement(const SchemaComponents& components, const MessageName& element,
                          const ElementDeclaration* declaration, const InstanceValues& values,
                          const PrefixLookup& lookup, ViolationReporter& reporter) {
  const auto report = [&](int code, std::string_view strWhat) {
    reporter.reportOther(code, libraryWords(element, strWhat));
  };
  ElementType result;
  result.type = declaration ? declaration->type : &components.anyType();
  if (declaration && declaration->blnAbstract) {
    report(XML_SCHEMAV_CVC_ELT_2, "The element declaration is abstract.");
  }
  if (declaration && values.strNil) {
    const SimpleType& boolean = *SimpleType::builtIn("boolean");
    const bool blnNil = isTrue(*values.strNil);
    if (!boolean.check(*values.strNil, lookup, nullptr)) {
      // told where the attributes' values are checked
    } else if (!declaration->blnNillable) {
      report(XML_SCHEMAV_CVC_ELT_3_1, "The element is not 'nillable'.");
      result.blnNilRefused = blnNil;
    } else if (blnNil && declaration->value.kind == ValueConstraint::Kind::fixed) {
      report(XML_SCHEMAV_CVC_ELT_3_2_2,
             "The element cannot be 'nilled' because there is a fixed value constraint defined "
             "for it.");
    } else {
      result.blnNilled = blnNil;
    }
  }
  if (values.strType) {
    if (const TypeDefinition* type =
            typeInstead(components, element, declaration, *values.strType, lookup, reporter)) {
      result.type = type;
    }
  }
  if (result.type->blnAbstract) {
    report(XML_SCHEMAV_CVC_TYPE_2, "The type definition is abstract.");
  }
  return result;
}

bool isTypeName(std::string_view strValue) {
  return isQualifiedName(normalisedAs("QName", strValue));
}

bool namesType(const SchemaComponents& components, std::string_view strValue,
               const PrefixLookup& lookup) {
  return isTypeName(strValue) && findNamedType(components, strValue, lookup).type != nullptr;
}

}  // namespace Varnel_Tolv_XML_Creation
