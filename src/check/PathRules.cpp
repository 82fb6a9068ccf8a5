#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "check/MessagePlan.h"
#include "check/MessageShape.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kMostAsked = 20;  // paths of which it is found out what is meant

/// The object of a trouble as its mapping has it: of a group the group.
const std::string& idOf(const PathTrouble& trouble) { return trouble.object->entry->strId; }

/// Each trouble of a kind; of an entry that serves several objects the first.
template <class Find>
void forEachTrouble(const ParsedDeployment& deployment, PathTrouble::Kind kind, const Find& find) {
  std::unordered_set<std::string> told;
  for (const PathTrouble& trouble : deployment.shape().troubles()) {
    if (trouble.kind != kind) continue;
    const std::size_t lngLine = deployment.objectMapper.lineOf(trouble.objPath);
    if (!told.insert(idOf(trouble) + "/" + std::to_string(lngLine)).second) continue;
    find(trouble);
  }
}

void findMalformed(const ParsedDeployment& deployment, Findings& findings) {
  forEachTrouble(deployment, PathTrouble::malformed, [&](const PathTrouble& trouble) {
    if (hasOwnRule(trouble.strDetail)) return;
    findings.add(deployment.objectMapper, trouble.objPath, "", idOf(trouble),
                 "The path " + inQuotes(trouble.objPath.text()) +
                     " cannot be evaluated: " + trouble.strDetail,
                 "Write an XPath 1.0 expression that selects an element.");
  });
}

/// Adds what is wrong with the path of a trouble.
void addAtPath(const ParsedDeployment& deployment, Findings& findings, const PathTrouble& trouble,
               const std::string& strWrong, const std::string& strHint) {
  const std::string strPath = trouble.objPath.text();
  findings
      .add(deployment.objectMapper, trouble.objPath, "", idOf(trouble),
           "The path " + inQuotes(strPath) + strWrong, strHint)
      .strPath = strPath;
}

/// A name in a path at which nothing is found, and the one that is probably meant.
struct MeantStep {
  std::string strWritten, strMeant;

  explicit operator bool() const { return !strMeant.empty(); }
  std::string hint() const {
    return "Write " + inQuotes(strMeant) + " for " + inQuotes(strWritten) + ".";
  }
};

/// The element of the template that a name is probably meant to find: one whose name differs in a
/// slip or in its prefix. Where there is a schema it has that element, and none of the name.
MeantStep stepMeantBelow(const ParsedDeployment& deployment, const Node& objParent,
                         const std::string& strStep) {
  const SchemaModel* const schema = deployment.messagePlan().schema();
  const std::size_t lngColon = strStep.find(':');
  const bool blnPrefix = lngColon != std::string::npos;
  const std::string strLocal = blnPrefix ? strStep.substr(lngColon + 1) : strStep;
  const NamespaceEntry* const entry =
      deployment.namespaceOf(blnPrefix ? strStep.substr(0, lngColon) : std::string());
  std::vector<QualifiedName> path;
  for (Node objAbove = objParent; objAbove && objAbove.nodeType() == NodeType::element;
       objAbove = objAbove.parentNode()) {
    path.push_back({objAbove.namespaceUri(), objAbove.baseName()});
  }
  std::ranges::reverse(path);
  const auto isDeclared = [&](QualifiedName name) {
    path.push_back(std::move(name));
    const bool blnDeclared = schema->at(path).kind != DeclaredChild::Kind::undeclared;
    path.pop_back();
    return blnDeclared;
  };
  std::size_t lngCompared = 0;
  for (const Node& objChild : childElements(objParent)) {
    if (++lngCompared > kMostCompared) break;
    const std::string strName = objChild.nodeName();
    if (strName == strStep) continue;
    if (objChild.baseName() != strLocal && !isSlipOf(strStep, strName)) continue;
    const bool blnRight = !schema || (isDeclared({objChild.namespaceUri(), objChild.baseName()}) &&
                                      !isDeclared({entry ? entry->strName : "", strLocal}));
    if (blnRight) return {strStep, strName};
  }
  return {};
}

