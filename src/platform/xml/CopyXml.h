#pragma once

#include "platform/xml/InternedNamespaces.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

/// A copy of `source` for another document, without a parent; with `blnDeep` all that is below it
/// is copied too. Each node keeps its prefix and URI, found in `namespaces`, and the declarations
/// that it carries. `source` is an element, attribute, text, comment or processing instruction and
/// is only read.
OwnedXmlNode copyXml(const xmlNode* source, bool blnDeep, xmlDoc* document,
                     InternedNamespaces& namespaces);

/// A document type of the same name and identifiers, linked into `document`.
void copyDocumentType(const xmlDtd* source, xmlDoc* document);

}  // namespace Varnel_Tolv_XML_Creation
