#pragma once

#include <string_view>

#include "platform/xml/GuardedParser.h"
#include "platform/xml/ParseError.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

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

}  // namespace Varnel_Tolv_XML_Creation
