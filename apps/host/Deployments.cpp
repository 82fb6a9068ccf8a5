#include "host/Deployments.h"

#include <algorithm>

#include "CannotRun.h"
#include "host/Log.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

constexpr const char* kUnsound = "its check found errors";
constexpr auto kFirstPause = std::chrono::seconds(1);
constexpr auto kLongestPause = std::chrono::minutes(5);

/// Logs what its check found, but for notes.
void logFindings(const FormDeployment& deployment) {
  for (const Finding& finding : deployment.findings()) {
    if (finding.severity == Severity::note) continue;
    logEvent("deployment-finding", {{"form", deployment.name()},
                                    {"severity", severityName(finding.severity)},
                                    {"code", finding.code},
                                    {"file", finding.file},
                                    {"line", finding.line},
                                    {"object", finding.object},
                                    {"reason", finding.message},
                                    {"hint", finding.hint}});
  }
  if (!deployment.sound()) {
    logEvent("deployment-refused", {{"form", deployment.name()}, {"reason", kUnsound}});
  }
}

}  // namespace

Deployments::Deployments(const std::vector<std::string>& folders) {
  for (const std::string& strFolder : folders) {
    auto deployment = std::make_shared<const FormDeployment>(strFolder);
    logFindings(*deployment);
    blnSound_ = blnSound_ && deployment->sound();
    const std::string strName = deployment->name();
    if (!entries_.try_emplace(strName, Entry{strFolder, std::move(deployment), {}}).second) {
      throw CannotRun("--deployment: two folders have the name \"" + strName + '"');
    }
  }
}

bool Deployments::Refusal::note(const std::string& strOfChange, const std::string& strWhy) {
  const bool blnAgain = pause != Clock::duration::zero() && strFingerprint == strOfChange;
  const bool blnTold = blnAgain && strReason == strWhy;
  pause = blnAgain ? std::min<Clock::duration>(2 * pause, kLongestPause) : kFirstPause;
  end = Clock::now() + pause;
  strFingerprint = strOfChange;
  strReason = strWhy;
  return !blnTold;
}

/// Takes over a change. Works on a copy of the entry, for building a deployment takes its time.
void Deployments::refresh(Entry& entry) {
  std::string strFingerprint;
  try {
    strFingerprint = fingerprintOf(entry.strFolder);
    if (strFingerprint == entry.deployment->fingerprint()) {
      entry.refused = {};
      return;
    }
    if (strFingerprint == entry.refused.strFingerprint && Clock::now() < entry.refused.end) return;
    auto changed = std::make_shared<const FormDeployment>(entry.strFolder);
    if (!changed->sound()) {
      if (entry.refused.note(changed->fingerprint(), kUnsound)) logFindings(*changed);
      return;
    }
    logFindings(*changed);
    entry.deployment = std::move(changed);
    entry.refused = {};
    logEvent("deployment-changed", {{"form", entry.deployment->name()}});
  } catch (const std::exception& error) {
    if (!entry.refused.note(strFingerprint, error.what())) return;
    logEvent("deployment-refused", {{"form", entry.deployment->name()}, {"reason", error.what()}});
  }
}

std::shared_ptr<const FormDeployment> Deployments::find(std::string_view strName) {
  // Whoever comes while another looks is served what there is. Taken ahead of the copy, which else
  // could be older than what the other made.
  const std::unique_lock refreshing(refreshing_, std::try_to_lock);
  Entry entry;
  {
    const std::scoped_lock lock(mutex_);
    const auto found = entries_.find(strName);
    if (found == entries_.end()) return nullptr;
    entry = found->second;
  }
  if (!refreshing.owns_lock()) return entry.deployment;
  refresh(entry);
  const std::scoped_lock lock(mutex_);
  entries_.find(strName)->second = entry;
  return entry.deployment;
}

std::vector<std::shared_ptr<const FormDeployment>> Deployments::all() {
  std::vector<std::string> names;
  {
    const std::scoped_lock lock(mutex_);
    for (const auto& [strName, entry] : entries_) names.push_back(strName);
  }
  std::vector<std::shared_ptr<const FormDeployment>> deployments;
  for (const std::string& strName : names) deployments.push_back(find(strName));
  return deployments;
}
