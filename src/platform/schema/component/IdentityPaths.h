#pragma once

#include <string_view>
#include <vector>

#include "platform/schema/component/Components.h"
#include "platform/schema/component/SchemaElement.h"

namespace Varnel_Tolv_XML_Creation {

/// The alternatives of the XPath of a selector or field. The grammar, with white space between its
/// tokens:
///
///   paths = path { "|" path }
///   path  = [ "." "//" ] step { "/" step }
///   step  = "." | [ "child" "::" ] test | ( "@" | "attribute" "::" ) test
///   test  = NCName | prefix ":" NCName | prefix ":*" | "*"
///
/// An attribute only as the last step of a field. A name without a prefix is in no namespace.
/// Raises kXmlFailure for anything else.
std::vector<IdentityPath> readIdentityPaths(const SchemaElement& source, NameTable& names);

}  // namespace Varnel_Tolv_XML_Creation
