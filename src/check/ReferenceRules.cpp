#include <array>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "check/MessagePaths.h"
#include "check/MessageShape.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

void findWrongMandatory(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.reference.isLoaded()) return;
  for (const Node& objElement : deployment.reference.elements()) {
    const std::string strWord = attributeText(objElement, "mandatory");
    const std::string strLower = toLower(strWord);
    if (isBlank(strWord) || strLower == "true" || strLower == "false") continue;
    findings.add(deployment.reference, objElement, "mandatory", "",
                 "The word mandatory=" + inQuotes(strWord) +
                     " is neither true nor false: a form that leaves the element empty fails.",
                 "Write \"true\" or \"false\"; a number is none here.");
  }
}

void findWrongChoice(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.reference.isLoaded()) return;
  for (const Node& objElement : deployment.reference.elements()) {
    const std::string strWord = toLower(attributeText(objElement, "choice"));
    if (strWord.empty() || strWord == "true" || strWord == "false") continue;
    findings.add(deployment.reference, objElement, "choice", "",
                 "The word choice=" + inQuotes(strWord) + " is not \"true\" and does not count.",
                 "Write \"true\" or \"false\".");
  }
}

void findUnknownQuestionIds(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.reference.isLoaded() || !deployment.knowsObjects()) return;
  for (const Node& objElement : deployment.reference.elements()) {
    const std::string strIds(trim(attributeText(objElement, "questionIds")));
    if (strIds.empty()) continue;
    for (const std::string& strId : split(strIds, ";")) {
      // The message is marked with the ids of fields in lower case, with those of tables as they
      // are.
      const FormObject* const object = deployment.object(strId);
      if (object && (object->kind == ObjectKind::table || !hasCapitals(strId))) continue;
      findings.add(deployment.reference, objElement, "questionIds", strId,
                   "questionIds names " + inQuotes(strId) +
                       ", which no element of the message is marked with: for it the element is "
                       "not mandatory.",
                   "Write ids of objects, joined by \";\" without blanks.");
    }
  }
}

void findWrongRoot(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& reference = deployment.reference;
  if (!reference.isLoaded() || !deployment.messageTemplate.isLoaded()) return;
  const std::string strRoot = deployment.messageTemplate.root().nodeName();
  if (reference.root().nodeName() == strRoot) return;
  findings
      .add(reference, reference.root(), "", "",
           "The root is " + inQuotes(reference.root().nodeName()) + ", and that of the message " +
               inQuotes(strRoot) + ": nothing is found here, and all empty elements go.",
           "Give it the name of the template's root, prefix included.")
      .mends.addName(reference.path(), reference.root().nodeName(), strRoot);
}

/// The paths of the reference XML, as the message's are looked up in it: by the namespaces that are
/// registered for their prefixes.
class ReferencePaths {
 public:
  explicit ReferencePaths(const ParsedDeployment& deployment) : deployment_(deployment) {
    struct Open {
      Node objNode;
      std::size_t lngAbove;
    };
    std::vector<Open> open{{deployment.reference.root(), MessagePaths::kTop}};
    while (!open.empty()) {
      const Open next = open.back();
      open.pop_back();
      const std::string strUri = next.objNode.namespaceUri();
      const std::string strName =
          strUri.empty() ? next.objNode.nodeName() : "{" + strUri + "}" + next.objNode.baseName();
      const std::size_t lngPath = paths_.add(next.lngAbove, strName);
      nodes_.emplace(lngPath, next.objNode);
      for (const Node& objChild : childElements(next.objNode)) open.push_back({objChild, lngPath});
    }
  }

  /// The path below another of a name as the message writes it.
  std::optional<std::size_t> find(std::size_t lngAbove, const std::string& strName) const {
    const std::size_t lngColon = strName.find(':');
    if (lngColon == std::string::npos) return paths_.find(lngAbove, strName);
    const NamespaceEntry* const entry = deployment_.namespaceOf(strName.substr(0, lngColon));
    if (!entry) return std::nullopt;
    return paths_.find(lngAbove, "{" + entry->strName + "}" + strName.substr(lngColon + 1));
  }

