#include "check/MessageBuilding.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

void MessageBuilding::placeDocumentData() {
  for (const std::string_view strId : {kNameInfo, kDateInfo, kTimeInfo}) {
    if (const Node objInfo = deployment_.documentInfo(strId)) placeHeaderValue(objInfo, strId);
  }
  for (const Node& objRule : deployment_.copyRules()) {
    ++lngRule_;
    lngBranch_ = 0;
    placeCopies(objRule);
  }
}

void MessageBuilding::placeHeaderValue(const Node& objInfo, std::string_view strId) {
  const Node objParent = childElement(objInfo, "parentxpath");
  const Node objNode = childElement(objInfo, "node");
  if (!objParent || !objNode) return;
  const std::string strPath = objParent.text() + "/" + objNode.text();
  const Selected found = find(strPath);
  if (found.lngElement == 0) return;
  if (strId == kNameInfo && !deployment_.protocolInfo.isNamed()) return;  // nothing to write
  const Source source = strId == kNameInfo   ? Source::form
                        : strId == kDateInfo ? Source::date
                                             : Source::time;
  write(found.lngElement, source, nullptr, {&mapper_, objNode});
}

void MessageBuilding::placeCopies(const Node& objRule) {
  const Node objParentPath = childElement(objRule, "parentxpath");
  const Node objSource = childElement(objRule, "node");
  if (!objParentPath || !objSource) return;
  const Selected parent = find(objParentPath.text());
  if (parent.lngElement == 0) return;
  const Node objAction = childElement(objRule, "action");
  const bool blnByType = objAction && toLower(attributeText(objAction, kId)) == "checknodetype";
  if (!objAction) return copyTo(objRule, objSource.text(), objSource, parent.lngElement);
  if (!blnByType) return;  // another rule tells that the action is none
  // One of the types at most is that of a message's element.
  for (const Node& objType : childElements(objAction)) {
    const Node objTypeAction = childElement(objType, "action");
    if (!objTypeAction) continue;
    const Node objTypeSource = childElement(objTypeAction, "node");
    if (!objTypeSource) continue;
    const std::string strAction = toLower(attributeText(objTypeAction, kId));
    ++lngBranch_;
    if (strAction == "copyhcpdetailtype") {
      copyTo(objRule, objTypeSource.text(), objTypeSource, parent.lngElement);
    }
    if (strAction == "makehcpdetailtype") {
      makeDetails(objRule, objTypeAction, parent.lngElement, objTypeSource);
    }
  }
}

/// Copies all that an expression selects below a parent, before the first of the children that the
/// rule names.
void MessageBuilding::copyTo(const Node& objRule, const std::string& strSource, const Node& objAt,
                             std::size_t lngParent) {
  if (!stepsOf(strSource)) return;
  const std::vector<std::size_t> sources = findAll(strSource);
  if (sources.empty()) return;
  std::size_t lngBefore = 0;
  if (const Node objBefore = childElement(objRule, "insertbefore")) {
    bool blnSure = attributeText(objBefore, "appendonnomatch") == "true";
    for (const Node& objPath : childElements(objBefore)) {
      const auto steps = stepsOf(objPath.text());
      const auto name = steps && steps->size() == 1 ? nameOf(steps->front()) : std::nullopt;
      if (!name) return;  // not followed
      const std::size_t lngChild = plan_.childOf(lngParent, *name);
      if (lngChild == 0) continue;
      if (lngBefore == 0) lngBefore = lngChild;
      blnSure = blnSure || plan_.elements_[lngChild].origin == Origin::fromFile;
    }
    // That none of them is ever there is what another rule tells.
    if (!blnSure && lngBefore != 0) {
      plan_.tell({.strCode = "insert-before-uncertain",
                  .place = {&mapper_, objBefore},
                  .strMessage = "The elements before which copies are inserted are not in every "
                                "message: a run without them fails.",
                  .strHint = "Name an element of the template, or say appendonnomatch=\"true\"."});
    }
  }
  for (const std::size_t lngSource : sources) copyOf(lngSource, lngParent, lngBefore, objAt);
}

std::size_t MessageBuilding::copyOf(std::size_t lngSource, std::size_t lngParent,
                                    std::size_t lngBefore, const Node& objAt) {
  const auto copyOne = [&](std::size_t lngFrom, std::size_t lngTo, std::size_t lngNext) {
    MessageElement element = like(lngFrom);
    element.lngParent = lngTo;
    element.lngSource = lngFrom;
    element.origin = Origin::copy;
    element.place = {&mapper_, objAt};
    element.object = nullptr;
    return add(std::move(element), lngNext);
  };
  struct Waiting {
    std::size_t lngSource, lngParent;
  };
  const std::size_t lngCopy = copyOne(lngSource, lngParent, lngBefore);
  std::vector<Waiting> waiting;
  const auto wait = [&](std::size_t lngFrom, std::size_t lngTo) {
    const auto& children = plan_.elements_[lngFrom].children;
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      waiting.push_back({*child, lngTo});
    }
  };
  if (lngCopy != 0) wait(lngSource, lngCopy);
  while (!waiting.empty() && !blnFull_) {
    const auto [lngFrom, lngTo] = waiting.back();
    waiting.pop_back();
    if (lngFrom == lngCopy) continue;  // it was copied into what it is a copy of
    const std::size_t lngElement = copyOne(lngFrom, lngTo, 0);
    if (lngElement != 0) wait(lngFrom, lngElement);
  }
  return lngCopy;
}

/// Makes the elements of a detail block, and copies into it.
void MessageBuilding::makeDetails(const Node& objRule, const Node& objTypeAction,
                                  std::size_t lngParent, const Node& objSource) {
  for (const Node& objParameter : childElements(objTypeAction)) {
    if (objParameter.nodeName() != "parameter") continue;
    const std::string strAction = toLower(attributeText(objParameter, "action"));
    const std::string strUnder = attributeText(objParameter, "under");
    const bool blnHere = toLower(strUnder) == "parent";
    if (strAction == "create" && blnHere) {
      // Another alternative may have made it: no message has both.
      const auto steps = stepsOf(objParameter.text());
      const auto name = steps && steps->size() == 1 ? nameOf(steps->front()) : std::nullopt;
      const std::size_t lngThere = name ? plan_.childOf(lngParent, *name) : 0;
      const bool blnShared = lngThere != 0 && plan_.elements_[lngThere].lngRule == lngRule_ &&
                             plan_.elements_[lngThere].lngBranch != lngBranch_;
      if (!blnShared)
        makePath(lngParent, objParameter.text(), objParameter, nullptr, nullptr, false);
    } else if (strAction == "copy") {
      if (!blnHere) {
        const auto steps = stepsOf(strUnder);
        if (!steps) return;
        for (const PathStep& step : *steps) {
          const auto name = nameOf(step);
          const std::size_t lngThere = name ? plan_.childOf(lngParent, *name) : 0;
          if (lngThere == 0) return;
          lngParent = lngThere;
        }
      }
      copyTo(objRule, objSource.text() + "/" + objParameter.text(), objParameter, lngParent);
    }
  }
}

}  // namespace Varnel_Tolv_XML_Creation
