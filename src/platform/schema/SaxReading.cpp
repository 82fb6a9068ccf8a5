#include "platform/schema/SaxReading.h"

#include <libxml/SAX2.h>

#include <climits>
#include <deque>
#include <new>
#include <utility>

#include "platform/xml/ReadXmlFile.h"
#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlLibrary.h"
#include "platform/xml/XmlMemory.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The attributes of the start tag that is being read.
class TagAttributes : public SaxAttributes {
 public:
  explicit TagAttributes(const StartTag& tag) : tag_(tag) {}

  std::optional<std::string_view> getValueFromName(std::string_view strNamespaceURI,
                                                   std::string_view strLocalName) const override {
    const std::optional<std::string_view> strRaw = tag_.findRaw(strNamespaceURI, strLocalName);
    constexpr std::string_view kAmpersand = "&#38;";
    if (!strRaw || strRaw->find(kAmpersand) == std::string_view::npos) return strRaw;
    std::string& strValue = decoded_.emplace_back();
    std::string_view strRest = *strRaw;
    for (std::size_t at = 0; (at = strRest.find(kAmpersand)) != std::string_view::npos;) {
      strValue.append(strRest.substr(0, at)).append("&");
      strRest.remove_prefix(at + kAmpersand.size());
    }
    strValue += strRest;
    return strValue;
  }

 private:
  const StartTag& tag_;
  mutable std::deque<std::string> decoded_;
};

std::string oneLine(const char* message) {
  std::string strMessage(message ? message : "The text could not be parsed.");
  while (!strMessage.empty() && isXmlWhiteSpace(strMessage.substr(strMessage.size() - 1))) {
    strMessage.pop_back();
  }
  for (char& byte : strMessage) {
    if (static_cast<unsigned char>(byte) < 0x20) byte = ' ';
  }
  return strMessage;
}

/// How much of the text the parser is given at once: the library refuses to look ten million bytes
/// ahead, which is what it believes to do in a long text that it holds as a whole. A piece ends
/// before a tag, or at least not inside of what belongs together.
std::size_t pieceOf(std::string_view strText) {
  constexpr std::size_t kPiece = 65536;
  if (strText.size() <= kPiece) return strText.size();
  const std::size_t tag = strText.rfind('<', kPiece);
  if (tag != std::string_view::npos && tag > 0) return tag;
  for (std::size_t piece = kPiece; piece > kPiece / 2; --piece) {
    const bool blnInside = (static_cast<unsigned char>(strText[piece]) & 0xC0U) == 0x80U;
    const char last = strText[piece - 1];
    if (!blnInside && last != ']' && last != '\r') return piece;
  }
  return kPiece;
}

std::string writtenName(const xmlChar* local, const xmlChar* prefix) {
  StartTag tag;
  tag.local = local;
  tag.prefix = prefix;
  return tag.qualifiedName();
}

}  // namespace

/// What the parser calls.
struct SaxReading::Callbacks {
  static SaxReading& of(void* context) {
    return *static_cast<SaxReading*>(static_cast<xmlParserCtxt*>(context)->_private);
  }

  /// No exception may cross the library, and after the first, or a fault, nothing more is done.
  template <class Body>
  static void guarded(SaxReading& reading, Body&& body) noexcept {
    if (reading.blnStopped_) return;
    try {
      if (!reading.fault_) body();
    } catch (...) {
      reading.exception_ = std::current_exception();
    }
    if (reading.fault_ || reading.exception_) reading.stop();
  }

  static void start(void* context, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri,
                    int namespaceCount, const xmlChar** namespaces, int attributeCount,
                    int defaultedCount, const xmlChar** attributes) {
    guarded(of(context), [&] {
      of(context).onStart({local, prefix, uri, namespaceCount, namespaces, attributeCount,
                           defaultedCount, attributes});
    });
  }

  static void end(void* context, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) {
    guarded(of(context), [&] { of(context).onEnd(local, prefix, uri); });
  }

  static void text(void* context, const xmlChar* text, int length) {
    SaxReading& reading = of(context);
    if (!reading.shadow_) return;
    guarded(reading, [&] {
      reading.strText_.append(reinterpret_cast<const char*>(text),
                              static_cast<std::size_t>(length));
    });
  }

  static void documentType(void* context, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                           const xmlChar* /*systemId*/) {
    SaxReading& reading = of(context);
    guarded(reading, [&] {
      const SaxLocator& at = reading.here();
      reading.refuse(XML_ERR_INTERNAL_ERROR, "A document type declaration is not allowed.",
                     at.lineNumber, at.columnNumber);
    });
  }

  static void report(void* context, xmlError* report) {
    SaxReading& reading = of(context);
    if (reading.blnStopped_ || reading.fault_ || report->level < XML_ERR_ERROR) return;
    if (report->code == XML_WAR_NS_URI) return;  // a namespace's name may be any text
    try {
      reading.refuse(report->code, oneLine(report->message), report->line, report->int2);
    } catch (...) {
      reading.exception_ = std::current_exception();
    }
  }
};

