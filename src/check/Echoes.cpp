#include "check/Echoes.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "check/BrokenEntries.h"
#include "check/PathStep.h"
#include "check/StepNames.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using Codes = std::span<const std::string_view>;

// What is found only because something else is wrong with the names that lead to it.
constexpr std::string_view kNamespaces[] = {"namespace-unusable", "no-namespace-element",
                                            "ref-and-name-apart", "registered-otherwise",
                                            "default-namespace"};
constexpr std::string_view kRoots[] = {"root-undeclared", "elements-unqualified"};

/// Of what is judged by where elements stand what the schema says, and what the paths say.
constexpr std::string_view kBySchema[] = {
    "template-undeclared", "template-order",       "path-undeclared",     "path-position",
    "path-repeated",       "path-in-template",     "choice-both",         "mandatory-unfilled",
    "unknown-action",      "reference-undeclared", "reference-incomplete"};
constexpr std::string_view kByPath[] = {"path-names-nothing",    "parent-of-answer",
                                        "path-excludes-itself",  "too-few-places",
                                        "not-in-template",       "docinfo-names-nothing",
                                        "docnode-names-nothing", "insertbefore-names-nothing",
                                        "question-path",         "column-path",
                                        "question-not-sent",     "not-in-reference",
                                        "reference-misspelt",    "reference-unknown"};
constexpr std::string_view kOfReference[] = {
    "unknown-attribute",    "misspelt-attribute", "not-in-reference", "reference-undeclared",
    "reference-incomplete", "reference-misspelt", "reference-unknown"};

/// What misses an element that an entry of the mapping should make.
constexpr std::string_view kOfElement[] = {"mandatory-unfilled", "docnode-names-nothing",
                                           "insertbefore-names-nothing", "reference-misspelt",
                                           "reference-unknown"};
constexpr std::string_view kBelowTemplate[] = {"path-names-nothing", "docinfo-names-nothing"};
constexpr std::string_view kOfDocData[] = {"mandatory-unfilled", "reference-unknown"};
constexpr std::string_view kEntryPath[] = {"path-undeclared", "no-text-there",
                                           "step-without-prefix", "prefix-not-registered"};

/// What is found at the same place of the same slip: at one element, where the hint of the cause
/// says this: names an attribute, which is missing because it is misspelt.
struct SameElement {
  std::string_view strCause, strEcho;
  std::string_view strHint = {};
};
constexpr SameElement kSameElement[] = {
    {"unknown-type", "date-not-converted"},
    {"unknown-columntype", "date-not-converted"},
    {"flag-not-true", "constant-refused"},
    {"unknown-docinfo", "docdata-incomplete"},
    {"template-order", "mandatory-unfilled", "Take one"},
    {"misspelt-attribute", "reference-optional", "\"mandatory\""},
    {"misspelt-attribute", "date-not-converted", "\"type\""},
    {"misspelt-attribute", "date-not-converted", "\"columntype\""},
};

struct CauseAndEcho {
  std::string_view strCause, strEcho;
};

/// What is found of one element because another stands there by mistake: both have its path.
constexpr CauseAndEcho kSamePath[] = {
    {"no-text-there", "path-position"},     // behind what an answer should not have made
    {"path-in-template", "path-repeated"},  // copies of the element and of the second one
    {"path-in-template", "mandatory-unfilled"},
    {"unknown-docinfo", "mandatory-unfilled"},
};

/// What is found of an id because another is a slip of it: both name it.
constexpr CauseAndEcho kSameId[] = {
    {"no-mapping", "mapping-without-question"},
    {"object-without-question", "question-without-object"},
    {"place-misspelt", "parameter-without-place"},
    {"place-misspelt", "cell-without-place"},
};

bool contains(Codes codes, std::string_view strCode) {
  return std::ranges::find(codes, strCode) != codes.end();
}

class EchoFinder {
 public:
  EchoFinder(const ParsedDeployment& deployment, const std::vector<Found>& findings)
      : deployment_(deployment), findings_(findings), left_(findings.size(), true) {}

  std::vector<bool> left() {
    leaveOutOfEntries();
    leaveOutOfSamePlaces();
    leaveOutOfCopies();
    leaveOutOfTemplate();
    leaveOutOfDocumentData();
    leaveOutOfNamespaces();
    leaveOutOfRoots();
    return std::move(left_);
  }

