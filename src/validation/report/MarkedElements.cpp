#include "validation/report/MarkedElements.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "config/Attributes.h"
#include "config/Names.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// An element on the way to the present one, and how far its children have been counted.
struct Step {
  Node objElement;
  std::string strName;
  std::size_t lngPosition = 1;
  std::optional<NodeList> colChildren = std::nullopt;
  std::size_t lngNext = 0;
  std::string strCounted = {};                               // the name that was counted last
  std::size_t lngCounted = 0;                                // how many of it, so far
  std::unordered_map<std::string, std::size_t> counts = {};  // of the names before it
};

/// The marks of the last of these elements that has any.
Marks marksOf(const std::vector<Step>& steps, std::size_t lngSteps) {
  while (lngSteps-- > 0) {
    const Node& objElement = steps[lngSteps].objElement;
    std::string strQuestionId = attributeText(objElement, kQuestionId);
    if (strQuestionId.empty()) continue;
    return {std::move(strQuestionId), attributeText(objElement, kRowIndex),
            attributeText(objElement, kColumnId)};
  }
  return {};
}

MarkedElement describe(const std::vector<Step>& steps) {
  MarkedElement marked;
  marked.objElement = steps.back().objElement;
  for (const Step& step : steps) {
    marked.strPlainPath.append("/").append(step.strName);
    marked.strPath.append("/").append(step.strName);
    marked.strPath.append("[").append(std::to_string(step.lngPosition)).append("]");
  }
  marked.marks = marksOf(steps, steps.size());
  marked.outerMarks = marksOf(steps, steps.size() - 1);
  return marked;
}

/// The step from a parent to a child of it that stands behind all that were counted before.
Step stepTo(Step& parent, const Node& objChild) {
  if (!parent.colChildren) parent.colChildren = required(parent.objElement.childNodes());
  for (;;) {
    const Node objCounted = parent.colChildren->item(parent.lngNext++);
    if (objCounted.nodeType() != NodeType::element) continue;
    std::string strName = objCounted.nodeName();
    if (strName != parent.strCounted) {  // mostly a row follows another
      parent.counts[parent.strCounted] = parent.lngCounted;
      parent.strCounted = strName;
      parent.lngCounted = parent.counts[strName];
    }
    ++parent.lngCounted;
    if (objCounted == objChild) return {objChild, std::move(strName), parent.lngCounted};
  }
}

/// Leads the steps from where they are to an element that comes later in the document.
void goTo(const Node& objElement, std::vector<Step>& steps) {
  std::vector<Node> way;  // from the element up to the root
  for (Node objAt = objElement; objAt && objAt.nodeType() == NodeType::element;
       objAt = objAt.parentNode()) {
    way.push_back(objAt);
  }
  std::size_t lngSame = 0;
  while (lngSame < steps.size() && lngSame < way.size() &&
         steps[lngSame].objElement == way[way.size() - 1 - lngSame]) {
    ++lngSame;
  }
  steps.resize(lngSame);
  if (steps.empty()) steps.push_back({way.back(), way.back().nodeName()});
  while (steps.size() < way.size()) {
    steps.push_back(stepTo(steps.back(), way[way.size() - 1 - steps.size()]));
  }
}

}  // namespace

std::unordered_map<std::size_t, MarkedElement> markedElements(const Document& objMessage,
                                                              std::vector<std::size_t> wanted) {
  std::ranges::sort(wanted);
  std::unordered_map<std::size_t, MarkedElement> found;
  std::vector<Step> steps;
  const Node objRoot = objMessage.documentElement();
  const NodeList colBelow = required(objRoot.getElementsByTagName("*"));
  for (const std::size_t lngNumber : wanted) {
    if (lngNumber > colBelow.length() || found.contains(lngNumber)) continue;
    goTo(lngNumber == 0 ? objRoot : colBelow.item(lngNumber - 1), steps);
    found.emplace(lngNumber, describe(steps));
  }
  return found;
}

}  // namespace Varnel_Tolv_XML_Creation
