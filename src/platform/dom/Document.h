#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "../../result/Export.h"
#include "../xml/ParseError.h"
#include "../xml/TreeLimits.h"
#include "Node.h"

namespace Varnel_Tolv_XML_Creation {

class FaultInjector;
class FileCache;
class Tree;
class TreeBudget;

/// How a document is made and what it accepts.
struct DocumentSettings {
  /// A larger input is refused, and so is a write that makes the text written into one document
  /// more than that. Whatever it is, a document that would take more than 1 GiB of memory is
  /// refused as well, when it is read and when it is built.
  std::size_t lngMaxBytes = kMaxInputBytes;

  /// The nodes that a document may have when it is read and when it is built, attributes and texts
  /// included. Those that it does not have any more count until the next load.
  std::size_t lngMaxNodes = kMaxNodes;
  FileCache* cache = nullptr;  // what `load` reads comes from here where it is known already
  bool blnReadOnly = false;    // whatever would change the document is kXmlFailure; what it loads
                               // from the cache it shares with others instead of copying it
  FaultInjector* faults = nullptr;  // for tests; must outlive the document
};

/// An XML document: a handle like `Node`, so a copy is the same document. Loading never uses the
/// network, reads no external entity or DTD, expands internal entities within fixed limits, and
/// refuses more than 256 levels of elements. Text nodes of nothing but white space are dropped,
/// except below xml:space="preserve"; comments, processing instructions, CDATA sections and the
/// XML declaration are kept as nodes.
class VARNEL_EXPORT Document : public Node {
 public:
  /// Nothing. `create` makes a document.
  Document() noexcept = default;

  /// A new, empty document.
  static Document create(const DocumentSettings& settings = {});

  /// Replaces the content by that of the regular file at `strLocation`, a path or a `file:` URL;
  /// UTF-8 unless the file declares otherwise. False when it cannot be read or parsed: the document
  /// is then empty and `parseError` tells why. Handles to earlier content stay valid. kXmlFailure,
  /// and the document as it was, when the documents of a run would have more than they may.
  bool load(std::string_view strLocation) const;

  /// The same from text in memory.
  bool loadXML(std::string_view strText) const;

  const ParseError& parseError() const;

  /// For the library: what `xml` makes a text of. Null where a test makes that give nothing.
  const Tree* tree() const;

  /// Raises kXmlFailure when what `xml` gives could not be loaded again with the same settings: it
  /// is larger than they allow, or an element has more than 512 attributes and namespaces.
  void requireReadable() const;

  /// For the library: from now on the document, and the copies made of its nodes, count to what the
  /// documents of a run may have together; null: each for itself again. kXmlFailure when the budget
  /// has no room for what the document has. It shares content of a cache, which never counts.
  void countTo(const std::shared_ptr<TreeBudget>& budget) const;

  /// The root element; Nothing in an empty document.
  Node documentElement() const;

  /// The prefixes that selections on this document know, as a blank-separated list of
  /// xmlns:prefix='uri' (either quote; a plain xmlns='uri' is allowed and declares nothing).
  /// Reading gives exactly the text that was set. Any other text: kXmlFailure, nothing is set.
  void setSelectionNamespaces(std::string_view strDeclarations) const;
  std::string selectionNamespaces() const;

  /// A new element without a parent and in no namespace, also when the name has a prefix.
  /// kInvalidName for a name that XML does not allow.
  Node createElement(std::string_view strName) const;

  /// A new element without a parent, in the namespace `strNamespaceUri` (none when empty).
  Node createNode(NodeType type, std::string_view strName, std::string_view strNamespaceUri) const;

 private:
  friend class Node;
  using Node::Node;
};

}  // namespace Varnel_Tolv_XML_Creation
