#include "platform/schema/SaxReading.h"

#include <algorithm>
#include <climits>
#include <new>

#include "platform/schema/TreeEvents.h"
#include "platform/xml/GuardedParser.h"
#include "platform/xml/ReadXmlFile.h"
#include "platform/xml/SerialiseXml.h"
#include "platform/xml/TreeLimits.h"
#include "platform/xml/XmlMemory.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The attributes of the start tag that is being read.
class TagAttributes : public SaxAttributes {
 public:
  TagAttributes(const StartTag& tag, std::span<const std::string_view> marks)
      : tag_(tag), marks_(marks) {}

  std::optional<std::string_view> mark(std::size_t lngNumber,
                                       std::string_view strName) const override {
    if (marks_.empty()) return getValueFromName("", strName);
    const std::string_view strValue = marks_[lngNumber];
    return strValue.data() ? std::optional(strValue) : std::nullopt;
  }

  std::optional<std::string_view> getValueFromName(std::string_view strNamespaceURI,
                                                   std::string_view strLocalName) const override {
    for (std::size_t index = 0; index < tag_.attributeCount; ++index) {
      const xmlChar** parts = tag_.attribute(index);
      const bool blnNamespace =
          parts[2] ? equals(parts[2], strNamespaceURI) : strNamespaceURI.empty();
      if (blnNamespace && equals(parts[0], strLocalName)) return tag_.value(index);
    }
    return std::nullopt;
  }

 private:
  /// Without the length of the one, which most often differs from the other soon.
  static bool equals(const xmlChar* text, std::string_view strOther) noexcept {
    for (const char byte : strOther) {
      if (*text++ != static_cast<unsigned char>(byte)) return false;
    }
    return *text == '\0';
  }

  const StartTag& tag_;
  const std::span<const std::string_view> marks_;  // if not among the tag's attributes
};

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
                    int /*defaultedCount*/, const xmlChar** attributes) {
    SaxReading& reading = of(context);
    guarded(reading, [&] {
      const auto lngNamespaces = static_cast<std::size_t>(namespaceCount);
      const auto lngAttributes = static_cast<std::size_t>(attributeCount);
      if (!reading.isWithinLimits(lngNamespaces + lngAttributes)) return;
      reading.onStart(local, prefix, uri, lngNamespaces, namespaces, lngAttributes, attributes);
    });
  }

  static void end(void* context, const xmlChar* /*local*/, const xmlChar* /*prefix*/,
                  const xmlChar* /*uri*/) {
    guarded(of(context), [&] { of(context).onEnd(); });
  }

  static void text(void* context, const xmlChar* text, int length) {
    SaxReading& reading = of(context);
    if (!reading.validator_) return;
    guarded(reading, [&] {
      reading.strText_.append(reinterpret_cast<const char*>(text),
                              static_cast<std::size_t>(length));
    });
  }

  static void documentType(void* context, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                           const xmlChar* /*systemId*/) {
    SaxReading& reading = of(context);
    guarded(reading, [&] { reading.refuseHere("A document type declaration is not allowed."); });
  }

  static void report(void* context, xmlError* report) {
    SaxReading& reading = of(context);
    if (reading.blnStopped_ || reading.fault_ || report->level < XML_ERR_ERROR) return;
    if (report->code == XML_WAR_NS_URI) return;  // a namespace's name may be any text
    try {
      reading.refuse(report->code, parserReason(report->message), report->line, report->int2);
    } catch (...) {
      reading.exception_ = std::current_exception();
    }
  }
};

std::optional<RuntimeError> SaxReading::read(std::string_view strText) {
  return readBy([&] { parse(strText); });
}

std::optional<RuntimeError> SaxReading::read(const Tree& tree) {
  return readBy([&] {
    if (TreeEvents::tellTheText(tree)) return walk(tree);
    parse(serialiseXml(tree, tree.document()));
  });
}

