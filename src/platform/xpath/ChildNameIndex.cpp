#include "platform/xpath/ChildNameIndex.h"

#include <utility>

namespace Varnel_Tolv_XML_Creation {

namespace {

bool isSameNamed(const TreeNode* node, const TreeName* plain) noexcept {
  return isElement(node) && node->name->plain == plain;
}

}  // namespace

void ChildNameIndex::add(TreeNode* document) {
  for (TreeNode* node = document; node != nullptr; node = nextBelow(node, document)) {
    if (isParent(node) && node->lngSize >= kManyChildren) addParent(node);
  }
}

void ChildNameIndex::addParent(TreeNode* parent) {
  Names names;
  for (TreeNode* child = parent->first; child != nullptr; child = child->next) {
    if (!isElement(child)) continue;
    Children& children = names.children[child->name->plain];
    if (++children.lngCount == 1) children.first = child;
  }
  parents_[parent] = std::move(names);
  parent->blnIndexed = true;
}

void ChildNameIndex::prepareMany(TreeNode* parent, const TreeNode* child) {
  if (!parent->blnIndexed) addParent(parent);
  parents_.find(parent)->second.children.try_emplace(child->name->plain);
}

void ChildNameIndex::addedToMany(TreeNode* child) noexcept {
  Names* const names = namesAround(child);
  if (names == nullptr) return;
  const auto found = names->children.find(child->name->plain);
  if (found == names->children.end()) return;
  Children& children = found->second;
  if (children.lngCount == 0 || (children.first && isFirst(child, children))) {
    children.first = child;
  }
  ++children.lngCount;
}

void ChildNameIndex::removing(const TreeNode* child) noexcept {
  ++lngChanges_;
  Names* const names = namesAround(child);
  if (names == nullptr) return;
  const auto found = names->children.find(child->name->plain);
  if (found == names->children.end()) return;
  Children& children = found->second;
  const bool blnUnknown = children.first == nullptr;
  --children.lngCount;
  if (children.first == child) children.first = nullptr;
  const bool blnUnknownNow = children.first == nullptr && children.lngCount > 0;
  names->lngUnknown = names->lngUnknown + (blnUnknownNow ? 1 : 0) - (blnUnknown ? 1 : 0);
}

/// Finds those firsts below `parent` of which it is not known where they stand, in one walk.
void ChildNameIndex::findFirsts(const TreeNode* parent, Names& names) noexcept {
  std::size_t lngUnknown = names.lngUnknown;
  for (TreeNode* child = parent->first; child != nullptr && lngUnknown > 0; child = child->next) {
    if (!isElement(child)) continue;
    Children& children = names.children.find(child->name->plain)->second;
    if (children.first) continue;
    children.first = child;
    --lngUnknown;
  }
  names.lngUnknown = 0;
}

void ChildNameIndex::emptying(TreeNode* parent) noexcept {
  if (parent->first != nullptr) ++lngChanges_;
  if (std::exchange(parent->blnIndexed, false)) parents_.erase(parent);
}

/// Whether `child` stands before the other children of its name. It looks both ways at once, since
/// it is mostly put at the end or beside one of them.
bool ChildNameIndex::isFirst(const TreeNode* child, const Children& others) noexcept {
  const TreeNode* before = child->prev;
  const TreeNode* after = child->next;
  while (before != nullptr && after != nullptr) {
    if (isSameNamed(before, child->name->plain)) return false;
    if (after == others.first) return true;
    before = before->prev;
    after = after->next;
  }
  return before == nullptr;
}

/// What is known of the children of the parent of `child`, an element, or null.
ChildNameIndex::Names* ChildNameIndex::namesAround(const TreeNode* child) noexcept {
  if (child->parent == nullptr || !child->parent->blnIndexed || !isElement(child)) return nullptr;
  return &parents_.find(child->parent)->second;
}

std::optional<ChildNameIndex::Match> ChildNameIndex::find(const TreeNode* parent,
                                                          const TreeName* plain) const {
  if (parent->blnIndexed) {
    Names& names = parents_.find(parent)->second;
    const auto children = names.children.find(plain);
    if (children == names.children.end()) return Match{};
    if (children->second.lngCount != 0 && children->second.first == nullptr) {
      findFirsts(parent, names);
    }
    return Match{children->second.first, children->second.lngCount <= 1};
  }
  Match match;
  if (!isParent(parent)) return match;
  if (parent->lngSize > kManyChildren) return std::nullopt;  // a copy, not written to since
  for (TreeNode* child = parent->first; child != nullptr; child = child->next) {
    if (!isSameNamed(child, plain)) continue;
    match.blnOnly = match.first == nullptr;
    if (!match.blnOnly) break;
    match.first = child;
  }
  return match;
}

}  // namespace Varnel_Tolv_XML_Creation
