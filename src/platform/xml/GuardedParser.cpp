#include "platform/xml/GuardedParser.h"

#include <libxml/hash.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <climits>
#include <new>
#include <string>
#include <utility>

#include "platform/text/Text.h"
#include "platform/xml/DecodeXml.h"
#include "platform/xml/ReadXmlFile.h"
#include "platform/xml/TreeLimits.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// The library parses or copies the content of an entity by recursion, and an entity may hold
// another, so the tags of all entities together bound its stack.
constexpr std::ptrdiff_t kMaxEntityTags = 2048;

// What an attribute or a namespace that a document type adds costs beside its text.
constexpr std::size_t kDefaultBytes = 64;

/// How much text entities and defaults may add to the attributes of an input, and parameter
/// entities to its document type.
std::size_t expansionLimit(std::size_t lngInput) {
  return std::max(std::size_t{1} << 20, 10 * lngInput);
}

/// The length of all entities that an input may use, each counted as often as it is used and once
/// for its declaration.
std::size_t entityLimit(std::size_t lngInput) {
  return std::max(std::size_t{10'000'000}, 10 * lngInput) + lngInput;
}

/// What the text of an input shows before it is parsed.
struct Preview {
  bool blnDocumentType = false;    // it has, or seems to have, a document type declaration
  bool blnManyAttributes = false;  // a start tag has more attributes than are accepted
};

/// What as many attributes take as are accepted.
constexpr std::size_t kFewBytes = kMaxAttributes * std::string_view(" a=''").size();

/// Whether `strTag`, from its "<" up to the next, holds too many attributes: an equals sign and a
/// value in quotes. No tag holds another "<", and behind anything else the parser gives a tag up.
bool hasManyAttributes(std::string_view strTag) {
  if (strTag.size() < kFewBytes) return false;
  std::size_t lngAttributes = 0;
  for (std::size_t at = strTag.find_first_of("=>"); at != std::string_view::npos;
       at = strTag.find_first_of("=>", at)) {
    if (strTag[at] == '>') return false;
    at = strTag.find_first_not_of(" \t\r\n", at + 1);
    if (at == std::string_view::npos) return false;
    if (strTag[at] != '"' && strTag[at] != '\'') continue;
    at = strTag.find(strTag[at], at + 1);
    if (++lngAttributes > kMaxAttributes) return true;
  }
  return false;
}

/// Whether one of the tags in a text does. A comment may hold what looks like a tag: it is taken
/// for one, as what looks like a comment may stand in the value of an entity. Of the tags that
/// begin within so many bytes all but the last are too short.
bool holdsManyAttributes(std::string_view strText) {
  for (std::size_t begin = strText.find('<'); begin != std::string_view::npos;) {
    std::size_t next = strText.rfind('<', begin + kFewBytes);
    if (next == begin) {
      next = strText.find('<', begin + 1);
      if (hasManyAttributes(strText.substr(begin, next - begin))) return true;
    }
    begin = next;
  }
  return false;
}

Preview preview(std::string_view strText) {
  return {.blnDocumentType = strText.find("<!D") != std::string_view::npos,
          .blnManyAttributes = holdsManyAttributes(strText)};
}

/// Whether a report of the parser makes the load fail.
bool isFailure(const xmlError& report) {
  // What an undeclared entity stands for is unknown: that it might be declared in a DTD which is
  // not read makes it a mere warning to the library.
  if (report.code == XML_WAR_UNDECLARED_ENTITY) return true;
  if (report.level < XML_ERR_ERROR) return false;
  // Validity was not asked for, and a namespace's name may be any text.
  return report.domain != XML_FROM_VALID && report.code != XML_WAR_NS_URI;
}

}  // namespace

std::string parserReason(const char* message) {
  return oneLine(message ? message : "The text could not be parsed.");
}

bool hasTooManyNames(void* context) noexcept {
  constexpr std::size_t kOwnNames = 16;  // that the parser knows of itself
  const int names = xmlDictSize(static_cast<xmlParserCtxt*>(context)->dict);
  return static_cast<std::size_t>(names) > kMaxNames + kOwnNames;
}

struct ParserCallbacks {
  static void onReport(void* context, xmlError* report) {
    GuardedParser& self = GuardedParser::of(context);
    try {
      if (self.isOver() || !isFailure(*report)) return;
      self.error_ = {report->code, report->line, parserReason(report->message)};
    } catch (...) {
      self.exception_ = std::current_exception();
    }
  }

