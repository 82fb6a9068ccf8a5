#include "Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <system_error>
#include <utility>

#include "CannotRun.h"

namespace {

// A stream that never ends is refused before it fills the machine.
constexpr std::size_t kMaxBytes = std::size_t{256} * 1024 * 1024;

[[noreturn]] void fail(const std::string& strName, int error = errno) {
  throw CannotRun(strName + ": " + std::generic_category().message(error));
}

std::string nameOf(const char* option, const std::string& strPath) {
  return std::string(option) + ' ' + strPath;
}

/// A path that holds a NUL would be opened as the part before it.
int openFile(const std::string& strPath, int flags) {
  if (strPath.find('\0') != std::string::npos) {
    errno = EINVAL;
    return -1;
  }
  return ::open(strPath.c_str(), flags | O_CLOEXEC, 0666);
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() { ::close(descriptor_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

std::string readAll(int descriptor, const std::string& strName) {
  std::string strText;
  std::array<char, 1 << 16> buffer;
  for (;;) {
    const ssize_t lngRead = ::read(descriptor, buffer.data(), buffer.size());
    if (lngRead == 0) return strText;
    if (lngRead < 0) {
      if (errno == EINTR) continue;
      fail(strName);
    }
    strText.append(buffer.data(), static_cast<std::size_t>(lngRead));
    if (strText.size() > kMaxBytes) fail(strName, EFBIG);
  }
}

void writeAll(int descriptor, std::string_view strText, const std::string& strName) {
  while (!strText.empty()) {
    const ssize_t lngWritten = ::write(descriptor, strText.data(), strText.size());
    if (lngWritten < 0) {
      if (errno == EINTR) continue;
      fail(strName);
    }
    strText.remove_prefix(static_cast<std::size_t>(lngWritten));
  }
}

}  // namespace

std::string readFile(const char* option, const std::string& strPath) {
  const std::string strName = nameOf(option, strPath);
  const int descriptor = openFile(strPath, O_RDONLY);
  if (descriptor < 0) fail(strName);
  const Descriptor file(descriptor);
  return readAll(file.get(), strName);
}

std::string readStandardInput() { return readAll(STDIN_FILENO, "standard input"); }

void keepStandardStreams() {
  // The lowest free descriptor is the one that open gives, so each gap is filled in turn. Opened
  // the wrong way round, it refuses what the stream is for.
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) == -1) {
      static_cast<void>(::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
  }
}

void writeStandardOutput(std::string_view strText) {
  writeAll(STDOUT_FILENO, strText, "standard output");
}

void writeStandardError(std::string_view strText) {
  writeAll(STDERR_FILENO, strText, "standard error");
}

OutputFile::OutputFile(const char* option, std::string strPath)
    : strPath_(std::move(strPath)), strName_(nameOf(option, strPath_)) {
  descriptor_ = openFile(strPath_, O_WRONLY);
  if (descriptor_ < 0 && errno == ENOENT) {
    descriptor_ = openFile(strPath_, O_WRONLY | O_CREAT);
    blnRemove_ = descriptor_ >= 0;
  }
  if (descriptor_ < 0) fail(strName_);
}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (blnRemove_) ::unlink(strPath_.c_str());
}

void OutputFile::write(std::string_view strText) {
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0) fail(strName_);
  if (S_ISREG(status.st_mode) && ::ftruncate(descriptor_, 0) != 0) fail(strName_);
  writeAll(descriptor_, strText, strName_);
  if (::close(std::exchange(descriptor_, -1)) != 0) fail(strName_);
  blnRemove_ = false;
}
