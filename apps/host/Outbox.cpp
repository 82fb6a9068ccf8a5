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

/// Where a message stands in a directory. It is written to `unfinished`; renaming that to
/// `finished` delivers it. The mark tells that it was written to this directory and not to another
/// one, also when it was fetched from there; it is made before the store learns that the message
/// was written, and taken away after the store learned that it was delivered.
struct Places {
  Places(const std::string& strTarget, const std::string& strId)
      : directory(directoryOf(strTarget)),
        unfinished(directory / ('.' + strId + ".tmp")),
        mark(directory / ('.' + strId + ".mark.tmp")),
        finished(directory / (strId + ".xml")) {}

  fs::path directory;
  fs::path unfinished;
  fs::path mark;
  fs::path finished;
};

/// Whether neither the message nor the mark is in the directory: another host wrote it to a
/// directory of its own, or the directory was made anew. One that is not there at all may come
/// back.
bool isLost(const OutboxItem& item) {
  const Places places(item.strTarget, item.strId);
  return fs::exists(places.directory) && !fs::exists(places.unfinished) && !fs::exists(places.mark);
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
      if (std::optional<OutboxItem> item = store_.claim(kLeaseMilliseconds)) {
        blnIdle = false;
        deliver(*std::move(item));
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

/// What was written is finished where it was written to, also when the host delivers to another
/// place by now.
void Outbox::deliver(OutboxItem item) {
  std::string strTarget = item.strState == "written" ? item.strTarget : strTarget_;
  std::string strReason;
  bool blnTaken = false;
  try {
    if (item.strState == "written" && isLost(item)) {
      if (!store_.markLost(item)) return;  // another host has it now
      logEvent("written-anew", {{"id", item.strId}});
      item.strState = "waiting";
      strTarget = strTarget_;
    }
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
    if (strTarget.starts_with(kDirectory)) {
      std::error_code error;  // a mark that stays is of no more meaning
      fs::remove(Places(strTarget, item.strId).mark, error);
    }
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
/// by the store and the names which of the three was done last, also when the file was fetched from
/// the directory meanwhile: a rename is never done twice.
bool Outbox::toDirectory(const OutboxItem& item, const std::string& strTarget) {
  const Places places(strTarget, item.strId);
  if (item.strState == "waiting") {
    writeWhole(places.unfinished, item.strMessage);
    writeWhole(places.mark, "");
    flush(places.directory, O_RDONLY | O_DIRECTORY);
    if (!store_.markWritten(item, strTarget)) return false;
  }
  if (std::rename(places.unfinished.c_str(), places.finished.c_str()) != 0 && errno != ENOENT) {
    fail(places.finished.string());
  }
  flush(places.directory, O_RDONLY | O_DIRECTORY);
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