SaxReading::SaxReading(const Settings& settings) : settings_(settings) {
  prepareXmlLibrary();
  parser_.reset(xmlNewParserCtxt());
  if (!parser_) throw std::bad_alloc();
  parser_->_private = this;
  xmlSAXHandler& sax = *parser_->sax;
  sax = {};
  sax.initialized = XML_SAX2_MAGIC;
  sax.startElementNs = Callbacks::start;
  sax.endElementNs = Callbacks::end;
  sax.characters = Callbacks::text;
  sax.ignorableWhitespace = Callbacks::text;
  sax.cdataBlock = Callbacks::text;
  sax.internalSubset = Callbacks::documentType;
  sax.serror = Callbacks::report;
  if (settings_.schemas && !settings_.schemas->schemas.empty()) {
    shadow_.emplace(*settings_.schemas,
                    [this](const SchemaReport& report) { onViolation(report); });
  }
}

std::optional<RuntimeError> SaxReading::read(std::string_view strText) {
  try {
    if (settings_.contentHandler) settings_.contentHandler->documentLocator(locator_);
    parse(strText);
    return outcome();
  } catch (const RuntimeError& error) {
    return error;
  }
}

void SaxReading::parse(std::string_view strText) {
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";  // pushed text may not begin with it
  if (strText.starts_with(kByteOrderMark)) strText.remove_prefix(kByteOrderMark.size());
  if (strText.empty()) return refuse(XML_ERR_DOCUMENT_EMPTY, "Document is empty", 0, 0);
  if (strText.size() > INT_MAX) {
    return refuse(XML_ERR_INTERNAL_ERROR, tooLarge(INT_MAX).reason, 0, 0);
  }
  if (strText.find('\0') != std::string_view::npos) {  // for the library its input ends there
    return refuse(XML_ERR_INVALID_CHAR, "An invalid character was found in text content.", 0, 0);
  }
  const MemoryWatch memory;
  // It is text already, whatever encoding its declaration names.
  if (xmlCtxtResetPush(parser_.get(), nullptr, 0, nullptr, "UTF-8") != 0) throw std::bad_alloc();
  xmlCtxtUseOptions(parser_.get(), XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
  const auto mayGoOn = [this] { return !blnStopped_ && !fault_ && !exception_; };
  while (!strText.empty() && mayGoOn()) {
    const std::size_t piece = pieceOf(strText);
    xmlParseChunk(parser_.get(), strText.data(), static_cast<int>(piece), 0);
    strText.remove_prefix(piece);
  }
  if (mayGoOn()) xmlParseChunk(parser_.get(), nullptr, 0, 1);
  if (!exception_) memory.check();
  if (mayGoOn() && (parser_->disableSAX || !parser_->wellFormed)) {
    refuse(XML_ERR_INTERNAL_ERROR, oneLine(nullptr), here().lineNumber, here().columnNumber);
  }
}

void SaxReading::onStart(const StartTag& tag) {
  if (++depth_ > kMaxDepth) {
    const SaxLocator& at = here();
    return refuse(XML_ERR_INTERNAL_ERROR, kTooDeep, at.lineNumber, at.columnNumber);
  }
  flushText();
  if (blnStopped_) return;
  if (shadow_) shadow_->start(tag);
  if (blnStopped_ || !settings_.contentHandler) return;
  here();
  settings_.contentHandler->startElement(view(tag.uri), view(tag.local), tag.qualifiedName(),
                                         TagAttributes(tag));
}

void SaxReading::onEnd(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) {
  --depth_;
  flushText();
  if (blnStopped_) return;
  if (shadow_) shadow_->end(local, uri);
  if (blnStopped_ || !settings_.contentHandler) return;
  here();
  settings_.contentHandler->endElement(view(uri), view(local), writtenName(local, prefix));
}

void SaxReading::flushText() {
  if (strText_.empty()) return;
  shadow_->text(strText_);
  strText_.clear();
}

void SaxReading::onViolation(const SchemaReport& report) {
  if (blnStopped_) return;
  if (settings_.errorHandler) {
    settings_.errorHandler->error(here(), report.strMessage, report.lngCode);
  }
  if (!settings_.blnExhaustive) stop();
}

void SaxReading::refuse(int code, std::string_view strReason, int line, int column) {
  fault_.emplace(code, strReason);
  locator_.lineNumber = line;
  locator_.columnNumber = column;
}

void SaxReading::stop() noexcept {
  blnStopped_ = true;
  xmlStopParser(parser_.get());
}

const SaxLocator& SaxReading::here() {
  locator_.lineNumber = xmlSAX2GetLineNumber(parser_.get());
  locator_.columnNumber = xmlSAX2GetColumnNumber(parser_.get());
  return locator_;
}

std::optional<RuntimeError> SaxReading::outcome() {
  if (exception_) std::rethrow_exception(exception_);
  if (fault_ && settings_.errorHandler) {
    settings_.errorHandler->fatalError(locator_, fault_->description(), fault_->number());
  }
  return fault_;
}

}  // namespace Varnel_Tolv_XML_Creation
