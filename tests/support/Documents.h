#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation::test {

/// A document of this text; a text that does not parse is an error of the test.
inline Document parsed(std::string_view strText, const DocumentSettings& settings = {}) {
  const Document objXml = Document::create(settings);
  if (!objXml.loadXML(strText))
    throw std::runtime_error("test document: " + objXml.parseError().reason);
  return objXml;
}

/// The same with an XML declaration in front, as a caller's object list has it.
inline Document parsedWithDeclaration(std::string_view strText,
                                      const DocumentSettings& settings = {}) {
  return parsed("<?xml version=\"1.0\"?>" + std::string(strText), settings);
}

/// A directory of the test's own, gone when it ends.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string strPattern = (std::filesystem::temp_directory_path() / "varnel-XXXXXX").string();
    if (::mkdtemp(strPattern.data()) == nullptr) throw std::runtime_error("mkdtemp");
    path_ = strPattern;
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// The path of a file in it, there or not.
  std::string at(std::string_view strName) const { return (path_ / strName).string(); }

  /// Writes a file and returns its path.
  std::string file(std::string_view strName, std::string_view strText) const {
    std::ofstream stream(at(strName), std::ios::binary);
    stream << strText;
    if (!stream.flush()) throw std::runtime_error("cannot write " + at(strName));
    return at(strName);
  }

 private:
  std::filesystem::path path_;
};

inline std::string textOfFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The text with another in the place of a part that stands in it exactly once.
inline std::string replaceOnce(std::string strText, std::string_view strPart,
                               std::string_view strOther) {
  const std::size_t lngAt = strText.find(strPart);
  if (lngAt == std::string::npos || strText.find(strPart, lngAt + 1) != std::string::npos) {
    throw std::runtime_error("not there exactly once: " + std::string(strPart));
  }
  return strText.replace(lngAt, strPart.size(), strOther);
}

}  // namespace Varnel_Tolv_XML_Creation::test
