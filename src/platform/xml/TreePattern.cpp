#include "platform/xml/TreePattern.h"

#include <cstring>
#include <new>
#include <type_traits>

namespace Varnel_Tolv_XML_Creation {

namespace {

static_assert(std::is_trivially_copyable_v<TreeElement> && alignof(TreeElement) <= 8);

std::size_t sizeOf(const TreeNode* node) noexcept {
  return isElement(node) ? sizeof(TreeElement) : sizeof(TreeNode);
}

/// Calls `visit` with each node at and below `top`, and behind an element with what it has as
/// attributes: the order in the image.
template <class Visit>
void forEachNode(const TreeNode* top, Visit visit) {
  for (const TreeNode* node = top; node; node = nextBelow(node, top)) {
    visit(node);
    if (!isElement(node)) continue;
    for (const TreeNode* item = asParent(node)->attributes; item; item = item->next) visit(item);
  }
}

void move(TreeNode*& link, std::uintptr_t lngDistance) noexcept {
  if (link)
    link = reinterpret_cast<TreeNode*>(reinterpret_cast<std::uintptr_t>(link) + lngDistance);
}

}  // namespace

TreePattern::TreePattern(const TreeNode* element, const Places& places, Tree& tree) {
  std::size_t lngBytes = 0;
  forEachNode(element, [&](const TreeNode* node) { lngBytes += sizeOf(node); });
  image_.resize(lngBytes / sizeof(std::uint64_t));

  TreeNode* parent = nullptr;  // the image of that of `node`
  TreeNode** link = nullptr;   // to where the next attribute goes
  const TreeNode* above = element->parent;
  forEachNode(element, [&](const TreeNode* node) {
    TreeNode* const image = add(node, places, tree);
    if (isAttribute(node) || node->kind == NodeKind::declaration) {
      image->parent = parent;
      *link = image;
      link = &image->next;
      return;
    }
    for (; above != node->parent; above = above->parent) parent = parent->parent;
    if (parent) linkNode(parent, image, nullptr);
    if (!isElement(node)) return;
    link = &asParent(image)->attributes;
    parent = image;
    above = node;
  });
}

/// The image of a node, linked with none.
TreeNode* TreePattern::add(const TreeNode* source, const Places& places, Tree& tree) {
  char* const place = reinterpret_cast<char*>(image_.data()) + lngUsed_;
  ++lngNodes_;
  const std::size_t lngOffset = lngUsed_;
  lngUsed_ += sizeOf(source);
  if (isElement(source)) {
    auto* const element = new (place) TreeElement();
    element->kind = NodeKind::element;
    element->name = source->name;
    element->first = nullptr;
    element->lngLine = asParent(source)->lngLine;
    return element;
  }
  auto* const leaf = new (place) TreeNode();
  leaf->kind = source->kind;
  leaf->name = source->name;
  const auto filled = places.find(source);
  if (filled != places.end()) {
    filled_.push_back({lngOffset, filled->second});
    return leaf;
  }
  // What writes over the value of the source must not write over those of copies.
  const std::string_view strValue = valueOf(source);
  leaf->value = source->lngRoom == 0 ? source->value : tree.newValue(strValue);
  leaf->lngSize = source->lngSize;
  lngSharedBytes_ += strValue.size();
  return leaf;
}

std::size_t TreePattern::bytes(std::span<const std::string_view> values) const noexcept {
  std::size_t lngBytes = 0;
  for (const Filled& filled : filled_) lngBytes += values[filled.lngValue].size();
  return lngBytes;
}

TreeNode* TreePattern::copy(std::span<const std::string_view> values, Tree& tree) const {
  char* const copy = tree.newNodes(lngNodes_, lngUsed_, lngSharedBytes_);
  std::memcpy(copy, image_.data(), lngUsed_);
  const std::uintptr_t lngDistance =
      reinterpret_cast<std::uintptr_t>(copy) - reinterpret_cast<std::uintptr_t>(image_.data());
  for (char* at = copy; at != copy + lngUsed_;) {
    auto* const node = reinterpret_cast<TreeNode*>(at);
    move(node->parent, lngDistance);
    move(node->next, lngDistance);
    move(node->prev, lngDistance);
    if (isElement(node)) {
      move(node->first, lngDistance);
      move(asParent(node)->last, lngDistance);
      move(asParent(node)->attributes, lngDistance);
    }
    at += sizeOf(node);
  }
  for (const Filled& place : filled_) {
    auto* const leaf = reinterpret_cast<TreeNode*>(copy + place.lngOffset);
    const std::string_view strValue = values[place.lngValue];
    leaf->value = tree.newValue(strValue);
    leaf->lngSize = static_cast<std::uint32_t>(strValue.size());
  }
  return reinterpret_cast<TreeNode*>(copy);
}

void TreePattern::elementsOf(TreeNode* copy, std::span<TreeNode*> elements) const {
  const auto* const image = reinterpret_cast<const char*>(image_.data());
  for (const Filled& place : filled_) {
    if (place.lngValue >= elements.size()) continue;
    const auto* const leaf = reinterpret_cast<const TreeNode*>(image + place.lngOffset);
    const auto lngElement = reinterpret_cast<const char*>(leaf->parent) - image;
    elements[place.lngValue] =
        reinterpret_cast<TreeNode*>(reinterpret_cast<char*>(copy) + lngElement);
  }
}

}  // namespace Varnel_Tolv_XML_Creation
