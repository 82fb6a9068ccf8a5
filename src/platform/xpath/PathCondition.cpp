#include "platform/xpath/PathCondition.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/xpath/XPathNumber.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// Compares the string value of `owner`, which may lie in many pieces, or only its beginning.
bool compareText(const TreeNode* owner, std::string_view strExpected, bool blnBeginning,
                 WorkLimit& limit) {
  if (isAttribute(owner)) {
    limit.countText(std::min<std::size_t>(owner->lngSize, strExpected.size()));
    return blnBeginning ? valueOf(owner).starts_with(strExpected) : valueOf(owner) == strExpected;
  }
  for (const TreeNode* piece = nextBelow(owner, owner); piece; piece = nextBelow(piece, owner)) {
    limit.count();
    if (!isCharacterData(piece)) continue;
    const std::string_view strPiece = valueOf(piece);
    limit.countText(std::min(strPiece.size(), strExpected.size()));
    if (strPiece.size() >= strExpected.size() && blnBeginning) {
      return strPiece.starts_with(strExpected);
    }
    if (!strExpected.starts_with(strPiece)) return false;
    strExpected.remove_prefix(strPiece.size());
  }
  return strExpected.empty();
}

bool equalsNumber(const TreeNode* owner, double dblNumber, WorkLimit& limit) {
  for (const TreeNode* piece = owner; !isAttribute(owner) && piece;) {
    limit.count();
    piece = nextBelow(piece, owner);
  }
  const std::string strText = textOf(owner);
  limit.countText(strText.size());
  return xpathNumber(strText) == dblNumber;
}

bool holdsForOperand(const Condition& test, const TreeNode* operand, WorkLimit& limit) {
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

/// A comparison holds when it holds for any of the operand's nodes, which are among `first` and
/// those beside it; a function sees the first only.
bool holdsForAny(const Condition& test, const TreeNode* first, WorkLimit& limit) {
  for (const TreeNode* node = first; node != nullptr; node = node->next) {
    limit.count();
    if (!(isElement(node) || isAttribute(node)) || !isNamed(node, test.name)) continue;
    const bool blnHolds = holdsForOperand(test, node, limit);
    if (blnHolds || test.kind == Condition::Kind::startsWith) return blnHolds;
  }
  return test.kind == Condition::Kind::startsWith && test.strLiteral.empty();
}

bool holds(const LocationPath& path, const Condition& condition, const TreeNode* element,
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
      return holdsForAny(condition,
                         condition.blnAttribute ? firstAttribute(element) : element->first, limit);
  }
}

}  // namespace

bool holdAll(const LocationPath& path, ConditionIndex first, const TreeNode* element,
             WorkLimit& limit) {
  for (ConditionIndex index = first; index != kNoCondition; index = path.conditions[index].next) {
    if (!holds(path, path.conditions[index], element, limit)) return false;
  }
  return true;
}

}  // namespace Varnel_Tolv_XML_Creation
