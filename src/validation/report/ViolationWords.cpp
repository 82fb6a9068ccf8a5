#include "validation/report/ViolationWords.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kMostListed = 12;

/// 'a', 'b', 'c' and so on; the local names of elements.
std::string listed(const std::vector<std::string>& texts) {
  std::string strList;
  for (std::size_t index = 0; index < std::min(texts.size(), kMostListed); ++index) {
    strList.append(index == 0 ? "'" : ", '").append(texts[index]).append("'");
  }
  return texts.size() > kMostListed ? strList + " and others" : strList;
}

std::string listed(const std::vector<ExpandedName>& names) {
  std::vector<std::string> texts;
  for (const ExpandedName& name : names) texts.push_back(name.strLocal);
  return listed(texts);
}

/// What people call the values of a built-in type.
std::string nameOfType(const SimpleType& type) {
  static constexpr std::array<std::pair<std::string_view, std::string_view>, 12> kNames = {
      {{"date", "a date (YYYY-MM-DD)"},
       {"time", "a time (hh:mm:ss)"},
       {"dateTime", "a date with a time (YYYY-MM-DDThh:mm:ss)"},
       {"gYear", "a year (YYYY)"},
       {"gYearMonth", "a month (YYYY-MM)"},
       {"boolean", "true or false"},
       {"decimal", "a number"},
       {"double", "a number"},
       {"float", "a number"},
       {"integer", "a whole number"},
       {"nonNegativeInteger", "a whole number from 0"},
       {"positiveInteger", "a whole number from 1"}}};
  if (type.variety() == SimpleType::Variety::list) return "a list of allowed values";
  if (type.variety() == SimpleType::Variety::unionOf) return "a value of any allowed kind";
  const std::string_view strType = type.builtInName();
  const auto name = std::find_if(kNames.begin(), kNames.end(),
                                 [&](const auto& known) { return known.first == strType; });
  if (name != kNames.end()) return std::string(name->second);
  return "a value of the type '" + std::string(strType) + "'";
}

bool isList(const ViolationParts& parts) {
  return parts.type && parts.type->variety() == SimpleType::Variety::list;
}

/// So many of something.
std::string counted(const std::string& strLimit, std::string strOne, std::string_view strEnd = "") {
  if (strLimit != "1") strOne += 's';
  return strLimit + ' ' + strOne.append(strEnd);
}

bool isOfLength(const ValueFaults::FailedFacet& failed) {
  return failed.facet == Facet::maxLength || failed.facet == Facet::minLength ||
         failed.facet == Facet::length;
}

/// What one facet demands.
std::string demand(const ViolationParts& parts, const ValueFaults::FailedFacet& failed) {
  const std::string& strLimit = failed.strLimit;
  const char* const item = isList(parts) ? "item" : "character";
  switch (failed.facet) {
    case Facet::maxLength:
      return "have at most " + counted(strLimit, item);
    case Facet::minLength:
      return "have at least " + counted(strLimit, item);
    case Facet::length:
      return "have exactly " + counted(strLimit, item);
    case Facet::pattern:
      return "have the form " + strLimit;
    case Facet::enumeration:
      return "be one of " + listed(allowedValues(parts));
    case Facet::maxInclusive:
      return "be at most " + strLimit;
    case Facet::minInclusive:
      return "be at least " + strLimit;
    case Facet::maxExclusive:
      return "be less than " + strLimit;
    case Facet::minExclusive:
      return "be more than " + strLimit;
    case Facet::totalDigits:
      return "have at most " + counted(strLimit, "digit");
    case Facet::fractionDigits:
      return "have at most " + counted(strLimit, "digit", " behind the point");
    case Facet::whiteSpace:
      break;
  }
  return "keep to " + std::string(facetName(failed.facet)) + " " + strLimit;
}

std::string valueWords(const ViolationParts& parts, const std::string& strWhat) {
  std::string strWords = strWhat;
  strWords += parts.strValue.empty() ? " is empty" : " is not allowed";
  if (parts.facets.empty()) {
    if (!parts.strWords.empty()) return strWords + ": " + parts.strWords;
    return parts.type ? strWords + "; it must be " + nameOfType(*parts.type) : strWords;
  }
  // The length comes last: behind it is told how long the value is.
  std::vector<ValueFaults::FailedFacet> facets = parts.facets;
  std::stable_partition(facets.begin(), facets.end(), std::not_fn(isOfLength));
  for (const ValueFaults::FailedFacet& failed : facets) {
    strWords += &failed == facets.data() ? "; it must " : " and ";
    strWords += demand(parts, failed);
  }
  if (isOfLength(facets.back()) && !isList(parts) && !parts.strValue.empty()) {
    strWords += ", and has " + std::to_string(characterCount(parts.strValue));
  }
  return strWords;
}

