#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

/// The place of a file, whatever name leads there: two names of one place compare equal, also when
/// nothing is there yet.
struct FilePlace {
  dev_t device = 0;
  ino_t inode = 0;          // of the file; of its folder when nothing is there
  std::string strFileName;  // when nothing is there
  bool operator==(const FilePlace&) const = default;
};

/// None for a path that leads nowhere.
std::optional<FilePlace> placeOf(const std::string& strPath);

/// A file that is replaced as a whole at the end of a run, or not at all. The text goes to a new
/// file in the same folder, which takes the place of the old one in a single step; until then, and
/// whatever ends the program, the old file stands as it was. A symbolic link stays and leads to the
/// new file. A new file can be read by its owner only, a replaced one keeps its permissions.
/// Devices such as /dev/null and the standard streams are written to as they are; a pipe, a socket
/// or a folder is refused. Everything raises CannotRun with the option, the path and the reason.
class OutputFile {
 public:
  /// Finds out whether the place can be written; changes nothing.
  OutputFile(const char* option, std::string strPath);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// False for a device or a standard stream.
  bool isReplaced() const noexcept { return !blnAsItIs_; }

  /// Stores the text on the disk, beside the old file. Several outputs are all written before the
  /// first of them is put in place.
  void write(std::string_view strText);

  /// Puts what was written in place; nothing when nothing was.
  void putInPlace();

 private:
  void openNewFile();
  void nameNewFile();
  void removeNewFile() noexcept;

  std::string strName_;    // for messages
  std::string strTarget_;  // the path behind all links
  int descriptor_ = -1;
  bool blnAsItIs_ = false;   // a device or a standard stream: written to where it is
  bool blnExists_ = false;   // there is an old file
  bool blnWritten_ = false;  // and not yet in place
  std::string strNewFile_;   // its name while it has one of its own
};
