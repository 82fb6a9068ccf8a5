#pragma once

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

#include "platform/xml/OwnedXml.h"
#include "platform/xml/ParseError.h"
#include "platform/xml/TreeBudget.h"
#include "platform/xml/XmlMemory.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

/// How the bytes of an input become characters.
enum class XmlEncoding {
  declared,  // UTF-8 unless a mark or the declaration says otherwise; see DecodeXml.h
  utf8,      // it is text already, whatever encoding its declaration names
};

/// What becomes of the attributes and namespaces that a document type gives to elements which do
/// not state them.
enum class AttributeDefaults {
  forgotten,
  applied,  // within limits: a long one, repeated by every element, makes much of a small input
};

/// libxml2's parser within limits: it reads nothing but its input, whose elements may be 256 deep
/// with 512 attributes each and 65,536 different names in all, and expands entities while all of
/// them together hold no more than 2048 tags and what they add is not much beside the input: ten
/// times its size, or ten million bytes where that is more. Used for one input.
class GuardedParser {
 public:
  GuardedParser();
  GuardedParser(const GuardedParser&) = delete;
  GuardedParser& operator=(const GuardedParser&) = delete;

  /// The functions that get what the parser finds, libxml2's own at first, which make a tree. An
  /// element's start and end, instructions, the document type and the declarations in it are
  /// watched, so of these only those below may be set.
  xmlSAXHandler& sax() noexcept { return *parser_->sax; }
  startElementNsSAX2Func startElement = xmlSAX2StartElementNs;
  endElementNsSAX2Func endElement = xmlSAX2EndElementNs;
  processingInstructionSAXFunc instruction = xmlSAX2ProcessingInstruction;
  internalSubsetSAXFunc documentType = xmlSAX2InternalSubset;

  /// What those functions work on.
  void* builder = nullptr;

  /// What was made: a tree of libxml2, which holds no more than the document type and what was
  /// declared when functions of one's own got the rest. Null, with the reason in `error`, for an
  /// input that is refused. Raises what a function raised within `build`, and std::bad_alloc.
  OwnedXmlDoc parse(std::string_view strBytes, XmlEncoding encoding, ParseError& error,
                    AttributeDefaults defaults = AttributeDefaults::forgotten);

  /// For those functions, whose first argument is `context`: calls `body` with the builder, unless
  /// the input is refused already, and ends the parse when it raises something. A RuntimeError
  /// refuses the input, but for BudgetExceeded.
  template <class Builder, class Body>
  static void build(void* context, Body&& body) noexcept {
    GuardedParser& self = of(context);
    if (self.isOver()) return;
    try {
      body(*static_cast<Builder*>(self.builder));
    } catch (const BudgetExceeded&) {
      self.keepException(context);
    } catch (const RuntimeError& error) {
      self.stop(context, error.description().c_str());
    } catch (...) {
      self.keepException(context);
    }
  }

 private:
  friend struct ParserCallbacks;

  /// Entities are parsed in contexts of their own, which share this one.
  static GuardedParser& of(void* context) noexcept {
    return *static_cast<GuardedParser*>(static_cast<xmlParserCtxt*>(context)->_private);
  }
  bool isOver() const noexcept { return error_.errorCode != 0 || exception_; }
  void stop(void* context, const char* reason) noexcept;
  void keepException(void* context) noexcept {
    exception_ = std::current_exception();
    xmlStopParser(static_cast<xmlParserCtxt*>(context));
  }

  const MemoryWatch memory_;
  OwnedXmlParser parser_;
  ParseError error_;  // the first that makes the parse fail
  std::exception_ptr exception_;
  int depth_ = 0;
  std::ptrdiff_t entityTags_ = 0;
  std::size_t attributeBytes_ = 0;
  std::size_t entityBytes_ = 0;
  std::size_t parameterEntityBytes_ = 0;
  std::size_t maxExpandedBytes_ = 0;  // of attributes and of parameter entities
  std::size_t maxEntityBytes_ = 0;
  std::size_t declaredAttributes_ = 0;
  AttributeDefaults defaults_ = AttributeDefaults::forgotten;
  bool blnDocumentTypeAllowed_ = true;
};

/// Whether the parser of this context has met more names than a document may use.
bool hasTooManyNames(void* context) noexcept;

/// What a report of the parser says, in one line; null stands for a parse that failed without one.
std::string parserReason(const char* message);

}  // namespace Varnel_Tolv_XML_Creation