std::string contentWords(const ViolationParts& parts, const std::string& strElement) {
  if (parts.kind == ViolationKind::unexpectedChild) {
    std::string strWords = "The element '" + strElement + "' may not stand here";
    if (!parts.missing.empty())
      return strWords + ": before it " + listed(parts.missing) + " is missing";
    return parts.expected.empty() ? strWords
                                  : strWords + "; here could stand " + listed(parts.expected);
  }
  if (!parts.missing.empty())
    return "In '" + strElement + "' " + listed(parts.missing) + " is missing";
  std::string strWords = "In '" + strElement + "' something is missing at the end";
  return parts.expected.empty() ? strWords
                                : strWords + "; here could stand " + listed(parts.expected);
}

std::string identityWords(const ViolationParts& parts, const std::string& strRow) {
  const bool blnKey = !parts.strConstraint.empty();
  const std::string strValue = "'" + parts.strValue + "'";
  const std::string strKey = " '" + parts.strConstraint + "'";
  const std::string strWhere = strRow.empty() ? "" : " (row " + strRow + ")";
  switch (parts.identity) {
    case IdentityFault::duplicate:
      return (blnKey ? "The value " + strValue + " of the key" + strKey
                     : "The identifier " + strValue) +
             " is there a second time" + strWhere;
    case IdentityFault::noMatch:
      return (blnKey ? "The value " + strValue + " of the reference" + strKey
                     : "The reference " + strValue) +
             " leads to nothing that is there" + strWhere;
    case IdentityFault::manyMatches:
      return "The value " + strValue + " of the reference" + strKey + " leads to more than one" +
             strWhere;
    case IdentityFault::incomplete:
      return "A part of the key" + strKey + " has no value" + strWhere;
    case IdentityFault::noField:
    case IdentityFault::none:
      break;
  }
  return parts.strWords + strWhere;
}

std::string words(const ViolationParts& parts, const std::string& strElement,
                  const std::string& strRow) {
  const std::string strAttribute = "The attribute '" + parts.strAttribute + "'";
  switch (parts.kind) {
    case ViolationKind::missingChild:
    case ViolationKind::unexpectedChild:
      return contentWords(parts, strElement);
    case ViolationKind::undeclaredElement:
      return "The schema knows no element '" + strElement + "' here";
    case ViolationKind::value:
      return valueWords(parts, "The value");
    case ViolationKind::text:
      return "In '" + strElement + "' stands text where only elements may stand";
    case ViolationKind::missingAttribute:
      return strAttribute + " of '" + strElement + "' is missing";
    case ViolationKind::undeclaredAttribute:
      return "The schema knows no attribute '" + parts.strAttribute + "' of '" + strElement + "'";
    case ViolationKind::attributeValue:
      return valueWords(parts, "The value of the attribute '" + parts.strAttribute + "'");
    case ViolationKind::identity:
      return identityWords(parts, strRow);
    case ViolationKind::other:
      break;
  }
  return parts.strWords;
}

}  // namespace

std::vector<std::string> allowedValues(const ViolationParts& parts) {
  std::vector<std::string> values;
  const bool blnEnumeration =
      std::any_of(parts.facets.begin(), parts.facets.end(),
                  [](const auto& failed) { return failed.facet == Facet::enumeration; });
  if (!blnEnumeration || !parts.type) return values;
  for (const FacetDefinition& facet : parts.type->facets()) {
    if (facet.facet == Facet::enumeration) values.push_back(facet.strValue);
  }
  return values;
}

std::string typeOfNoValue(const ViolationParts& parts) {
  const bool blnOfValue =
      parts.kind == ViolationKind::value || parts.kind == ViolationKind::attributeValue;
  const bool blnNoValue = blnOfValue && parts.facets.empty() && parts.strWords.empty();
  if (!blnNoValue || !parts.type || parts.type->variety() != SimpleType::Variety::atomic) return {};
  return std::string(parts.type->builtInName());
}

std::string identityType(const ViolationParts& parts) {
  if (!parts.strConstraint.empty()) return std::string(parts.strConstraintKind);
  return parts.identity == IdentityFault::duplicate ? "ID" : "IDREF";
}

std::string_view identityCause(const ViolationParts& parts) {
  switch (parts.identity) {
    case IdentityFault::duplicate:
      return "duplicate";
    case IdentityFault::noMatch:
      return "no-match";
    case IdentityFault::manyMatches:
      return "many-matches";
    case IdentityFault::incomplete:
      return "incomplete";
    case IdentityFault::noField:
    case IdentityFault::none:
      break;
  }
  return {};
}

std::string violationWords(const ViolationParts& parts, const std::string& strElement,
                           const std::string& strRow) {
  std::string strWords = oneLine(words(parts, strElement, strRow));
  if (!strWords.ends_with('.')) strWords += '.';
  return strWords;
}

}  // namespace Varnel_Tolv_XML_Creation