 private:
  /// Leaves out the findings with these codes of which `isEcho` is true, where there are as many.
  template <class IsEcho>
  void leaveOut(Codes codes, std::size_t lngFrom, const IsEcho& isEcho) {
    std::vector<std::size_t> echoes;
    for (std::size_t at = 0; at < findings_.size(); ++at) {
      if (left_[at] && contains(codes, findings_[at].code) && isEcho(findings_[at])) {
        echoes.push_back(at);
      }
    }
    if (echoes.size() < lngFrom) return;
    for (const std::size_t at : echoes) left_[at] = false;
  }

  /// The errors with these codes.
  template <class Visit>
  void forEachError(Codes codes, const Visit& visit) const {
    for (const Found& finding : findings_) {
      if (finding.severity == Severity::error && contains(codes, finding.code)) visit(finding);
    }
  }

  /// An entry that does not do what it should is told; what it should make, and the answers that it
  /// takes along, are missed for that reason.
  void leaveOutOfEntries() {
    const BrokenEntries broken(deployment_, findings_);
    if (broken.isEmpty()) return;
    const auto isToBeMade = [&](const Found& finding) {
      const std::vector<std::string> paths = split(finding.strPath, "|");
      return std::ranges::any_of(
          paths, [&](const std::string& strPath) { return broken.wereToMake(stepNames(strPath)); });
    };
    leaveOut(kOfElement, 1, isToBeMade);
    constexpr std::string_view kNotSent[] = {"question-not-sent"};
    leaveOut(kNotSent, 1, [&](const Found& finding) {
      return broken.takeAlong(finding.object) || isToBeMade(finding);
    });

    std::set<std::string> objects;
    forEachError(kEntryPath, [&](const Found& cause) { objects.insert(cause.object); });
    constexpr std::string_view kOfQuestion[] = {"question-path", "question-not-sent"};
    leaveOut(kOfQuestion, 1,
             [&](const Found& finding) { return objects.contains(finding.object); });
  }

  /// What has the same text in this member as a cause.
  void leaveOutOfSame(const CauseAndEcho& pair, std::string Found::*text) {
    std::set<std::string> texts;
    forEachError(std::span(&pair.strCause, 1), [&](const Found& cause) {
      if (!(cause.*text).empty()) texts.insert(cause.*text);
    });
    if (texts.empty()) return;
    leaveOut(std::span(&pair.strEcho, 1), 1,
             [&](const Found& finding) { return texts.contains(finding.*text); });
  }

  /// One slip that several rules see.
  void leaveOutOfSamePlaces() {
    for (const SameElement& pair : kSameElement) {
      std::set<const void*> elements;
      forEachError(std::span(&pair.strCause, 1), [&](const Found& cause) {
        const bool blnNamed = cause.hint.find(pair.strHint) != std::string::npos;
        if (blnNamed && cause.element) elements.insert(cause.element);
      });
      if (elements.empty()) continue;
      leaveOut(std::span(&pair.strEcho, 1), 1,
               [&](const Found& finding) { return elements.contains(finding.element); });
    }
    for (const CauseAndEcho& pair : kSamePath) leaveOutOfSame(pair, &Found::strPath);
    for (const CauseAndEcho& pair : kSameId) leaveOutOfSame(pair, &Found::strMeant);
    constexpr std::string_view kWithout[] = {"mapping-without-question", "question-without-object"};
    if (const MappingEntry* const missing = entryOfMissingObject(deployment_)) {
      leaveOut(kWithout, 1, [&](const Found& finding) { return finding.object == missing->strId; });
    }
    // An object that has neither an entry nor a question has a slip in its own id.
    std::set<std::string> meant;
    constexpr std::string_view kUnmapped[] = {"no-mapping"}, kAsked[] = {"question-without-object"};
    forEachError(kUnmapped, [&](const Found& cause) {
      const bool blnSlip = !cause.strMeant.empty() && !deployment_.question(cause.object);
      if (blnSlip) meant.insert(cause.strMeant);
    });
    leaveOut(kAsked, 1, [&](const Found& finding) { return meant.contains(finding.strMeant); });
    // A flag that does not count is why the answer is not used; that of the label is not.
    std::set<std::string> flagged;
    constexpr std::string_view kFlag[] = {"flag-not-true"}, kUnused[] = {"answer-not-used"};
    forEachError(kFlag, [&](const Found& cause) {
      if (cause.hint.find(kFormValue) != std::string::npos) flagged.insert(cause.object);
    });
    leaveOut(kUnused, 1, [&](const Found& finding) { return flagged.contains(finding.object); });
  }

