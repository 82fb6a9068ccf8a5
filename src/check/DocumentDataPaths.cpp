#include "check/DocumentDataPaths.h"

#include <set>
#include <string>
#include <vector>

#include "check/MessageShape.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// What is wrong with a path into the message; empty when it finds something.
std::string wrongWith(const ParsedDeployment& deployment, const std::string& strPath) {
  std::string strReason;
  const Node objFound =
      deployment.shape().select(deployment.shape().document(), strPath, strReason);
  if (objFound) return {};
  if (hasOwnRule(strReason)) return {};
  return strReason.empty() ? "finds nothing in the message" : "cannot be evaluated: " + strReason;
}

std::string joined(const std::set<std::string>& names) {
  constexpr std::size_t kShown = 12;
  std::string strNames;
  std::size_t lngShown = 0;
  for (const std::string& strName : names) {
    if (++lngShown > kShown) return strNames + ", ...";
    strNames += (strNames.empty() ? "" : ", ") + inQuotes(strName);
  }
  return strNames;
}

/// The path of a node with this name among those that a path selects.
std::string pathOfType(const std::string& strPath, const std::string& strType) {
  return strPath.substr(0, strPath.rfind('/') + 1) + strType;
}

/// The places below the parent to which the steps of makehcpdetailtype copy. Each adds to the path
/// of those behind it, so what follows one that is not there says nothing new.
void findSubPaths(const ParsedDeployment& deployment, std::string strParent,
                  const Node& objTypeAction, Findings& findings) {
  const bool blnMakes =
      objTypeAction && toLower(attributeText(objTypeAction, kId)) == "makehcpdetailtype";
  if (!blnMakes || !wrongWith(deployment, strParent).empty()) return;
  for (const Node& objStep : childElements(objTypeAction)) {
    const std::string strUnder = attributeText(objStep, "under");
    const bool blnCopy =
        objStep.nodeName() == "parameter" && toLower(attributeText(objStep, "action")) == "copy";
    if (!blnCopy || strUnder.empty() || toLower(strUnder) == "parent") continue;
    strParent += "/" + strUnder;
    const std::string strWrong = wrongWith(deployment, strParent);
    if (strWrong.empty()) continue;
    findings
        .add(deployment.objectMapper, objStep, "under", "",
             "The path " + inQuotes(strParent) + " " + strWrong + ": nothing is copied there.",
             "Name an element that a step before creates, or the parent has.")
        .strPath = strParent;
    return;
  }
}

}  // namespace

void findInfosWithoutTarget(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.shape().isKnown()) return;
  for (const std::string_view id : {kNameInfo, kDateInfo, kTimeInfo}) {
    const Node objInfo = deployment.documentInfo(id);
    const Node objNode = childElement(objInfo, "node");
    const Node objParent = childElement(objInfo, "parentxpath");
    if (!objNode || !objParent) continue;
    const std::string strWrong = wrongWith(deployment, objParent.text() + "/" + objNode.text());
    if (strWrong.empty()) continue;
    const bool blnParent = !wrongWith(deployment, objParent.text()).empty();
    findings
        .add(deployment.objectMapper, blnParent ? objParent : objNode, "", "",
             "The path " + inQuotes(objParent.text() + "/" + objNode.text()) + " of the docinfo " +
                 inQuotes(id) + " " + strWrong + ": it is not written.",
             "Let the template hold the element; capitals count.")
        .strPath = objParent.text() + "/" + objNode.text();
  }
}

