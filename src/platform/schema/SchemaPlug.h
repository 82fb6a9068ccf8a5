#pragma once

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// A start tag as the parser reports it; borrowed for the length of the event, its names for the
/// length of the parse.
struct StartTag {
  const xmlChar* local = nullptr;
  const xmlChar* prefix = nullptr;
  const xmlChar* uri = nullptr;
  int namespaceCount = 0;
  const xmlChar** namespaces = nullptr;
  int attributeCount = 0;
  int defaultedCount = 0;
  const xmlChar** attributes = nullptr;  // five pointers each: local, prefix, uri, value, its end

  static constexpr std::size_t kPointersPerAttribute = 5;

  std::string qualifiedName() const;
  std::string attributeName(std::size_t lngIndex) const;  // as written
  std::string_view attributeUri(std::size_t lngIndex) const;

  /// A value as the parser hands it over, in which "&" is written "&#38;".
  std::string_view rawValue(std::size_t lngIndex) const;
  std::optional<std::string_view> findRaw(std::string_view strUri, std::string_view strLocal) const;
};

/// What the library's validator raised.
struct RaisedError {
  int code = 0;
  std::optional<std::size_t> attribute;  // the attribute of the start tag that it is about
  std::string strMissing;                // the attribute that is required, as `{uri}local`
};

/// Receives what the validators of one parse raise during one event.
struct SchemaErrors {
  const StartTag* tag = nullptr;  // during a start event
  bool blnMuted = false;
  std::vector<RaisedError> raised;
  std::exception_ptr exception;
};

/// The library's validator, driven event by event.
class SchemaPlug {
 public:
  SchemaPlug(xmlSchema* schema, SchemaErrors& errors);
  ~SchemaPlug();
  SchemaPlug(const SchemaPlug&) = delete;
  SchemaPlug& operator=(const SchemaPlug&) = delete;

  void start(const StartTag& tag);
  /// The start of an element without attributes.
  void start(const xmlChar* local, const xmlChar* uri);
  void text(std::string_view strText);
  void end(const xmlChar* local, const xmlChar* uri);

 private:
  void returned();

  SchemaErrors& errors_;
  xmlSchemaValidCtxt* validator_ = nullptr;
  xmlSchemaSAXPlugStruct* plug_ = nullptr;
  xmlSAXHandler* sax_ = nullptr;
  void* context_ = nullptr;
  std::vector<std::pair<const xmlChar*, const xmlChar*>> open_;  // local name and URI
};

}  // namespace Varnel_Tolv_XML_Creation
