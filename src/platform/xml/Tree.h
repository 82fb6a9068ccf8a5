#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "platform/text/ShortText.h"
#include "platform/xml/Arena.h"
#include "platform/xml/TreeNames.h"

// The tree in which a document is kept: nodes of a fixed small size, linked with one another, whose
// names are interned and whose values lie beside them in the arena of the document. A node that is
// taken out of the tree stays in the arena, so none ever dangles while its document lives. Nothing
// here recurses.

namespace Varnel_Tolv_XML_Creation {

enum class NodeKind : std::uint8_t {
  document,
  element,
  attribute,
  declaration,  // of a namespace, among the attributes and before them; no handle points to one
  text,
  cdata,
  comment,
  instruction,   // the XML declaration too, as one named `xml`
  documentType,  // its value is what is written behind the name: the identifiers
};

struct TreeElement;

struct TreeNode {
  NodeKind kind = NodeKind::text;
  std::uint8_t lngRoom = 0;   // of a value that was written over: 2 to this power are its bytes
  bool blnIndexed = false;    // of a parent: its children are in the index of child names
  std::uint32_t lngSize = 0;  // the bytes of the value, or how many children there are
  const TreeName* name = nullptr;  // of an instruction its target; of a declaration the prefix
  TreeNode* parent = nullptr;      // null also for the top of a detached tree
  TreeNode* next = nullptr;
  TreeNode* prev = nullptr;  // not of an attribute
  union {
    const char* value = nullptr;
    TreeNode* first;  // of a document or an element
  };
};

/// A node of the two kinds that have children.
struct TreeElement : TreeNode {
  TreeNode* last = nullptr;
  TreeNode* attributes = nullptr;  // in the order written, behind the namespace declarations
  std::uint32_t lngLine = 0;       // of the file, where its start tag ends; 0 for what was made
};

inline bool isElement(const TreeNode* node) noexcept { return node->kind == NodeKind::element; }
inline bool isAttribute(const TreeNode* node) noexcept { return node->kind == NodeKind::attribute; }
inline bool isDocument(const TreeNode* node) noexcept { return node->kind == NodeKind::document; }
inline bool isText(const TreeNode* node) noexcept { return node->kind == NodeKind::text; }
inline bool isCData(const TreeNode* node) noexcept { return node->kind == NodeKind::cdata; }
inline bool isCharacterData(const TreeNode* node) noexcept { return isText(node) || isCData(node); }
inline bool isParent(const TreeNode* node) noexcept { return node->kind <= NodeKind::element; }

inline TreeElement* asParent(TreeNode* node) noexcept { return static_cast<TreeElement*>(node); }
inline const TreeElement* asParent(const TreeNode* node) noexcept {
  return static_cast<const TreeElement*>(node);
}

/// Whether a node is the XML declaration.
inline bool isDeclaration(const TreeNode* node) noexcept {
  return node->kind == NodeKind::instruction && node->name->strQualified == "xml";
}

/// The value of a node that is neither a document nor an element.
inline std::string_view valueOf(const TreeNode* node) noexcept {
  return {node->value, node->lngSize};
}

/// The first child of a document or an element; null for every other kind of node.
inline TreeNode* firstChild(const TreeNode* node) noexcept {
  return isParent(node) ? node->first : nullptr;
}

/// The first element of a document; null without one.
TreeNode* rootOf(const TreeNode* document) noexcept;

/// Whether a node is an element of this name.
inline bool isElement(const TreeNode* node, std::string_view strUri,
                      std::string_view strLocal) noexcept {
  return isElement(node) && node->name->strLocal == strLocal && node->name->uri->strText == strUri;
}

/// The first attribute of an element, past the namespace declarations; null for other nodes.
TreeNode* firstAttribute(const TreeNode* node) noexcept;

/// The attribute of an element with this name as written, or null.
TreeNode* findAttribute(const TreeNode* element, std::string_view strName) noexcept;

/// The same by its name in this document.
inline TreeNode* findAttribute(const TreeNode* element, const TreeName* name) noexcept {
  TreeNode* attribute = asParent(element)->attributes;
  while (attribute && attribute->name != name) attribute = attribute->next;
  return attribute;
}

/// The value of the attribute with this name as written; nothing without it.
inline std::optional<std::string_view> attributeOf(const TreeNode* element,
                                                   std::string_view strName) noexcept {
  const TreeNode* const attribute = findAttribute(element, strName);
  return attribute ? std::optional(valueOf(attribute)) : std::nullopt;
}

/// The same; empty without it.
inline std::string_view attributeText(const TreeNode* element, std::string_view strName) noexcept {
  return attributeOf(element, strName).value_or("");
}

/// The node after `node` in document order among those below `top`; null after the last.
inline TreeNode* nextBelow(const TreeNode* node, const TreeNode* top) noexcept {
  if (TreeNode* child = firstChild(node)) return child;
  while (node != top) {
    if (node->next) return node->next;
    node = node->parent;
  }
  return nullptr;
}

/// The document, or the node without a parent, that `node` stands below.
TreeNode* topOf(TreeNode* node) noexcept;
inline const TreeNode* topOf(const TreeNode* node) noexcept {
  return topOf(const_cast<TreeNode*>(node));
}

/// An attribute's value, or the concatenated text of any other node.
std::string textOf(const TreeNode* node);

/// Whether that is not empty.
bool hasText(const TreeNode* node) noexcept;

/// Takes a node or attribute out of where it is; it then has no parent.
void unlinkNode(TreeNode* node) noexcept;

/// Puts a node without a parent below `parent`: before `before`, or at the end when that is null.
inline void linkNode(TreeNode* parent, TreeNode* node, TreeNode* before) noexcept {
  TreeElement* const owner = asParent(parent);
  node->parent = owner;
  node->next = before;
  node->prev = before ? before->prev : owner->last;
  (node->prev ? node->prev->next : owner->first) = node;
  (before ? before->prev : owner->last) = node;
  ++owner->lngSize;
}

/// Puts an attribute without a parent at the end of an element's.
void linkAttribute(TreeNode* element, TreeNode* attribute) noexcept;

/// A document with the nodes that it owns, those that stand nowhere in it included.
class Tree {
 public:
  /// An empty document, which will take about `lngExpected` bytes. It may take `lngMost`, and have
  /// `lngMostNodes`. Its memory comes from `pool`, where that is not null.
  explicit Tree(std::size_t lngExpected = 0, std::size_t lngMost = kMaxTreeBytes,
                std::size_t lngMostNodes = kMaxNodes, std::shared_ptr<ChunkPool> pool = nullptr);

