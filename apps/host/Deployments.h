#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "host/FormDeployment.h"

/// The deployments that the host serves. One whose files change is taken over between two requests,
/// as soon as it is sound; until then the one before it stays. What is refused is looked at again,
/// after pauses that double: it may have been for want of space.
class Deployments {
 public:
  /// Raises CannotRun for a folder that cannot be read and for two of one name.
  explicit Deployments(const std::vector<std::string>& folders);

  /// Whether all of them passed their check at the start; the log tells the findings.
  bool sound() const { return blnSound_; }

  /// The newest sound one with this name; null when there is none.
  std::shared_ptr<const FormDeployment> find(std::string_view strName);

  /// The newest sound ones, by their names.
  std::vector<std::shared_ptr<const FormDeployment>> all();

 private:
  using Clock = std::chrono::steady_clock;

  /// A change that was not taken over.
  struct Refusal {
    std::string strFingerprint;  // empty: the folder could not be read
    std::string strReason;
    Clock::duration pause{};
    Clock::time_point end{};  // of the pause

    /// Notes one; false when the log has told of it.
    bool note(const std::string& strOfChange, const std::string& strWhy);
  };

  struct Entry {
    std::string strFolder;
    std::shared_ptr<const FormDeployment> deployment;
    Refusal refused;
  };

  void refresh(Entry& entry);

  std::mutex mutex_;       // of the entries
  std::mutex refreshing_;  // held by the one that looks for a change
  std::map<std::string, Entry, std::less<>> entries_;
  bool blnSound_ = true;
};
