#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

/// The namespaces and names of elements, each as the content models of the library have it:
/// `local|uri`, and `local` where there is no namespace.
using ElementNames = std::unordered_set<std::string>;
std::string elementKey(std::string_view strNamespaceUri, std::string_view strLocalName);

/// A schema document with what the documents that it includes, imports and redefines declare.
struct SchemaClosure {
  OwnedXmlDoc document;
  ElementNames declared;      // elements, global and local
  bool blnWildcards = false;  // whether any of them has an element wildcard
  bool blnCounts = false;     // whether any of them sets a number of occurrences above one
  int lngMaxRequired = 1;     // the largest number of occurrences that one of them demands
};

/// Reads the schema document at `strPath` and every document that it refers to, all of them files
/// without a document type declaration. Afterwards the library may read them by itself, as it does
/// when it compiles the schema: they lead nowhere else. Raises kXmlFailure, naming the file.
SchemaClosure readSchemaClosure(std::string_view strNamespaceUri, std::string_view strPath);

/// The run-time error for a schema that cannot be had.
[[noreturn]] void refuseSchema(std::string_view strPath, std::string_view strReason);

}  // namespace Varnel_Tolv_XML_Creation