  TreeNode* document() const noexcept { return document_; }

  /// Goes on with another document node; what belongs to the earlier one stays as it is.
  void setDocument(TreeNode* document) noexcept { document_ = document; }

  const TreeNames& names() const noexcept { return names_; }

  /// Shares names and values with `base`, which nobody changes any more and which lives as long as
  /// this, unless it has names already. Whether it does: its copies of those nodes are then made as
  /// of nodes of its own.
  bool share(std::shared_ptr<const Tree> base) noexcept;

  /// Where its memory comes from; null: from the heap.
  const std::shared_ptr<ChunkPool>& pool() const noexcept { return arena_.pool(); }

  /// A name, with an empty prefix where it has none and an empty URI for no namespace.
  const TreeName* name(std::string_view strPrefix, std::string_view strLocal,
                       std::string_view strUri) {
    return names_.get(arena_, strPrefix, strLocal, strUri);
  }

  /// The name of the same parts as one of another document.
  const TreeName* name(const TreeName& other) { return names_.get(arena_, other); }

  // Nodes without a parent. std::bad_alloc when there is no memory, as for names and values;
  // kXmlFailure when all that was made since the last document node is more than it may be.
  TreeNode* newDocument();
  TreeNode* newElement(const TreeName* name);
  TreeNode* newLeaf(NodeKind kind, const TreeName* name, std::string_view strValue);

