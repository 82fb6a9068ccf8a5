#include "platform/xml/ReadXmlFile.h"

#include <fcntl.h>
#include <libxml/xmlerror.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
  ~FileDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int get() const noexcept { return descriptor_; }

 private:
  int descriptor_;
};

/// Reads to the end, or until there is one byte more than `lngMaxBytes`. False when reading fails.
bool readBytes(int descriptor, std::size_t lngMaxBytes, std::size_t lngExpected,
               std::string& strBytes) {
  constexpr std::size_t kChunk = 65536;
  std::size_t size = 0;
  strBytes.resize(std::min(lngExpected, lngMaxBytes) + 1);  // one more tells the end at once
  while (size <= lngMaxBytes) {
    if (size == strBytes.size()) strBytes.resize(size + kChunk);
    const ssize_t got = read(descriptor, strBytes.data() + size, strBytes.size() - size);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
  }
  strBytes.resize(size);
  return true;
}

}  // namespace

std::optional<std::string> filePath(std::string_view strLocation) {
  std::string strPath(strLocation);
  if (startsWithIgnoringCase(strLocation, "file:")) {
    strLocation.remove_prefix(5);
    if (strLocation.starts_with("//")) {
      strLocation.remove_prefix(2);
      const std::size_t host = std::min(strLocation.find('/'), strLocation.size());
      const bool blnLocal = host == 0 || (startsWithIgnoringCase(strLocation, "localhost") &&
                                          host == std::string_view("localhost").size());
      if (!blnLocal) return std::nullopt;
      strLocation.remove_prefix(host);
    }
    if (!strLocation.starts_with('/')) return std::nullopt;
    strPath = percentDecoded(strLocation);
  }
  if (strPath.empty() || strPath.find('\0') != std::string::npos) return std::nullopt;
  return strPath;
}

std::optional<std::string> readXmlFile(std::string_view strLocation, std::size_t lngMaxBytes,
                                       ParseError& error) {
  error = {ParseError::kCannotOpen, 0, "The system cannot locate the object specified."};
  const std::optional<std::string> strPath = filePath(strLocation);
  if (!strPath) return std::nullopt;

  // Not to wait for a pipe's writer; what is no regular file is then turned away.
  const FileDescriptor file(open(strPath->c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  struct stat status = {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  const auto lngSize = static_cast<std::size_t>(status.st_size);
  if (lngSize > lngMaxBytes) {
    error = tooLarge(lngMaxBytes);
    return std::nullopt;
  }
  std::string strBytes;
  if (!readBytes(file.get(), lngMaxBytes, lngSize, strBytes)) return std::nullopt;
  if (strBytes.size() > lngMaxBytes) {  // it has grown since
    error = tooLarge(lngMaxBytes);
    return std::nullopt;
  }
  error = {};
  return strBytes;
}

ParseError tooLarge(std::size_t lngMaxBytes) {
  return {XML_ERR_INTERNAL_ERROR, 0,
          "The input is larger than " + std::to_string(lngMaxBytes) + " bytes."};
}

}  // namespace Varnel_Tolv_XML_Creation
