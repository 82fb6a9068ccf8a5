#pragma once

#include <filesystem>
#include <string>

/// What the files of a folder looked like: changes whenever one of them is written, added or
/// removed.
std::string fingerprintOf(const std::filesystem::path& folder);

/// A copy of a deployment's folder that nobody changes, taken away with the object. Runs read it,
/// so that a deployment which is being replaced is never read half. The copy stands in the folder
/// for temporary files and is locked (flock) as long as it is in use.
class Snapshot {
 public:
  /// Raises CannotRun when the folder cannot be copied, or changes while it is copied.
  explicit Snapshot(const std::filesystem::path& folder);
  ~Snapshot();
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;

  const std::string& fingerprint() const { return strFingerprint_; }

  /// Raises CannotRun when `folder` is no more what was copied, also when it leads elsewhere now.
  void requireUnchanged(const std::filesystem::path& folder) const;

  /// Where the copy of a path is; a path outside the folder stays as it is.
  std::string placeOf(const std::string& strPath) const;
  bool holds(const std::string& strPath) const;

  /// Where the copy of a file of the folder is, or would be.
  std::string copyOf(const char* name) const { return (copy_ / name).string(); }

  /// Takes away the copies of processes that ended without doing so, as killed ones do.
  static void removeForsaken();

 private:
  void makeFolder();
  void removeFolder() noexcept;

  std::filesystem::path original_;
  std::filesystem::path copy_;
  int lock_ = -1;
  std::string strFingerprint_;
};
