#pragma once

#include <string_view>
#include <vector>

#include "platform/xpath/Selection.h"

namespace Varnel_Tolv_XML_Creation {

/// What `select` gives, always by libxml2's own evaluator: it takes every expression, and is the
/// reference for the walk of the common ones.
std::vector<TreeNode*> selectByLibrary(const SelectionContext& context, std::string_view strXPath);

}  // namespace Varnel_Tolv_XML_Creation
