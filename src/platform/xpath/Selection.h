#pragma once

#include <string_view>
#include <vector>

#include "platform/xml/Tree.h"

// XPath 1.0 selection over a tree; internal to the platform layer. The common location
// paths are walked directly, with an index for `name[@id='...']` and another for the first child of
// a name; every other expression, and any doubt about its syntax, goes to libxml2, which is slower
// by orders of magnitude on large trees. Both give the same nodes in the same order.

namespace Varnel_Tolv_XML_Creation {

class ChildNameIndex;
class IdIndex;
class LibraryTreeCache;
class SelectionNamespaces;

struct SelectionContext {
  const Tree* tree = nullptr;  // of the document that owns `node`
  TreeNode* node = nullptr;    // where a relative path starts: any node, the document included
  const SelectionNamespaces* namespaces = nullptr;
  const IdIndex* index = nullptr;  // of the tree that holds `node`; null when there is none now
  const ChildNameIndex* childNames = nullptr;     // of the document that owns `node`; may be null
  const LibraryTreeCache* libraryTree = nullptr;  // the same, for a node in the document
  bool blnFragment = false;  // the tree is a lone fragment: its document node is never selected
};

/// The selected nodes in document order, without doubles. Raises kXmlFailure with a description of
/// one line.
std::vector<TreeNode*> select(const SelectionContext& context, std::string_view strXPath);

/// The first of them, or null.
TreeNode* selectFirst(const SelectionContext& context, std::string_view strXPath);

}  // namespace Varnel_Tolv_XML_Creation
