#include "platform/dom/DocumentState.h"

#include <algorithm>
#include <new>
#include <utility>

#include "platform/xml/LoadTree.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// Whether a selection might look for an id all over the document.
bool looksForId(std::string_view strXPath) {
  const bool blnWide = strXPath.starts_with('/') || strXPath.find("//") != std::string_view::npos;
  return blnWide && strXPath.find("@id") != std::string_view::npos;
}

}  // namespace

DocumentState::DocumentState(const DocumentSettings& documentSettings, bool blnTopOnly)
    : settings(documentSettings), blnFragment(blnTopOnly) {}

bool DocumentState::load(std::optional<std::string_view> strText, XmlEncoding encoding,
                         ParseError error, bool blnHandlesExist) {
  // All that can fail comes first.
  Tree fresh(strText && !blnHandlesExist ? strText->size() : 0);
  Tree& target = blnHandlesExist ? tree : fresh;
  TreeNode* document = strText ? loadTree(target, *strText, encoding, error) : nullptr;
  const bool blnLoaded = document != nullptr;
  if (!blnLoaded) {
    if (!blnHandlesExist) fresh = Tree();  // what was read of it may be much
    document = target.newDocument();
  }
  auto index = std::make_unique<IdIndex>();
  index->build(document);
  ChildNameIndex freshNames;
  (blnHandlesExist ? childNames : freshNames).add(document);

  idIndex.drop();
  libraryTree.drop();
  target.setDocument(document);
  if (!blnHandlesExist) {
    tree = std::move(fresh);
    childNames = std::move(freshNames);
  }
  idIndex.set(std::move(index));
  parseError = std::move(error);
  lngWrittenBytes_ = 0;
  return blnLoaded;
}

bool DocumentState::givesNothing(DomOperation operation) const {
  return Varnel_Tolv_XML_Creation::givesNothing(settings.faults, operation);
}

void DocumentState::mayFail(DomOperation operation) const {
  Varnel_Tolv_XML_Creation::mayFail(settings.faults, operation);
}

void DocumentState::grow(std::size_t lngBytes, std::size_t lngBefore) {
  const std::size_t lngKept = lngWrittenBytes_ - std::min(lngWrittenBytes_, lngBefore);
  if (lngBytes > settings.lngMaxBytes || lngKept > settings.lngMaxBytes - lngBytes) {
    refuse("The document is larger than " + std::to_string(settings.lngMaxBytes) + " bytes.");
  }
  lngWrittenBytes_ = lngKept + lngBytes;
}

void DocumentState::changing(const TreeNode* parent, bool blnIds) noexcept {
  libraryTree.changed(parent);
  if (blnIds) idIndex.drop();
}

SelectionContext DocumentState::selectionContext(TreeNode* node, std::string_view strXPath) const {
  const TreeNode* top = topOf(node);
  static const SelectionNamespaces kNone;
  SelectionContext context;
  context.tree = &tree;
  context.node = node;
  context.namespaces = selectionNamespaces ? selectionNamespaces.get() : &kNone;
  if (top == tree.document()) {
    context.index = idIndex.get(top, looksForId(strXPath));
    context.libraryTree = &libraryTree;
  }
  context.childNames = &childNames;
  context.blnFragment = blnFragment || !isDocument(top);
  return context;
}

TreeNode* DocumentState::target(const Node& handle) {
  if (!handle.state_) throw RuntimeError(kObjectNotSet);
  if (!handle.node_) return handle.state_->tree.document();
  return static_cast<TreeNode*>(handle.node_);
}

TreeNode* DocumentState::targetElement(const Node& handle) {
  TreeNode* node = target(handle);
  if (!isElement(node)) refuse("Only an element has attributes.");
  return node;
}

const std::shared_ptr<DocumentState>& DocumentState::stateOf(const Node& handle) {
  return handle.state_;
}

Node DocumentState::handle(const std::shared_ptr<DocumentState>& state, TreeNode* node) {
  if (!node) return {};
  // The document has no address of its own in a handle: a load gives it another node.
  return Node(state, node == state->tree.document() ? nullptr : node);
}

void refuse(std::string_view strReason) { throw RuntimeError(kXmlFailure, strReason); }

}  // namespace Varnel_Tolv_XML_Creation
