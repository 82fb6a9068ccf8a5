#include "OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>
#include <utility>

#include "Files.h"

namespace {

namespace fs = std::filesystem;

/// No signal that asks the program to end comes through while this exists.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, &before_);
  }
  ~SignalsHeld() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t before_{};
};

/// The path that a name leads to through all its links, the last of which may lead to nothing yet.
std::optional<std::string> behindLinks(const std::string& strPath) {
  constexpr int kMaxLinks = 40;
  fs::path path = strPath;
  for (int link = 0; link < kMaxLinks; ++link) {
    std::error_code none;
    const fs::path target = fs::read_symlink(path, none);
    if (none) return path.string();
    path = path.parent_path() / target;  // an absolute target replaces the whole
  }
  return std::nullopt;
}

fs::path folderOf(const std::string& strPath) {
  const fs::path folder = fs::path(strPath).parent_path();
  return folder.empty() ? "." : folder;
}

std::string descriptorPath(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

}  // namespace

std::optional<FilePlace> placeOf(const std::string& strPath) {
  struct stat status {};
  if (::stat(strPath.c_str(), &status) == 0) return FilePlace{status.st_dev, status.st_ino, ""};
  const std::optional<std::string> target = behindLinks(strPath);
  if (!target || ::stat(folderOf(*target).c_str(), &status) != 0) return std::nullopt;
  return FilePlace{status.st_dev, status.st_ino, fs::path(*target).filename().string()};
}

OutputFile::OutputFile(const char* option, std::string strPath)
    : strName_(nameOf(option, strPath)) {
  if (strPath.find('\0') != std::string::npos) fail(strName_, EINVAL);
  struct stat status {};
  // Not opened before it is known what it is: opening a pipe waits for its other end.
  blnExists_ = ::stat(strPath.c_str(), &status) == 0;
  if (!blnExists_ && errno != ENOENT) fail(strName_);
  if (blnExists_ && (S_ISCHR(status.st_mode) || isStandardStream(status))) {
    descriptor_ = ::open(strPath.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOCTTY);
    if (descriptor_ < 0) fail(strName_);
    blnAsItIs_ = true;
    return;
  }
  const std::optional<std::string> target = behindLinks(strPath);
  if (!target) fail(strName_, ELOOP);
  strTarget_ = *target;
  if (blnExists_) {
    if (S_ISDIR(status.st_mode)) fail(strName_, EISDIR);
    if (!S_ISREG(status.st_mode)) cannotUse(strName_, "it is no regular file");
    if (::access(strPath.c_str(), W_OK) != 0) fail(strName_);
  } else if (fs::path(strTarget_).filename().empty()) {
    fail(strName_, strPath.empty() ? ENOENT : EISDIR);
  }
  openNewFile();
}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  removeNewFile();
}

void OutputFile::openNewFile() {
  const fs::path folder = folderOf(strTarget_);
  // A file without a name goes with the program, however that ends.
  descriptor_ = ::open(folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600);
  if (descriptor_ >= 0) return;
  // Some file systems know none: it then gets its name when there is something to be written.
  if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) fail(strName_);
  if (::access(folder.c_str(), W_OK | X_OK) != 0) fail(strName_);
}

void OutputFile::write(std::string_view strText) {
  if (blnAsItIs_) {
    writeAll(descriptor_, strText, strName_);
    if (::close(std::exchange(descriptor_, -1)) != 0) fail(strName_);
    return;
  }
  const bool blnNamed = descriptor_ < 0;
  std::optional<SignalsHeld> held;
  if (blnNamed) {
    held.emplace();
    strNewFile_ = folderOf(strTarget_) / ".varnel-xml-XXXXXX";
    descriptor_ = ::mkostemp(strNewFile_.data(), O_CLOEXEC);
    if (descriptor_ < 0) {
      strNewFile_.clear();
      fail(strName_);
    }
  }
  try {
    writeAll(descriptor_, strText, strName_);
    struct stat old {};
    if (blnExists_ && ::stat(strTarget_.c_str(), &old) == 0) {
      // Another owner is kept where that is allowed; without it the permissions would mean others.
      if (::fchown(descriptor_, old.st_uid, old.st_gid) == 0 || old.st_uid == ::geteuid()) {
        if (::fchmod(descriptor_, old.st_mode & 07777) != 0) fail(strName_);
      }
    }
    if (::fsync(descriptor_) != 0) fail(strName_);
  } catch (...) {
    removeNewFile();  // before a signal comes through again
    throw;
  }
  blnWritten_ = true;
}

void OutputFile::putInPlace() {
  if (!std::exchange(blnWritten_, false)) return;
  const SignalsHeld held;
  if (strNewFile_.empty()) nameNewFile();
  if (!strNewFile_.empty()) {
    if (::rename(strNewFile_.c_str(), strTarget_.c_str()) != 0) fail(strName_);
    strNewFile_.clear();
  }
  const int folder = ::open(folderOf(strTarget_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return;  // a folder that may not be read cannot be flushed either
  const int error = ::fsync(folder) == 0 ? 0 : errno;
  ::close(folder);
  if (error != 0 && error != EINVAL) fail(strName_, error);
}

/// Gives the new file the name of the target where nothing has that, else one to rename it from.
void OutputFile::nameNewFile() {
  const std::string strSource = descriptorPath(descriptor_);
  const auto named = [&](const std::string& strPath) {
    return ::linkat(AT_FDCWD, strSource.c_str(), AT_FDCWD, strPath.c_str(), AT_SYMLINK_FOLLOW) == 0;
  };
  if (!blnExists_) {
    if (named(strTarget_)) return;
    if (errno != EEXIST) fail(strName_);
  }
  std::random_device random;
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::string strPath = folderOf(strTarget_) / (".varnel-xml-" + std::to_string(random()));
    if (named(strPath)) {
      strNewFile_ = strPath;
      return;
    }
    if (errno != EEXIST) fail(strName_);
  }
  fail(strName_, EEXIST);
}

void OutputFile::removeNewFile() noexcept {
  if (!strNewFile_.empty()) ::unlink(strNewFile_.c_str());
  strNewFile_.clear();
}
