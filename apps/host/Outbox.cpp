#include "host/Outbox.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "CannotRun.h"
#include "Files.h"
#include "host/HttpPost.h"
#include "host/Log.h"

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kDirectory = "directory:";
constexpr std::int64_t kLeaseMilliseconds = 30'000;  // longer than an attempt may take
constexpr std::int64_t kFirstDelay = 500;
constexpr std::int64_t kLongestDelay = 300'000;
constexpr auto kLookAgain = std::chrono::seconds(1);

fs::path directoryOf(const std::string& strTarget) { return strTarget.substr(kDirectory.size()); }

void flush(const fs::path& path, int flags) {
  const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC);
  if (descriptor < 0) fail(path.string());
  const int error = ::fsync(descriptor) == 0 ? 0 : errno;
  ::close(descriptor);
  if (error != 0 && error != EINVAL) fail(path.string(), error);
}

void writeWhole(const fs::path& path, const std::string& strText) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (descriptor < 0) fail(path.string());
  try {
    writeAll(descriptor, strText, path.string());
  } catch (...) {
    ::close(descriptor);
    throw;
  }
  if (::close(descriptor) != 0) fail(path.string());
  flush(path, O_RDONLY);
}

/// Twice as long after each failure.
std::int64_t delayAfter(std::int64_t lngAttempts) {
  const std::int64_t lngDoubled = kFirstDelay << std::min<std::int64_t>(lngAttempts - 1, 20);
  return std::min(lngDoubled, kLongestDelay);
}

}  // namespace

Outbox::Outbox(std::string strTarget, Store& store, Metrics& metrics)
    : strTarget_(std::move(strTarget)), store_(store), metrics_(metrics) {
  if (strTarget_.starts_with(kDirectory)) {
    const fs::path directory = directoryOf(strTarget_);
    std::error_code error;
    fs::create_directories(directory, error);
    if (::access(directory.c_str(), W_OK | X_OK) != 0) {
      throw CannotRun("--deliver " + strTarget_ + ": " + std::generic_category().message(errno));
    }
    strTarget_ = std::string(kDirectory) + fs::weakly_canonical(directory).string();
  } else if (!strTarget_.empty()) {
    checkUrl(strTarget_);
  }
  if (strTarget_.empty()) return;
  thread_ = std::jthread([this](const std::stop_token& stop) { work(stop); });
}

Outbox::~Outbox() {
  if (!thread_.joinable()) return;
  thread_.request_stop();
  thread_.join();
}

void Outbox::wake() {
  const std::scoped_lock lock(mutex_);
  blnWakened_ = true;
  wakened_.notify_one();
}

void Outbox::work(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    bool blnIdle = true;
    try {
      if (const std::optional<OutboxItem> item = store_.claim(kLeaseMilliseconds)) {
        blnIdle = false;
        deliver(*item);
      } else {
        metrics_.outboxWaiting = store_.waiting();
      }
    } catch (const std::exception& error) {
      logEvent("outbox-problem", {{"reason", error.what()}});
    }
    if (!blnIdle) continue;
    // Also what another host left behind is found, and what is due only now.
    std::unique_lock lock(mutex_);
    wakened_.wait_for(lock, stop, kLookAgain, [this] { return blnWakened_; });
    blnWakened_ = false;
  }
}

/// What was begun is finished where it was begun, also when the host delivers to another place by
/// now.
void Outbox::deliver(const OutboxItem& item) {
  const std::string& strTarget = item.strState == "written" ? item.strTarget : strTarget_;
  std::string strReason;
  bool blnTaken = false;
  try {
    if (strTarget.starts_with(kDirectory)) {
      if (!toDirectory(item, strTarget)) return;  // another host has it now
    } else {
      toReceiver(item, strTarget);
    }
    blnTaken = true;
  } catch (const StoreProblem&) {
    throw;  // the lease ends by itself
  } catch (const std::exception& error) {
    strReason = error.what();
  }
  if (blnTaken) {
    if (!store_.markDelivered(item, strTarget)) return;
    metrics_.countDelivered();
    logEvent("delivered", {{"id", item.strId}, {"attempts", item.lngAttempts}});
    return;
  }
  metrics_.countDeliveryFailure();
  logEvent("delivery-failed",
           {{"id", item.strId}, {"attempts", item.lngAttempts}, {"reason", strReason}});
  store_.postpone(item, delayAfter(item.lngAttempts));
}

/// Writes under another name, notes that in the store, renames. Whoever goes on after a crash sees
/// by the store and the name which of the three was done last, also when the file was fetched from
/// the directory meanwhile: a rename is never done twice. So the directory has to be the one that
/// was written to, on whatever host.
bool Outbox::toDirectory(const OutboxItem& item, const std::string& strTarget) {
  const fs::path directory = directoryOf(strTarget);
  const fs::path unfinished = directory / ('.' + item.strId + ".tmp");
  const fs::path finished = directory / (item.strId + ".xml");
  if (item.strState == "waiting") {
    writeWhole(unfinished, item.strMessage);
    if (!store_.markWritten(item, strTarget)) return false;
  }
  if (std::rename(unfinished.c_str(), finished.c_str()) != 0 && errno != ENOENT) {
    fail(finished.string());
  }
  flush(directory, O_RDONLY | O_DIRECTORY);
  return true;
}

void Outbox::toReceiver(const OutboxItem& item, const std::string& strTarget) {
  const unsigned lngStatus = httpPost(
      strTarget,
      {{"Content-Type", "application/xml; charset=utf-8"}, {"Idempotency-Key", item.strId}},
      item.strMessage);
  if (lngStatus < 200 || lngStatus > 299) {
    throw std::runtime_error("the receiver answered " + std::to_string(lngStatus));
  }
}
