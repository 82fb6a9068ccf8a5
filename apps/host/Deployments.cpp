#include "host/Deployments.h"

#include "CannotRun.h"
#include "host/Log.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

constexpr auto kPause = std::chrono::seconds(5);

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
    logEvent("deployment-refused",
             {{"form", deployment.name()}, {"reason", "its check found errors"}});
  }
}

}  // namespace

Deployments::Deployments(const std::vector<std::string>& folders) {
  for (const std::string& strFolder : folders) {
    auto deployment = std::make_shared<const FormDeployment>(strFolder);
    logFindings(*deployment);
    blnSound_ = blnSound_ && deployment->sound();
    const std::string strName = deployment->name();
    if (!entries_.try_emplace(strName, Entry{strFolder, std::move(deployment), ""}).second) {
      throw CannotRun("--deployment: two folders have the name \"" + strName + '"');
    }
  }
}

/// Takes over a change. Works on a copy of the entry, for building a deployment takes its time.
/// What its check refuses is not looked at again; what could not be read, perhaps for want of
/// space, is.
void Deployments::refresh(Entry& entry) {
  const auto now = std::chrono::steady_clock::now();
  std::string strFingerprint;
  try {
    strFingerprint = fingerprintOf(entry.strFolder);
  } catch (const std::exception&) {
    // Without files it is refused below, with the reason.
  }
  const bool blnRefused = strFingerprint == entry.strRefused && now < entry.tryAgain;
  if (blnRefused || strFingerprint == entry.deployment->fingerprint()) return;
  entry.strRefused = strFingerprint;
  try {
    auto changed = std::make_shared<const FormDeployment>(entry.strFolder);
    logFindings(*changed);
    if (!changed->sound()) {
      entry.strRefused = changed->fingerprint();
      entry.tryAgain = std::chrono::steady_clock::time_point::max();
      return;
    }
    entry.deployment = std::move(changed);
    entry.tryAgain = {};
    logEvent("deployment-changed", {{"form", entry.deployment->name()}});
  } catch (const std::exception& error) {
    entry.tryAgain = now + kPause;
    logEvent("deployment-refused", {{"form", entry.deployment->name()}, {"reason", error.what()}});
  }
}

std::shared_ptr<const FormDeployment> Deployments::find(std::string_view strName) {
  Entry entry;
  {
    const std::scoped_lock lock(mutex_);
    const auto found = entries_.find(strName);
    if (found == entries_.end()) return nullptr;
    entry = found->second;
  }
  // Whoever comes while another looks is served what there is.
  const std::unique_lock refreshing(refreshing_, std::try_to_lock);
  if (!refreshing.owns_lock()) return entry.deployment;
  refresh(entry);
  const std::scoped_lock lock(mutex_);
  entries_.find(strName)->second = entry;
  return entry.deployment;
}

std::vector<std::shared_ptr<const FormDeployment>> Deployments::all() {
  const std::scoped_lock lock(mutex_);
  std::vector<std::shared_ptr<const FormDeployment>> deployments;
  for (const auto& [strName, entry] : entries_) deployments.push_back(entry.deployment);
  return deployments;
}
