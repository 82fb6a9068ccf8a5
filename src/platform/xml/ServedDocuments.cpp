#include "platform/xml/ServedDocuments.h"

#include <libxml/parserInternals.h>
#include <libxml/xmlIO.h>

#include <charconv>
#include <climits>
#include <new>
#include <optional>
#include <utility>

#include "platform/xml/XmlLibrary.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kScheme = "served-document:";

thread_local ServedDocuments* serving = nullptr;

std::optional<std::size_t> numberOf(std::string_view strLocation) {
  if (!strLocation.starts_with(kScheme) || !strLocation.ends_with('/')) return std::nullopt;
  const std::string_view strDigits =
      strLocation.substr(kScheme.size(), strLocation.size() - kScheme.size() - 1);
  std::size_t lngNumber = 0;
  const char* const end = strDigits.data() + strDigits.size();
  const auto [last, error] = std::from_chars(strDigits.data(), end, lngNumber);
  return error == std::errc() && last == end ? std::optional(lngNumber) : std::nullopt;
}

}  // namespace

// Stands before the loader that was there, which gets all that is not ours. Callbacks that open
// single locations would not do: before those are asked the default loader, finding no file of that
// name, looks it up in the catalogs of the machine.
struct ServedDocuments::Loader {
  static inline xmlExternalEntityLoader before = nullptr;

  static xmlParserInput* load(const char* location, const char* publicId, xmlParserCtxt* parser) {
    const auto lngNumber = serving && location ? numberOf(location) : std::nullopt;
    if (!lngNumber) return before(location, publicId, parser);
    try {
      return input(location, serving->source_(*lngNumber), parser);
    } catch (...) {
      serving->exception_ = std::current_exception();
      return nullptr;
    }
  }

  static xmlParserInput* input(const char* location, const std::string& strText,
                               xmlParserCtxt* parser) {
    if (strText.size() > INT_MAX) throw std::bad_alloc();
    xmlParserInputBuffer* buffer = xmlParserInputBufferCreateMem(
        strText.data(), static_cast<int>(strText.size()), XML_CHAR_ENCODING_NONE);  // a copy
    if (!buffer) throw std::bad_alloc();
    xmlParserInput* made = xmlNewIOInputStream(parser, buffer, XML_CHAR_ENCODING_NONE);
    if (!made) {
      xmlFreeParserInputBuffer(buffer);
      throw std::bad_alloc();
    }
    made->filename = reinterpret_cast<char*>(xmlStrdup(xmlText(location)));
    return made;
  }
};

ServedDocuments::ServedDocuments(Source source) : source_(std::move(source)), outer_(serving) {
  prepareXmlLibrary();
  serving = this;
}

ServedDocuments::~ServedDocuments() { serving = outer_; }

std::string ServedDocuments::location(std::size_t lngNumber) {
  return std::string(kScheme) + std::to_string(lngNumber) + "/";
}

void ServedDocuments::check() const {
  if (exception_) std::rethrow_exception(exception_);
}

void ServedDocuments::prepareLoader() {
  Loader::before = xmlGetExternalEntityLoader();
  xmlSetExternalEntityLoader(Loader::load);
}

}  // namespace Varnel_Tolv_XML_Creation
