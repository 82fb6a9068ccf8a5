#include "platform/xml/Tree.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "platform/text/ShortText.h"
#include "platform/xml/SerialiseXml.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

static_assert(sizeof(TreeNode) == 48 && sizeof(TreeElement) == 72);

TreeNode* rootOf(const TreeNode* document) noexcept {
  TreeNode* child = document->first;
  while (child && !isElement(child)) child = child->next;
  return child;
}

TreeNode* firstAttribute(const TreeNode* node) noexcept {
  if (!isElement(node)) return nullptr;
  TreeNode* attribute = asParent(node)->attributes;
  while (attribute && !isAttribute(attribute)) attribute = attribute->next;
  return attribute;
}

TreeNode* findAttribute(const TreeNode* element, std::string_view strName) noexcept {
  TreeNode* attribute = firstAttribute(element);
  while (attribute && !isSame(attribute->name->strQualified, strName)) attribute = attribute->next;
  return attribute;
}

TreeNode* topOf(TreeNode* node) noexcept {
  while (node->parent) node = node->parent;
  return node;
}

std::string textOf(const TreeNode* node) {
  if (!isParent(node)) {
    return std::string(node->kind == NodeKind::documentType ? std::string_view() : valueOf(node));
  }
  std::string strText;
  for (const TreeNode* below = nextBelow(node, node); below; below = nextBelow(below, node)) {
    if (isCharacterData(below)) strText += valueOf(below);
  }
  return strText;
}

bool hasText(const TreeNode* node) noexcept {
  if (!isParent(node)) return node->kind != NodeKind::documentType && node->lngSize != 0;
  for (const TreeNode* below = nextBelow(node, node); below; below = nextBelow(below, node)) {
    if (isCharacterData(below) && below->lngSize != 0) return true;
  }
  return false;
}

void unlinkNode(TreeNode* node) noexcept {
  if (!node->parent) return;
  TreeElement* const parent = asParent(node->parent);
  if (isAttribute(node)) {
    TreeNode** link = &parent->attributes;
    while (*link != node) link = &(*link)->next;
    *link = node->next;
  } else {
    (node->prev ? node->prev->next : parent->first) = node->next;
    (node->next ? node->next->prev : parent->last) = node->prev;
    --parent->lngSize;
  }
  node->parent = node->next = node->prev = nullptr;
}

void linkAttribute(TreeNode* element, TreeNode* attribute) noexcept {
  TreeNode** link = &asParent(element)->attributes;
  while (*link) link = &(*link)->next;
  *link = attribute;
  attribute->parent = element;
}

Tree::Tree(std::size_t lngExpected, std::size_t lngMost, std::size_t lngMostNodes,
           std::shared_ptr<ChunkPool> pool)
    : arena_(lngExpected, lngMost, std::move(pool)),
      lngMostNodes_(lngMostNodes),
      lngGranted_(lngMostNodes),
      document_(newDocument()) {}

// Of a budget a document takes as many nodes again as it has, up to some: it is asked seldom, and
// what is taken in vain stays small beside what is used.
void Tree::grantNodes() {
  constexpr std::size_t kFewest = 16;
  constexpr std::size_t kMost = 1024;
  if (lngNodes_ == lngMostNodes_) throw RuntimeError(kXmlFailure, kTooManyNodes);
  const std::size_t lngWanted = std::clamp(lngNodes_, kFewest, kMost);
  lngGranted_ += arena_.share().takeNodes(std::min(lngWanted, lngMostNodes_ - lngNodes_));
}

bool Tree::share(std::shared_ptr<const Tree> base) noexcept {
  if (names_.parts() != 0) return false;
  names_.startFrom(base->names_);
  lngLongest_ = std::max(lngLongest_, base->lngLongest_);
  blnOther_ |= base->blnOther_;
  base_ = std::move(base);
  return true;
}

void Tree::countTo(const std::shared_ptr<TreeBudget>& budget) {
  if (budget == this->budget()) return;
  TreeShare share(budget);
  share.takeBytes(arena_.taken());
  if (share.takeNodes(lngNodes_) != lngNodes_) throw BudgetExceeded(kTooManyNodesOfRun);
  arena_.share() = std::move(share);
  lngGranted_ = budget ? lngNodes_ : lngMostNodes_;
}

void Tree::tooManyAttributes() { throw RuntimeError(kXmlFailure, kTooManyAttributes); }

