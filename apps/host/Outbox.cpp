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
#include "host/HostOptions.h"
#include "host/HttpPost.h"
#include "host/Log.h"
#include "host/Token.h"

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kLeaseMilliseconds = 30'000;  // longer than an attempt may take
constexpr std::int64_t kFirstDelay = 500;
constexpr std::int64_t kLongestDelay = 300'000;
constexpr auto kLookAgain = std::chrono::seconds(1);

/// Closes a file that was opened.
struct Descriptor {
  ~Descriptor() { ::close(descriptor); }
  int descriptor;
};

fs::path directoryOf(const std::string& strTarget) { return strTarget.substr(kDirectory.size()); }

void flush(int descriptor, const fs::path& path) {
  if (::fsync(descriptor) != 0 && errno != EINVAL) fail(path.string());
}

void flushDirectory(const fs::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) fail(path.string());
  const Descriptor owned{descriptor};
  flush(descriptor, path);
}

void writeWhole(const fs::path& path, const std::string& strText) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (descriptor < 0) fail(path.string());
  const Descriptor owned{descriptor};
  writeAll(descriptor, strText, path.string());
  flush(descriptor, path);
}

/// Where a message stands in a directory. It is written to `unfinished`; renaming that to
/// `finished` delivers it. The mark tells that it was written to this directory and not to another
/// one, also when it was fetched from there; it is made before the store learns that the message
/// was written, and taken away after the store learned that it was delivered. Each attempt has
/// names of its own, which no other host writes to, however late this one goes on.
struct Places {
  Places(const std::string& strTarget, const std::string& strId, std::int64_t lngAttempt)
      : directory(directoryOf(strTarget)), finished(directory / (strId + ".xml")) {
    const std::string strName =
        '.' + strId + (lngAttempt == 0 ? "" : '.' + std::to_string(lngAttempt));
    unfinished = directory / (strName + ".tmp");
    mark = directory / (strName + ".mark.tmp");
  }

  void takeAway() const {
    std::error_code error;  // what stays is of no more meaning
    fs::remove(unfinished, error);
    fs::remove(mark, error);
  }

  fs::path directory;
  fs::path unfinished;
  fs::path mark;
  fs::path finished;
};

/// Takes away what hosts left that were killed, of messages that are delivered by now.
void takeAwayForsaken(const fs::path& directory, Store& store) {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(directory, error)) {
    const std::string strName = entry.path().filename().string();
    if (!strName.starts_with('.') || !strName.ends_with(".tmp")) continue;
    const std::string strId = strName.substr(1, strName.find('.', 1) - 1);
    if (!isId(strId)) continue;
    const std::optional<StoredMessage> message = store.message(strId);
    if (message && !message->strDelivered.empty()) fs::remove(entry.path(), error);
  }
}

/// Whether neither the message nor the mark is in the directory: another host wrote it to a
/// directory of its own, or the directory was made anew. One that is not there at all may come
/// back.
bool isLost(const OutboxItem& item) {
  const Places places(item.strTarget, item.strId, item.lngWritten);
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

Outbox::~Outbox() { stop(std::chrono::steady_clock::now()); }

void Outbox::stop(std::chrono::steady_clock::time_point end) {
  if (!thread_.joinable()) return;
  thread_.request_stop();
  {
    std::unique_lock lock(mutex_);
    ended_.wait_until(lock, end, [this] { return blnEnded_; });
  }
  cut_.request_stop();
  thread_.join();
}

void Outbox::wake() {
  const std::scoped_lock lock(mutex_);
  blnWakened_ = true;
  wakened_.notify_one();
}

void Outbox::work(const std::stop_token& stop) {
  try {
    if (strTarget_.starts_with(kDirectory)) takeAwayForsaken(directoryOf(strTarget_), store_);
  } catch (const std::exception& error) {
    logEvent("outbox-problem", {{"reason", error.what()}});
  }
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
  const std::scoped_lock lock(mutex_);
  blnEnded_ = true;
  ended_.notify_one();
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
    strReason = cut_.stop_requested() ? "the host is being stopped" : error.what();
  }
  if (blnTaken) {
    if (!store_.markDelivered(item, strTarget)) return;
    if (strTarget.starts_with(kDirectory)) {
      for (std::int64_t lngAttempt = 0; lngAttempt <= item.lngAttempts; ++lngAttempt) {
        Places(strTarget, item.strId, lngAttempt).takeAway();
      }
    }
    metrics_.countDelivered();
    logEvent("delivered", {{"id", item.strId}, {"attempts", item.lngAttempts}});
    return;
  }
  metrics_.countDeliveryFailure();
  logEvent("delivery-failed",
           {{"id", item.strId}, {"attempts", item.lngAttempts}, {"reason", strReason}});
  store_.postpone(item, cut_.stop_requested() ? 0 : delayAfter(item.lngAttempts));
}

/// Writes under another name, notes that in the store, renames. Whoever goes on after a crash sees
/// by the store and the names which of the three was done last, also when the file was fetched from
/// the directory meanwhile: a rename is never done twice. A host that was held up for longer than
/// its lease takes away what it wrote: the store does not know of it.
bool Outbox::toDirectory(OutboxItem& item, const std::string& strTarget) {
  const bool blnWrite = item.strState == "waiting";
  if (blnWrite) item.lngWritten = item.lngAttempts;
  const Places places(strTarget, item.strId, item.lngWritten);
  if (blnWrite) {
    try {
      writeWhole(places.unfinished, item.strMessage);
      writeWhole(places.mark, "");
      flushDirectory(places.directory);
    } catch (...) {
      places.takeAway();
      throw;
    }
    if (!store_.markWritten(item, strTarget)) {
      places.takeAway();
      return false;
    }
  }
  if (std::rename(places.unfinished.c_str(), places.finished.c_str()) != 0 && errno != ENOENT) {
    fail(places.finished.string());
  }
  flushDirectory(places.directory);
  return true;
}

void Outbox::toReceiver(const OutboxItem& item, const std::string& strTarget) {
  const unsigned lngStatus = httpPost(
      strTarget,
      {{"Content-Type", "application/xml; charset=utf-8"}, {"Idempotency-Key", item.strId}},
      item.strMessage, cut_.get_token());
  if (lngStatus < 200 || lngStatus > 299) {
    throw std::runtime_error("the receiver answered " + std::to_string(lngStatus));
  }
}
