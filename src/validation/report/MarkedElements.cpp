#include "validation/report/MarkedElements.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/dom/ElementPlaces.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// An element on the way to the present one, and how far its children have been counted.
struct Step {
  Node objElement;
  std::string strName;
  std::size_t lngPosition = 1;
  std::optional<ChildPositions> positions = std::nullopt;
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
  if (!parent.positions) parent.positions.emplace(parent.objElement);
  return {objChild, objChild.nodeName(), parent.positions->of(objChild)};
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
  wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
  const std::vector<Node> elements = elementsAt(objMessage.documentElement(), wanted);
  std::unordered_map<std::size_t, MarkedElement> found;
  std::vector<Step> steps;
  for (std::size_t lngElement = 0; lngElement < elements.size(); ++lngElement) {
    if (!elements[lngElement]) break;
    goTo(elements[lngElement], steps);
    found.emplace(wanted[lngElement], describe(steps));
  }
  return found;
}

}  // namespace Varnel_Tolv_XML_Creation
