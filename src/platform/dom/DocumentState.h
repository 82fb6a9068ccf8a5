#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/dom/Document.h"
#include "platform/dom/Node.h"
#include "platform/fault/InjectedFault.h"
#include "platform/xml/GuardedParser.h"
#include "platform/xml/Tree.h"
#include "platform/xpath/ChildNameIndex.h"
#include "platform/xpath/LazyIdIndex.h"
#include "platform/xpath/LibraryTree.h"
#include "platform/xpath/Selection.h"
#include "platform/xpath/SelectionNamespaces.h"

namespace Varnel_Tolv_XML_Creation {

/// What the handles of one document share. Its tree owns every node that a handle can point to,
/// until the last handle goes: those of the document, those of a document that a load replaced, and
/// those that stand in none, because they were made and not yet placed, or taken out.
struct DocumentState {
  /// `blnTopOnly`: the tree is a fragment, so its document node is hidden.
  explicit DocumentState(const DocumentSettings& documentSettings, bool blnTopOnly = false);
  DocumentState(const DocumentState&) = delete;
  DocumentState& operator=(const DocumentState&) = delete;

  /// Takes what `strText` holds in place of the content, or nothing where that is none or refused;
  /// `error` tells why there is none. Whether it was taken. The earlier content stays for the
  /// handles to it, unless there are none.
  bool load(std::optional<std::string_view> strText, XmlEncoding encoding, ParseError error,
            bool blnHandlesExist);

  /// Whether the test wants an operation to give nothing. Raises when it wants an error.
  bool givesNothing(DomOperation operation) const;

  /// The same for an operation without a result, where nothing can only be an error.
  void mayFail(DomOperation operation) const;

  /// Accounts for text that is about to be written, in place of `lngBefore` bytes that go. Refuses,
  /// with kXmlFailure, to write more than an input may hold.
  void grow(std::size_t lngBytes, std::size_t lngBefore = 0);

  /// To be called before children, attributes or text of `parent`, null for none, change; `blnIds`:
  /// that concerns elements with an attribute `id`, that attribute included.
  void changing(const TreeNode* parent, bool blnIds) noexcept;

  /// What a selection at `node` needs. `strXPath` tells whether an index would help.
  SelectionContext selectionContext(TreeNode* node, std::string_view strXPath) const;

  /// What a handle points to. Run-time error 91 for Nothing.
  static TreeNode* target(const Node& handle);

  /// The same for what only an element has. kXmlFailure for another node.
  static TreeNode* targetElement(const Node& handle);

  static const std::shared_ptr<DocumentState>& stateOf(const Node& handle);

  /// A handle to a node; Nothing for null.
  static Node handle(const std::shared_ptr<DocumentState>& state, TreeNode* node);

  const DocumentSettings settings;
  const bool blnFragment;
  Tree tree;
  ParseError parseError;
  std::shared_ptr<const SelectionNamespaces> selectionNamespaces;  // null: none were set
  LazyIdIndex idIndex;
  ChildNameIndex childNames;
  LibraryTreeCache libraryTree;

 private:
  std::size_t lngWrittenBytes_ = 0;  // by writes since the content was loaded
};

/// Raises kXmlFailure.
[[noreturn]] void refuse(std::string_view strReason);

}  // namespace Varnel_Tolv_XML_Creation
