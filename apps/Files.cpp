#include "Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <system_error>

#include "CannotRun.h"

namespace {

// A stream that never ends is refused before it fills the machine.
constexpr std::size_t kMaxBytes = std::size_t{256} * 1024 * 1024;

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

}  // namespace

std::string nameOf(const char* option, const std::string& strPath) {
  return *option == '\0' ? strPath : std::string(option) + ' ' + strPath;
}

std::string readFile(const char* option, const std::string& strPath) {
  const std::string strName = nameOf(option, strPath);
  // A path that holds a NUL would be opened as the part before it.
  if (strPath.find('\0') != std::string::npos) fail(strName, EINVAL);
  // Not waiting for the other end of a pipe; for a regular file it makes no difference.
  const int descriptor = ::open(strPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  if (descriptor < 0) fail(strName);
  const Descriptor file(descriptor);
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) fail(strName);
  if (S_ISDIR(status.st_mode)) fail(strName, EISDIR);
  if (!S_ISREG(status.st_mode)) {
    if (!isStandardStream(status)) cannotUse(strName, "it is no regular file");
    ::fcntl(file.get(), F_SETFL, 0);  // a standard stream is waited for
  }
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

void cannotUse(const std::string& strName, const std::string& strReason) {
  throw CannotRun(strName + ": " + strReason);
}

void fail(const std::string& strName, int error) {
  cannotUse(strName, std::generic_category().message(error));
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

bool isStandardStream(const struct stat& status) {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    struct stat other {};
    if (::fstat(stream, &other) == 0 && other.st_dev == status.st_dev &&
        other.st_ino == status.st_ino) {
      return true;
    }
  }
  return false;
}
