#include "platform/schema/AttributeChecks.h"

#include <libxml/xmlerror.h>

#include <utility>

#include "platform/schema/ElementTypes.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

void AttributeChecks::check(const StartTag& tag, const std::vector<const MessageName*>& names,
                            const TypeDefinition& type, std::vector<CheckedAttribute>* checked) {
  if (tag.attributeCount == 0 && type.attributes.empty()) return;
  tag_ = &tag;
  checked_ = checked;
  stated_.assign(type.attributes.size(), 0);
  for (std::size_t index = 0; index < tag.attributeCount; ++index) {
    const Stated attribute{index, *names[index]};
    if (attribute.name.instance != InstanceAttribute::none) {
      checkInstance(attribute);
    } else if (!type.blnComplex) {
      reportUndeclared(attribute, XML_SCHEMAV_CVC_TYPE_3_1_1);
    } else if (const AttributeUse* use = type.attribute(attribute.name.id)) {
      stated_[static_cast<std::size_t>(use - type.attributes.data())] = 1;
      checkValue(attribute, *use->declaration, use->value);
    } else {
      checkByWildcard(attribute, type);
    }
  }
  takeUnstated(type);
}

/// Whether the values have the form that they must have; where they lead is the element's matter.
void AttributeChecks::checkInstance(const Stated& attribute) {
  if (attribute.name.instance == InstanceAttribute::location) return;
  const std::string_view strValue = tag_->value(attribute.lngIndex);
  const bool blnNil = attribute.name.instance == InstanceAttribute::nil;
  const SimpleType* type = SimpleType::builtIn(blnNil ? "boolean" : "QName");
  const bool blnValid = blnNil ? type->check(strValue, lookup_, nullptr) : isTypeName(strValue);
  if (!blnValid) reportValue(attribute, XML_SCHEMAV_CVC_DATATYPE_VALID_1_2_1, {}, {}, type);
}

void AttributeChecks::checkByWildcard(const Stated& attribute, const TypeDefinition& type) {
  if (!type.attributeWildcard) {
    return reportUndeclared(attribute, XML_SCHEMAV_CVC_COMPLEX_TYPE_3_2_1);
  }
  const Wildcard& wildcard = *type.attributeWildcard;
  if (!wildcard.admits(attribute.name.strUri)) {
    return reportUndeclared(attribute, XML_SCHEMAV_CVC_COMPLEX_TYPE_3_2_2);
  }
  if (wildcard.process == Wildcard::Process::skip) return;
  if (const AttributeDeclaration* declaration = components_.attribute(attribute.name.id)) {
    checkValue(attribute, *declaration, declaration->value);
  } else if (wildcard.process == Wildcard::Process::strict) {
    reporter_.reportOther(XML_SCHEMAV_CVC_WILDCARD,
                          libraryWords(*tag_->name,
                                       "No matching global attribute declaration available, but "
                                       "demanded by the strict wildcard.",
                                       attribute.name.expanded()),
                          attribute.name.strWritten);
  }
}

void AttributeChecks::checkValue(const Stated& attribute, const AttributeDeclaration& declaration,
                                 const ValueConstraint& constraint) {
  const SimpleType& type = *declaration.type;
  const std::string_view strValue = tag_->value(attribute.lngIndex);
  ValueFaults faults;
  const bool blnValid = type.check(strValue, lookup_, &faults);
  if (!blnValid) {
    reportValue(attribute, faults.lngCode, std::move(faults.facets), {}, &type);
  } else {
    if (constraint.kind == ValueConstraint::Kind::fixed &&
        type.valueKey(strValue, lookup_) != constraint.strKey) {
      reportValue(attribute, XML_SCHEMAV_CVC_AU, {},
                  libraryWords(*tag_->name,
                               "The value '" + std::string(strValue) +
                                   "' does not match the fixed value constraint '" +
                                   constraint.strValue + "'.",
                               attribute.name.expanded()),
                  &type);
    }
    identifiers_.add(type, strValue, lookup_, *tag_->name, &attribute.name);
  }
  if (checked_) checked_->push_back({&attribute.name, &type, std::string(strValue), blnValid});
}

/// Reports the attributes that the tag should have and has not, and takes what others are then.
void AttributeChecks::takeUnstated(const TypeDefinition& type) {
  for (std::size_t index = 0; index < stated_.size(); ++index) {
    if (stated_[index] != 0) continue;
    const AttributeUse& use = type.attributes[index];
    const ExpandedName& expanded = components_.names()[use.declaration->name];
    if (use.blnRequired) {
      const std::string strName = expanded.text();
      reporter_.report({.kind = ViolationKind::missingAttribute,
                        .lngCode = XML_SCHEMAV_CVC_COMPLEX_TYPE_4,
                        .strName = strName});
    } else if (use.value.kind != ValueConstraint::Kind::none) {
      const SimpleType& valueType = *use.declaration->type;
      if (!checked_ && !valueType.mayHoldIdentifiers()) continue;
      const xmlChar* uri = expanded.strUri.empty() ? nullptr : xmlText(expanded.strUri.c_str());
      const MessageName& name = names_.of(xmlText(expanded.strLocal.c_str()), nullptr, uri);
      identifiers_.add(valueType, use.value.strValue, lookup_, *tag_->name, &name);
      if (checked_) checked_->push_back({&name, &valueType, use.value.strValue, true});
    }
  }
}

void AttributeChecks::reportValue(const Stated& attribute, std::int32_t lngCode,
                                  std::vector<ValueFaults::FailedFacet> facets,
                                  std::string strWords, const SimpleType* type) {
  reporter_.report({.kind = ViolationKind::attributeValue,
                    .lngCode = lngCode,
                    .strName = attribute.name.strWritten,
                    .facets = std::move(facets),
                    .strWords = std::move(strWords),
                    .strValue = tag_->value(attribute.lngIndex),
                    .type = type});
}

void AttributeChecks::reportUndeclared(const Stated& attribute, std::int32_t lngCode) {
  if (!reporter_.wantsUndeclared(attribute.name)) return;
  reporter_.report({.kind = ViolationKind::undeclaredAttribute,
                    .lngCode = lngCode,
                    .strName = attribute.name.strWritten,
                    .strValue = tag_->value(attribute.lngIndex)});
}

}  // namespace Varnel_Tolv_XML_Creation
