#include "platform/dom/DocumentState.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The place of a detached node among them, counted from 1, is kept in the node, where 0 tells that
/// it is not detached.
std::size_t placeOf(const xmlNode* node) {
  return reinterpret_cast<std::uintptr_t>(node->_private);
}

void setPlace(xmlNode* node, std::size_t place) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): a number, in the only place that a node has for one
  node->_private = reinterpret_cast<void*>(static_cast<std::uintptr_t>(place));
}

/// Whether a selection might look for an id all over the document.
bool looksForId(std::string_view strXPath) {
  const bool blnWide = strXPath.starts_with('/') || strXPath.find("//") != std::string_view::npos;
  return blnWide && strXPath.find("@id") != std::string_view::npos;
}

}  // namespace

DocumentState::DocumentState(const DocumentSettings& documentSettings, bool blnTopOnly)
    : settings(documentSettings), blnFragment(blnTopOnly) {}

DocumentState::~DocumentState() { freeDetached(); }

void DocumentState::freeDetached() noexcept {
  for (xmlNode* node : detached_) OwnedXmlNode{node};
  detached_.clear();
}

void DocumentState::replaceTree(OwnedXmlDoc newDocument, bool blnHandlesExist) {
  auto index = std::make_unique<IdIndex>();
  index->build(newDocument.get());
  ChildNameIndex newChildNames(newDocument.get());
  if (blnHandlesExist) earlier_.reserve(earlier_.size() + 1);

  idIndex.drop();
  lngWrittenBytes_ = 0;
  std::swap(document, newDocument);
  if (blnHandlesExist) {
    earlier_.push_back(std::move(newDocument));
  } else {
    freeDetached();
    earlier_.clear();
  }
  idIndex.set(std::move(index));
  childNames = std::move(newChildNames);
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

void DocumentState::reserveDetached(std::size_t lngMore) {
  const std::size_t lngNeeded = detached_.size() + lngMore;
  if (lngNeeded > detached_.capacity()) {
    detached_.reserve(std::max(lngNeeded, detached_.capacity() * 2));
  }
}

void DocumentState::detach(xmlNode* node) noexcept {
  if (placeOf(node) != 0) return;  // it is so already
  childNames.removing(node);
  unlinkNode(node);
  detached_.push_back(node);
  setPlace(node, detached_.size());
}

void DocumentState::release(xmlNode* node) noexcept {
  if (const std::size_t place = placeOf(node); place != 0) {
    xmlNode* const last = detached_.back();
    detached_[place - 1] = last;
    setPlace(last, place);
    detached_.pop_back();
    setPlace(node, 0);
  }
  childNames.removing(node);
  unlinkNode(node);
}

SelectionContext DocumentState::selectionContext(xmlNode* node, std::string_view strXPath) const {
  const xmlNode* top = topOf(node);
  SelectionContext context;
  context.node = node;
  static const SelectionNamespaces kNone;
  context.namespaces = selectionNamespaces ? selectionNamespaces.get() : &kNone;
  if (top == asNode(document.get())) {
    context.index = idIndex.get(document.get(), looksForId(strXPath));
  }
  context.childNames = &childNames;
  context.blnFragment = blnFragment || !isDocument(top);
  return context;
}

xmlNode* DocumentState::target(const Node& handle) {
  if (!handle.state_) throw RuntimeError(kObjectNotSet);
  if (!handle.node_) return asNode(handle.state_->document.get());
  return static_cast<xmlNode*>(handle.node_);
}

xmlNode* DocumentState::targetElement(const Node& handle) {
  xmlNode* node = target(handle);
  if (!isElement(node)) refuse("Only an element has attributes.");
  return node;
}

const std::shared_ptr<DocumentState>& DocumentState::stateOf(const Node& handle) {
  return handle.state_;
}

Node DocumentState::handle(const std::shared_ptr<DocumentState>& state, xmlNode* node) {
  if (!node) return {};
  // The document has no address of its own in a handle: a load gives it another tree.
  return Node(state, node == asNode(state->document.get()) ? nullptr : node);
}

OwnedXmlNode DocumentState::newElement(std::string_view strName, xmlNs* ns) const {
  const std::string strTerminated(strName);
  OwnedXmlNode element(
      xmlNewDocNode(document.get(), nullptr, xmlText(strTerminated.c_str()), nullptr));
  if (!element || !element->name) throw std::bad_alloc();
  element->ns = ns;
  return element;
}

void refuse(std::string_view strReason) { throw RuntimeError(kXmlFailure, strReason); }

}  // namespace Varnel_Tolv_XML_Creation
