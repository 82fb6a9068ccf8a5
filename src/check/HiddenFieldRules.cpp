#include <array>
#include <string>
#include <unordered_set>
#include <vector>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Every node below `hiddenfields` is read as a hidden field.
void findOtherNodes(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& list = deployment.hiddenFieldList;
  if (!list.isLoaded()) return;
  const std::vector<std::size_t> lines = list.linesOfChildren(list.root());
  const NodeList colChildren = required(list.root().childNodes());
  for (std::size_t at = 0; at < colChildren.length(); ++at) {
    const Node objChild = colChildren.item(at);
    if (objChild.nodeType() != NodeType::element) {
      findings.add(list, lines[at], "",
                   "The list holds something else than a hidden field (" + objChild.nodeName() +
                       "): every form fails.",
                   "Take it out, comments too.");
    } else if (objChild.nodeName() != "hiddenfield") {
      findings.add(list, objChild, "", attributeText(objChild, kOutput),
                   "The element " + inQuotes(objChild.nodeName()) +
                       " is no hiddenfield: it never goes into the message.",
                   "Write hiddenfield, or take it out.");
    }
  }
}

void findWrongFlags(const ParsedDeployment& deployment, Findings& findings) {
  for (const HiddenField& hidden : deployment.hiddenFields) {
    const std::string& strWord = hidden.strToSchema;
    if (strWord.empty() || strWord == "true" || strWord == "false") continue;
    const bool blnNo = isBooleanWord(strWord) && (toLower(strWord) == "false" || strWord == "0");
    if (blnNo) continue;
    findings.add(deployment.hiddenFieldList, hidden.objNode, kToSchema, hidden.strOutput,
                 "The word toschema=" + inQuotes(strWord) +
                     " is not \"true\": the field does not go "
                     "into the message.",
                 "Write toschema=\"true\" or \"false\" in lower case.");
  }
}

/// Two of one form field: the other field that is posted is read by none.
void findDuplicateIds(const ParsedDeployment& deployment, Findings& findings) {
  std::unordered_set<std::string> seen;
  for (const HiddenField& hidden : deployment.hiddenFields) {
    if (isBlank(hidden.strId) || seen.insert(hidden.strId).second) continue;
    findings.add(
        deployment.hiddenFieldList, hidden.objNode, "id", hidden.strOutput,
        "Another hidden field before this one has the id " + inQuotes(hidden.strId) +
            ": both store the value of the same form field.",
        "Write the id of the form field whose value " + inQuotes(hidden.strOutput) + " is to be.");
  }
}

/// A field that the mapping sends, and that is not said to go into the message.
void findUnsent(const ParsedDeployment& deployment, Findings& findings) {
  for (const HiddenField& hidden : deployment.hiddenFields) {
    if (hidden.strToSchema == "true" || isBlank(hidden.strOutput)) continue;
    const bool blnNo = hidden.strToSchema.empty() || hidden.strToSchema == "false";
    const MappingEntry* const entry = deployment.entry(toLower(hidden.strOutput));
    if (!blnNo || !entry || !entry->isSent()) continue;
    if (deployment.objectsByLowerId.contains(toLower(hidden.strOutput))) continue;
    findings.add(deployment.hiddenFieldList, hidden.objNode, kToSchema, hidden.strOutput,
                 "The object mapper sends " + inQuotes(hidden.strOutput) +
                     ", and the hidden field is not for the message: its value is not sent.",
                 "Write toschema=\"true\", or take the messageitem out.");
  }
}

void findOtherOutputs(const ParsedDeployment& deployment, Findings& findings) {
  for (const HiddenField& hidden : deployment.hiddenFields) {
    if (hidden.strToSchema != "true" || isBlank(hidden.strId) || isBlank(hidden.strOutput))
      continue;
    if (toLower(hidden.strOutput) == hidden.strId) continue;
    findings.add(deployment.hiddenFieldList, hidden.objNode, kOutput, hidden.strOutput,
                 "The message takes the form field " + inQuotes(toLower(hidden.strOutput)) +
                     ", which output names, and not " + inQuotes(hidden.strId) + ".",
                 "Use the same name for id and output.");
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"no-hiddenfield", Severity::error, findOtherNodes},
    {"hidden-word-not-true", Severity::error, findWrongFlags},
    {"duplicate-hidden-field", Severity::error, findDuplicateIds},
    {"hidden-not-sent", Severity::error, findUnsent},
    {"output-apart", Severity::note, findOtherOutputs},
});

}  // namespace

std::span<const Rule> hiddenFieldRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
