#pragma once

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <memory>
#include <optional>
#include <string>

// libxml2's own validation of a whole document: a third opinion on whether a message is valid.

namespace Varnel_Tolv_XML_Creation {

class LibraryVerdict {
 public:
  explicit LibraryVerdict(const std::string& strSchemaPath) {
    xmlSchemaParserCtxt* context = xmlSchemaNewParserCtxt(strSchemaPath.c_str());
    xmlSchemaSetParserStructuredErrors(
        context, [](void*, xmlError*) {}, nullptr);
    schema_.reset(xmlSchemaParse(context));
    xmlSchemaFreeParserCtxt(context);
  }

  /// None when it takes the schema for none, or gives up.
  std::optional<bool> isValid(const std::string& strText) const {
    if (!schema_) return std::nullopt;
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> tree(
        xmlReadMemory(strText.data(), static_cast<int>(strText.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        &xmlFreeDoc);
    if (!tree) return std::nullopt;
    xmlSchemaValidCtxt* context = xmlSchemaNewValidCtxt(schema_.get());
    xmlSchemaSetValidStructuredErrors(
        context, [](void*, xmlError*) {}, nullptr);
    const int result = xmlSchemaValidateDoc(context, tree.get());
    xmlSchemaFreeValidCtxt(context);
    if (result < 0) return std::nullopt;
    return result == 0;
  }

 private:
  struct Free {
    void operator()(xmlSchema* schema) const { xmlSchemaFree(schema); }
  };
  std::unique_ptr<xmlSchema, Free> schema_;
};

}  // namespace Varnel_Tolv_XML_Creation
