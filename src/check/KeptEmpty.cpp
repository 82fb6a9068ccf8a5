#include "check/KeptEmpty.h"

#include <algorithm>
#include <utility>

#include "config/Attributes.h"
#include "platform/text/Text.h"

// What a form leaves empty is judged on one that answers nothing of what goes into the element, and
// something else, where the clean-up needs that to keep it: an element above it that is optional
// goes with all that is in it unless something in it has a text.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Kind = DeclaredChild::Kind;
using Origin = MessageElement::Origin;
using Source = MessageWrite::Source;

constexpr std::size_t kMostWork = 1'000'000;  // elements looked at; beyond it nothing is claimed
constexpr std::size_t kMostDepth = 50;        // of content that is looked into

/// Whether the unit of a computed cell stands in this column: it is left out where nothing could be
/// computed.
bool isUnitOfComputed(const FormObject& object, const std::string& strColumn) {
  if (strColumn != "timedimension") return false;
  for (const TableColumn& column : object.columns) {
    if (column.strId == strColumn) return false;
    if (column.isComputed()) return true;
  }
  return false;
}

}  // namespace

bool isMandatoryInReference(const Node& objReference) {
  return objReference && toLower(trim(attributeText(objReference, "mandatory"))) == "true";
}

KeptEmpty::KeptEmpty(const MessagePlan& plan, ReferenceOf referenceOf)
    : plan_(plan), elements_(plan.elements()), referenceOf_(std::move(referenceOf)) {
  for (const MessageWrite& write : plan_.writes()) writes_[write.lngElement].push_back(&write);
}

bool KeptEmpty::spoils(std::size_t lngElement) {
  const MessageElement& element = elements_[lngElement];
  if (element.kind != Kind::element || !isBroughtAlong(element) || !isKept(lngElement))
    return false;
  std::vector<Answer> answers;
  return mayStayEmpty(lngElement, answers) && othersFill(lngElement, answers) &&
         isRefusedEmpty(lngElement, 0);
}

bool KeptEmpty::isBroughtAlong(const MessageElement& element) const {
  return element.origin == Origin::fromFile || element.origin == Origin::content;
}

/// Some elements are mandatory for some questions only.
bool KeptEmpty::isKept(std::size_t lngElement) const {
  const Node objReference = referenceOf_(lngElement);
  return isMandatoryInReference(objReference) &&
         isBlank(attributeText(objReference, "questionIds"));
}

/// Calls `visit` with the elements from one down, those from another down left out, until it says
/// false. False too when there are too many.
template <class Visit>
bool KeptEmpty::forAllBelow(std::size_t lngTop, std::size_t lngLeftOut, const Visit& visit) {
  std::vector<std::size_t> open{lngTop};
  while (!open.empty()) {
    const std::size_t lngElement = open.back();
    open.pop_back();
    if (lngElement == lngLeftOut) continue;
    if (++lngWork_ > kMostWork || !visit(lngElement)) return false;
    const auto& children = elements_[lngElement].children;
    open.insert(open.end(), children.begin(), children.end());
  }
  return true;
}

/// Whether a form can leave all of an element without a text; `answers` are those that are then
/// missing.
bool KeptEmpty::mayStayEmpty(std::size_t lngTop, std::vector<Answer>& answers) {
  return forAllBelow(lngTop, 0, [&](std::size_t lngElement) {
    const MessageElement& element = elements_[lngElement];
    const auto found = writes_.find(lngElement);
    const bool blnOwnText = element.blnFilled && found == writes_.end();
    if (element.origin == Origin::copy || blnOwnText) return false;
    if (found == writes_.end()) return true;
    return std::ranges::all_of(found->second, [&](const MessageWrite* write) {
      answers.emplace_back(write->object, write->strColumn);
      return mayStayUnwritten(*write, lngTop);
    });
  });
}

bool KeptEmpty::mayStayUnwritten(const MessageWrite& write, std::size_t lngTop) const {
  if (!write.object || write.object->blnHidden) return false;
  const MessageElement& top = elements_[lngTop];
  const MessageElement& element = elements_[write.lngElement];
  const bool blnCell = !write.strColumn.empty();
  const bool blnMade = element.origin == Origin::value || element.origin == Origin::row;
  switch (write.source) {
    case Source::answer:
      // A complex type is there only when the answer is for which it is made.
      return blnCell || top.origin == Origin::fromFile ||
             (write.object != top.object && (!top.entry || top.entry->strItem.empty()));
    case Source::joined:
      return blnCell || blnMade;  // of an address the elements of empty lines go
    case Source::constant:
      return blnCell && isUnitOfComputed(*write.object, write.strColumn);
    case Source::label:
    case Source::date:
    case Source::time:
    case Source::form:
      return false;
  }
  return false;
}

/// The next element above one that the clean-up takes away when nothing in it has a text; 0: none.
std::size_t KeptEmpty::optionalAncestor(std::size_t lngElement) const {
  std::size_t lngAbove = elements_[lngElement].lngParent;
  while (lngAbove != 0 && isMandatoryInReference(referenceOf_(lngAbove))) {
    lngAbove = elements_[lngAbove].lngParent;
  }
  return lngAbove;
}

/// Whether something has a text then without which the element would go, or its row would not be
/// there.
bool KeptEmpty::othersFill(std::size_t lngTop, const std::vector<Answer>& answers) {
  std::size_t lngAround = optionalAncestor(lngTop);
  if (elements_[lngTop].origin == Origin::content) {
    for (std::size_t at = lngTop; at != 0 && at != lngAround; at = elements_[at].lngParent) {
      if (elements_[at].origin == Origin::row) lngAround = at;
    }
  }
  if (lngAround == 0) return true;
  const bool blnNone = forAllBelow(lngAround, lngTop, [&](std::size_t lngElement) {
    const auto found = writes_.find(lngElement);
    if (found == writes_.end()) return true;
    return std::ranges::none_of(found->second, [&](const MessageWrite* write) {
      return write->object && write->source == Source::answer &&
             std::ranges::find(answers, Answer(write->object, write->strColumn)) == answers.end();
    });
  });
  return !blnNone && lngWork_ <= kMostWork;
}

/// Whether the schema refuses an element of which nothing is left but what the reference XML keeps.
bool KeptEmpty::isRefusedEmpty(std::size_t lngElement, std::size_t lngDepth) {
  const MessageElement& element = elements_[lngElement];
  const DeclaredElement& declared = element.declared;
  if (element.kind != Kind::element || lngDepth == kMostDepth || ++lngWork_ > kMostWork) {
    return false;
  }
  if (declared.value()) {
    return !declared.defaultValue() && !declared.fixedValue() && !declared.accepts("");
  }
  if (!declared.holdsElements()) return false;
  for (const ContentOutline::Child& child : plan_.contentOf(declared).children()) {
    if (!child.blnRequired) continue;
    bool blnThere = false;
    for (const std::size_t lngChild : element.children) {
      const MessageElement& other = elements_[lngChild];
      const bool blnFits = other.declared == child.element || other.kind != Kind::element ||
                           !child.element.substitutes().empty();
      if (!blnFits || !isBroughtAlong(other)) continue;
      const bool blnStays = isMandatoryInReference(referenceOf_(lngChild));
      if (isKept(lngChild) && isRefusedEmpty(lngChild, lngDepth + 1)) return true;
      blnThere = blnThere || blnStays;
    }
    if (!blnThere) return true;
  }
  return false;
}

}  // namespace Varnel_Tolv_XML_Creation
