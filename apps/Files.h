#pragma once

#include <string>
#include <string_view>

// Reading and writing whole files. Everything here raises CannotRun with the option that names the
// file, the file and the reason.

/// The name that stands for standard input or standard error where an option allows it.
constexpr std::string_view kStandardStream = "-";

/// All bytes of a file of any kind (regular, pipe, device), or of standard input.
std::string readFile(const char* option, const std::string& strPath);
std::string readStandardInput();

/// Makes sure that the three standard streams exist. One that the caller closed fails when it is
/// used, where otherwise the next file opened would take its place.
void keepStandardStreams();

void writeStandardOutput(std::string_view strText);

/// A file to be written at the end of a run. It is opened before, so that a place that cannot be
/// written is known in time, and not touched: a file that is never written keeps its content, or
/// does not come into being.
class OutputFile {
 public:
  OutputFile(const char* option, std::string strPath);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Replaces the content and closes the file; once only.
  void write(std::string_view strText);

 private:
  std::string strPath_;
  std::string strName_;  // for messages
  int descriptor_ = -1;
  bool blnRemove_ = false;  // made by this object and not, or not wholly, written
};

void writeStandardError(std::string_view strText);
