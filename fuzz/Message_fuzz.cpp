#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Check.h"
#include "platform/schema/ValidatingReader.h"
#include "result/RuntimeError.h"

// A message behind a line with the name of its schema (a file of schemas/): the reader, which goes
// on after each error, must find one exactly where libxml2's own validation of the whole document
// finds one, but for what that is known to get wrong.

namespace {

using namespace Varnel_Tolv_XML_Creation;
using fuzz::require;

struct Schema {
  explicit Schema(const std::string& strName) {
    const std::string strPath = VARNEL_FUZZ_SCHEMA_DIR "/" + strName + ".xsd";
    collection.add("urn:m", strPath);
    xmlSchemaParserCtxt* context = xmlSchemaNewParserCtxt(strPath.c_str());
    compiled.reset(xmlSchemaParse(context));
    xmlSchemaFreeParserCtxt(context);
    require(compiled != nullptr, "the schemas can be read");
  }

  struct Free {
    void operator()(xmlSchema* schema) const { xmlSchemaFree(schema); }
  };

  SchemaCollection collection;
  std::unique_ptr<xmlSchema, Free> compiled;
};

const Schema& schemaNamed(std::string_view strName) {
  static std::map<std::string, Schema, std::less<>> schemas;
  if (schemas.empty()) {
    for (const char* strFile :
         {"values", "content", "wildcards", "identity", "types", "counts", "lists", "again"}) {
      schemas.try_emplace(strFile, strFile);
    }
    // What is read from now on must not lead to other files.
    xmlSetExternalEntityLoader(
        [](const char*, const char*, xmlParserCtxt*) -> xmlParserInput* { return nullptr; });
  }
  const auto found = schemas.find(strName);
  return found == schemas.end() ? schemas.begin()->second : found->second;
}

class Counter : public SaxHandler {
 public:
  void documentLocator(const SaxLocator&) override {}
  void startElement(std::string_view, std::string_view, std::string_view,
                    const SaxAttributes&) override {
    ++lngDepth_;
  }
  void endElement(std::string_view, std::string_view, std::string_view) override {
    require(--lngDepth_ >= 0, "no element ends that did not start");
  }
  void error(const SaxLocator&, std::string_view strErrorMessage, std::int32_t) override {
    require(!strErrorMessage.empty(), "an error says what is wrong");
    ++lngErrors;
  }
  void fatalError(const SaxLocator&, std::string_view, std::int32_t) override {}
  void ignorableWarning(const SaxLocator&, std::string_view, std::int32_t) override {}

  bool isClosed() const { return lngDepth_ == 0; }

  int lngErrors = 0;

 private:
  int lngDepth_ = 0;
};

/// Whether libxml2 takes the whole document; none when that has a document type or cannot be read.
std::optional<bool> isValid(std::string_view strXml, const Schema& schema) {
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> tree(
      xmlReadMemory(strXml.data(), static_cast<int>(strXml.size()), nullptr, nullptr,
                    XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
      &xmlFreeDoc);
  if (!tree || tree->intSubset) return std::nullopt;
  xmlSchemaValidCtxt* context = xmlSchemaNewValidCtxt(schema.compiled.get());
  xmlSchemaSetValidStructuredErrors(
      context, [](void*, xmlError*) {}, nullptr);
  const int result = xmlSchemaValidateDoc(context, tree.get());
  xmlSchemaFreeValidCtxt(context);
  if (result < 0) return std::nullopt;
  return result == 0;
}

bool holdsAny(std::string_view strXml, std::initializer_list<std::string_view> parts) {
  return std::any_of(parts.begin(), parts.end(), [&](std::string_view strPart) {
    return strXml.find(strPart) != std::string_view::npos;
  });
}

/// Whether something in a message may be wrong, as XML Schema has it, that libxml2 passes over:
/// identifiers and references (` id=`, ` of=`), characters that are none of base64, an exponent
/// without digits, blanks where xsi:nil allows nothing, an empty xs:NMTOKENS.
bool mayMissErrors(std::string_view strXml) {
  return holdsAny(strXml, {" id", " of", "<base", "<double", "nil", "<tokens"});
}

/// Whether something in a message may be right that libxml2 refuses: more than 24 digits, blanks
/// around the members of a union, an element that a strict wildcard admits for its xsi:type.
bool mayMakeErrorsUp(std::string_view strXml) {
  std::size_t lngDigits = 0;
  for (const char character : strXml) {
    lngDigits = character >= '0' && character <= '9' ? lngDigits + 1 : 0;
    if (lngDigits > 24) return true;
  }
  return holdsAny(strXml, {"either", "few", "type"});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view strInput(reinterpret_cast<const char*>(data), size);
  const std::string_view strName = strInput.substr(0, strInput.find('\n'));
  if (strName.size() == size) return 0;
  const std::string_view strXml = strInput.substr(strName.size() + 1);
  const Schema& schema = schemaNamed(strName);

  Counter counter;
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->putFeature("exhaustive-errors", true);
  reader->schemas(schema.collection);
  reader->contentHandler(&counter);
  reader->errorHandler(&counter);
  const std::optional<RuntimeError> failure = reader->parse(strXml);
  if (failure) return 0;
  require(counter.isClosed(), "what started has ended");
  if (const auto blnValid = isValid(strXml, schema)) {
    if (*blnValid) {
      require(counter.lngErrors == 0 || mayMissErrors(strXml), "what is valid has no error");
    } else {
      require(counter.lngErrors > 0 || mayMakeErrorsUp(strXml), "what is not valid has one");
    }
  }
  return 0;
}
