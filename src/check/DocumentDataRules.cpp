#include <array>
#include <set>
#include <string>
#include <vector>

#include "check/MessageShape.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kName = "protocolname";
constexpr std::string_view kDate = "attestationdate";
constexpr std::string_view kTime = "attestationtime";

Node docData(const ParsedDeployment& deployment) {
  return childElement(deployment.objectMapper.root(), "docdata");
}

Node docInfo(const ParsedDeployment& deployment, std::string_view strId) {
  for (const Node& objInfo : childElements(docData(deployment))) {
    if (objInfo.nodeName() == "docinfo" && attributeText(objInfo, kId) == strId) return objInfo;
  }
  return {};
}

std::string childText(const Node& objNode, std::string_view strName) {
  const Node objChild = childElement(objNode, strName);
  return objChild ? objChild.text() : std::string();
}

bool isMapper(const ParsedDeployment& deployment) {
  return deployment.objectMapper.isLoaded() &&
         deployment.objectMapper.root().nodeName() == "message";
}

std::vector<Node> rulesOf(const ParsedDeployment& deployment) {
  return childElements(childElement(docData(deployment), "docnodes"));
}

void findMissingParts(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& mapper = deployment.objectMapper;
  if (!isMapper(deployment)) return;
  const Node objDocData = docData(deployment);
  if (!objDocData) {
    findings.add(mapper, mapper.root(), "", "", "There is no docdata: every submitted form fails.",
                 "Add docdata with the docinfo attestationtime and docnodes.");
    return;
  }
  if (!childElement(objDocData, "docnodes")) {
    findings.add(mapper, objDocData, "", "",
                 "There is no docnodes in docdata: every submitted form fails.",
                 "Add docnodes, which may be empty.");
  }
  if (!docInfo(deployment, kTime)) {
    const std::vector<Node> infos = childElements(objDocData);
    const Node* const meant =
        firstSlip(infos, kTime, [](const Node& objInfo) { return attributeText(objInfo, kId); });
    const Node& objPlace = meant ? *meant : objDocData;
    findings.add(mapper, objPlace, meant ? kId : "", "",
                 "There is no docinfo with the id attestationtime: a submitted form ends with an "
                 "error unless a rule copies something.",
                 "Add it.");
  }
  for (const Node& objInfo : childElements(objDocData)) {
    if (objInfo.nodeName() != "docinfo") continue;
    const bool blnParent = static_cast<bool>(childElement(objInfo, "parentxpath"));
    const bool blnNode = static_cast<bool>(childElement(objInfo, "node"));
    if (blnParent && blnNode) continue;
    findings.add(mapper, objInfo, "", "",
                 "The docinfo " + inQuotes(attributeText(objInfo, kId)) + " has no " +
                     (blnParent ? "node" : "parentxpath") + ": nothing is written.",
                 "Give it both.");
  }
}

void findUnknownInfos(const ParsedDeployment& deployment, Findings& findings) {
  if (!isMapper(deployment)) return;
  for (const Node& objInfo : childElements(docData(deployment))) {
    if (objInfo.nodeName() != "docinfo") continue;
    const std::string strId = attributeText(objInfo, kId);
    if (strId == kName || strId == kDate || strId == kTime) continue;
    findings.add(deployment.objectMapper, objInfo, kId, "",
                 "The docinfo " + inQuotes(strId) +
                     " is none of protocolname, attestationdate and "
                     "attestationtime: it is never read.",
                 "Correct the id, in lower case.");
  }
}

/// What is wrong with a path into the message; empty when it finds something.
std::string wrongWith(const ParsedDeployment& deployment, const std::string& strPath) {
  std::string strReason;
  const Node objFound =
      deployment.shape().select(deployment.shape().document(), strPath, strReason);
  if (objFound) return {};
  if (isAboutPrefix(strReason)) return {};
  return strReason.empty() ? "finds nothing in the message" : "cannot be evaluated: " + strReason;
}

