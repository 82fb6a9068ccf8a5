#pragma once

#include <cstddef>
#include <string>

#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// The text of a node of `tree` and of all below it, with the namespace declarations that it needs
/// to stand alone; of an attribute `name="value"`. Each node at the top of a document is followed
/// by CR LF.
std::string serialiseXml(const Tree& tree, const TreeNode* node);

/// Raises kXmlFailure when that text is longer than `lngMaxBytes`, or when a start tag in it has
/// more attributes and declarations than can be read.
void requireReadableXml(const Tree& tree, const TreeNode* node, std::size_t lngMaxBytes);

}  // namespace Varnel_Tolv_XML_Creation
