#pragma once

#include <string_view>

#include "platform/xml/GuardedParser.h"
#include "platform/xml/ParseError.h"
#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// Parses `strBytes` into a new document node of `tree`, which is returned, as `Document::load`
/// promises: nothing outside the bytes is read, white space is dropped, the XML declaration is the
/// first node. Null, with the reason in `error`, when it is refused.
TreeNode* loadTree(Tree& tree, std::string_view strBytes, XmlEncoding encoding, ParseError& error,
                   AttributeDefaults defaults = AttributeDefaults::forgotten);

}  // namespace Varnel_Tolv_XML_Creation
