#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dom/Document.h"
#include "platform/schema/ValidatingReader.h"

// What the tests of the validating reader share.

namespace Varnel_Tolv_XML_Creation {

/// A directory that goes with its files.
class SchemaDirectory {
 public:
  SchemaDirectory() {
    std::string strName = (std::filesystem::temp_directory_path() / "schemas-XXXXXX").string();
    if (!mkdtemp(strName.data())) ADD_FAILURE() << "no directory";
    path_ = strName;
  }
  ~SchemaDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  SchemaDirectory(const SchemaDirectory&) = delete;
  SchemaDirectory& operator=(const SchemaDirectory&) = delete;

  /// The path of a file in it.
  std::string path(const std::string& strName) const { return (path_ / strName).string(); }

  std::string write(const std::string& strName, std::string_view strContent) const {
    std::filesystem::create_directories((path_ / strName).parent_path());
    std::ofstream(path_ / strName, std::ios::binary) << strContent;
    return path(strName);
  }

 private:
  std::filesystem::path path_;
};

/// A schema document with these declarations; its elements are in no namespace, or all of them in
/// `strTarget`, bound to the prefix "t".
inline std::string schemaText(std::string_view strDeclarations, std::string_view strTarget = "") {
  std::string strText = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'";
  if (!strTarget.empty()) {
    strText.append(" targetNamespace='").append(strTarget).append("' xmlns:t='").append(strTarget);
    strText.append("' elementFormDefault='qualified'");
  }
  return strText.append(">").append(strDeclarations).append("</xs:schema>");
}

/// Writes down what it is told, one line for each event: `<name`, `>name`, and for a violation the
/// path of the open elements and the sentences, joined by " + ".
class Recorder : public SaxHandler {
 public:
  void documentLocator(const SaxLocator& oLocator) override { locator = &oLocator; }
  void startElement(std::string_view strNamespaceURI, std::string_view strLocalName,
                    std::string_view strQName, const SaxAttributes& /*oAttributes*/) override {
    strNamespace = strNamespaceURI;
    strLocal = strLocalName;
    strPath.append("/").append(strQName);
    if (blnEvents) lines.push_back("<" + std::string(strQName));
  }
  void endElement(std::string_view /*strNamespaceURI*/, std::string_view /*strLocalName*/,
                  std::string_view strQName) override {
    strPath.resize(strPath.rfind('/'));
    if (blnEvents) lines.push_back(">" + std::string(strQName));
  }
  void error(const SaxLocator& /*oLocator*/, std::string_view strErrorMessage,
             std::int32_t nErrorCode) override {
    lines.push_back(strPath + ": " + joined(strErrorMessage));
    codes.push_back(nErrorCode);
  }
  void fatalError(const SaxLocator& oLocator, std::string_view strErrorMessage,
                  std::int32_t nErrorCode) override {
    lines.push_back("fatal " + std::to_string(nErrorCode) + ", line " +
                    std::to_string(oLocator.lineNumber) + ": " + joined(strErrorMessage));
  }
  void ignorableWarning(const SaxLocator& /*oLocator*/, std::string_view strErrorMessage,
                        std::int32_t /*nErrorCode*/) override {
    lines.push_back("warning: " + joined(strErrorMessage));
  }

  bool blnEvents = true;
  std::vector<std::string> lines;
  std::vector<std::int32_t> codes;
  std::string strNamespace, strLocal;
  const SaxLocator* locator = nullptr;

 private:
  static std::string joined(std::string_view strMessage) {
    std::string strJoined(strMessage);
    for (std::size_t at = 0; (at = strJoined.find("\r\n", at)) != std::string::npos;) {
      strJoined.replace(at, 2, " + ");
    }
    return strJoined;
  }

  std::string strPath;
};

/// The schemas of a test that has one document.
inline SchemaCollection schemasOf(const SchemaDirectory& directory, std::string_view strText,
                                  std::string_view strTarget = "") {
  SchemaCollection colSchemas;
  colSchemas.add(strTarget, directory.write("schema.xsd", strText));
  return colSchemas;
}

/// Reads a text or a tree with every violation reported, and expects that nothing ended it early.
template <class Text>
Recorder recordAll(const SchemaCollection& colSchemas, const Text& text, bool blnEvents) {
  Recorder recorder;
  recorder.blnEvents = blnEvents;
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->putFeature("exhaustive-errors", true);
  reader->schemas(colSchemas);
  reader->contentHandler(&recorder);
  reader->errorHandler(&recorder);
  const std::optional<RuntimeError> error = reader->parse(text);
  EXPECT_FALSE(error) << error->description();
  return recorder;
}

/// The same for `strText`, and for the tree that it makes: what is told of a document does not
/// depend on how it comes.
inline std::vector<std::string> readAll(const SchemaCollection& colSchemas,
                                        std::string_view strText, bool blnEvents = true) {
  const Document objDocument = Document::create();
  if (objDocument.loadXML(strText)) {
    const Recorder ofText = recordAll(colSchemas, objDocument.xml(), blnEvents);
    const Recorder ofTree = recordAll(colSchemas, objDocument.tree(), blnEvents);
    EXPECT_EQ(ofTree.lines, ofText.lines);
    EXPECT_EQ(ofTree.codes, ofText.codes);
  }
  return recordAll(colSchemas, strText, blnEvents).lines;
}

/// The violations alone.
inline std::vector<std::string> violations(const SchemaCollection& colSchemas,
                                           std::string_view strText) {
  return readAll(colSchemas, strText, false);
}

}  // namespace Varnel_Tolv_XML_Creation
