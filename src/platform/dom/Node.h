#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "../../result/Export.h"

// Handles to the nodes of an XML document. A handle is a cheap value: copying it copies a pointer
// and what keeps the document alive, and changes nothing in the document. A document owns its
// nodes, those that were taken out of its tree included, so no handle ever dangles.
//
// An empty handle is Nothing. It tests false; any other use of it raises run-time error 91.
// A document may be read by several threads at once as long as none writes to it; of the nodes that
// stand in no tree, such as a created one before it is placed, only one thread may select at a
// time.
//
// An optional list must be kept in a variable while it is walked: `for (x : *node.childNodes())`
// would walk what is gone already.

namespace Varnel_Tolv_XML_Creation {

class Document;
class Node;
class NodeList;
struct DocumentState;
struct TreeNode;

/// An attribute as it is written: "m:kind" with its value, or "xmlns:m" with a namespace's URI.
struct NodeAttribute {
  std::string strName;
  std::string strValue;
};

/// The kinds of node, with their usual numbers.
enum class NodeType {
  element = 1,
  attribute = 2,
  text = 3,
  cdataSection = 4,
  processingInstruction = 7,  // the XML declaration too
  comment = 8,
  document = 9,
  documentType = 10,
};

// What a friend is marked with has to be told before.
VARNEL_EXPORT bool operator==(const Node& left, const Node& right) noexcept;

class VARNEL_EXPORT Node {
 public:
  /// Nothing.
  Node() noexcept = default;

  explicit operator bool() const noexcept { return state_ != nullptr; }

  /// Whether both are the same node of the same document, or both Nothing.
  friend bool operator==(const Node& left, const Node& right) noexcept;

  /// A key of the node: the same for every handle to it, another for every other node as long as
  /// handles to both are kept. Null for Nothing and for a document.
  const void* identity() const noexcept { return node_; }

  NodeType nodeType() const;

  /// The qualified name as written; "#document", "#text", "#comment", "#cdata-section"; a
  /// processing instruction's target.
  std::string nodeName() const;

  /// `nodeName` without its prefix.
  std::string baseName() const;

  /// The URI of the namespace of an element or an attribute; empty for none and for other nodes.
  std::string namespaceUri() const;

  /// The text of the node and of everything below it, untrimmed; an attribute's value.
  std::string text() const;

  /// Whether `text` is not empty, without making it.
  bool hasText() const;

  /// Replaces all content by one text node, an empty one for the empty text; sets an attribute's
  /// value. Raises kXmlFailure, and writes nothing, for text that XML cannot hold or that is not
  /// UTF-8.
  void setText(std::string_view strText) const;

  /// The serialised text of the node and of everything below it. A document's has CR LF after each
  /// of its top-level nodes, the XML declaration and the root included; reading it again gives the
  /// same document, less any text of nothing but white space, which a load drops.
  std::string xml() const;

  /// The line, from 1, of the file from which an element was loaded, where its start tag ends; a
  /// copy has that of its original. 0 for an element that was made, and for every other node.
  std::size_t lineNumber() const;

  bool hasChildNodes() const;

  /// The children at this moment, in order: later changes do not change the list.
  std::optional<NodeList> childNodes() const;

  /// The nodes at and below this one that hold nothing, text nodes left out: without children and
  /// text, or with one empty text node for all their children. In document order.
  NodeList emptyNodes() const;

  /// The document to which this node belongs, whether it stands in its tree or not.
  Document ownerDocument() const;

  /// The parent element or document; Nothing for a node without one, the top of a clone included.
  Node parentNode() const;

  /// The value of an attribute of this element by its name as written; none when it is missing.
  /// On a node that is no element: kXmlFailure. So for the four operations below.
  std::optional<std::string> getAttribute(std::string_view strName) const;

  /// All attributes of this element in the order written, its namespace declarations before them.
  std::vector<NodeAttribute> attributes() const;

  /// Sets an attribute, in no namespace, adding it as the last one when it is missing. Raises
  /// kInvalidName for a name that XML does not allow, kXmlFailure for a value that it cannot hold.
  void setAttribute(std::string_view strName, std::string_view strValue) const;