  /// A leaf of a kind, and with a name and a value, that newLeaf was told of before: the value lies
  /// in this tree already, and nothing writes over it.
  TreeNode* newLeafWith(NodeKind kind, const TreeName* name, std::string_view strOwn) {
    auto* const leaf = arena_.make<TreeNode>();
    countNode();
    leaf->kind = kind;
    leaf->name = name;
    leaf->value = strOwn.data();
    leaf->lngSize = static_cast<std::uint32_t>(strOwn.size());
    lngShared_ += strOwn.size();
    return leaf;
  }

  /// A copy of a leaf of this tree, which shares its value where nothing writes over that.
  TreeNode* copyLeaf(const TreeNode* leaf);

  /// A value for a leaf of this tree.
  const char* newValue(std::string_view strValue) {
    if (strValue.size() > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    char* const value = arena_.room(strValue.size());
    copyBytes(value, strValue.data(), strValue.size());
    lngLongest_ = std::max(lngLongest_, strValue.size());
    return value;
  }

  /// Room for copies of nodes of this tree, `lngBytes` for all. Of their values `lngShared` bytes
  /// lie in this tree already, and nothing writes over them.
  char* newNodes(std::size_t lngCount, std::size_t lngBytes, std::size_t lngShared);

  /// To be told how many attributes and declarations an element has got. kXmlFailure when they are
  /// too many.
  void hasAttributes(std::size_t lngCount) {
    if (lngCount <= kMaxAttributes / 2) return;
    if (lngCount > kMaxAttributes) tooManyAttributes();
    blnManyAttributes_ = true;
  }

  /// Whether it holds nothing but elements, attributes whose names have no colon in no namespace,
  /// texts, comments and instructions, and no value of more than `lngMost` bytes.
  bool isPlain(std::size_t lngMost) const noexcept { return !blnOther_ && lngLongest_ <= lngMost; }

  /// Raises kXmlFailure when the text of a document could not be read again, because it has more
  /// than `lngMaxBytes` or an element more attributes than it may.
  void requireReadable(std::size_t lngMaxBytes) const;

  /// Writes a value in place of another. The old bytes stay used where the new ones do not fit, but
  /// all that one node ever held takes no more than some times the longest.
  void setValue(TreeNode* leaf, std::string_view strValue);

  /// Lets nodes and memory, those that it has included, count to a budget from now on; null: to
  /// none. BudgetExceeded when that has no room for it; then it counts as before.
  void countTo(const std::shared_ptr<TreeBudget>& budget);
  const std::shared_ptr<TreeBudget>& budget() const noexcept { return arena_.share().budget(); }

 private:
  /// Of one for which there is memory: there is none without.
  void countNode() {
    if (lngNodes_ == lngGranted_) grantNodes();
    ++lngNodes_;
  }
  void grantNodes();
  [[noreturn]] static void tooManyAttributes();

  std::shared_ptr<const Tree> base_;  // with which it shares; null: with none
  Arena arena_;
  TreeNames names_;
  std::size_t lngNodes_ = 0;  // made since the last document node
  std::size_t lngMostNodes_;
  std::size_t lngGranted_;          // so many without asking again: all, but for a budget
  std::size_t lngShared_ = 0;       // the bytes of values for each leaf that has not its own
  std::size_t lngLongest_ = 0;      // value
  bool blnOther_ = false;           // it may hold something else
  bool blnEarlier_ = false;         // nodes of an earlier document may stand in this one
  bool blnManyAttributes_ = false;  // an element has so many that it may get too many declarations
  TreeNode* document_;
};

}  // namespace Varnel_Tolv_XML_Creation
