#pragma once

#include <libxml/xpath.h>

namespace Varnel_Tolv_XML_Creation {

/// The functions of an expression that `writeForLibrary` wrote: those of XPath 1.0, and those that
/// stand for operators. Each takes from the limit of operations of its context what it does: one
/// for each node and for each 32 bytes of text that it looks at. None takes longer than linear in
/// that, but for sorting. Null for a name that there is not.
xmlXPathFunction countedFunction(xmlXPathContext* context, const xmlChar* name, const xmlChar* uri);

}  // namespace Varnel_Tolv_XML_Creation
