#pragma once

#include "platform/xml/Tree.h"
#include "platform/xpath/LocationPath.h"
#include "platform/xpath/WorkLimit.h"

// What the steps of a location path ask of a node.

namespace Varnel_Tolv_XML_Creation {

/// Whether the name of an element or attribute is meant.
inline bool isNamed(const TreeNode* node, const NameTest& test) {
  if (!test.blnAnyName) return node->name->plain == test.name;
  return !test.blnPrefixed || node->name->uri->strText == test.strUri;
}

/// Whether a node is an element with such a name.
inline bool hasName(const TreeNode* node, const NameTest& test) {
  return isElement(node) && isNamed(node, test);
}

/// Whether all conditions of the list that starts at `first` hold for `element`.
bool holdAll(const LocationPath& path, ConditionIndex first, const TreeNode* element,
             WorkLimit& limit);

}  // namespace Varnel_Tolv_XML_Creation