  /// Where a copy goes in front of something that is not there it comes last.
  void leaveOutOfCopies() {
    constexpr std::string_view kCause[] = {"insertbefore-names-nothing"};
    constexpr std::string_view kOrder[] = {"path-position"};
    std::set<const void*> missed;  // the references
    forEachError(kCause, [&](const Found& cause) { missed.insert(cause.element); });
    if (missed.empty()) return;
    std::set<const void*> elements;  // of their rules
    for (const Node& objRule : deployment_.copyRules()) {
      const NodeList colBelow = required(objRule.getElementsByTagName("*"));
      const auto isMissed = [&](const Node& objElement) {
        return missed.contains(objElement.identity());
      };
      if (std::none_of(colBelow.begin(), colBelow.end(), isMissed)) continue;
      for (const Node& objElement : colBelow) elements.insert(objElement.identity());
    }
    leaveOut(kOrder, 1, [&](const Found& finding) { return elements.contains(finding.element); });
  }

  /// An element of the template that many look for; few are told too, as one of them may be wrong.
  void leaveOutOfTemplate() {
    constexpr std::string_view kCause[] = {"not-in-template"};
    forEachError(kCause, [&](const Found& cause) {
      const StepNames missing = stepNames(cause.strPath);
      leaveOut(kBelowTemplate, 5, [&](const Found& finding) {
        const StepNames names = stepNames(finding.strPath);
        return names.size() >= missing.size() && areOnOneWay(names, missing);
      });
    });
  }

  /// Without the document data all that it writes is missed: what no question names.
  void leaveOutOfDocumentData() {
    constexpr std::string_view kCause[] = {"docdata-incomplete"};
    bool blnAny = false;
    forEachError(kCause, [&](const Found&) { blnAny = true; });
    if (!blnAny) return;
    std::vector<StepNames> asked;
    for (const Question& question : deployment_.questions) {
      asked.push_back(stepNames(question.strXPath));
    }
    leaveOut(kOfDocData, 4, [&](const Found& finding) {
      const StepNames names = stepNames(finding.strPath);
      return std::ranges::none_of(
          asked, [&](const StepNames& question) { return areOnOneWay(question, names); });
    });
  }

  // Namespaces and roots are usually mended before; here are those of which nobody knows how.

  void leaveOutOfNamespaces() {
    bool blnAny = false;
    forEachError(kNamespaces, [&](const Found&) { blnAny = true; });
    constexpr std::string_view kUnregistered[] = {"prefix-not-registered"};
    forEachError(kUnregistered,
                 [&](const Found& cause) { blnAny = blnAny || cause.object.empty(); });
    if (!blnAny) return;
    leaveOut(kByPath, 4, [](const Found&) { return true; });
    leaveOut(kBySchema, 4, [](const Found&) { return true; });
  }

  void leaveOutOfRoots() {
    forEachError(kRoots, [&](const Found& cause) {
      leaveOut(kBySchema, 1, [](const Found&) { return true; });
      if (cause.strPath.empty()) return;
      leaveOut(kByPath, 1, [&](const Found& finding) { return !beginsWithRoot(finding.strPath); });
    });
    constexpr std::string_view kReferenceRoot[] = {"reference-root"};
    forEachError(kReferenceRoot, [&](const Found& cause) {
      leaveOut(kOfReference, 1, [&](const Found& finding) { return finding.file == cause.file; });
    });
  }

  /// Whether a path begins with the root of the template, which then does not lead it astray.
  bool beginsWithRoot(const std::string& strPath) const {
    const auto steps = stepsOf(strPath);
    const Node& objRoot = deployment_.messageTemplate.root();
    if (!steps || !objRoot || steps->front().strLocal != objRoot.baseName()) return false;
    const NamespaceEntry* const entry = deployment_.namespaceOf(steps->front().strPrefix);
    return objRoot.namespaceUri() == (entry ? entry->strName : "");
  }

  const ParsedDeployment& deployment_;
  const std::vector<Found>& findings_;
  std::vector<bool> left_;
};

}  // namespace

// A cause that is itself an echo of another still counts: both go when that is mended. Each kind is
// one pass over the findings.
std::vector<Found> withoutEchoes(const ParsedDeployment& deployment, std::vector<Found> findings) {
  const std::vector<bool> left = EchoFinder(deployment, findings).left();
  std::vector<Found> rest;
  for (std::size_t at = 0; at < findings.size(); ++at) {
    if (left[at]) rest.push_back(std::move(findings[at]));
  }
  return rest;
}

}  // namespace Varnel_Tolv_XML_Creation