  /// The first element with a path, or Nothing.
  Node node(std::size_t lngPath) const {
    const auto found = nodes_.find(lngPath);
    return found == nodes_.end() ? Node() : found->second;
  }

 private:
  const ParsedDeployment& deployment_;
  MessagePaths paths_;
  std::unordered_map<std::size_t, Node> nodes_;
};

bool areKnown(const ParsedDeployment& deployment) {
  return deployment.reference.isLoaded() && deployment.shape().isKnown() &&
         deployment.reference.root().nodeName() == deployment.messageTemplate.root().nodeName();
}

/// Paths of questions, and of their columns, that the reference XML must know: the verdict ends
/// where one is looked up in vain.
void findMissingPaths(const ParsedDeployment& deployment, Findings& findings) {
  if (!areKnown(deployment) || !deployment.questionList.isLoaded()) return;
  const ReferencePaths reference(deployment);
  const MessagePaths& message = deployment.shape().paths();
  std::unordered_set<std::string> told;
  const auto look = [&](const std::string& strPath, const std::string& strObject) {
    if (!strPath.starts_with('/') || !message.find(strPath)) return;
    // The deepest element above that is there; below it an element that is none of the message's
    // and has nearly this name is the one that was meant.
    std::size_t lngAbove = MessagePaths::kTop;
    std::optional<std::size_t> lngMessage = MessagePaths::kTop;
    std::string strMissing;
    for (const std::string& strName : split(std::string_view(strPath).substr(1), "/")) {
      const std::optional<std::size_t> lngNext = reference.find(lngAbove, strName);
      if (!lngNext) {
        strMissing = strName;
        break;
      }
      lngAbove = *lngNext;
      lngMessage = message.find(*lngMessage, strName);
    }
    if (strMissing.empty()) return;
    Node objPlace = reference.node(lngAbove);
    if (!objPlace) objPlace = deployment.reference.root();
    if (!told.insert(std::to_string(lngAbove) + "/" + strMissing).second) return;
    const bool blnCompared = told.size() <= kMostCompared;
    bool blnSlip = false;
    for (const Node& objChild : blnCompared ? childElements(objPlace) : std::vector<Node>()) {
      const std::string strName = objChild.nodeName();
      const bool blnOfMessage = lngMessage && message.find(*lngMessage, strName);
      if (blnOfMessage || !isSlipOf(strName, strMissing)) continue;
      objPlace = objChild;
      blnSlip = true;
      break;
    }
    findings
        .add(deployment.reference, objPlace, "", strObject,
             "The reference XML has no element " + inQuotes(strMissing) + " at the path " +
                 inQuotes(strPath) + ": empty ones go, and an error there can lose the verdict.",
             blnSlip ? "Write " + inQuotes(strMissing) + " for " + inQuotes(objPlace.nodeName()) +
                           ", as the message has it."
                     : "Add it, with mandatory=\"true\" or \"false\".")
        .strPath = strPath;
  };
  for (const Question& question : deployment.questions) {
    if (!deployment.object(question.strId)) continue;
    look(question.strXPath, question.strId);
    for (const QuestionColumn& column : question.columns) {
      if (column.objPath) look(question.strXPath + "/" + column.strPath, column.strId);
    }
  }
}

/// Walks the elements of the reference XML that the message has too. `visit` gets the path of each
/// in the message, and its children in the reference XML.
template <class Visit>
void walkBesideMessage(const ParsedDeployment& deployment, const Visit& visit) {
  if (!areKnown(deployment)) return;
  const MessagePaths& message = deployment.shape().paths();
  struct Open {
    Node objNode;
    std::size_t lngPath;  // in the message
  };
  const std::optional<std::size_t> lngRoot =
      message.find(MessagePaths::kTop, deployment.reference.root().nodeName());
  if (!lngRoot) return;
  std::vector<Open> open{{deployment.reference.root(), *lngRoot}};
  while (!open.empty()) {
    const Open next = open.back();
    open.pop_back();
    const std::vector<Node> colChildren = childElements(next.objNode);
    visit(next.lngPath, colChildren);
    for (const Node& objChild : colChildren) {
      const std::optional<std::size_t> lngPath = message.find(next.lngPath, objChild.nodeName());
      if (lngPath) open.push_back({objChild, *lngPath});
    }
  }
}

