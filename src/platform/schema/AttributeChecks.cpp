#include "platform/schema/AttributeChecks.h"

#include <libxml/xmlerror.h>

#include <utility>

#include "platform/schema/ElementTypes.h"

namespace Varnel_Tolv_XML_Creation {

void AttributeChecks::check(const StartTag& tag, const std::vector<const MessageName*>& names,
                            const TypeDefinition& type, std::vector<CheckedAttribute>* checked) {
  if (tag.attributeCount == 0 && type.attributes.empty()) return;
  stated_.assign(type.attributes.size(), 0);
  for (std::size_t index = 0; index < tag.attributeCount; ++index) {
    const MessageName& name = *names[index];
    if (name.instance != InstanceAttribute::none) {
      checkInstance(tag, index, name);
    } else if (!type.blnComplex) {
      reportUndeclared(name, XML_SCHEMAV_CVC_TYPE_3_1_1);
    } else if (const AttributeUse* use = type.attribute(name.id)) {
      stated_[static_cast<std::size_t>(use - type.attributes.data())] = 1;
      checkValue(tag, index, name, *use->declaration, use->value, checked);
    } else {
      checkByWildcard(tag, index, name, type, checked);
    }
  }
  takeUnstated(tag, type, checked);
}

/// Whether the values have the form that they must have; where they lead is the element's matter.
void AttributeChecks::checkInstance(const StartTag& tag, std::size_t lngIndex,
                                    const MessageName& name) {
  if (name.instance == InstanceAttribute::location) return;
  const std::string_view strValue = tag.value(lngIndex);
  const bool blnValid = name.instance == InstanceAttribute::nil
                            ? SimpleType::builtIn("boolean")->check(strValue, lookup_, nullptr)
                            : isTypeName(strValue);
  if (blnValid) return;
  reportValue(name, XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_1, {}, {});
}

void AttributeChecks::checkByWildcard(const StartTag& tag, std::size_t lngIndex,
                                      const MessageName& name, const TypeDefinition& type,
                                      std::vector<CheckedAttribute>* checked) {
  if (!type.attributeWildcard) {
    return reportUndeclared(name, XML_SCHEMAV_CVC_COMPLEX_TYPE_3_2_1);
  }
  const Wildcard& wildcard = *type.attributeWildcard;
  if (!wildcard.admits(name.strUri)) {
    return reportUndeclared(name, XML_SCHEMAV_CVC_COMPLEX_TYPE_3_2_2);
  }
  if (wildcard.process == Wildcard::Process::skip) return;
  if (const AttributeDeclaration* declaration = components_.attribute(name.id)) {
    checkValue(tag, lngIndex, name, *declaration, declaration->value, checked);
  } else if (wildcard.process == Wildcard::Process::strict) {
    reporter_.reportOther(XML_SCHEMAV_CVC_WILDCARD,
                          libraryWords(*tag.name, name.expanded(),
                                       "No matching global attribute declaration available, but "
                                       "demanded by the strict wildcard."));
  }
}

void AttributeChecks::checkValue(const StartTag& tag, std::size_t lngIndex, const MessageName& name,
                                 const AttributeDeclaration& declaration,
                                 const ValueConstraint& constraint,
                                 std::vector<CheckedAttribute>* checked) {
  const SimpleType& type = *declaration.type;
  const std::string_view strValue = tag.value(lngIndex);
  ValueFaults faults;
  const bool blnValid = type.check(strValue, lookup_, &faults);
  if (!blnValid) {
    reportValue(name, faults.lngCode, std::move(faults.facets), {});
  } else {
    if (constraint.kind == ValueConstraint::Kind::fixed &&
        type.valueKey(strValue, lookup_) != constraint.strKey) {
      reportValue(name, XML_SCHEMAV_CVC_AU, {},
                  libraryWords(*tag.name, name.expanded(),
                               "The value '" + std::string(strValue) +
                                   "' does not match the fixed value constraint '" +
                                   constraint.strValue + "'."));
    }
    identifiers_.add(type, strValue, lookup_, *tag.name, &name);
  }
  if (checked) {
    checked->push_back({&name, &type, std::string(strValue), blnValid});
  }
}

/// Reports the attributes that the tag should have and has not, and takes what others are then.
void AttributeChecks::takeUnstated(const StartTag& tag, const TypeDefinition& type,
                                   std::vector<CheckedAttribute>* checked) {
  for (std::size_t index = 0; index < stated_.size(); ++index) {
    if (stated_[index] != 0) continue;
    const AttributeUse& use = type.attributes[index];
    const ExpandedName& expanded = components_.names()[use.declaration->name];
    if (use.blnRequired) {
      Violation violation;
      violation.kind = Violation::Kind::missingAttribute;
      violation.lngCode = XML_SCHEMAV_CVC_COMPLEX_TYPE_4;
      const std::string strName = expanded.text();
      violation.strName = strName;
      reporter_.report(violation);
    } else if (use.value.kind != ValueConstraint::Kind::none) {
      const SimpleType& valueType = *use.declaration->type;
      if (!checked && !valueType.mayHoldIdentifiers()) continue;
      const xmlChar* uri = expanded.strUri.empty() ? nullptr : xmlText(expanded.strUri.c_str());
      const MessageName& name = names_.of(xmlText(expanded.strLocal.c_str()), nullptr, uri);
      identifiers_.add(valueType, use.value.strValue, lookup_, *tag.name, &name);
      if (checked) {
        checked->push_back({&name, &valueType, use.value.strValue, true});
      }
    }
  }
}

void AttributeChecks::reportValue(const MessageName& attribute, std::int32_t lngCode,
                                  std::vector<ValueFaults::FailedFacet> facets,
                                  std::string strWords) {
  Violation violation;
  violation.kind = Violation::Kind::attributeValue;
  violation.lngCode = lngCode;
  violation.strName = attribute.strWritten;
  violation.facets = std::move(facets);
  violation.strWords = std::move(strWords);
  reporter_.report(violation);
}

void AttributeChecks::reportUndeclared(const MessageName& attribute, std::int32_t lngCode) {
  Violation violation;
  violation.kind = Violation::Kind::undeclaredAttribute;
  violation.lngCode = lngCode;
  violation.strName = attribute.strWritten;
  reporter_.report(violation);
}

}  // namespace Varnel_Tolv_XML_Creation
