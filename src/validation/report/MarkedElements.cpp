#include "validation/report/MarkedElements.h"

#include <optional>
#include <utility>
#include <vector>

#include "config/Attributes.h"
#include "config/Names.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// An element on the way to the present one.
struct Step {
  Node objElement;
  std::string strName;
  std::size_t lngPosition = 1;
  std::unordered_map<std::string, std::size_t> children = {};  // how many of each name, so far
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

}  // namespace

std::unordered_map<std::size_t, MarkedElement> markedElements(
    const Document& objMessage, const std::unordered_set<std::size_t>& wanted) {
  std::unordered_map<std::size_t, MarkedElement> found;
  std::vector<Step> steps;
  const NodeList colElements = required(objMessage.selectNodes("//*"));
  for (std::size_t lngNumber = 0; found.size() < wanted.size() && lngNumber < colElements.length();
       ++lngNumber) {
    const Node objElement = colElements.item(lngNumber);
    const Node objParent = objElement.parentNode();
    while (!steps.empty() && steps.back().objElement != objParent) steps.pop_back();
    Step step = {objElement, objElement.nodeName()};
    if (!steps.empty()) step.lngPosition = ++steps.back().children[step.strName];
    steps.push_back(std::move(step));
    if (wanted.contains(lngNumber)) found.emplace(lngNumber, describe(steps));
  }
  return found;
}

}  // namespace Varnel_Tolv_XML_Creation