void findDoubles(const ParsedDeployment& deployment, Findings& findings) {
  walkBesideMessage(deployment, [&](std::size_t, const std::vector<Node>& colChildren) {
    std::unordered_set<std::string> seen;
    for (const Node& objChild : colChildren) {
      if (seen.insert(objChild.nodeName()).second) continue;
      findings.add(deployment.reference, objChild, "", "",
                   "There is an element " + inQuotes(objChild.nodeName()) +
                       " before this one, which counts; this one is never found.",
                   "Take one of them out.");
    }
  });
}

std::string pathOf(const Node& objElement) {
  std::string strPath;
  for (Node objAbove = objElement; objAbove.nodeType() == NodeType::element;
       objAbove = objAbove.parentNode()) {
    strPath.insert(0, "/" + objAbove.nodeName());
  }
  return strPath;
}

/// Elements that the message never has. `blnSlips`: those whose name is nearly that of an element
/// which the message has there and the reference XML has not.
void findUnknown(const ParsedDeployment& deployment, Findings& findings, bool blnSlips) {
  const MessageShape& shape = deployment.shape();
  // A note is not worth it where what is never made may be what is in doubt.
  if (!blnSlips && shape.isInDoubt()) return;
  std::unordered_map<std::size_t, std::vector<std::string>> namesBelow;  // in the message
  if (areKnown(deployment)) {
    shape.paths().forEach([&](std::size_t lngAbove, const std::string& strName) {
      auto& names = namesBelow[lngAbove];
      if (names.size() < kMostCompared) names.push_back(strName);
    });
  }
  std::unordered_set<std::size_t> asked;  // paths of questions: told by the rule about those
  for (const Question& question : deployment.questions) {
    if (const auto lngPath = shape.paths().find(question.strXPath)) asked.insert(*lngPath);
  }
  std::size_t lngUnknown = 0;
  walkBesideMessage(deployment, [&](std::size_t lngPath, const std::vector<Node>& colChildren) {
    std::unordered_set<std::string> present;
    for (const Node& objChild : colChildren) present.insert(objChild.nodeName());
    const auto missing = [&](const std::string& strName) { return !present.contains(strName); };
    for (const Node& objChild : colChildren) {
      const std::string strName = objChild.nodeName();
      if (shape.paths().find(lngPath, strName)) continue;
      const bool blnCompared = ++lngUnknown <= kMostCompared;
      const std::string* const meant =
          blnCompared ? firstMeant(namesBelow[lngPath], strName, {}, missing) : nullptr;
      if ((meant != nullptr) != blnSlips) continue;
      if (meant && asked.contains(*shape.paths().find(lngPath, *meant))) continue;
      findings
          .add(deployment.reference, objChild, "", "",
               "The message never has an element " + inQuotes(strName) +
                   " here, neither from the template nor from the mapping.",
               meant ? "Write " + inQuotes(*meant) + ", as the message has it."
                     : "Correct the name, or leave it when it is for later.")
          .strPath = pathOf(objChild);
    }
  });
}

void findMisspelt(const ParsedDeployment& deployment, Findings& findings) {
  findUnknown(deployment, findings, true);
}

void findNeverMade(const ParsedDeployment& deployment, Findings& findings) {
  findUnknown(deployment, findings, false);
}

constexpr auto kRules = std::to_array<Rule>({
    {"mandatory-no-boolean", Severity::error, findWrongMandatory},
    {"choice-not-true", Severity::warning, findWrongChoice},
    {"question-ids-name-nothing", Severity::error, findUnknownQuestionIds},
    {"reference-root", Severity::error, findWrongRoot},
    {"not-in-reference", Severity::error, findMissingPaths},
    {"reference-double", Severity::warning, findDoubles},
    {"reference-misspelt", Severity::error, findMisspelt},
    {"reference-unknown", Severity::note, findNeverMade},
});

}  // namespace

std::span<const Rule> referenceRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
