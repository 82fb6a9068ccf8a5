#pragma once

#include <string>
#include <string_view>

#include "platform/xml/ParseError.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

/// How the bytes of an input become characters.
enum class XmlEncoding {
  declared,  // UTF-8 unless a mark or the declaration says otherwise
  utf8,      // it is text already, whatever encoding its declaration names
};

/// What becomes of the attributes and namespaces that a document type gives to elements which do
/// not state them.
enum class AttributeDefaults {
  forgotten,
  applied,  // within limits: a long one, repeated by every element, makes much of a small input
};

/// What came of parsing: a tree, or none and the reason.
struct LoadedXml {
  OwnedXmlDoc document;
  ParseError error;
};

/// Parses `strBytes` into a tree that is as `Document::load` promises: nothing outside the bytes is
/// read, white space is dropped, the XML declaration is the first node. Entities are expanded while
/// all of them together hold no more than 2048 tags, within the library's own limits of size.
LoadedXml loadXml(std::string_view strBytes, XmlEncoding encoding,
                  AttributeDefaults defaults = AttributeDefaults::forgotten);

/// What a report of the library's parser says, in one line; null stands for a parse that failed
/// without a report.
std::string parserReason(const char* message);

}  // namespace Varnel_Tolv_XML_Creation
