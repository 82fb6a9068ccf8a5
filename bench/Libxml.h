#pragma once

#include <libxml/tree.h>
#include <libxml/xmlschemas.h>

#include <memory>
#include <string>

// libxml2 as somebody uses it who does without this library.

namespace Varnel_Tolv_XML_Creation::bench {

struct LibxmlDeleter {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
  void operator()(xmlSchema* schema) const { xmlSchemaFree(schema); }
};
using LibxmlDocument = std::unique_ptr<xmlDoc, LibxmlDeleter>;
using LibxmlSchema = std::unique_ptr<xmlSchema, LibxmlDeleter>;

/// Each throws std::runtime_error when libxml2 fails.
LibxmlDocument parsedFile(const std::string& strFile);
LibxmlDocument parsedText(const std::string& strXml);
LibxmlSchema compiledSchema(const std::string& strFile);
std::string serialised(const LibxmlDocument& document);

/// The canonical form (C14N 1.0 with comments), which documents that say the same share.
std::string canonical(const std::string& strXml);

bool isValid(const LibxmlSchema& schema, const LibxmlDocument& document);

/// Checks the text while it is read, without a tree.
bool isValidAsRead(const LibxmlSchema& schema, const std::string& strXml);

}  // namespace Varnel_Tolv_XML_Creation::bench