void findInfosWithoutTarget(const ParsedDeployment& deployment, Findings& findings) {
  if (!isMapper(deployment) || !deployment.shape().isKnown()) return;
  for (const std::string_view id : {kName, kDate, kTime}) {
    const Node objInfo = docInfo(deployment, id);
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

void findNameParameters(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& mapper = deployment.objectMapper;
  const Node objInfo = docInfo(deployment, kName);
  if (!isMapper(deployment) || !objInfo) return;
  const Node objAction = childElement(objInfo, "action");
  if (!objAction || attributeText(objAction, kId) != "buildprotocolname") {
    findings.add(mapper, objAction ? objAction : objInfo, kId, "",
                 "The docinfo protocolname has no action buildprotocolname: the name is not "
                 "written.",
                 "Give it one with the parameters protname, protregion and protversion.");
    return;
  }
  for (const char* const part : {"protname", "protregion", "protversion"}) {
    Node objParameter;
    for (const Node& objChild : childElements(objAction)) {
      if (!objParameter && attributeText(objChild, kId) == part) objParameter = objChild;
    }
    const std::string strAttribute(objParameter ? trim(attributeText(objParameter, "attribute"))
                                                : std::string_view());
    if (strAttribute.empty()) {
      findings.add(mapper, objParameter ? objParameter : objAction, "attribute", "",
                   "The action buildprotocolname has no parameter " + inQuotes(part) +
                       " with an attribute: the name is not written.",
                   "Add it.");
    } else if (deployment.protocolInfo.isLoaded() &&
               !deployment.protocolInfo.root().getAttribute(strAttribute)) {
      findings.add(mapper, objParameter, "attribute", "",
                   "The protocol information has no attribute " + inQuotes(strAttribute) +
                       ": this part of the name is left out.",
                   "Name one that is there.");
      for (const NodeAttribute& attribute : deployment.protocolInfo.root().attributes()) {
        if (!isSlipOf(attribute.strName, strAttribute)) continue;
        findings.add(deployment.protocolInfo, deployment.protocolInfo.root(), attribute.strName, "",
                     "The attribute " + inQuotes(attribute.strName) + " is not " +
                         inQuotes(strAttribute) + ", which the document data asks for.",
                     "Correct the one or the other.");
      }
    }
  }
}

void findMissingProtocolInfo(const ParsedDeployment& deployment, Findings& findings) {
  const Node objInfo = docInfo(deployment, kName);
  if (!isMapper(deployment) || !objInfo || deployment.protocolInfo.isNamed()) return;
  findings.add(
      deployment.objectMapper, objInfo, "", "",
      "The form's name is asked for, and no protocol information is named: the name is not "
      "written.",
      "Name the file of the protocol information, or take the docinfo out.");
}

void findComments(const ParsedDeployment& deployment, Findings& findings) {
  const Node objDocNodes = childElement(docData(deployment), "docnodes");
  if (!isMapper(deployment) || !objDocNodes) return;
  const std::vector<std::size_t> lines = deployment.objectMapper.linesOfChildren(objDocNodes);
  const NodeList colChildren = required(objDocNodes.childNodes());
  for (std::size_t at = 0; at < colChildren.length(); ++at) {
    const Node objChild = colChildren.item(at);
    if (objChild.nodeType() == NodeType::element) continue;
    findings.add(deployment.objectMapper, lines[at], "",
                 "docnodes holds something else than a rule (" + objChild.nodeName() +
                     "), which is read as one: every submitted form fails.",
                 "Take it out, comments too.");
  }
}

void findRulesWithoutNode(const ParsedDeployment& deployment, Findings& findings) {
  if (!isMapper(deployment)) return;
  for (const Node& objRule : rulesOf(deployment)) {
    if (isBlank(childText(objRule, "node"))) {
      findings.add(deployment.objectMapper, objRule, "", "",
                   "The rule has no node: every submitted form fails.",
                   "Say which nodes it copies.");
    } else if (childText(objRule, "parentxpath").empty()) {
      findings.add(deployment.objectMapper, objRule, "", "",
                   "The rule has no parentxpath: it copies nothing.", "Say where the copies go.");
    }
  }
}

void findUnknownRuleActions(const ParsedDeployment& deployment, Findings& findings) {
  if (!isMapper(deployment)) return;
  const ParsedFile& mapper = deployment.objectMapper;
  for (const Node& objRule : rulesOf(deployment)) {
    const Node objAction = childElement(objRule, "action");
    if (!objAction) continue;
    if (toLower(attributeText(objAction, kId)) != "checknodetype") {
      findings.add(mapper, objAction, kId, "",
                   "The action " + inQuotes(attributeText(objAction, kId)) +
                       " is not checknodetype and does not count: the rule copies its node.",
                   "Write checknodetype, or take the action out.");
      continue;
    }
    for (const Node& objType : childElements(objAction)) {
      const std::string strType = attributeText(objType, kType);
      if (isBlank(strType) || hasCapitals(strType)) {
        findings.add(mapper, objType, kType, "",
                     "The type " + inQuotes(strType) +
                         " is never met: names are compared in lower case, prefix included.",
                     "Write the element's name in lower case.");
      }
      const Node objTypeAction = childElement(objType, "action");
      const std::string strId =
          objTypeAction ? toLower(attributeText(objTypeAction, kId)) : std::string();
      if (strId != "copyhcpdetailtype" && strId != "makehcpdetailtype") {
        findings.add(mapper, objTypeAction ? objTypeAction : objType, kId, "",
                     "The action " + inQuotes(strId) +
                         " is neither copyhcpdetailtype nor makehcpdetailtype: nothing is copied.",
                     "Write the one or the other.");
        continue;
      }
      if (childText(objTypeAction, "node").empty()) {
        findings.add(mapper, objTypeAction, "", "", "The action has no node: nothing is copied.",
                     "Say which nodes it copies.");
      }
      for (const Node& objStep : childElements(objTypeAction)) {
        if (objStep.nodeName() != "parameter") continue;
        const std::string strWord = toLower(attributeText(objStep, "action"));
        const std::string strUnder = attributeText(objStep, "under");
        const bool blnCreate = strWord == "create";
        if (!blnCreate && strWord != "copy") {
          findings.add(mapper, objStep, "action", "",
                       "The step " + inQuotes(strWord) +
                           " is neither create nor copy: it is passed "
                           "over.",
                       "Write create or copy.");
        } else if (blnCreate && toLower(strUnder) != "parent") {
          findings.add(mapper, objStep, "under", "",
                       "The step creates under " + inQuotes(strUnder) +
                           ", and only under \"parent\" anything is made.",
                       "Write under=\"parent\" and the whole path as its text.");
        } else if (strUnder.empty()) {
          findings.add(mapper, objStep, "under", "", "The step does not say where the copy goes.",
                       "Write under=\"parent\" or a path below it.");
        }
      }
    }
  }
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

void findRulePaths(const ParsedDeployment& deployment, Findings& findings) {
  if (!isMapper(deployment) || !deployment.shape().isKnown()) return;
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
  for (const Node& objRule : rulesOf(deployment)) {
    look(childElement(objRule, "node"), "the rule copies nothing");
    look(childElement(objRule, "parentxpath"), "the rule is passed over");
    const std::set<std::string> names =
        deployment.shape().namesAt(withoutConditions(childText(objRule, "node")));
    for (const Node& objType : childElements(childElement(objRule, "action"))) {
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

void findAppendWords(const ParsedDeployment& deployment, Findings& findings) {
  if (!isMapper(deployment)) return;
  for (const Node& objRule : rulesOf(deployment)) {
    const Node objBefore = childElement(objRule, "insertbefore");
    if (!objBefore) continue;
    const std::optional<std::string> strWord = objBefore.getAttribute("appendonnomatch");
    if (!strWord || isBooleanWord(*strWord)) continue;
    findings.add(deployment.objectMapper, objBefore, "appendonnomatch", "",
                 "The attribute appendonnomatch=" + inQuotes(*strWord) +
                     " is no Boolean word: a form for which the rule copies anything fails.",
                 "Write \"true\" or \"false\".");
  }
}

/// References that are not there end the run, unless copies may go to the end.
void findMissingReferences(const ParsedDeployment& deployment, Findings& findings) {
  if (!isMapper(deployment) || !deployment.shape().isKnown()) return;
  const MessageShape& shape = deployment.shape();
  for (const Node& objRule : rulesOf(deployment)) {
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
      if (blnChild || isAboutPrefix(strReason)) continue;
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

constexpr auto kRules = std::to_array<Rule>({
    {"docdata-incomplete", Severity::error, findMissingParts},
    {"unknown-docinfo", Severity::error, findUnknownInfos},
    {"docinfo-names-nothing", Severity::error, findInfosWithoutTarget},
    {"protocol-name", Severity::error, findNameParameters},
    {"no-protocol-info", Severity::warning, findMissingProtocolInfo},
    {"docnodes-comment", Severity::error, findComments},
    {"docnode-incomplete", Severity::error, findRulesWithoutNode},
    {"unknown-docnode-word", Severity::error, findUnknownRuleActions},
    {"docnode-names-nothing", Severity::error, findRulePaths},
    {"append-no-boolean", Severity::error, findAppendWords},
    {"insertbefore-names-nothing", Severity::error, findMissingReferences},
});

}  // namespace

std::span<const Rule> documentDataRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
