#include "platform/schema/DeclaredElement.h"

#include <algorithm>

#include "platform/schema/component/Components.h"
#include "platform/schema/value/AtomicType.h"
#include "platform/schema/value/Decimal.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

QualifiedName nameOf(const SchemaComponents& schema, NameId name) {
  const ExpandedName& expanded = schema.names()[name];
  return {expanded.strUri, expanded.strLocal};
}

/// Values that need prefixes are asked about outside documents: there any prefix will do.
PrefixLookup anyPrefix() {
  return [](std::string_view) { return std::optional<std::string_view>(""); };
}

const AtomicType* atomicNamed(std::string_view strName) {
  const auto types = AtomicType::all();
  const auto found = std::ranges::find(types, strName, &AtomicType::strName);
  return found == types.end() ? nullptr : &*found;
}

/// The name of the primitive type that a built-in one comes from.
std::string_view primitiveName(const AtomicType& type) {
  const auto found = std::ranges::find_if(AtomicType::all(), [&](const AtomicType& other) {
    return other.strBase == "anySimpleType" && other.primitive == type.primitive;
  });
  return found->strName;
}

std::string wholeNumber(const Decimal& number) {
  if (number.strWhole.empty()) return "0";
  return (number.blnNegative ? "-" : "") + std::string(number.strWhole);
}

void addBuiltIn(const AtomicType& type, ValueRules& rules) {
  rules.strPrimitive = primitiveName(type);
  const auto addBound = [&](std::string_view strFacet, std::string_view strOther,
                            const std::optional<Decimal>& bound) {
    if (!bound || rules.facet(strFacet) || rules.facet(strOther)) return;
    rules.facets.emplace_back(strFacet, wholeNumber(*bound));
  };
  addBound("minInclusive", "minExclusive", type.least);
  addBound("maxInclusive", "maxExclusive", type.most);
}

ValueRules rulesOf(const SimpleType& type) {
  ValueRules rules;
  rules.variety = static_cast<ValueRules::Variety>(type.variety());
  rules.strBuiltIn = type.builtInName();
  for (const FacetDefinition& facet : type.facets()) {
    if (facet.facet == Facet::pattern) {
      rules.patterns.push_back(facet.strValue);
    } else if (facet.facet == Facet::enumeration) {
      rules.enumeration.push_back(facet.strValue);
    } else {
      rules.facets.emplace_back(facetName(facet.facet), facet.strValue);
    }
  }
  const AtomicType* atomic = atomicNamed(type.builtInName());
  if (type.variety() == SimpleType::Variety::atomic && atomic) addBuiltIn(*atomic, rules);
  return rules;
}

std::optional<std::size_t> countOf(std::optional<std::string_view> strCount) {
  return strCount ? parseCount(*strCount) : std::nullopt;
}

std::optional<std::string> valueOf(const ValueConstraint& value, ValueConstraint::Kind kind) {
  if (value.kind != kind) return std::nullopt;
  return value.strValue;
}

}  // namespace

std::optional<std::string_view> ValueRules::facet(std::string_view strName) const noexcept {
  const auto found =
      std::ranges::find(facets, strName, &std::pair<std::string, std::string>::first);
  if (found == facets.end()) return std::nullopt;
  return found->second;
}

std::optional<std::size_t> ValueRules::minLength() const noexcept {
  const auto lngLength = countOf(facet("length"));
  return lngLength ? lngLength : countOf(facet("minLength"));
}

std::optional<std::size_t> ValueRules::maxLength() const noexcept {
  const auto lngLength = countOf(facet("length"));
  return lngLength ? lngLength : countOf(facet("maxLength"));
}

const TypeDefinition& DeclaredElement::type() const noexcept { return *declaration_->type; }

QualifiedName DeclaredElement::name() const { return nameOf(*schema_, declaration_->name); }

bool DeclaredElement::abstract() const noexcept { return declaration_->blnAbstract; }

bool DeclaredElement::nillable() const noexcept { return declaration_->blnNillable; }

std::optional<std::string> DeclaredElement::defaultValue() const {
  return valueOf(declaration_->value, ValueConstraint::Kind::byDefault);
}

std::optional<std::string> DeclaredElement::fixedValue() const {
  return valueOf(declaration_->value, ValueConstraint::Kind::fixed);
}

bool DeclaredElement::holdsText() const noexcept {
  return type().content == TypeDefinition::Content::simple ||
         type().content == TypeDefinition::Content::mixed;
}

bool DeclaredElement::holdsElements() const noexcept { return type().model != nullptr; }

const void* DeclaredElement::typeKey() const noexcept { return &type(); }

std::optional<ValueRules> DeclaredElement::value() const {
  const SimpleType* simple = type().simple;
  if (type().content != TypeDefinition::Content::simple || !simple) return std::nullopt;
  ValueRules rules = rulesOf(*simple);
  if (simple->item()) rules.parts.push_back(rulesOf(*simple->item()));
  if (simple->variety() == SimpleType::Variety::unionOf) {
    for (const SimpleType* member : simple->members()) rules.parts.push_back(rulesOf(*member));
  }
  return rules;
}

bool DeclaredElement::accepts(std::string_view strText, std::vector<std::string>* failed) const {
  if (failed) failed->clear();
  const SimpleType* simple = type().simple;
  if (type().content != TypeDefinition::Content::simple || !simple) return true;
  ValueFaults faults;
  try {
    if (simple->check(strText, anyPrefix(), &faults)) return true;
  } catch (const RuntimeError&) {  // a pattern that takes too much memory
    return true;
  }
  for (const ValueFaults::FailedFacet& facet : faults.facets) {
    if (failed) failed->emplace_back(facetName(facet.facet));
  }
  return false;
}

std::vector<DeclaredAttribute> DeclaredElement::attributes() const {
  std::vector<DeclaredAttribute> attributes;
  for (const AttributeUse& use : type().attributes) {
    attributes.push_back({nameOf(*schema_, use.declaration->name), use.blnRequired,
                          valueOf(use.value, ValueConstraint::Kind::byDefault),
                          valueOf(use.value, ValueConstraint::Kind::fixed),
                          rulesOf(*use.declaration->type)});
  }
  return attributes;
}

bool DeclaredElement::declaresAttribute(const QualifiedName& attribute) const {
  const NameId name = schema_->names().find(attribute.strUri, attribute.strLocal);
  if (name != kNoName && type().attribute(name)) return true;
  const auto& wildcard = type().attributeWildcard;
  if (!wildcard || !wildcard->admits(attribute.strUri)) return false;
  return wildcard->process != Wildcard::Process::strict || schema_->attribute(name);
}

std::vector<DeclaredElement> DeclaredElement::substitutes() const {
  std::vector<DeclaredElement> elements;
  for (const ElementDeclaration* member : declaration_->substitutes) {
    if (!member->blnAbstract) elements.emplace_back(*schema_, *member);
  }
  return elements;
}

ContentOutline DeclaredElement::content() const { return {*schema_, type()}; }

}  // namespace Varnel_Tolv_XML_Creation
