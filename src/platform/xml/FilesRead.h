#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct stat;

namespace Varnel_Tolv_XML_Creation {

/// What tells one state of a file from another without reading it. Times are nanoseconds since
/// 1970; that of the last change of status goes on when somebody sets the other back.
struct FileStamp {
  std::uint64_t lngDevice = 0;
  std::uint64_t lngInode = 0;
  std::int64_t lngSize = 0;
  std::int64_t lngModified = 0;
  std::int64_t lngStatusChanged = 0;

  bool operator==(const FileStamp&) const = default;
};

FileStamp stampOf(const struct stat& status) noexcept;

/// The stamp of the regular file at `strPath`; none when there is no such file.
std::optional<FileStamp> stampOf(const std::string& strPath) noexcept;

/// The files that something was made of, as they were when they were read; among them those that
/// were looked for and not found.
class FilesRead {
 public:
  void add(std::string strPath, std::optional<FileStamp> stamp) {
    files_.emplace_back(std::move(strPath), stamp);
  }

  /// To be told of a file that changed while it was read, again and again.
  void addUnsteady() noexcept { blnUnsteady_ = true; }

  /// Whether the paths still lead to the same files in the same state.
  bool unchanged() const noexcept;

  /// Whether a later write leaves other stamps. A file system's clock goes in steps: two writes
  /// within one can leave the same, so what was written within the last 20 ms is not settled. That
  /// is enough for the file systems of this system, not for one that counts whole seconds.
  bool settled() const noexcept;

  /// The bytes of all of them together.
  std::size_t bytes() const noexcept;

 private:
  std::vector<std::pair<std::string, std::optional<FileStamp>>> files_;
  bool blnUnsteady_ = false;
};

}  // namespace Varnel_Tolv_XML_Creation