/// Where a path of names leads nowhere below an element of the template.
MeantStep stepMeant(const ParsedDeployment& deployment, const std::string& strPath) {
  if (!strPath.starts_with('/') || strPath.find_first_of("[(*") != std::string::npos) return {};
  Node objParent = deployment.messageTemplate.document();
  std::string strReason, strTried;
  for (const std::string& strStep : split(std::string_view(strPath).substr(1), "/")) {
    strTried += "/" + strStep;
    const Node objFound =
        deployment.shape().select(deployment.shape().document(), strTried, strReason);
    if (!strReason.empty()) return {};
    if (!objFound) return stepMeantBelow(deployment, objParent, strStep);
    objParent = deployment.shape().templateElement(objFound);
    if (!objParent) return {};
  }
  return {};
}

void findNoParents(const ParsedDeployment& deployment, Findings& findings) {
  std::size_t lngAsked = 0;
  forEachTrouble(deployment, PathTrouble::noParent, [&](const PathTrouble& trouble) {
    const MeantStep meant =
        ++lngAsked <= kMostAsked ? stepMeant(deployment, trouble.objPath.text()) : MeantStep();
    addAtPath(deployment, findings, trouble,
              " finds nothing in the template, nor in what entries before make: every form with "
              "this answer fails.",
              meant ? meant.hint()
                    : "Correct the path, or let the template hold the element; capitals count.");
  });
  forEachTrouble(deployment, PathTrouble::noElement, [&](const PathTrouble& trouble) {
    findings.add(deployment.objectMapper, trouble.objPath, "", idOf(trouble),
                 "The path " + inQuotes(trouble.objPath.text()) + " finds no element.",
                 "Name the element that receives the answer's.");
  });
}

void findParentsOfAnswers(const ParsedDeployment& deployment, Findings& findings) {
  forEachTrouble(deployment, PathTrouble::parentOfAnswer, [&](const PathTrouble& trouble) {
    addAtPath(deployment, findings, trouble,
              " finds an element that only the answer to " + inQuotes(trouble.strDetail) +
                  " makes: a form without that answer fails.",
              "Let the template hold the element, or make it by the node path.");
  });
}

void findSelfExcluding(const ParsedDeployment& deployment, Findings& findings) {
  forEachTrouble(deployment, PathTrouble::selfExcluding, [&](const PathTrouble& trouble) {
    findings
        .add(deployment.objectMapper, trouble.objPath, "", idOf(trouble),
             "The condition in " + inQuotes(trouble.objPath.text()) +
                 " holds no longer once the element of the answer is made, before its value "
                 "is written: every form with this answer fails.",
             "Ask for the value and not for the element, as in [not(m:name/text())].")
        .strPath = trouble.objPath.text();
  });
}

/// Places of the template that a condition chooses from, fewer than answers want. Told once.
void findTooFewPlaces(const ParsedDeployment& deployment, Findings& findings) {
  std::unordered_set<std::string> told;
  for (const PathTrouble& trouble : deployment.shape().troubles()) {
    if (trouble.kind != PathTrouble::noFreePlace) continue;
    if (!told.insert(trouble.objPath.text()).second) continue;
    std::string strReason;
    const Node objPlace = deployment.shape().templateElement(
        deployment.shape().select(deployment.shape().document(), trouble.strDetail, strReason));
    const std::string strMessage = "No element " + inQuotes(trouble.strDetail) +
                                   " is left for the answer to " + inQuotes(trouble.object->strId) +
                                   ": the condition in " + inQuotes(trouble.objPath.text()) +
                                   " chooses none, and a form with all answers fails.";
    const char* const hint =
        "Let the template hold one for each answer, or correct the condition of the mapping.";
    const ParsedFile& file = objPlace ? deployment.messageTemplate : deployment.objectMapper;
    findings
        .add(file, objPlace ? objPlace : trouble.objPath, "", trouble.object->strId, strMessage,
             hint)
        .strPath = trouble.strDetail;
  }
}

void findMalformedNodePaths(const ParsedDeployment& deployment, Findings& findings) {
  forEachTrouble(deployment, PathTrouble::malformedPath, [&](const PathTrouble& trouble) {
    const bool blnTable = trouble.object->kind == ObjectKind::table;
    findings.add(deployment.objectMapper, trouble.objPath, "", idOf(trouble),
                 "The node path " + inQuotes(trouble.objPath.text()) +
                     (blnTable ? " is not the one name that each row bears."
                               : " is no list of names joined by \"/\"."),
                 "Write names such as m:address/m:street: no blanks, no \"/\" at its ends, no "
                 "predicates.");
  });
}

