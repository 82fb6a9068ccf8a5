#include <array>
#include <string>
#include <vector>

#include "check/DocumentDataPaths.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

void findMissingParts(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& mapper = deployment.objectMapper;
  if (!deployment.objectMapper.isLoaded()) return;
  const Node objDocData = deployment.documentData();
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
  if (!deployment.documentInfo(kTimeInfo)) {
    const std::vector<Node> infos = childElements(objDocData);
    const Node* const meant = firstSlip(
        infos, kTimeInfo, [](const Node& objInfo) { return attributeText(objInfo, kId); });
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
  for (const Node& objInfo : childElements(deployment.documentData())) {
    if (objInfo.nodeName() != "docinfo") continue;
    const std::string strId = attributeText(objInfo, kId);
    if (strId == kNameInfo || strId == kDateInfo || strId == kTimeInfo) continue;
    const std::string_view strMeant = intendedWord(strId, {kNameInfo, kDateInfo, kTimeInfo});
    Found& found = findings.add(
        deployment.objectMapper, objInfo, kId, "",
        "The docinfo " + inQuotes(strId) +
            " is none of protocolname, attestationdate and attestationtime: it is "
            "never read.",
        strMeant.empty() ? "Correct the id, in lower case." : "Write " + inQuotes(strMeant) + ".");
    found.strPath = childText(objInfo, "parentxpath") + "/" + childText(objInfo, "node");
  }
}

/// Of an attribute and a slip of it the one is right that the parameter's id has behind "prot".
void tellMissingPart(const ParsedDeployment& deployment, const Node& objParameter,
                     const std::string& strAttribute, Findings& findings) {
  const ParsedFile& file = deployment.protocolInfo;
  const std::vector<NodeAttribute> attributes = file.root().attributes();
  const auto* const meant = firstSlip(attributes, strAttribute, &NodeAttribute::strName);
  if (meant && "prot" + strAttribute == attributeText(objParameter, kId)) {
    findings.add(file, file.root(), meant->strName, "",
                 "The attribute " + inQuotes(meant->strName) + " is not " + inQuotes(strAttribute) +
                     ", which the document data asks for: this part of the name is left out.",
                 "Write " + inQuotes(strAttribute) + ".");
    return;
  }
  findings.add(deployment.objectMapper, objParameter, "attribute", "",
               "The protocol information has no attribute " + inQuotes(strAttribute) +
                   ": this part of the name is left out.",
               meant ? "Write " + inQuotes(meant->strName) + ", or correct it there."
                     : "Name one that is there.");
}

void findNameParameters(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& mapper = deployment.objectMapper;
  const Node objInfo = deployment.documentInfo(kNameInfo);
  if (!objInfo) return;
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
      tellMissingPart(deployment, objParameter, strAttribute, findings);
    }
  }
}

void findMissingProtocolInfo(const ParsedDeployment& deployment, Findings& findings) {
  const Node objInfo = deployment.documentInfo(kNameInfo);
  if (!objInfo || deployment.protocolInfo.isNamed()) return;
  findings.add(
      deployment.objectMapper, objInfo, "", "",
      "The form's name is asked for, and no protocol information is named: the name is not "
      "written.",
      "Name the file of the protocol information, or take the docinfo out.");
}

void findComments(const ParsedDeployment& deployment, Findings& findings) {
  const Node objDocNodes = childElement(deployment.documentData(), "docnodes");
  if (!objDocNodes) return;
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
  for (const Node& objRule : deployment.copyRules()) {
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
  const ParsedFile& mapper = deployment.objectMapper;
  for (const Node& objRule : deployment.copyRules()) {
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

void findAppendWords(const ParsedDeployment& deployment, Findings& findings) {
  for (const Node& objRule : deployment.copyRules()) {
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
    {"too-large", Severity::note, findUnknownShape},  // behind all that look at the message's paths
});

}  // namespace

std::span<const Rule> documentDataRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