void findRulePaths(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.shape().isKnown()) return;
  const auto look = [&](const Node& objPath, const char* consequence) {
    if (!objPath || isBlank(objPath.text())) return;
    const std::string strWrong = wrongWith(deployment, objPath.text());
    if (strWrong.empty()) return;
    findings
        .add(deployment.objectMapper, objPath, "", "",
             "The path " + inQuotes(objPath.text()) + " " + strWrong + ": " + consequence + ".",
             "Write a path of the template or of what the mapping makes; capitals count.")
        .strPath = objPath.text();
  };
  for (const Node& objRule : deployment.copyRules()) {
    look(childElement(objRule, "node"), "the rule copies nothing");
    look(childElement(objRule, "parentxpath"), "the rule is passed over");
    const std::vector<Node> types = childElements(childElement(objRule, "action"));
    const std::set<std::string> names =
        types.empty() ? std::set<std::string>()
                      : deployment.shape().namesAt(withoutConditions(childText(objRule, "node")));
    for (const Node& objType : types) {
      const std::string strType = attributeText(objType, kType);
      // An odd word has a rule of its own.
      if (!names.empty() && !isBlank(strType) && !hasCapitals(strType) &&
          !names.contains(strType)) {
        findings
            .add(deployment.objectMapper, objType, kType, "",
                 "None of the nodes that " + inQuotes(childText(objRule, "node")) +
                     " can select has the name " + inQuotes(strType) + ": nothing is copied.",
                 "Write one of " + joined(names) + ".")
            .strPath = pathOfType(childText(objRule, "node"), strType);
      }
      const Node objTypeAction = childElement(objType, "action");
      const Node objFrom = childElement(objTypeAction, "node");
      look(objFrom, "nothing is copied");
      findSubPaths(deployment, childText(objRule, "parentxpath"), objTypeAction, findings);
      for (const Node& objStep : childElements(objTypeAction)) {
        const bool blnCopy = objStep.nodeName() == "parameter" &&
                             toLower(attributeText(objStep, "action")) == "copy";
        if (!blnCopy || !objFrom || !wrongWith(deployment, objFrom.text()).empty()) continue;
        const std::string strWrong = wrongWith(deployment, objFrom.text() + "/" + objStep.text());
        if (strWrong.empty()) continue;
        findings
            .add(deployment.objectMapper, objStep, "", "",
                 "The path " + inQuotes(objFrom.text() + "/" + objStep.text()) + " " + strWrong +
                     ": nothing is copied.",
                 "Name a child of the node that is copied from.")
            .strPath = objFrom.text() + "/" + objStep.text();
      }
    }
  }
}

void findMissingReferences(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.shape().isKnown()) return;
  const MessageShape& shape = deployment.shape();
  for (const Node& objRule : deployment.copyRules()) {
    const Node objBefore = childElement(objRule, "insertbefore");
    std::string strReason;
    const std::string strParent = childText(objRule, "parentxpath");
    if (!objBefore || strParent.empty()) continue;
    const Node objParent = shape.select(shape.document(), strParent, strReason);
    if (!objParent) continue;
    bool blnFound = false;
    for (const Node& objPath : childElements(objBefore)) {
      const std::string strPath = objPath.text();
      if (objPath.nodeName() != "node" || strPath.empty()) continue;
      const Node objReference = shape.select(objParent, strPath, strReason);
      blnFound = blnFound || objReference;
      const bool blnChild = objReference && objReference.parentNode() == objParent;
      if (blnChild || hasOwnRule(strReason)) continue;
      findings
          .add(deployment.objectMapper, objPath, "", "",
               "The reference " + inQuotes(strPath) +
                   (!strReason.empty() ? " cannot be evaluated: " + strReason
                    : objReference     ? " is no child of the parent."
                                       : " is never found below the parent: " +
                                         std::string("a copy cannot go before it.")),
               "Name a child of the parent; capitals count.")
          .strPath = strParent + "/" + strPath;
    }
    if (childElements(objBefore).empty()) {
      findings.add(deployment.objectMapper, objBefore, "", "",
                   "insertbefore names no reference: a form for which the rule copies anything "
                   "fails.",
                   "Give it node children, or take it out.");
    }
  }
}

void findUnknownShape(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.shape().isTooLarge()) return;
  findings.add(deployment.messageTemplate, 1, "",
               "Template and mapping are too large to look at all paths of the message.",
               "Nothing need be done; what depends on paths was not checked, or not all of it.");
}

}  // namespace Varnel_Tolv_XML_Creation
