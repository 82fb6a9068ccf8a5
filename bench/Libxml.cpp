#include "Libxml.h"

#include <libxml/c14n.h>
#include <libxml/parser.h>

#include <stdexcept>

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_COMPACT | XML_PARSE_NOBLANKS;

template <class Thing>
Thing* expected(Thing* thing, const char* strWhat) {
  if (thing == nullptr) throw std::runtime_error(strWhat);
  return thing;
}

void ignore(void*, xmlError*) {}

struct ValidContextDeleter {
  void operator()(xmlSchemaValidCtxt* context) const { xmlSchemaFreeValidCtxt(context); }
};
using ValidContext = std::unique_ptr<xmlSchemaValidCtxt, ValidContextDeleter>;

ValidContext newValidContext(const LibxmlSchema& schema) {
  ValidContext context(expected(xmlSchemaNewValidCtxt(schema.get()), "no validator"));
  xmlSchemaSetValidStructuredErrors(context.get(), &ignore, nullptr);
  return context;
}

}  // namespace

LibxmlDocument parsedFile(const std::string& strFile) {
  return LibxmlDocument(expected(xmlReadFile(strFile.c_str(), nullptr, kOptions), "no document"));
}

LibxmlDocument parsedText(const std::string& strXml) {
  return LibxmlDocument(
      expected(xmlReadMemory(strXml.data(), static_cast<int>(strXml.size()), "", nullptr, kOptions),
               "no document"));
}

LibxmlSchema compiledSchema(const std::string& strFile) {
  xmlSchemaParserCtxt* context = xmlSchemaNewParserCtxt(strFile.c_str());
  LibxmlSchema schema(xmlSchemaParse(context));
  xmlSchemaFreeParserCtxt(context);
  expected(schema.get(), "no schema");
  return schema;
}

std::string serialised(const LibxmlDocument& document) {
  xmlChar* text = nullptr;
  int lngBytes = 0;
  xmlDocDumpMemoryEnc(document.get(), &text, &lngBytes, "UTF-8");
  std::string strXml(reinterpret_cast<const char*>(expected(text, "no text")),
                     static_cast<std::size_t>(lngBytes));
  xmlFree(text);
  return strXml;
}

std::string canonical(const std::string& strXml) {
  const LibxmlDocument document = parsedText(strXml);
  xmlChar* text = nullptr;
  const int lngBytes =
      xmlC14NDocDumpMemory(document.get(), nullptr, XML_C14N_1_0, nullptr, 1, &text);
  std::string strCanonical(reinterpret_cast<const char*>(expected(text, "no canonical form")),
                           static_cast<std::size_t>(lngBytes));
  xmlFree(text);
  return strCanonical;
}

bool isValid(const LibxmlSchema& schema, const LibxmlDocument& document) {
  return xmlSchemaValidateDoc(newValidContext(schema).get(), document.get()) == 0;
}

bool isValidAsRead(const LibxmlSchema& schema, const std::string& strXml) {
  const ValidContext context = newValidContext(schema);
  xmlParserInputBuffer* input =
      expected(xmlParserInputBufferCreateMem(strXml.data(), static_cast<int>(strXml.size()),
                                             XML_CHAR_ENCODING_NONE),
               "no input");
  xmlSAXHandler handler = {};
  handler.initialized = XML_SAX2_MAGIC;
  return xmlSchemaValidateStream(context.get(), input, XML_CHAR_ENCODING_NONE, &handler, nullptr) ==
         0;
}

}  // namespace Varnel_Tolv_XML_Creation::bench
