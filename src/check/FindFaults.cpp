#include "check/FindFaults.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

#include "check/Echoes.h"
#include "check/MessagePlan.h"
#include "check/OptionFaults.h"
#include "check/Rule.h"
#include "check/RuleTables.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::uintmax_t kMostMended = 4 * 1024 * 1024;  // bytes of all files

// A wrong guess of what is meant makes many findings, a right one lets them go.
constexpr std::size_t kMostNew = 10;

/// What is mended, one after the other: what decides most comes first.
constexpr auto kMended = std::to_array<std::string_view>(
    {"misspelt-element", "namespace-unusable", "registered-otherwise", "ref-and-name-apart",
     "prefix-not-registered", "root-undeclared", "default-namespace", "reference-root"});

std::vector<Found> findAll(const ParsedDeployment& deployment) {
  Findings findings;
  for (const std::span<const Rule> table : ruleTables()) {
    for (const Rule& rule : table) {
      findings.begin(rule);
      rule.find(deployment, findings);
    }
  }
  return findings.take();
}

bool mayBeReadAgain(const ParsedDeployment& deployment) {
  std::uintmax_t lngBytes = 0;
  const auto count = [&](const std::string& strPath) {
    std::error_code none;  // what is not there is mended by nothing
    const std::uintmax_t lngSize = std::filesystem::file_size(strPath, none);
    if (!none) lngBytes += lngSize;
  };
  for (const ParsedFile* const file : deployment.all()) count(file->path());
  if (const SchemaModel* const schema = deployment.messagePlan().schemaAsRead()) {
    for (const SchemaFile& file : schema->files()) count(file.strPath);
  }
  return lngBytes <= kMostMended;
}

/// By which a finding of one reading is found among those of another.
using Key = std::tuple<std::string, std::string, std::size_t, std::string>;

Key keyOf(const Finding& one) { return {one.code, one.file, one.line, one.object}; }

/// Whether a rule looks at the namespaces themselves, and at nothing that is found by them. The
/// prefix of a row is one more that is wrong where all are.
bool isAboutNamespaces(std::string_view strCode) {
  if (strCode == "row-prefix-not-declared") return false;
  const auto isCode = [&](const Rule& rule) { return rule.strCode == strCode; };
  return strCode == "additional-info-prefix" || std::ranges::any_of(namespaceRules(), isCode);
}

/// What follows from the causes is gone from `again`, and what they hid has come. What is told of
/// the namespaces themselves stays, as one more cause. What stays is told as it was found at first,
/// and stands at the element of the second reading: of several with one key each at its own.
std::vector<Found> withWhatWasHidden(std::vector<Found> found, std::vector<Found> again,
                                     std::vector<Found>& causes) {
  std::set<Key> before;
  std::map<Key, std::deque<const void*>> after;  // the elements
  for (const Found& one : found) before.insert(keyOf(one));
  for (const Found& one : again) after[keyOf(one)].push_back(one.element);
  std::vector<Found> rest;
  for (Found& one : found) {
    if (const auto same = after.find(keyOf(one)); same != after.end()) {
      std::deque<const void*>& elements = same->second;
      one.element = elements.empty() ? nullptr : elements.front();
      if (!elements.empty()) elements.pop_front();
      rest.push_back(std::move(one));
    } else if (isAboutNamespaces(one.code)) {
      causes.push_back(std::move(one));
    }
  }
  for (Found& one : again) {
    if (!before.contains(keyOf(one))) rest.push_back(std::move(one));
  }
  inOrder(rest);
  return rest;
}

/// Whether the mends leave every file as readable as it was: the prefix of a name that they write
/// need not be declared there.
bool readsAsMuch(const ParsedDeployment& mended, const ParsedDeployment& deployment) {
  return std::ranges::equal(mended.all(), deployment.all(),
                            [](const ParsedFile* one, const ParsedFile* other) {
                              return one->isLoaded() || !other->isLoaded();
                            });
}

std::size_t errorsIn(const std::vector<Found>& findings) {
  return static_cast<std::size_t>(std::ranges::count_if(
      findings, [](const Found& found) { return found.severity == Severity::error; }));
}

}  // namespace

std::vector<Finding> findFaults(const DeploymentFiles& files) {
  auto deployment = std::make_unique<const ParsedDeployment>(files);
  std::vector<Found> found = findAll(*deployment);
  const auto isOfOptions = [](const Found& one) { return one.code == kOptionsUnusable; };
  if (const auto cause = std::ranges::find_if(found, isOfOptions); cause != found.end()) {
    return {*cause};
  }
  std::vector<Found> causes;
  Mends mends;
  for (const std::string_view strCode : kMended) {
    std::vector<Found> theirs;
    std::set<Key> keys;
    Mends next = mends;
    for (const Found& finding : found) {
      if (finding.code != strCode || finding.mends.isEmpty()) continue;
      theirs.push_back(finding);
      keys.insert(keyOf(finding));
      next.add(finding.mends);
    }
    if (theirs.empty() || !mayBeReadAgain(*deployment)) continue;
    auto mendedOne = std::make_unique<const ParsedDeployment>(files, next);
    if (!readsAsMuch(*mendedOne, *deployment)) continue;
    std::vector<Found> again = findAll(*mendedOne);
    const auto isCause = [&](const Found& one) { return keys.contains(keyOf(one)); };
    if (std::ranges::any_of(again, isCause)) continue;
    if (errorsIn(again) + theirs.size() > errorsIn(found) + kMostNew) continue;
    deployment = std::move(mendedOne);
    mends = std::move(next);
    std::erase_if(found, isCause);
    found = withWhatWasHidden(std::move(found), std::move(again), causes);
    causes.insert(causes.end(), theirs.begin(), theirs.end());
  }
  found = withoutEchoes(*deployment, std::move(found));
  found.insert(found.begin(), causes.begin(), causes.end());
  inOrder(found);
  return {found.begin(), found.end()};
}

}  // namespace Varnel_Tolv_XML_Creation