  static void onStartElement(void* context, const xmlChar* name, const xmlChar* prefix,
                             const xmlChar* uri, int namespaceCount, const xmlChar** namespaces,
                             int attributeCount, int defaultedCount, const xmlChar** attributes) {
    GuardedParser& self = GuardedParser::of(context);
    if (++self.depth_ > kMaxDepth) return self.stop(context, kTooDeep);
    if (self.depth_ == 1) endInput(context);
    if (static_cast<std::size_t>(attributeCount + namespaceCount) > kMaxAttributes) {
      return self.stop(context, kTooManyAttributes);
    }
    if (hasTooManyNames(context)) return self.stop(context, kTooManyNames);
    constexpr std::ptrdiff_t kFields = 5;  // name, prefix, URI, begin and end of the value
    for (int at = 0; at < attributeCount; ++at) {
      const xmlChar* const* attribute = attributes + kFields * at;
      self.attributeBytes_ += static_cast<std::size_t>(attribute[4] - attribute[3]);
    }
    if (self.defaults_ == AttributeDefaults::applied) {
      self.attributeBytes_ +=
          kDefaultBytes * static_cast<std::size_t>(defaultedCount + namespaceCount);
      for (int at = 0; at < namespaceCount; ++at) {  // a prefix and a URI each
        self.attributeBytes_ += view(namespaces[2 * at + 1]).size();
      }
      defaultedCount = 0;  // the library would leave out what is said to be there by default
    }
    if (self.attributeBytes_ > self.maxExpandedBytes_) {
      return self.stop(context, "The document type makes the attributes too large.");
    }
    self.startElement(context, name, prefix, uri, namespaceCount, namespaces, attributeCount,
                      defaultedCount, attributes);
  }

  /// Tells the library that there is no more text than it has. It would make room for more whenever
  /// it comes near the end.
  static void endInput(void* context) {
    xmlParserInputBuffer& buffer = *static_cast<xmlParserCtxt*>(context)->input->buf;
    if (!buffer.encoder) buffer.readcallback = nullptr;
  }

  static void onEndElement(void* context, const xmlChar* name, const xmlChar* prefix,
                           const xmlChar* uri) {
    GuardedParser& self = GuardedParser::of(context);
    --self.depth_;
    self.endElement(context, name, prefix, uri);
  }

  static void onInstruction(void* context, const xmlChar* target, const xmlChar* content) {
    GuardedParser& self = GuardedParser::of(context);
    if (hasTooManyNames(context)) return self.stop(context, kTooManyNames);
    self.instruction(context, target, content);
  }

  /// Without limits of its own the parser must not meet an entity: one that was not foreseen.
  static void onDocumentType(void* context, const xmlChar* name, const xmlChar* publicId,
                             const xmlChar* systemId) {
    GuardedParser& self = GuardedParser::of(context);
    if (!self.blnDocumentTypeAllowed_) {
      return self.stop(context, "A document type is not expected here.");
    }
    self.documentType(context, name, publicId, systemId);
  }

  /// Lets the parser know internal entities only, so that there is nothing outside to be read.
  static void onEntityDeclaration(void* context, const xmlChar* name, int type,
                                  const xmlChar* publicId, const xmlChar* systemId,
                                  xmlChar* content) {
    if (type != XML_INTERNAL_GENERAL_ENTITY && type != XML_INTERNAL_PARAMETER_ENTITY) return;
    GuardedParser& self = GuardedParser::of(context);
    const std::string_view strContent = view(content);
    self.entityTags_ += std::count(strContent.begin(), strContent.end(), '<');
    if (self.entityTags_ > kMaxEntityTags) {
      return self.stop(context, "The entities hold too many elements.");
    }
    // Its tags may have been written with character references.
    if (holdsManyAttributes(strContent)) return self.stop(context, kTooManyAttributes);
    xmlSAX2EntityDecl(context, name, type, publicId, systemId, content);
  }

  /// Called for each use of an entity, those inside others included.
  static xmlEntity* onEntity(void* context, const xmlChar* name) {
    GuardedParser& self = GuardedParser::of(context);
    xmlEntity* entity = xmlSAX2GetEntity(context, name);
    if (!entity) return nullptr;
    self.entityBytes_ += static_cast<std::size_t>(entity->length);
    if (self.entityBytes_ <= self.maxEntityBytes_) return entity;
    self.stop(context, "The entities make the document too large.");
    return nullptr;
  }

  /// The same for parameter entities. The library itself gives up after ten thousand uses of
  /// entities, but then never returns from within a document type.
  static xmlEntity* onParameterEntity(void* context, const xmlChar* name) {
    constexpr unsigned long kMaxUses = 1000;
    GuardedParser& self = GuardedParser::of(context);
    xmlEntity* entity = xmlSAX2GetParameterEntity(context, name);
    if (!entity) return nullptr;
    self.parameterEntityBytes_ += static_cast<std::size_t>(entity->length);
    const unsigned long lngUses = static_cast<xmlParserCtxt*>(context)->nbentities;
    if (lngUses <= kMaxUses && self.parameterEntityBytes_ <= self.maxExpandedBytes_) return entity;
    self.stop(context, "The entities make the document type too large.");
    return nullptr;
  }

