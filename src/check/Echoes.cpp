#include "check/Echoes.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace Varnel_Tolv_XML_Creation {
namespace {

using Codes = std::span<const std::string_view>;

/// Which findings follow from which: a finding of one of the causes accounts for those of the
/// echoes.
struct Echo {
  Codes causes;
  Codes echoes;
  std::size_t lngFrom = 1;     // only where there are as many echoes
  bool blnSameObject = false;  // only those about the object of the cause
  bool blnOfNone = false;      // only causes that concern no single object
  bool blnSameFile = false;    // only those in the file of the cause
};

constexpr std::string_view kNamespaces[] = {"namespace-unusable", "no-namespace-element",
                                            "ref-and-name-apart", "registered-otherwise"};
constexpr std::string_view kUnregistered[] = {"prefix-not-registered"};
constexpr std::string_view kRoots[] = {"root-undeclared", "elements-unqualified"};
constexpr std::string_view kReferenceRoot[] = {"reference-root"};
constexpr std::string_view kDefault[] = {"default-namespace"};
constexpr std::string_view kTemplate[] = {"not-in-template"};
constexpr std::string_view kEntry[] = {"path-undeclared", "step-without-prefix",
                                       "prefix-not-registered"};
constexpr std::string_view kMapping[] = {
    "misspelt-element", "misspelt-attribute",  "empty-id",
    "apostrophe",       "blank-ends",          "capitals",
    "no-mapping",       "toschema-no-boolean", "word-not-true",
    "no-place",         "half-extrapath",      "names-nothing",
    "unknown-action",   "not-two-parameters",  "parameter-empty",
    "flag-not-true",    "place-misspelt",      "parameter-without-place"};
constexpr std::string_view kUnsent[] = {"question-not-sent"};
constexpr std::string_view kDocData[] = {"docdata-incomplete"};

/// What is judged by where elements stand, and by their names with the namespaces.
constexpr std::string_view kPlaces[] = {"path-names-nothing",    "parent-of-answer",
                                        "path-excludes-itself",  "too-few-places",
                                        "not-in-template",       "docinfo-names-nothing",
                                        "docnode-names-nothing", "insertbefore-names-nothing",
                                        "question-path",         "column-path",
                                        "question-not-sent",     "not-in-reference",
                                        "reference-misspelt",    "reference-unknown",
                                        "template-undeclared",   "template-order",
                                        "path-undeclared",       "path-position",
                                        "path-repeated",         "path-in-template",
                                        "choice-both",           "mandatory-unfilled",
                                        "reference-undeclared",  "reference-incomplete",
                                        "unknown-action"};
constexpr std::string_view kReference[] = {
    "unknown-attribute",    "misspelt-attribute", "not-in-reference", "reference-undeclared",
    "reference-incomplete", "reference-misspelt", "reference-unknown"};
constexpr std::string_view kBelow[] = {"path-names-nothing", "docinfo-names-nothing",
                                       "question-not-sent"};
constexpr std::string_view kOfMessage[] = {"mandatory-unfilled",         "docnode-names-nothing",
                                           "insertbefore-names-nothing", "reference-misspelt",
                                           "reference-unknown",          "reference-incomplete"};
constexpr std::string_view kOfQuestion[] = {"question-path", "question-not-sent"};
constexpr std::string_view kOfDocData[] = {"mandatory-unfilled", "reference-unknown"};

constexpr Echo kEchoes[] = {
    {.causes = kNamespaces, .echoes = kPlaces, .lngFrom = 4},
    {.causes = kUnregistered, .echoes = kPlaces, .lngFrom = 4, .blnOfNone = true},
    {.causes = kRoots, .echoes = kPlaces},
    {.causes = kDefault, .echoes = kPlaces, .lngFrom = 4},
    {.causes = kReferenceRoot, .echoes = kReference, .blnSameFile = true},
    {.causes = kTemplate, .echoes = kBelow, .lngFrom = 5},
    {.causes = kEntry, .echoes = kOfMessage},
    {.causes = kEntry, .echoes = kOfQuestion, .blnSameObject = true},
    {.causes = kMapping, .echoes = kUnsent},
    {.causes = kDocData, .echoes = kOfDocData, .lngFrom = 4},
};

bool contains(Codes codes, std::string_view strCode) {
  return std::ranges::find(codes, strCode) != codes.end();
}

/// What a cause says of, which decides whether an echo is one of it.
struct Told {
  bool blnAny = false;
  std::set<std::string> objects, files;
};

}  // namespace

// A cause that is itself an echo of another still counts: both go when that is mended. Each row is
// one pass over the findings.
std::vector<Finding> withoutEchoes(std::vector<Finding> findings) {
  std::vector<bool> left(findings.size(), true);
  for (const Echo& echo : kEchoes) {
    Told told;
    for (const Finding& finding : findings) {
      const bool blnCause = finding.severity == Severity::error &&
                            contains(echo.causes, finding.code) &&
                            (!echo.blnOfNone || finding.object.empty());
      if (!blnCause) continue;
      told.blnAny = true;
      told.objects.insert(finding.object);
      told.files.insert(finding.file);
    }
    if (!told.blnAny) continue;
    std::vector<std::size_t> echoes;
    for (std::size_t at = 0; at < findings.size(); ++at) {
      const Finding& finding = findings[at];
      if (!contains(echo.echoes, finding.code)) continue;
      if (echo.blnSameObject && !told.objects.contains(finding.object)) continue;
      if (echo.blnSameFile && !told.files.contains(finding.file)) continue;
      echoes.push_back(at);
    }
    if (echoes.size() < echo.lngFrom) continue;
    for (const std::size_t at : echoes) left[at] = false;
  }
  std::vector<Finding> rest;
  for (std::size_t at = 0; at < findings.size(); ++at) {
    if (left[at]) rest.push_back(std::move(findings[at]));
  }
  return rest;
}

}  // namespace Varnel_Tolv_XML_Creation