template <class Body>
std::optional<RuntimeError> SaxReading::readBy(const Body& body) {
  try {
    if (settings_.contentHandler) settings_.contentHandler->documentLocator(locator_);
    body();
    return outcome();
  } catch (const RuntimeError& error) {
    tellRest();
    return error;
  }
}

void SaxReading::walk(const Tree& tree) {
  using Event = TreeEvents::Event;
  TreeEvents events(tree);
  for (Event event = events.next(); event != Event::none && mayGoOn(); event = events.next()) {
    switch (event) {
      case Event::start: {
        std::vector<const xmlChar*>& namespaces = events.namespaces();
        std::vector<const xmlChar*>& attributes = events.attributes();
        onStart(events.local(), events.prefix(), events.uri(), namespaces.size() / 2,
                namespaces.data(), attributes.size() / StartTag::kPointersPerAttribute,
                attributes.data(), events.marks());
        if (open_.size() == 1 && mayLeaveOutMarks()) events.leaveOut(settings_.marks);
        break;
      }
      case Event::end:
        onEnd();
        break;
      default:
        if (validator_) strText_ += events.text();
    }
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
  // It is text already, whatever encoding its declaration names. Not told of one either, the parser
  // takes its input for UTF-8 as it is; told, it converts it.
  if (xmlCtxtResetPush(parser_.get(), nullptr, 0, nullptr, nullptr) != 0) throw std::bad_alloc();
  // There are no entities but its own; unless they are replaced it leaves "&" as "&#38;" in values
  // and namespaces.
  xmlCtxtUseOptions(parser_.get(), XML_PARSE_NONET | XML_PARSE_IGNORE_ENC | XML_PARSE_NOENT);
  while (!strText.empty() && mayGoOn()) {
    const std::size_t piece = pieceOf(strText);
    xmlParseChunk(parser_.get(), strText.data(), static_cast<int>(piece), 0);
    strText.remove_prefix(piece);
  }
  if (mayGoOn()) xmlParseChunk(parser_.get(), nullptr, 0, 1);
  if (!exception_) memory.check();
  if (mayGoOn() && (parser_->disableSAX || !parser_->wellFormed)) {
    refuseHere(parserReason(nullptr));
  }
}

/// Refuses what a document may not have either.
bool SaxReading::isWithinLimits(std::size_t lngAttributes) {
  if (hasTooManyNames(parser_.get())) {
    refuseHere(kTooManyNames);
  } else if (lngAttributes > kMaxAttributes) {
    refuseHere(kTooManyAttributes);
  }
  return !fault_;
}

void SaxReading::onStart(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri,
                         std::size_t namespaceCount, const xmlChar** namespaces,
                         std::size_t attributeCount, const xmlChar** attributes,
                         std::span<const std::string_view> marks) {
  if (open_.empty()) openNames(uri);
  const StartTag tag{&names_->of(local, prefix, uri), namespaceCount, namespaces, attributeCount,
                     attributes};
  if (open_.size() == static_cast<std::size_t>(kMaxDepth)) return refuseHere(kTooDeep);
  open_.push_back(tag.name);
  flushText();
  strText_.clear();
  if (blnStopped_) return;
  if (validator_) validator_->start(tag);
  if (validatorAside_) startAside(tag);
  if (blnStopped_ || !settings_.contentHandler) return;
  here();  // a handler may look at the locator that it was given
  settings_.contentHandler->startElement(tag.name->strUri, tag.name->strLocal, tag.name->strWritten,
                                         TagAttributes(tag, marks));
}

/// Made at the root, whose namespace decides which schema a message is checked against.
void SaxReading::openNames(const xmlChar* rootUri) {
  if (settings_.schemas) components_ = settings_.schemas->schemaFor(view(rootUri));
  const auto& aside = settings_.parts.setAside;
  names_.emplace(components_ ? &components_->names() : nullptr, aside);
  if (!components_) return;
  const bool blnKnown = settings_.parts.handler &&
                        std::any_of(aside.begin(), aside.end(), [&](std::string_view strName) {
                          return components_->names().find("", strName) != kNoName;
                        });
  validator_.emplace(
      *components_, *names_, [this](const SchemaReport& report) { onViolation(report); },
      settings_.blnUndeclaredAttributes, blnKnown ? PartsSettings() : settings_.parts);
  if (blnKnown) {
    validatorAside_.emplace(*components_, *names_, nullptr, false, settings_.parts);
  }
}

/// Whether nobody hears of the marks but the content handler: then they need not be told among the
/// attributes.
bool SaxReading::mayLeaveOutMarks() const {
  if (settings_.blnUndeclaredAttributes) return false;
  if (components_ && components_->judgesUnknownAttributes()) return false;
  const PartsSettings& parts = settings_.parts;
  return std::ranges::all_of(settings_.marks, [&](std::string_view strName) {
    const bool blnKnown = components_ && components_->names().find("", strName) != kNoName;
    return !blnKnown &&
           (!parts.handler || std::ranges::find(parts.setAside, strName) != parts.setAside.end());
  });
}

/// Checks a start tag as it is without the attributes that are set aside.
void SaxReading::startAside(const StartTag& tag) {
  attributesAside_.clear();
  std::vector<std::size_t> taken;
  for (std::size_t index = 0; index < tag.attributeCount; ++index) {
    const xmlChar** parts = tag.attribute(index);
    if (names_->of(parts[0], parts[1], parts[2]).blnAside) {
      taken.push_back(index);
    } else {
      attributesAside_.insert(attributesAside_.end(), parts,
                              parts + StartTag::kPointersPerAttribute);
    }
  }
  StartTag without = tag;
  without.attributes = attributesAside_.data();
  without.attributeCount = tag.attributeCount - taken.size();
  validatorAside_->start(without);
  for (const std::size_t index : taken) {
    const MessageName& name = names_->of(tag.attribute(index)[0], nullptr, nullptr);
    if (!validatorAside_->declaresAttribute(name)) continue;
    settings_.parts.handler->declaredAside(validatorAside_->here(), name.strLocal,
                                           tag.value(index));
  }
}

void SaxReading::onEnd() {
  flushText();
  if (blnStopped_) return;
  if (validator_) validator_->end();
  if (validatorAside_) validatorAside_->end();
  strText_.clear();
  if (blnStopped_) return;
  const MessageName& name = *open_.back();
  open_.pop_back();
  if (!settings_.contentHandler) return;
  here();
  settings_.contentHandler->endElement(name.strUri, name.strLocal, name.strWritten);
}

void SaxReading::flushText() {
  if (strText_.empty()) return;
  validator_->text(strText_);
  if (validatorAside_) validatorAside_->text(strText_);
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

void SaxReading::refuseHere(std::string_view strReason) {
  const SaxLocator& at = here();
  refuse(XML_ERR_INTERNAL_ERROR, strReason, at.lineNumber, at.columnNumber);
}

void SaxReading::stop() noexcept {
  blnStopped_ = true;
  if (parser_) xmlStopParser(parser_.get());
}

/// A tree has no places.
const SaxLocator& SaxReading::here() {
  if (!parser_) return locator_;
  if (const xmlParserInput* input = parser_->input) {
    locator_.lineNumber = input->line;
    locator_.columnNumber = input->col;
  }
  return locator_;
}

/// What the validators have not told yet of elements that will not end.
void SaxReading::tellRest() {
  if (validator_) validator_->stop();
  if (validatorAside_) validatorAside_->stop();
}

std::optional<RuntimeError> SaxReading::outcome() {
  tellRest();
  if (exception_) std::rethrow_exception(exception_);
  if (fault_ && settings_.errorHandler) {
    settings_.errorHandler->fatalError(locator_, fault_->description(), fault_->number());
  }
  return fault_;
}

}  // namespace Varnel_Tolv_XML_Creation