  /// Where attribute defaults are applied, the library compares those of a tag with one another.
  static void onAttributeDeclaration(void* context, const xmlChar* element, const xmlChar* name,
                                     int type, int presence, const xmlChar* value,
                                     xmlEnumeration* values) {
    xmlSAX2AttributeDecl(context, element, name, type, presence, value, values);
    GuardedParser& self = GuardedParser::of(context);
    if (self.defaults_ == AttributeDefaults::forgotten) return;
    if (++self.declaredAttributes_ <= kMaxAttributes) return;
    self.stop(context, "The document type declares too many attributes.");
  }

  /// Called between the document type and the root. Unless they were asked for, attribute defaults
  /// are forgotten. The DTD that the document type may name is not read.
  static void onDocumentTypeRead(void* context, const xmlChar* /*name*/,
                                 const xmlChar* /*publicId*/, const xmlChar* /*systemId*/) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    const bool blnApplied = GuardedParser::of(context).defaults_ == AttributeDefaults::applied;
    if (blnApplied || !parser->attsDefault) return;
    xmlHashFree(parser->attsDefault, xmlHashDefaultDeallocator);
    parser->attsDefault = nullptr;
  }
};

GuardedParser::GuardedParser() {
  parser_.reset(xmlNewParserCtxt());
  if (!parser_) throw std::bad_alloc();
  parser_->_private = this;
  xmlSAXHandler& sax = *parser_->sax;
  sax.serror = ParserCallbacks::onReport;
  sax.startElementNs = ParserCallbacks::onStartElement;
  sax.endElementNs = ParserCallbacks::onEndElement;
  sax.processingInstruction = ParserCallbacks::onInstruction;
  sax.internalSubset = ParserCallbacks::onDocumentType;
  sax.entityDecl = ParserCallbacks::onEntityDeclaration;
  sax.attributeDecl = ParserCallbacks::onAttributeDeclaration;
  sax.getEntity = ParserCallbacks::onEntity;
  sax.getParameterEntity = ParserCallbacks::onParameterEntity;
  sax.unparsedEntityDecl = nullptr;
  sax.externalSubset = ParserCallbacks::onDocumentTypeRead;
  sax.resolveEntity = nullptr;
}

void GuardedParser::stop(void* context, const char* reason) noexcept {
  auto* parser = static_cast<xmlParserCtxt*>(context);
  try {
    if (error_.errorCode == 0) {
      error_ = {XML_ERR_INTERNAL_ERROR, parser->input ? parser->input->line : 0, reason};
    }
  } catch (...) {
    exception_ = std::current_exception();
  }
  xmlStopParser(parser);
}

OwnedXmlDoc GuardedParser::parse(std::string_view strBytes, XmlEncoding encoding, ParseError& error,
                                 AttributeDefaults defaults) {
  error = {XML_ERR_DOCUMENT_EMPTY, 0, "Document is empty"};
  std::string strDecoded;
  std::string_view strText = strBytes;
  if (encoding == XmlEncoding::declared) {
    const auto decoded = decodeXml(strBytes, strDecoded, error);
    if (!decoded) return nullptr;
    strText = *decoded;
  }
  if (strText.empty()) return nullptr;
  if (strText.size() > INT_MAX) {
    error = tooLarge(INT_MAX);
    return nullptr;
  }
  const Preview seen = preview(strText);
  if (seen.blnManyAttributes) {
    error = {XML_ERR_INTERNAL_ERROR, 0, kTooManyAttributes};
    return nullptr;
  }
  maxExpandedBytes_ = expansionLimit(strText.size());
  maxEntityBytes_ = entityLimit(strText.size());
  defaults_ = defaults;
  blnDocumentTypeAllowed_ = seen.blnDocumentType;
  int options = XML_PARSE_NODICT | XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR |
                XML_PARSE_NOWARNING | XML_PARSE_IGNORE_ENC;
  // The parser's own limits are against entities, and they refuse an answer of more than ten
  // million bytes. Where nothing can declare an entity the size of the input is limit enough.
  if (!seen.blnDocumentType) options |= XML_PARSE_HUGE;
  // Told an encoding, the library crashes when there is no memory for its converter. It guesses by
  // the first four bytes; only a NUL among them could make it take the text for another than UTF-8.
  const bool blnMisread = strText.substr(0, 4).find('\0') != std::string_view::npos;
  OwnedXmlDoc document(xmlCtxtReadMemory(parser_.get(), strText.data(),
                                         static_cast<int>(strText.size()), nullptr,
                                         blnMisread ? "UTF-8" : nullptr, options));
  if (exception_) std::rethrow_exception(exception_);
  memory_.check();
  // The library takes a NUL for the end of its input.
  const bool blnCut = parser_->input && parser_->input->cur < parser_->input->end;
  if (error_.errorCode == 0 && (!document || parser_->disableSAX || blnCut)) {
    error_ = {XML_ERR_INTERNAL_ERROR, 0, parserReason(nullptr)};
  }
  error = std::move(error_);
  if (error.errorCode != 0) return nullptr;
  return document;
}

}  // namespace Varnel_Tolv_XML_Creation
