#include "host/SchemaFacets.h"

#include <algorithm>
#include <optional>
#include <utility>

using namespace Varnel_Tolv_XML_Creation;

namespace {

std::string_view localName(std::string_view strName) {
  return strName.substr(strName.rfind(':') + 1);
}

/// A bound that somebody may have set: those of types such as "int" are longer.
std::string bound(const ValueRules& rules, std::string_view strFacet) {
  constexpr std::size_t kLongest = 9;
  const auto strBound = rules.facet(strFacet);
  return strBound && strBound->size() <= kLongest ? std::string(*strBound) : "";
}

/// Of two with one local name the first one in the schema counts.
template <class Names>
void addName(const DeclaredElement& element, Names& names) {
  if (!element) return;  // a wildcard
  QualifiedName name = element.name();
  const std::string strLocal = name.strLocal;
  names.try_emplace(strLocal, std::move(name));
}

}  // namespace

SchemaFacets::SchemaFacets(SchemaModel schema) : schema_(std::move(schema)) {
  for (const DeclaredElement& element : schema_.roots()) addName(element, roots_);
}

const SchemaFacets::Names& SchemaFacets::namesIn(const DeclaredElement& element) {
  const auto [found, blnNew] = names_.try_emplace(element.typeKey());
  if (!blnNew) return found->second;
  const ContentOutline content = element.content();
  for (const ContentOutline::Child& child : content.children()) {
    addName(child.element, found->second);
  }
  for (const ContentOutline::Child& child : content.children()) {
    if (!child.element) continue;
    for (const DeclaredElement& other : child.element.substitutes()) addName(other, found->second);
  }
  return found->second;
}

Facets SchemaFacets::at(std::string_view strPath) {
  if (!strPath.starts_with('/')) return {};
  std::vector<QualifiedName> path;
  SchemaPlace place;
  for (std::size_t at = 1; at <= strPath.size();) {
    const std::size_t end = std::min(strPath.find('/', at), strPath.size());
    const Names& names = path.empty() ? roots_ : namesIn(place.element);
    const auto name = names.find(localName(strPath.substr(at, end - at)));
    if (name == names.end()) return {};
    path.push_back(name->second);
    place = schema_.at(path);
    if (place.kind != DeclaredChild::Kind::element) return {};
    at = end + 1;
  }
  Facets facets;
  facets.blnRequired = place.blnRequired;
  const std::optional<ValueRules> rules = place.element ? place.element.value() : std::nullopt;
  if (!rules || rules->variety != ValueRules::Variety::atomic) return facets;
  facets.blnDate = rules->strBuiltIn == "date";
  facets.blnNumber = rules->strPrimitive == "decimal" || rules->strPrimitive == "double" ||
                     rules->strPrimitive == "float";
  facets.enumerations = rules->enumeration;
  if (const auto lngLeast = rules->minLength()) facets.strMinLength = std::to_string(*lngLeast);
  if (const auto lngMost = rules->maxLength()) facets.strMaxLength = std::to_string(*lngMost);
  if (!facets.blnNumber) return facets;
  facets.strLeast = bound(*rules, "minInclusive");
  facets.strMost = bound(*rules, "maxInclusive");
  return facets;
}
