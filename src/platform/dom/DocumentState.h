#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dom/Document.h"
#include "platform/dom/KeptModels.h"
#include "platform/dom/Node.h"
#include "platform/fault/InjectedFault.h"
#include "platform/text/ShortText.h"
#include "platform/xml/GuardedParser.h"
#include "platform/xml/Tree.h"
#include "platform/xpath/ChildNameIndex.h"
#include "platform/xpath/LazyIdIndex.h"
#include "platform/xpath/LibraryTree.h"
#include "platform/xpath/PreparedPath.h"
#include "platform/xpath/Selection.h"
#include "platform/xpath/SelectionNamespaces.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

/// Raises kXmlFailure.
[[noreturn]] void refuse(std::string_view strReason);

/// What a document holds, and what helps to find it.
struct DocumentContent {
  explicit DocumentContent(std::size_t lngMaxNodes = kMaxNodes,
                           std::shared_ptr<ChunkPool> chunkPool = nullptr)
      : lngMostNodes(lngMaxNodes),
        pool(std::move(chunkPool)),
        tree(0, kMaxTreeBytes, lngMaxNodes, pool) {}

  /// Lets `fill` make a document, null for an empty one, and puts it in place of the one before,
  /// which stays when `blnKeepBefore`. Whether it made one. What it raises leaves all as it was.
  /// The index of ids of a copy `blnForOne`, who is about to change it, waits until it is wanted.
  bool replace(std::size_t lngExpected, bool blnKeepBefore,
               const std::function<TreeNode*(Tree& tree)>& fill, bool blnForOne = false);

  const std::size_t lngMostNodes;
  const std::shared_ptr<ChunkPool> pool;  // of the memory of the tree; null: it is of the heap
  Tree tree;
  LazyIdIndex idIndex;
  ChildNameIndex childNames;
  LibraryTreeCache libraryTree;
  KeptModels models;

  /// The names of attributes that were set, by their lengths and ends.
  std::array<const TreeName*, 32> attributeNames{};
};

/// What the handles of one document share. Its tree owns every node that a handle can point to,
/// until the last handle goes: those of the document, those of a document that a load replaced, and
/// those that stand in none, because they were made and not yet placed, or taken out.
struct DocumentState {
  /// `blnTopOnly`: the tree is a fragment, so its document node is hidden.
  explicit DocumentState(const DocumentSettings& documentSettings, bool blnTopOnly = false);

  /// For a fragment that will stand in the content of `host`, and is made there.
  DocumentState(const DocumentSettings& documentSettings, std::shared_ptr<DocumentState> host);
  DocumentState(const DocumentState&) = delete;
  DocumentState& operator=(const DocumentState&) = delete;

  /// What the file at `strLocation` holds, from `cache` where it has it; null, with the reason in
  /// `error`, when it cannot be read or parsed.
  static std::shared_ptr<const DocumentContent> read(FileCache& cache, std::string_view strLocation,
                                                     const DocumentSettings& limits,
                                                     ParseError& error);

  /// Takes what `strText` holds in place of the content, or nothing where that is none or refused;
  /// `error` tells why there is none. Whether it was taken. The earlier content stays for the
  /// handles to it, unless there are none.
  bool load(std::optional<std::string_view> strText, XmlEncoding encoding, ParseError error,
            bool blnHandlesExist);

  /// The same with content that was loaded before: a read-only document shares it, another gets a
  /// copy. kXmlFailure for a read-only one to which there are handles.
  bool take(std::shared_ptr<const DocumentContent> loaded, ParseError error, bool blnHandlesExist);

  /// Whether the test wants an operation to give nothing. Raises when it wants an error.
  bool givesNothing(DomOperation operation) const {
    return Varnel_Tolv_XML_Creation::givesNothing(settings.faults, operation);
  }

  /// The same for an operation without a result, where nothing can only be an error.
  void mayFail(DomOperation operation) const {
    if (settings.faults) Varnel_Tolv_XML_Creation::mayFail(settings.faults, operation);
  }

  /// See `Document::countTo`.
  void countTo(const std::shared_ptr<TreeBudget>& budget) {
    if (own_) own_->tree.countTo(budget);
  }
  const std::shared_ptr<TreeBudget>& budget() const noexcept {
    return own_ ? own_->tree.budget() : host_->budget();
  }

  /// The settings of a copy, which is never read-only.
  DocumentSettings settingsOfCopy() const;

