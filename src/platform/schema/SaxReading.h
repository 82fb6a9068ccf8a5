#pragma once

#include <libxml/parser.h>

#include <exception>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/ExhaustiveValidator.h"
#include "platform/schema/SchemaCollectionImpl.h"
#include "platform/schema/ValidatingReader.h"
#include "platform/xml/OwnedXml.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

class Tree;

/// One reading of one text: the events of the parser, or of the tree of which it is the text, go to
/// the validator first, every run of text in one piece, and then to the handlers.
class SaxReading {
 public:
  struct Settings {
    SaxHandler* contentHandler = nullptr;
    SaxHandler* errorHandler = nullptr;
    const SchemaCollection::Impl* schemas = nullptr;  // null: only whether it is well-formed
    bool blnExhaustive = false;
    bool blnUndeclaredAttributes = true;  // are reported
    PartsSettings parts;
    std::span<const std::string_view> marks{};  // see ValidatingReader
  };

  explicit SaxReading(const Settings& settings) : settings_(settings) {}

  /// As ValidatingReader::parse promises; to be called once.
  std::optional<RuntimeError> read(std::string_view strText);

  /// The same for the text of a tree, which is made only where it has to be parsed.
  std::optional<RuntimeError> read(const Tree& tree);

 private:
  struct Callbacks;

  template <class Body>
  std::optional<RuntimeError> readBy(const Body& body);
  void parse(std::string_view strText);
  void walk(const Tree& tree);
  bool mayGoOn() const noexcept { return !blnStopped_ && !fault_ && !exception_; }
  bool isWithinLimits(std::size_t lngAttributes);
  void onStart(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri,
               std::size_t namespaceCount, const xmlChar** namespaces, std::size_t attributeCount,
               const xmlChar** attributes, std::span<const std::string_view> marks = {});
  bool mayLeaveOutMarks() const;
  void openNames(const xmlChar* rootUri);
  void onEnd();
  void startAside(const StartTag& tag);
  void onViolation(const SchemaReport& report);
  void flushText();
  void refuse(int code, std::string_view strReason, int line, int column);
  void refuseHere(std::string_view strReason);
  void stop() noexcept;
  const SaxLocator& here();
  void tellRest();
  std::optional<RuntimeError> outcome();

  Settings settings_;
  OwnedXmlParser parser_;  // of a text: the names in the validator are its own
  std::optional<MessageNames> names_;
  const SchemaComponents* components_ = nullptr;  // to check against, if any
  std::optional<ExhaustiveValidator> validator_;
  // Of the message without the attributes that are set aside, where that makes a difference: the
  // schema has a use for one of their names. It tells the parts, and nothing else.
  std::optional<ExhaustiveValidator> validatorAside_;
  std::vector<const xmlChar*> attributesAside_;  // of the tag that is being read: those that stay
  SaxLocator locator_;
  std::string strText_;                   // the run that is being read
  std::vector<const MessageName*> open_;  // the names of the open elements
  bool blnStopped_ = false;
  std::optional<RuntimeError> fault_;  // why the text is refused
  std::exception_ptr exception_;
};

}  // namespace Varnel_Tolv_XML_Creation
