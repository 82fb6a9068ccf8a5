#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "platform/xml/OwnedXml.h"
#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// A copy of a tree as libxml2 knows trees, for its XPath. It refers to the names of the original
/// and leaves the document type out.
class LibraryTree {
 public:
  /// `top` is a document or a node without a parent, which then gets a document of its own.
  explicit LibraryTree(TreeNode* top);

  /// Copies what has changed since directly below a node, as its child, attribute or text. False
  /// when it cannot tell from there what has become of a child: the copy is then of no more use.
  bool update(const TreeNode* parent);

  xmlDoc* document() const noexcept { return document_.get(); }

  /// The copy of a node of the original, and the way back: null for a document that it lacks.
  xmlNode* copyOf(const TreeNode* node) const;
  static TreeNode* originalOf(const xmlNode* copy) noexcept {
    return static_cast<TreeNode*>(copy->_private);
  }

 private:
  void copyBelow(TreeNode* top, xmlNode* parent, xmlNode* before);
  OwnedXmlNode newCopy(TreeNode* original);
  void copyAttributes(const TreeNode* original, xmlNode* copy);
  void keep(TreeNode* original, xmlNode* copy);
  void forget(const xmlNode* copy) noexcept;
  void drop(xmlNode* top) noexcept;
  void dropAttributes(xmlNode* element) noexcept;
  xmlNs* namespaceOf(const TreeName* name);

  std::unordered_map<const TreeName*, xmlNs> namespaces_;  // to which the copies point
  OwnedXmlDoc document_;
  OwnedXmlNode lone_;  // an attribute that is the top
  std::unordered_map<const TreeNode*, xmlNode*> copies_;
};

/// The copy of a document that is selected from again and again. Any number of threads may ask for
/// it; only who writes tells of changes.
class LibraryTreeCache {
 public:
  /// To be told of each node whose children, attributes or text change.
  void changed(const TreeNode* parent) noexcept {
    if (tree_) note(parent);
  }

  /// To be called when the document becomes another.
  void drop() noexcept { tree_.reset(); }

  std::shared_ptr<const LibraryTree> get(TreeNode* document) const;

 private:
  void note(const TreeNode* parent) noexcept;

  static constexpr std::size_t kMostChanges = 64;  // with more it is copied anew

  mutable std::mutex mutex_;  // guards what is below, except against the writer
  mutable std::shared_ptr<LibraryTree> tree_;
  mutable std::vector<const TreeNode*> changed_;  // since the copy was made
};

}  // namespace Varnel_Tolv_XML_Creation
