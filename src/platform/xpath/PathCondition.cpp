#include "platform/xpath/PathCondition.h"

#include <libxml/xpathInternals.h>

#include <cstring>
#include <string>
#include <string_view>

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

bool isNamed(const xmlChar* text, const NameTest& name) {
  return name.blnAnyName ||
         std::strcmp(reinterpret_cast<const char*>(text), name.strName.c_str()) == 0;
}

bool isCharacterData(const xmlNode* node) { return isText(node) || isCData(node); }

const xmlNode* nextPiece(const xmlNode* piece, const xmlNode* owner) {
  return isAttribute(owner) ? piece->next : nextBelow(piece, owner);
}

/// Compares the string value of `owner`, which may lie in many pieces, or only its beginning.
bool compareText(const xmlNode* owner, std::string_view strExpected, bool blnBeginning,
                 WorkLimit& limit) {
  for (const xmlNode* piece = owner->children; piece != nullptr; piece = nextPiece(piece, owner)) {
    limit.count();
    if (!isCharacterData(piece)) continue;
    const std::string_view strPiece = view(piece->content);
    if (strPiece.size() >= strExpected.size() && blnBeginning) {
      return strPiece.starts_with(strExpected);
    }
    if (!strExpected.starts_with(strPiece)) return false;
    strExpected.remove_prefix(strPiece.size());
  }
  return strExpected.empty();
}

bool equalsNumber(const xmlNode* owner, double dblNumber, WorkLimit& limit) {
  const xmlNode* piece = owner->children;
  if (piece != nullptr && piece->next == nullptr && isCharacterData(piece)) {
    return xmlXPathStringEvalNumber(piece->content) == dblNumber;
  }
  std::string strText;
  for (; piece != nullptr; piece = nextPiece(piece, owner)) {
    limit.count();
    if (isCharacterData(piece)) strText += view(piece->content);
  }
  return xmlXPathStringEvalNumber(xmlText(strText.c_str())) == dblNumber;
}

bool holdsForOperand(const Condition& test, const xmlNode* operand, WorkLimit& limit) {
  switch (test.kind) {
    case Condition::Kind::equalsText:
      return compareText(operand, test.strLiteral, false, limit);
    case Condition::Kind::startsWith:
      return compareText(operand, test.strLiteral, true, limit);
    case Condition::Kind::equalsNumber:
      return equalsNumber(operand, test.dblNumber, limit);
    default:
      return true;  // it exists
  }
}

/// A comparison holds when it holds for any of the operand's nodes; a function sees the first only.
template <class XmlType>
bool holdsForAny(const Condition& test, const XmlType* first, WorkLimit& limit) {
  for (const XmlType* node = first; node != nullptr; node = node->next) {
    limit.count();
    if (!hasName(node, test.name)) continue;
    const auto* operand = reinterpret_cast<const xmlNode*>(node);
    const bool blnHolds = holdsForOperand(test, operand, limit);
    if (blnHolds || test.kind == Condition::Kind::startsWith) return blnHolds;
  }
  return test.kind == Condition::Kind::startsWith && test.strLiteral.empty();
}

bool holds(const LocationPath& path, const Condition& condition, const xmlNode* element,
           WorkLimit& limit) {
  limit.count();
  switch (condition.kind) {
    case Condition::Kind::all:
      return holdAll(path, condition.firstInner, element, limit);
    case Condition::Kind::none:
      return !holdAll(path, condition.firstInner, element, limit);  // a list of one
    case Condition::Kind::any:
      for (ConditionIndex inner = condition.firstInner; inner != kNoCondition;
           inner = path.conditions[inner].next) {
        if (holds(path, path.conditions[inner], element, limit)) return true;
      }
      return false;
    default:
      return condition.blnAttribute ? holdsForAny(condition, element->properties, limit)
                                    : holdsForAny(condition, element->children, limit);
  }
}

}  // namespace

bool hasName(const xmlNode* element, const NameTest& name) {
  if (!isElement(element) || !isNamed(element->name, name)) return false;
  if (name.blnPrefixed) return element->ns != nullptr && view(element->ns->href) == name.strUri;
  return name.blnAnyName || element->ns == nullptr;
}

bool hasName(const xmlAttr* attribute, const NameTest& name) {
  if (!isNamed(attribute->name, name)) return false;
  if (name.blnPrefixed) return attribute->ns != nullptr && view(attribute->ns->href) == name.strUri;
  return name.blnAnyName || attribute->ns == nullptr || attribute->ns->prefix == nullptr;
}

bool holdAll(const LocationPath& path, ConditionIndex first, const xmlNode* element,
             WorkLimit& limit) {
  for (ConditionIndex index = first; index != kNoCondition; index = path.conditions[index].next) {
    if (!holds(path, path.conditions[index], element, limit)) return false;
  }
  return true;
}

}  // namespace Varnel_Tolv_XML_Creation