  /// The name as written of elements and attributes in no namespace; null when the document has
  /// none of them. For who writes to the document.
  const TreeName* attributeName(std::string_view strName) {
    auto& content = const_cast<DocumentContent&>(*content_);
    if (strName.empty() || settings.blnReadOnly) return nullptr;
    const auto lngEnds = 2 * static_cast<unsigned char>(strName.front()) +
                         static_cast<unsigned char>(strName.back());
    const TreeName*& name =
        content.attributeNames[(strName.size() + lngEnds) % content.attributeNames.size()];
    if (!name || !isSame(name->strQualified, strName)) {
      name = content.tree.names().find(strName, {});
    }
    return name;
  }

  /// Accounts for text that is about to be written, in place of `lngBefore` bytes that go. Refuses,
  /// with kXmlFailure, to write more than an input may hold.
  void grow(std::size_t lngBytes, std::size_t lngBefore = 0) {
    const std::size_t lngKept = lngWrittenBytes_ - std::min(lngWrittenBytes_, lngBefore);
    if (lngBytes > settings.lngMaxBytes || lngKept > settings.lngMaxBytes - lngBytes) refuseSize();
    lngWrittenBytes_ = lngKept + lngBytes;
  }

  /// To be called before children, attributes or text of `parent`, null for none, change; `ids` is
  /// what comes, goes or changes if it may be or hold an attribute `id`, else null. What stands
  /// nowhere in the document concerns none of its indexes.
  void changing(const TreeNode* parent, const TreeNode* ids) noexcept {
    if (!parent) return;
    auto& content = const_cast<DocumentContent&>(*content_);
    content.libraryTree.changed(parent);
    if (ids && !content.idIndex.isUnwanted()) changingIds(content, parent, ids);
  }

  /// What a selection at `node` needs. `strXPath` tells whether an index would help.
  SelectionContext selectionContext(TreeNode* node, std::string_view strXPath) const;

  /// The first node that a path with steps selects in the document, or null; none when only its
  /// text can tell.
  std::optional<TreeNode*> firstOf(const PathView& path);

  /// Selections know these prefixes from now on.
  void declare(std::string_view strDeclarations);

  /// What a handle points to. Run-time error 91 for Nothing.
  static TreeNode* target(const Node& handle) {
    if (!handle.state_) throw RuntimeError(kObjectNotSet);
    if (!handle.node_) return handle.state_->content().tree.document();
    return static_cast<TreeNode*>(handle.node_);
  }

  /// The same for what only an element has. kXmlFailure for another node.
  static TreeNode* targetElement(const Node& handle) {
    TreeNode* const node = target(handle);
    if (!isElement(node)) refuse("Only an element has attributes.");
    return node;
  }

  static const std::shared_ptr<DocumentState>& stateOf(const Node& handle) { return handle.state_; }

  /// A handle to a node; Nothing for null. The document has no address of its own in a handle: a
  /// load gives it another node.
  static Node handle(const std::shared_ptr<DocumentState>& state, TreeNode* node) {
    if (!node) return {};
    return Node(state, node == state->content().tree.document() ? nullptr : node);
  }

  const DocumentContent& content() const noexcept { return *content_; }

  /// The document in whose content this one is made; null when it has its own.
  const std::shared_ptr<DocumentState>& host() const noexcept { return host_; }

  /// The content to be changed. kXmlFailure for a document that is read-only.
  DocumentContent& changeable() {
    if (settings.blnReadOnly) refuse("The document is read-only.");
    return const_cast<DocumentContent&>(*content_);  // only read-only ones share it with others
  }

  const DocumentSettings settings;
  const bool blnFragment;
  ParseError parseError;
  std::shared_ptr<const SelectionNamespaces> selectionNamespaces;  // null: none were set
  std::vector<std::pair<const void*, KeptModels::Model>> models;   // that were asked for

 private:
  static void changingIds(DocumentContent& content, const TreeNode* parent,
                          const TreeNode* ids) noexcept;
  [[noreturn]] void refuseSize() const;
  void becomeOther(ParseError error);
  const SelectionNamespaces& namespaces() const;

  std::optional<DocumentContent> own_;
  std::shared_ptr<const DocumentContent> shared_;  // of a read-only document, from the cache
  std::shared_ptr<DocumentState> host_;            // of a fragment that is made in its content
  const DocumentContent* content_ = nullptr;

  BoundNames boundNames_;
  std::size_t lngWrittenBytes_ = 0;  // by writes since the content was loaded
};

}  // namespace Varnel_Tolv_XML_Creation
