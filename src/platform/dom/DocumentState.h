#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "platform/dom/Document.h"
#include "platform/dom/Node.h"
#include "platform/fault/InjectedFault.h"
#include "platform/xml/InternedNamespaces.h"
#include "platform/xml/XmlTree.h"
#include "platform/xpath/ChildNameIndex.h"
#include "platform/xpath/LazyIdIndex.h"
#include "platform/xpath/Selection.h"
#include "platform/xpath/SelectionNamespaces.h"

namespace Varnel_Tolv_XML_Creation {

/// What the handles of one document share. It owns every node that a handle can point to, until
/// the last handle goes: the tree, the trees that a load replaced, and the nodes that stand in
/// none, because they were made and not yet placed, or taken out.
struct DocumentState {
  /// `blnTopOnly`: the tree is a fragment, so its document node is hidden.
  explicit DocumentState(const DocumentSettings& documentSettings, bool blnTopOnly = false);
  ~DocumentState();
  DocumentState(const DocumentState&) = delete;
  DocumentState& operator=(const DocumentState&) = delete;

  /// Takes a new tree. The earlier content stays for the handles to it, unless there are none.
  void replaceTree(OwnedXmlDoc newDocument, bool blnHandlesExist);

  /// Whether the test wants an operation to give nothing. Raises when it wants an error.
  bool givesNothing(DomOperation operation) const;

  /// The same for an operation without a result, where nothing can only be an error.
  void mayFail(DomOperation operation) const;

  /// Accounts for text that is about to be written, in place of `lngBefore` bytes that go. Refuses,
  /// with kXmlFailure, to write more than an input may hold.
  void grow(std::size_t lngBytes, std::size_t lngBefore = 0);

  /// Room for more detached nodes, so that `detach` needs none.
  void reserveDetached(std::size_t lngMore);

  /// Owns a node from now on, after taking it out of where it is. No room, no call.
  void detach(xmlNode* node) noexcept;

  /// Takes a node out of where it is, a tree or the detached nodes, for who puts it elsewhere.
  void release(xmlNode* node) noexcept;

  /// What a selection at `node` needs. `strXPath` tells whether an index would help.
  SelectionContext selectionContext(xmlNode* node, std::string_view strXPath) const;

  /// What a handle points to. Run-time error 91 for Nothing.
  static xmlNode* target(const Node& handle);

  /// The same for what only an element has. kXmlFailure for another node.
  static xmlNode* targetElement(const Node& handle);

  static const std::shared_ptr<DocumentState>& stateOf(const Node& handle);

  /// A handle to a node; Nothing for null.
  static Node handle(const std::shared_ptr<DocumentState>& state, xmlNode* node);

  /// A new element of a name that was checked. The caller detaches or links it.
  OwnedXmlNode newElement(std::string_view strName, xmlNs* ns) const;

  const DocumentSettings settings;
  const bool blnFragment;
  OwnedXmlDoc document = newXmlDoc();
  ParseError parseError;
  InternedNamespaces namespaces;
  std::shared_ptr<const SelectionNamespaces> selectionNamespaces;  // null: none were set
  LazyIdIndex idIndex;
  ChildNameIndex childNames;

 private:
  void freeDetached() noexcept;

  std::size_t lngWrittenBytes_ = 0;  // by writes since the tree was made
  std::vector<OwnedXmlDoc> earlier_;
  std::vector<xmlNode*> detached_;  // each knows its place here, in `_private`
};

/// Raises kXmlFailure.
[[noreturn]] void refuse(std::string_view strReason);

}  // namespace Varnel_Tolv_XML_Creation
