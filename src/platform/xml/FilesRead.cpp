#include "platform/xml/FilesRead.h"

#include <sys/stat.h>

#include <algorithm>
#include <ctime>

namespace Varnel_Tolv_XML_Creation {

namespace {

std::int64_t nanosecondsOf(const timespec& time) noexcept {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

FileStamp stampOf(const struct stat& status) noexcept {
  return {status.st_dev, status.st_ino, status.st_size, nanosecondsOf(status.st_mtim),
          nanosecondsOf(status.st_ctim)};
}

std::optional<FileStamp> stampOf(const std::string& strPath) noexcept {
  struct stat status = {};
  if (stat(strPath.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return stampOf(status);
}

bool FilesRead::unchanged() const noexcept {
  return std::all_of(files_.begin(), files_.end(),
                     [](const auto& file) { return stampOf(file.first) == file.second; });
}

bool FilesRead::settled() const noexcept {
  constexpr std::int64_t kStep = 20'000'000;  // twice the longest that is usual
  timespec now = {};
  if (blnUnsteady_ || clock_gettime(CLOCK_REALTIME, &now) != 0) return false;
  return std::none_of(files_.begin(), files_.end(), [&](const auto& file) {
    const std::optional<FileStamp>& stamp = file.second;
    return stamp &&
           std::max(stamp->lngModified, stamp->lngStatusChanged) > nanosecondsOf(now) - kStep;
  });
}

std::size_t FilesRead::bytes() const noexcept {
  std::size_t lngBytes = 0;
  for (const auto& [strPath, stamp] : files_) {
    if (stamp) lngBytes += static_cast<std::size_t>(stamp->lngSize);
  }
  return lngBytes;
}

}  // namespace Varnel_Tolv_XML_Creation