  /// Does nothing when the attribute is missing.
  void removeAttribute(std::string_view strName) const;

  /// Takes the attributes with these names, which have no prefix, from all elements of the document
  /// or fragment to which this node belongs. "Not at all", which is false, never happens to a sound
  /// document. Raises kXmlFailure, before it takes any, for a name that is none.
  bool removeAttributes(std::span<const std::string_view> names) const;

  /// `attributes.getNamedItem`: the attribute as a node; Nothing when it is missing.
  Node getNamedItem(std::string_view strName) const;

  /// The nodes that an XPath 1.0 expression selects from here, in document order. Prefixes are
  /// those of the document's selection namespaces. An absolute path starts at the document, or at
  /// the top of the fragment to which this node belongs. Raises kXmlFailure for an expression that
  /// is malformed, has an unknown prefix or gives no nodes but a number, text or Boolean.
  /// "No list at all" never happens to a sound document; callers test it nevertheless.
  std::optional<NodeList> selectNodes(std::string_view strXPath) const;

  /// The first of them, or Nothing.
  Node selectSingleNode(std::string_view strXPath) const;

  /// The elements below this one whose qualified name as written is `strName`, in document order.
  /// "*" takes them all.
  std::optional<NodeList> getElementsByTagName(std::string_view strName) const;

  /// Puts `objChild` at the end of this node's children, or before `objBefore`, and returns it.
  /// It is taken out of where it was. A node of another document is copied into this one and the
  /// copy is returned: go on with that. Raises kXmlFailure where the result would be no tree (a
  /// node below itself, a second root, an `objBefore` that is no child).
  Node appendChild(const Node& objChild) const;
  Node insertBefore(const Node& objChild, const Node& objBefore) const;

  /// Takes a child out of the tree and returns it. Raises kInvalidArgument for a node that is no
  /// child of this one.
  Node removeChild(const Node& objChild) const;

  /// A copy that stands alone as the top of a fragment of its own: no parent, the same selection
  /// namespaces. With `blnDeep` all that is below it is copied too. The original is only read.
  Node cloneNode(bool blnDeep) const;

  /// The same for an element, made to be placed in the document of `objTarget`, which then need not
  /// copy it once more. Go on with what placing it returns, as with a node of another document.
  Node cloneFor(const Node& objTarget, bool blnDeep) const;

 protected:
  friend class NodeList;
  friend struct DocumentState;

  /// `node` is null for the document itself, whose tree a load may replace.
  Node(std::shared_ptr<DocumentState> state, void* node) noexcept
      : state_(std::move(state)), node_(node) {}

  std::shared_ptr<DocumentState> state_;
  void* node_ = nullptr;
};

/// Nodes in document order, taken once: what happens to the tree afterwards does not change it.
/// It keeps their document alive.
class VARNEL_EXPORT NodeList {
 public:
  class iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Node;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = Node;

    Node operator*() const { return list_->item(index_); }
    iterator& operator++() {
      ++index_;
      return *this;
    }
    bool operator==(const iterator& other) const { return index_ == other.index_; }

   private:
    friend class NodeList;
    iterator(const NodeList* list, std::size_t index) : list_(list), index_(index) {}

    const NodeList* list_;
    std::size_t index_;
  };

  std::size_t length() const noexcept { return nodes_.size(); }

  /// The node at `lngIndex`, counted from 0; Nothing beyond the end.
  Node item(std::size_t lngIndex) const;

  iterator begin() const { return {this, 0}; }
  iterator end() const { return {this, nodes_.size()}; }

 private:
  friend class Node;
  NodeList(std::shared_ptr<DocumentState> state, std::vector<TreeNode*> nodes) noexcept
      : state_(std::move(state)), nodes_(std::move(nodes)) {}

  std::shared_ptr<DocumentState> state_;
  std::vector<TreeNode*> nodes_;
};

}  // namespace Varnel_Tolv_XML_Creation
