#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

class FaultInjector;
class FileCache;
class Tree;
class ViolationHandler;

// A streaming reader that checks a text against an XML Schema while it hands out its elements. It
// reports every violation, in document order, before the content handler hears of the event that
// carries it: what is wrong with a start tag (an element that is not expected here, its attributes)
// before `startElement`, what is wrong with a text or an end tag (a bad value, missing children)
// before `endElement`. No violation hides another that follows it.

/// Schemas by their target namespace.
class SchemaCollection {
 public:
  /// Takes compiled schemas from `cache`, if there is one, and leaves them there.
  explicit SchemaCollection(FaultInjector* faults = nullptr, FileCache* cache = nullptr);
  ~SchemaCollection();
  SchemaCollection(SchemaCollection&&) noexcept;
  SchemaCollection& operator=(SchemaCollection&&) noexcept;

  /// The OASIS XML catalog file in which schemas that are added from now on look up what they
  /// import; none when empty. A catalog.xml in the folder of a schema is asked behind it.
  void catalog(std::string_view strPath);

  /// Registers the schema file at `strPath` under its target namespace. Includes and imports are
  /// files, relative to the schema's; nothing is read over the network. What names no file that
  /// exists is looked up in the catalogs, an import then among the schemas of the W3C that the
  /// library holds: xml.xsd, xlink.xsd and xmldsig-core-schema.xsd. Raises kXmlFailure for a file
  /// that is missing, is no schema, includes one that cannot be had, refers to something in a
  /// namespace that was not found, or has another target namespace; and for a catalog that cannot
  /// be read.
  void add(std::string_view strNamespaceUri, std::string_view strPath);

 private:
  friend class ValidatingReader;
  friend class SaxReading;
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// Where the reader is in its text.
struct SaxLocator {
  int lineNumber = 0;
  int columnNumber = 0;
  std::string publicId;
  std::string systemId;
};

/// The attributes of a start tag.
class SaxAttributes {
 public:
  virtual ~SaxAttributes() = default;

  /// The value of an attribute by its namespace (empty for none) and local name.
  virtual std::optional<std::string_view> getValueFromName(std::string_view strNamespaceURI,
                                                           std::string_view strLocalName) const = 0;

  /// The value of a mark, an attribute in no namespace, by its number among those of
  /// `ValidatingReader::marks` and its name.
  virtual std::optional<std::string_view> mark(std::size_t /*lngNumber*/,
                                               std::string_view strName) const {
    return getValueFromName("", strName);
  }
};

/// Receives what the reader reads and what it has to report. What a handler throws ends the parse:
/// a RuntimeError is returned by it, anything else is thrown on. The names of elements last as long
/// as the parse, all else as long as the call.
class SaxHandler {
 public:
  virtual ~SaxHandler() = default;

  virtual void documentLocator(const SaxLocator& oLocator) = 0;
  virtual void startElement(std::string_view strNamespaceURI, std::string_view strLocalName,
                            std::string_view strQName, const SaxAttributes& oAttributes) = 0;
  virtual void endElement(std::string_view strNamespaceURI, std::string_view strLocalName,
                          std::string_view strQName) = 0;

  /// A violation of the schema: whole sentences, joined by CR LF.
  virtual void error(const SaxLocator& oLocator, std::string_view strErrorMessage,
                     std::int32_t nErrorCode) = 0;
  /// The text is not well-formed; the parse fails when this returns.
  virtual void fatalError(const SaxLocator& oLocator, std::string_view strErrorMessage,
                          std::int32_t nErrorCode) = 0;
  virtual void ignorableWarning(const SaxLocator& oLocator, std::string_view strErrorMessage,
                                std::int32_t nErrorCode) = 0;
};

class ValidatingReader {
 public:
  /// None only where a test makes it fail.
  static std::unique_ptr<ValidatingReader> create(FaultInjector* faults = nullptr);
  ~ValidatingReader();

  /// "schema-validation" (check against the schemas) and "exhaustive-errors" (go on after the first
  /// violation), both off at first; "undeclared-attributes" (report those that are not defined), on
  /// at first. Any other name is run-time error 5.
  void putFeature(std::string_view strName, bool blnValue);

  /// The schemas to check against; borrowed until the parse is over.
  void schemas(const SchemaCollection& colSchemas);

  /// Who receives elements, and who violations; borrowed. Either may be missing.
  void contentHandler(SaxHandler* handler);
  void errorHandler(SaxHandler* handler);

  /// The names of attributes in no namespace that the content handler asks every element for. Where
  /// the schema has nothing to say of them they are not checked. The handler asks for them by
  /// `SaxAttributes::mark` alone: they may not be among the others. Borrowed.
  void marks(std::span<const std::string_view> names);

  /// Who hears of each violation in parts, whether or not there is an error handler and whether or
  /// not undeclared attributes are reported to it. The parts are those of the text without the
  /// attributes, in no namespace, that have one of these names. Borrowed.
  void violationHandler(ViolationHandler* handler, std::span<const std::string_view> setAside);

  /// Reads a whole document. The run-time error that ended it early comes back instead of being
  /// raised: with the parser's number and description for a text that is not well-formed, or that
  /// has a document type declaration.
  std::optional<RuntimeError> parse(std::string_view strText);

  /// The same for the text of a document (`Document::tree`). Where there is no fault in it, none is
  /// made, and places have no line and no column. Null is a document without text.
  std::optional<RuntimeError> parse(const Tree* tree);

 private:
  template <class Text>
  std::optional<RuntimeError> read(const Text& text);
  ValidatingReader();
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace Varnel_Tolv_XML_Creation
