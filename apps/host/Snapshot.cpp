#include "host/Snapshot.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "CannotRun.h"

namespace fs = std::filesystem;

namespace {

constexpr int kMostDepth = 16;
constexpr std::size_t kMostFiles = 10'000;

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

std::string describe(const std::vector<fs::path>& files, const fs::path& folder) {
  std::string strText;
  for (const fs::path& file : files) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) continue;
    strText += file.lexically_relative(folder).string() + ' ' + std::to_string(status.st_ino) +
               ' ' + std::to_string(status.st_size) + ' ' + std::to_string(status.st_mtim.tv_sec) +
               '.' + std::to_string(status.st_mtim.tv_nsec) + '\n';
  }
  return strText;
}

}  // namespace

std::string fingerprintOf(const fs::path& folder) { return describe(filesOf(folder), folder); }

Snapshot::Snapshot(const fs::path& folder) : original_(fs::weakly_canonical(folder)) {
  std::string strPattern = (fs::temp_directory_path() / "varnel-xml-host-XXXXXX").string();
  if (::mkdtemp(strPattern.data()) == nullptr) {
    throw CannotRun(strPattern + ": " + std::generic_category().message(errno));
  }
  copy_ = strPattern;
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
    if (fingerprintOf(original_) != strFingerprint_) {
      throw CannotRun("--deployment " + folder.string() + ": changes while it is read");
    }
  } catch (const fs::filesystem_error& error) {
    fs::remove_all(copy_);
    throw CannotRun("--deployment " + folder.string() + ": " + error.code().message());
  } catch (...) {
    fs::remove_all(copy_);
    throw;
  }
}

Snapshot::~Snapshot() {
  std::error_code error;  // what cannot be removed stays
  fs::remove_all(copy_, error);
}

bool Snapshot::holds(const std::string& strPath) const {
  const fs::path relative = fs::weakly_canonical(strPath).lexically_relative(original_);
  return !relative.empty() && *relative.begin() != "..";
}

std::string Snapshot::placeOf(const std::string& strPath) const {
  if (strPath.empty() || !holds(strPath)) return strPath;
  return (copy_ / fs::weakly_canonical(strPath).lexically_relative(original_)).string();
}
