#pragma once

#include <string>

#include "platform/xml/Arena.h"
#include "platform/xml/OwnedXml.h"
#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// A document whose nodes are not the library's.
inline void freeXmlDocOnly(xmlDoc* document) noexcept {
  document->children = document->last = nullptr;
  xmlFreeDoc(document);
}

/// A tree as the library knows documents, for its schema compiler. It stands on the names of the
/// tree, which has to live as long; its elements have the lines of the tree's.
class CompilerDocument {
 public:
  /// Of the root of `tree`; `strLocation` is what the compiler calls the document.
  CompilerDocument(const Tree& tree, const std::string& strLocation);

  xmlDoc* get() const noexcept { return document_.get(); }

 private:
  xmlNode* newElement(const TreeElement* source);
  void takeAttributes(const TreeElement* source, xmlNode* element);
  xmlNode* newLeaf(xmlElementType type, const TreeNode* source);
  xmlNs* newNamespace(const TreeName* name);

  Arena arena_;  // of the nodes
  Owned<xmlDoc, freeXmlDocOnly> document_;
};

}  // namespace Varnel_Tolv_XML_Creation
