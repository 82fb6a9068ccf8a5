#pragma once

#include <libxml/parser.h>

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/schema/CompiledSchema.h"
#include "platform/schema/ShadowModel.h"
#include "platform/schema/ValidatingReader.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

/// One reading of one text: the parser's events go to the shadow of the schema first, which joins
/// every run of text to one, and then to the handlers.
class SaxReading {
 public:
  struct Settings {
    SaxHandler* contentHandler = nullptr;
    SaxHandler* errorHandler = nullptr;
    const SchemaCollection::Impl* schemas = nullptr;  // null: only whether it is well-formed
    bool blnExhaustive = false;
  };

  explicit SaxReading(const Settings& settings);

  /// As ValidatingReader::parse promises; to be called once.
  std::optional<RuntimeError> read(std::string_view strText);

 private:
  struct Callbacks;
  struct FreeParser {
    void operator()(xmlParserCtxt* parser) const noexcept {
      xmlFreeDoc(parser->myDoc);
      xmlFreeParserCtxt(parser);
    }
  };

  void parse(std::string_view strText);
  void onStart(const StartTag& tag);
  void onEnd(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri);
  void onViolation(const SchemaReport& report);
  void flushText();
  void refuse(int code, std::string_view strReason, int line, int column);
  void stop() noexcept;
  const SaxLocator& here();
  std::optional<RuntimeError> outcome();

  Settings settings_;
  std::unique_ptr<xmlParserCtxt, FreeParser> parser_;  // the names in the shadow are its own
  std::optional<ShadowModel> shadow_;
  SaxLocator locator_;
  std::string strText_;  // the run that is being read
  int depth_ = 0;
  bool blnStopped_ = false;
  std::optional<RuntimeError> fault_;  // why the text is refused
  std::exception_ptr exception_;
};

}  // namespace Varnel_Tolv_XML_Creation
