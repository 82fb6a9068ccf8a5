#include "platform/xml/ReadXmlFile.h"

#include <fcntl.h>
#include <libxml/xmlerror.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/text/FileNames.h"
#include "platform/text/Text.h"
#include "platform/xml/FilesRead.h"

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

struct OneReading {
  std::optional<FileStamp> stamp;  // none: no regular file
  std::optional<std::string> strBytes;
  std::optional<ParseError> error;  // none: it cannot be opened
  bool blnSteady = true;            // whether nobody wrote to it meanwhile
};

OneReading readOnce(const std::string& strPath, std::size_t lngMaxBytes) {
  OneReading reading;
  // Not to wait for a pipe's writer; what is no regular file is then turned away.
  const FileDescriptor file(open(strPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  struct stat status = {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return reading;
  reading.stamp = stampOf(status);
  const auto lngSize = static_cast<std::size_t>(status.st_size);
  if (lngSize > lngMaxBytes) {
    reading.error = tooLarge(lngMaxBytes);
    return reading;
  }
  std::string strBytes;
  if (!readBytes(file.get(), lngMaxBytes, lngSize, strBytes)) return reading;
  reading.blnSteady = fstat(file.get(), &status) == 0 && stampOf(status) == reading.stamp;
  if (strBytes.size() > lngMaxBytes) {  // it has grown since
    reading.error = tooLarge(lngMaxBytes);
    return reading;
  }
  reading.error.emplace();
  reading.strBytes = std::move(strBytes);
  return reading;
}

}  // namespace

std::optional<std::string> filePath(std::string_view strLocation) {
  std::string strPath(strLocation);
  if (isFileUrl(strLocation)) {
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
                                       ParseError& error, FilesRead* files) {
  constexpr int kReadings = 5;
  error = {ParseError::kCannotOpen, 0, "The system cannot locate the object specified."};
  const std::optional<std::string> strPath = filePath(strLocation);
  if (!strPath) return std::nullopt;
  for (int lngReading = 1;; ++lngReading) {
    OneReading reading = readOnce(*strPath, lngMaxBytes);
    if (!reading.blnSteady && lngReading < kReadings) continue;
    if (files && !reading.blnSteady) files->addUnsteady();
    if (files) files->add(*strPath, reading.stamp);
    if (reading.error) error = *std::move(reading.error);
    return std::move(reading.strBytes);
  }
}

ParseError tooLarge(std::size_t lngMaxBytes) {
  return {XML_ERR_INTERNAL_ERROR, 0,
          "The input is larger than " + std::to_string(lngMaxBytes) + " bytes."};
}

}  // namespace Varnel_Tolv_XML_Creation
