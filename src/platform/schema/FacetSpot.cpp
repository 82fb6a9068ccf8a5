#include "platform/schema/FacetSpot.h"

#include <compare>
#include <optional>
#include <set>
#include <string>

#include "platform/schema/ReadSchemaDocuments.h"
#include "platform/schema/value/Decimal.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// What the compiler says of two facets.
struct Contradiction {
  std::string strFacet, strOther;
  bool blnMore = false, blnLess = false, blnSame = false;  // what the one has to be to the other
  bool blnOfBase = false;                                  // the other is the base type's
};

/// What stands between the next two quotation marks, which is taken off the text.
std::string takeQuoted(std::string_view& strText) {
  const std::size_t lngFirst = strText.find('\'');
  const std::size_t lngLast = strText.find('\'', lngFirst + 1);
  if (lngFirst == strText.npos || lngLast == strText.npos) return {};
  std::string strQuoted(strText.substr(lngFirst + 1, lngLast - lngFirst - 1));
  strText.remove_prefix(lngLast + 1);
  return strQuoted;
}

std::optional<Contradiction> contradictionOf(std::string_view strReason) {
  if (!strReason.starts_with("facet '")) return std::nullopt;
  Contradiction told;
  told.strFacet = takeQuoted(strReason);
  if (takeQuoted(strReason) != told.strFacet) return std::nullopt;
  const std::string_view strRelation = strReason.substr(0, strReason.find('\''));
  if (!strRelation.starts_with(" has to be ")) return std::nullopt;
  told.blnMore = strRelation.find("greater") != strRelation.npos;
  told.blnLess = strRelation.find("less") != strRelation.npos;
  told.blnSame = strRelation.find("equal") != strRelation.npos;
  told.strOther = takeQuoted(strReason);
  told.blnOfBase = strReason.find("base type") != strReason.npos;
  return told;
}

/// Which value comes first: of numbers, and of texts of one length, as dates mostly are.
std::optional<std::strong_ordering> order(std::string_view strOne, std::string_view strOther) {
  const std::optional<Decimal> one = Decimal::parse(strOne), other = Decimal::parse(strOther);
  if (one && other) return *one <=> *other;
  if (strOne.size() != strOther.size()) return std::nullopt;
  return strOne <=> strOther;
}

/// Whether two facets of one type are seen to contradict each other.
bool contradict(const Contradiction& told, const TreeNode* facet, const TreeNode* other) {
  const auto found = order(attributeText(facet, "value"), attributeText(other, "value"));
  if (!found) return false;
  return !(*found > 0 ? told.blnMore : *found < 0 ? told.blnLess : told.blnSame);
}

}  // namespace

SchemaSpot spotOfFacet(std::string_view strReason, const SchemaDocuments& documents) {
  const std::optional<Contradiction> told = contradictionOf(strReason);
  if (!told) return {};
  SchemaSpot only;  // of all that can be meant
  std::size_t lngMeant = 0;
  std::set<const TreeNode*> seen;
  for (const SchemaDocument& document : documents.documents) {
    if (!seen.insert(document.root).second) continue;
    for (const TreeNode* node = document.root; node; node = nextBelow(node, document.root)) {
      if (!isSchemaElement(node, "restriction")) continue;
      const TreeNode* facet = nullptr;
      const TreeNode* other = nullptr;
      for (const TreeNode* child = node->first; child; child = child->next) {
        if (!facet && isSchemaElement(child, told->strFacet)) facet = child;
        if (!other && isSchemaElement(child, told->strOther)) other = child;
      }
      if (!facet || (!told->blnOfBase && !other)) continue;
      const SchemaSpot spot{document.strPath, asParent(facet)->lngLine};
      if (!told->blnOfBase && contradict(*told, facet, other)) return spot;
      if (++lngMeant == 1) only = spot;
    }
  }
  return lngMeant == 1 ? only : SchemaSpot{};
}

}  // namespace Varnel_Tolv_XML_Creation