/// Whether the question of an object says that its answer stands where the mapping writes it.
bool isWhereQuestionSays(const ParsedDeployment& deployment, const FormObject& object) {
  const Question* const question = deployment.question(object.strId);
  if (!question) return false;
  const auto lngPath = deployment.shape().paths().find(question->strXPath);
  return lngPath && deployment.shape().isPlaceOf(object.strLowerId, *lngPath);
}

/// Of the two the one whose question says otherwise has the slip, else the later one.
void findSamePlaces(const ParsedDeployment& deployment, Findings& findings) {
  forEachTrouble(deployment, PathTrouble::samePlace, [&](const PathTrouble& trouble) {
    const FormObject* const other = deployment.object(trouble.strDetail);
    const bool blnOther = other && other->entry && other->entry->objNodePath &&
                          isWhereQuestionSays(deployment, *trouble.object) &&
                          !isWhereQuestionSays(deployment, *other);
    findings.add(deployment.objectMapper, blnOther ? other->entry->objNodePath : trouble.objPath,
                 "", blnOther ? other->entry->strId : idOf(trouble),
                 "The answers to " + inQuotes(trouble.strDetail) + " and " +
                     inQuotes(trouble.object->strId) +
                     " go to the same place, where the second replaces the first.",
                 other && other->entry == trouble.object->entry
                     ? "Choose a free place of the template for each by a condition of the path, "
                       "as [not(m:name/text())]."
                     : "Give each a place of its own, or one of them absent or checkexists.");
  });
}

/// Elements that the template should have: several entries name them.
void findMissingFromTemplate(const ParsedDeployment& deployment, Findings& findings) {
  std::unordered_map<std::string, std::size_t> counts;
  for (const PathTrouble& trouble : deployment.shape().troubles()) {
    if (trouble.kind != PathTrouble::noParent) continue;
    const std::string strPath = trouble.objPath.text();
    if (strPath.find('[') != std::string::npos) continue;  // what it lacks may be no element
    if (++counts[strPath] != 2) continue;  // the second tells, a third tells nothing new
    if (counts.size() > 100) return;
    Node objDeepest = deployment.messageTemplate.root();
    std::string strReason, strTried, strMissing;
    for (const std::string& strStep : split(strPath, "/")) {
      if (strStep.empty()) continue;
      strTried += "/" + strStep;
      const Node objFound =
          deployment.shape().select(deployment.shape().document(), strTried, strReason);
      if (!objFound) {
        strMissing = strStep;
        break;
      }
      const auto objSame = deployment.shape().templateElement(objFound);
      if (objSame) objDeepest = objSame;
    }
    if (!strReason.empty()) continue;
    const std::vector<Node> children = childElements(objDeepest);
    const Node* const slip =
        firstSlip(children, strMissing.substr(strMissing.find(':') + 1), &Node::baseName);
    const Node& objPlace = slip ? *slip : objDeepest;
    const bool blnSchema = counts.size() <= kMostAsked && deployment.messagePlan().schema();
    if (const MeantStep meant = blnSchema ? stepMeant(deployment, strPath) : MeantStep()) {
      findings
          .add(deployment.objectMapper, trouble.objPath, "", "",
               "Template and schema have no element " + inQuotes(strPath) +
                   ", below which several entries of the mapping write.",
               meant.hint())
          .strPath = strPath;
      continue;
    }
    findings
        .add(deployment.messageTemplate, objPlace, "", "",
             "The template has no element " + inQuotes(strPath) +
                 ", below which several entries of the mapping write.",
             "Add it, or correct its name or its namespace.")
        .strPath = strPath;
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"malformed-expression", Severity::error, findMalformed},
    {"path-names-nothing", Severity::error, findNoParents},
    {"parent-of-answer", Severity::error, findParentsOfAnswers},
    {"path-excludes-itself", Severity::error, findSelfExcluding},
    {"too-few-places", Severity::error, findTooFewPlaces},
    {"malformed-node-path", Severity::error, findMalformedNodePaths},
    {"not-in-template", Severity::error, findMissingFromTemplate},
    {"same-place", Severity::error, findSamePlaces},
});

}  // namespace

std::span<const Rule> pathRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
