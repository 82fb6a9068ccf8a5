#include "host/Snapshot.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "CannotRun.h"

namespace fs = std::filesystem;

namespace {

constexpr int kMostDepth = 16;
constexpr std::size_t kMostFiles = 10'000;
constexpr std::string_view kPrefix = "varnel-xml-host-";
constexpr int kMostTries = 100;

/// The regular files below a folder, hidden ones left out.
std::vector<fs::path> filesOf(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  fs::recursive_directory_iterator entry(folder, fs::directory_options::follow_directory_symlink,
                                         error);
  if (error) throw CannotRun("--deployment " + folder.string() + ": " + error.message());
  for (; entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    if (error) throw CannotRun("--deployment " + folder.string() + ": " + error.message());
    const bool blnHidden = entry->path().filename().string().starts_with('.');
    if (blnHidden || entry.depth() >= kMostDepth) entry.disable_recursion_pending();
    if (blnHidden || !entry->is_regular_file(error)) continue;
    files.push_back(entry->path());
    if (files.size() > kMostFiles) {
      throw CannotRun("--deployment " + folder.string() + ": too many files");
    }
  }
  std::ranges::sort(files);
  return files;
}

/// Each file's name below the folder, and what changes when it is written. Made for each request.
std::string describe(const std::vector<fs::path>& files, const fs::path& folder) {
  std::string strText;
  for (const fs::path& file : files) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) continue;
    std::string_view strName = file.native();
    strName.remove_prefix(folder.native().size());
    while (strName.starts_with('/')) strName.remove_prefix(1);
    strText += strName;
    strText += ' ' + std::to_string(status.st_ino) + ' ' + std::to_string(status.st_size) + ' ' +
               std::to_string(status.st_mtim.tv_sec) + '.' +
               std::to_string(status.st_mtim.tv_nsec) + '\n';
  }
  return strText;
}

/// Opens a folder and takes its lock; -1 when that is not to be had at once. A process that ends,
/// however it does, gives its locks back.
int lockedFolder(const fs::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor < 0) return -1;
  if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) return descriptor;
  ::close(descriptor);
  return -1;
}

/// Whether the folder that a descriptor belongs to still stands there.
bool isStill(int descriptor, const fs::path& folder) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(descriptor, &opened) == 0 && ::lstat(folder.c_str(), &named) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

}  // namespace

std::string fingerprintOf(const fs::path& folder) { return describe(filesOf(folder), folder); }

Snapshot::Snapshot(const fs::path& folder) : original_(fs::weakly_canonical(folder)) {
  makeFolder();
  try {
    const std::vector<fs::path> files = filesOf(original_);
    strFingerprint_ = describe(files, original_);
    for (const fs::path& file : files) {
      const fs::path target = copy_ / file.lexically_relative(original_);
      fs::create_directories(target.parent_path());
      fs::copy_file(file, target);
    }
    // A relative path through a folder without files, as to a schema beside it, must lead on.
    for (const auto& entry : fs::recursive_directory_iterator(original_)) {
      if (entry.is_directory()) {
        fs::create_directories(copy_ / entry.path().lexically_relative(original_));
      }
    }
    requireUnchanged(folder);
  } catch (const fs::filesystem_error& error) {
    removeFolder();
    throw CannotRun("--deployment " + folder.string() + ": " + error.code().message());
  } catch (...) {
    removeFolder();
    throw;
  }
}

void Snapshot::requireUnchanged(const fs::path& folder) const {
  if (fingerprintOf(folder) != strFingerprint_) {
    throw CannotRun("--deployment " + folder.string() + ": changes while it is read");
  }
}

Snapshot::~Snapshot() { removeFolder(); }

/// Between the moments when a folder is made and when it is locked another process may take it for
/// a forsaken one: then there is a next one.
void Snapshot::makeFolder() {
  for (int lngTry = 0; lngTry < kMostTries; ++lngTry) {
    std::string strFolder =
        (fs::temp_directory_path() / (std::string(kPrefix) + "XXXXXX")).string();
    if (::mkdtemp(strFolder.data()) == nullptr) {
      throw CannotRun(strFolder + ": " + std::generic_category().message(errno));
    }
    lock_ = lockedFolder(strFolder);
    if (lock_ >= 0 && isStill(lock_, strFolder)) {
      copy_ = strFolder;
      return;
    }
    if (lock_ >= 0) ::close(lock_);
  }
  throw CannotRun("no folder for temporary files can be locked");
}

void Snapshot::removeFolder() noexcept {
  std::error_code error;  // what cannot be removed stays
  fs::remove_all(copy_, error);
  ::close(lock_);
}

void Snapshot::removeForsaken() {
  std::error_code error;
  for (fs::directory_iterator entry(fs::temp_directory_path(error), error);
       !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path& folder = entry->path();
    struct stat status {};
    const bool blnOurs = folder.filename().string().starts_with(kPrefix) &&
                         ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
                         status.st_uid == ::geteuid();
    const int lock = blnOurs ? lockedFolder(folder) : -1;
    if (lock < 0) continue;
    std::error_code left;
    fs::remove_all(folder, left);
    ::close(lock);
  }
}

bool Snapshot::holds(const std::string& strPath) const {
  const fs::path relative = fs::weakly_canonical(strPath).lexically_relative(original_);
  return !relative.empty() && *relative.begin() != "..";
}

std::string Snapshot::placeOf(const std::string& strPath) const {
  if (strPath.empty() || !holds(strPath)) return strPath;
  return (copy_ / fs::weakly_canonical(strPath).lexically_relative(original_)).string();
}
