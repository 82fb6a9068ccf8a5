#pragma once

#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// A copy of `source` in another document, without a parent; with `blnDeep` all that is below it is
/// copied too, and the namespace declarations that an element carries always are. `source` is any
/// node but a document and is only read. One that is `blnOwn` of the target costs less.
TreeNode* copyNode(const TreeNode* source, bool blnDeep, Tree& target, bool blnOwn = false);

}  // namespace Varnel_Tolv_XML_Creation
