#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

void findTablesWithoutAction(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    if (!entry.isTable() || entry.objAction) continue;
    findings.add(deployment.objectMapper, entry.objNode, "", entry.strId,
                 "The entry of a table has no action: every form with the table fails.",
                 "Give it an action: rowinfotovalue or a schematype.");
  }
}

void findUnknownActions(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.schemaTypes.isLoaded()) return;
  std::size_t lngCompared = 0;
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.actionKind() != ActionKind::complexType || entry.isLeftOut()) continue;
    if (isBlank(entry.strActionId) || deployment.typeFilledBy(entry)) continue;
    const ComplexType* meant = nullptr;
    if (++lngCompared <= kMostCompared) {
      meant = firstMeant(deployment.complexTypes, entry.strActionId, &ComplexType::strId);
      if (meant && hasCapitals(meant->strId)) meant = nullptr;  // it is told of that one
    }
    findings.add(deployment.objectMapper, entry.objAction, kId, entry.strId,
                 "There is no action " + inQuotes(entry.strActionId) +
                     ", and no schematype of that name: every form with this answer fails.",
                 meant ? "Write " + inQuotes(meant->strId) + "."
                       : "Name a schematype of the schema types, " +
                             inQuotes(entry.isTable() ? kRowTextAction : kJoinAction) +
                             ", or nothing.");
  }
}

void findAddressesInCapitals(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.isAddress() || entry.strLowerAction != kAddressAction) continue;
    findings.add(deployment.objectMapper, entry.objAction, kId, entry.strId,
                 "The action " + inQuotes(entry.strActionId) +
                     " splits no answer into lines: that is done only for the name in lower case.",
                 "Write " + inQuotes(kAddressAction) + ".");
  }
}

void findParameterCounts(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    const std::size_t lngCount = entry.parameters().size();
    if (entry.actionKind() != ActionKind::join || lngCount == 2) continue;
    findings.add(deployment.objectMapper, entry.objAction, "", entry.strId,
                 "addinfotonode joins exactly two parameters and has " + std::to_string(lngCount) +
                     ": every form with this answer fails.",
                 "Give it two.");
  }
}

/// Flags of parameters: what a complex type takes only as "true", a joined text as anything.
void findWrongFlags(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    const ActionKind kind = entry.actionKind();
    if (kind != ActionKind::join && kind != ActionKind::complexType) continue;
    for (const Node& objParameter : entry.parameters()) {
      for (const std::string_view attribute : {kFormValue, kFormLabel}) {
        const std::string strWord = attributeText(objParameter, attribute);
        const bool blnNo = kind == ActionKind::complexType && strWord == "false";
        if (isBlank(strWord) || strWord == "true" || blnNo) continue;
        findings.add(deployment.objectMapper, objParameter, attribute, entry.strId,
                     std::string(attribute) + "=" + inQuotes(strWord) +
                         (kind == ActionKind::join ? " counts as \"true\" here, whatever it says."
                                                   : " is not \"true\" and does not count."),
                     "Write " + std::string(attribute) + "=\"true\", or leave it out.");
      }
    }
  }
}

/// A parameter that takes its value from nowhere.
void findEmptyParameters(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    const ActionKind kind = entry.actionKind();
    if (kind != ActionKind::join && kind != ActionKind::complexType) continue;
    for (const Node& objParameter : entry.parameters()) {
      bool blnSource = false;
      for (const std::string_view attribute : {kFormValue, kFormLabel}) {
        blnSource = blnSource || !isBlank(attributeText(objParameter, attribute));
      }
      const std::string_view other = kind == ActionKind::join ? kItem : kMessageItem;
      blnSource = blnSource || !isBlank(attributeText(objParameter, other)) ||
                  (kind == ActionKind::complexType && objParameter.hasText());
      if (blnSource) continue;
      findings.add(deployment.objectMapper, objParameter, "", entry.strId,
                   "The parameter has neither formvalue nor formlabel nor " + std::string(other) +
                       ": its value is empty.",
                   "Say where its value comes from.");
    }
  }
}

/// An action that sends other things than the answer itself.
void findUnusedAnswers(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    const ActionKind kind = entry.actionKind();
    if ((kind != ActionKind::join && kind != ActionKind::complexType) || entry.isTable()) {
      continue;
    }
    const std::vector<Node> colParameters = entry.parameters();
    if (colParameters.empty() || !entry.isSent()) continue;
    bool blnUsed = false;
    for (const Node& objParameter : colParameters) {
      const std::string strFlag = attributeText(objParameter, kFormValue);
      const std::string strOther =
          attributeText(objParameter, kind == ActionKind::join ? kItem : kMessageItem);
      blnUsed = blnUsed || strFlag == "true" || (kind == ActionKind::join && !isBlank(strFlag)) ||
                toLower(strOther) == entry.strId;
    }
    if (blnUsed || entry.strLowerAction == kAddressAction) continue;
    findings.add(deployment.objectMapper, entry.objAction, "", entry.strId,
                 "No parameter of the action takes the answer itself: it is lost.",
                 "Give one formvalue=\"true\".");
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"table-without-action", Severity::error, findTablesWithoutAction},
    {"unknown-action", Severity::error, findUnknownActions},
    {"address-in-capitals", Severity::error, findAddressesInCapitals},
    {"not-two-parameters", Severity::error, findParameterCounts},
    {"flag-not-true", Severity::error, findWrongFlags},
    {"parameter-empty", Severity::error, findEmptyParameters},
    {"answer-not-used", Severity::warning, findUnusedAnswers},
});

}  // namespace

std::span<const Rule> actionRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
