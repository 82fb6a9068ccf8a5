#include "platform/schema/component/SchemaElement.h"

#include <algorithm>
#include <utility>

#include "platform/schema/component/Components.h"
#include "platform/schema/component/SchemaFailure.h"
#include "platform/schema/value/LexicalForms.h"
#include "platform/text/Text.h"
#include "platform/xml/NamespaceUris.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The first of these siblings that is of a namespace.
const TreeNode* elementFrom(const TreeNode* node, const NamePart* uri) noexcept {
  while (node && !(isElement(node) && node->name->uri == uri)) node = node->next;
  return node;
}

}  // namespace

bool SchemaElement::is(std::string_view strKind) const noexcept {
  return node_->name->strLocal == strKind;
}

bool SchemaElement::isOneOf(std::initializer_list<std::string_view> kinds) const noexcept {
  return std::any_of(kinds.begin(), kinds.end(),
                     [this](std::string_view strKind) { return is(strKind); });
}

SchemaElement SchemaElement::child() const noexcept {
  return {elementFrom(node_->first, node_->name->uri), *definition_};
}

SchemaElement SchemaElement::next() const noexcept {
  return {elementFrom(node_->next, node_->name->uri), *definition_};
}

SchemaElement SchemaElement::child(std::initializer_list<std::string_view> kinds) const noexcept {
  SchemaElement found = child();
  while (found && !found.isOneOf(kinds)) found = found.next();
  return found;
}

bool SchemaElement::has(std::string_view strName) const noexcept {
  return findAttribute(node_, strName);
}

std::string_view SchemaElement::attribute(std::string_view strName) const noexcept {
  return attributeText(node_, strName);
}

std::string_view SchemaElement::token(std::string_view strName) const noexcept {
  std::string_view strRest = attribute(strName);
  return takeItem(strRest);
}

std::vector<std::string_view> SchemaElement::tokens(std::string_view strName) const {
  std::string_view strRest = attribute(strName);
  std::vector<std::string_view> tokens;
  while (true) {
    const std::string_view strToken = takeItem(strRest);
    if (strToken.empty()) return tokens;
    tokens.push_back(strToken);
  }
}

bool SchemaElement::flag(std::string_view strName) const {
  const std::string_view strValue = token(strName);
  return strValue == "true" || strValue == "1";
}

unsigned SchemaElement::derivations(std::string_view strName, unsigned otherwise,
                                    unsigned meant) const {
  if (!has(strName)) return otherwise & meant;
  unsigned derivations = 0;
  for (const std::string_view strToken : tokens(strName)) {
    if (strToken == "#all") derivations = ~0u;
    if (strToken == "extension") derivations |= kByExtension;
    if (strToken == "restriction") derivations |= kByRestriction;
    if (strToken == "substitution") derivations |= kBySubstitution;
    if (strToken == "list") derivations |= kByList;
    if (strToken == "union") derivations |= kByUnion;
  }
  return derivations & meant;
}

NameId SchemaElement::declaredName(bool blnQualifiedByDefault, NameTable& names) const {
  const bool blnQualified = has("form") ? token("form") == "qualified" : blnQualifiedByDefault;
  const std::string_view strUri =
      blnQualified ? std::string_view(part().document->strTargetNamespace) : "";
  return names.intern(strUri, token("name"));
}

std::string SchemaElement::Name::text() const {
  return ExpandedName{std::string(strUri), std::string(strLocal)}.text();
}

SchemaElement::Name SchemaElement::expand(std::string_view strName) const {
  const std::string_view strPrefix = prefixOf(strName);
  const std::optional<std::string_view> strUri = namespaceOf(strPrefix);
  if (!strUri) refuse(*this, "The prefix of '" + std::string(strName) + "' is not declared.");
  // A document without a target namespace speaks of that of whoever includes it.
  const SchemaDocument& document = *part().document;
  const bool blnAdopting = strPrefix.empty() && strUri->empty() && document.blnAdopted;
  return {blnAdopting ? std::string_view(document.strTargetNamespace) : *strUri,
          withoutPrefix(strName)};
}

std::optional<std::string_view> SchemaElement::namespaceOf(
    std::string_view strPrefix) const noexcept {
  for (const TreeNode* node = node_; isElement(node); node = node->parent) {
    for (const TreeNode* item = asParent(node)->attributes; item && !isAttribute(item);
         item = item->next) {
      if (item->name->prefix->strText == strPrefix) return item->name->uri->strText;
    }
  }
  if (strPrefix.empty()) return std::string_view();
  if (strPrefix == "xml") return kXmlUri;
  return std::nullopt;
}

PrefixLookup SchemaElement::prefixes() const {
  return [here = *this](std::string_view strPrefix) { return here.namespaceOf(strPrefix); };
}

void refuse(const SchemaElement& at, std::string_view strReason) {
  std::string strDescription = "The schema";
  SchemaSpot spot;
  if (at) {
    spot = {at.part().document->strPath, asParent(at.node())->lngLine};
    strDescription += " '" + spot.strPath + "'";
  }
  strDescription.append(" cannot be used: ").append(strReason);
  throw SchemaFailure(oneLine(strDescription), std::move(spot), oneLine(strReason));
}

void Allowance::spend(std::size_t lngMore, const SchemaElement& at) {
  lngSpent_ += lngMore;
  if (lngSpent_ > kMost) refuse(at, "Written out, it comes to more than a million parts.");
}

}  // namespace Varnel_Tolv_XML_Creation