TreeNode* Tree::newDocument() {
  blnEarlier_ = blnEarlier_ || lngNodes_ != 0;
  arena_.startCount();
  names_.startCount();
  lngNodes_ = 0;
  lngShared_ = 0;
  auto* const document = arena_.make<TreeElement>();
  document->kind = NodeKind::document;
  document->first = nullptr;
  return document;
}

TreeNode* Tree::newElement(const TreeName* name) {
  auto* const element = arena_.make<TreeElement>();
  countNode();
  element->kind = NodeKind::element;
  element->name = name;
  element->first = nullptr;
  return element;
}

TreeNode* Tree::newLeaf(NodeKind kind, const TreeName* name, std::string_view strValue) {
  auto* const leaf = arena_.make<TreeNode>();
  countNode();
  leaf->kind = kind;
  leaf->name = name;
  leaf->value = newValue(strValue);
  leaf->lngSize = static_cast<std::uint32_t>(strValue.size());
  if (kind == NodeKind::attribute) {
    blnOther_ |= name->blnColon;
  } else {
    blnOther_ |= kind == NodeKind::cdata || kind == NodeKind::documentType;
  }
  return leaf;
}

char* Tree::newNodes(std::size_t lngCount, std::size_t lngBytes, std::size_t lngShared) {
  char* const nodes = arena_.objects(lngBytes);
  for (std::size_t lngNode = 0; lngNode < lngCount; ++lngNode) countNode();
  lngShared_ += lngShared;
  return nodes;
}

TreeNode* Tree::copyLeaf(const TreeNode* leaf) {
  if (leaf->lngRoom != 0) return newLeaf(leaf->kind, leaf->name, valueOf(leaf));
  return newLeafWith(leaf->kind, leaf->name, valueOf(leaf));
}

void Tree::setValue(TreeNode* leaf, std::string_view strValue) {
  if (strValue.size() > std::numeric_limits<std::uint32_t>::max() / 2) throw std::bad_alloc();
  // Only room that was made here is written to again, with its size known to be a power of two, so
  // each new room is at least twice as large as the one before it.
  if (leaf->lngRoom == 0 || strValue.size() > std::size_t{1} << leaf->lngRoom) {
    const std::size_t lngBytes = std::bit_ceil(std::max<std::size_t>(strValue.size(), 2));
    leaf->value = arena_.room(lngBytes);
    leaf->lngRoom = static_cast<std::uint8_t>(std::countr_zero(lngBytes));
  }
  if (!strValue.empty()) {
    std::memmove(const_cast<char*>(leaf->value), strValue.data(), strValue.size());
  }
  leaf->lngSize = static_cast<std::uint32_t>(strValue.size());
  lngLongest_ = std::max(lngLongest_, strValue.size());
}

// The text itself is made only where it might be too much. First the nodes made and the memory
// taken tell that it is not: what the nodes left of it holds their values, unless those are counted
// as shared, and no byte of a value becomes more than six. Then the sum over the nodes does,
// without a look into their values.
void Tree::requireReadable(std::size_t lngMaxBytes) const {
  constexpr std::size_t kLongestReference = 6;
  constexpr std::size_t kMarkup = 24;  // around a name or a value, and of a declaration
  const std::size_t lngValues = arena_.mostGivenOut() - lngNodes_ * sizeof(TreeNode) + lngShared_;
  const std::size_t lngMost =
      lngValues * kLongestReference + lngNodes_ * (3 * names_.longest() + kMarkup);
  if (!blnManyAttributes_ && !blnEarlier_ && lngMost <= lngMaxBytes) return;

  const auto declared = [](const TreeName* name) {
    return name ? name->prefix->strText.size() + kLongestReference * name->uri->strText.size() : 0;
  };
  std::size_t lngBytes = 0;
  for (const TreeNode* node = document_; node; node = nextBelow(node, document_)) {
    lngBytes += kMarkup + (node->name ? 2 * node->name->strQualified.size() : 0);
    if (!isParent(node)) lngBytes += kLongestReference * node->lngSize;
    if (!isElement(node)) continue;
    lngBytes += declared(node->name);
    for (const TreeNode* item = asParent(node)->attributes; item; item = item->next) {
      lngBytes += kMarkup + item->name->strQualified.size() + declared(item->name) +
                  kLongestReference * item->lngSize;
    }
  }
  if (!blnManyAttributes_ && lngBytes <= lngMaxBytes) return;
  requireReadableXml(*this, document_, lngMaxBytes);
}

}  // namespace Varnel_Tolv_XML_Creation
