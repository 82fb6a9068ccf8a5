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
    Children& children = names[child->name->plain];
    if (++children.lngCount == 1) children.first = child;
  }
  parents_[parent] = std::move(names);
  parent->blnIndexed = true;
}

void ChildNameIndex::prepare(TreeNode* parent, const TreeNode* child) {
  if (!isElement(child)) return;
  if (!parent->blnIndexed) {
    if (parent->lngSize < kManyChildren) return;
    addParent(parent);
  }
  parents_.find(parent)->second.try_emplace(child->name->plain);
}

void ChildNameIndex::added(TreeNode* child) noexcept {
  Children* const children = childrenNamedAs(child);
  if (children == nullptr) return;
  if (children->lngCount == 0 || (children->first && isFirst(child, *children))) {
    children->first = child;
  }
  ++children->lngCount;
}

void ChildNameIndex::removing(const TreeNode* child) noexcept {
  Children* const children = childrenNamedAs(child);
  if (children == nullptr) return;
  --children->lngCount;
  if (children->first == child) children->first = nullptr;
}

/// Finds those firsts below `parent` of which it is not known where they stand, in one walk. Only
/// whoever writes to a document makes them unknown, so no other thread asks meanwhile.
void ChildNameIndex::findFirsts(const TreeNode* parent, Names& names) noexcept {
  for (TreeNode* child = parent->first; child != nullptr; child = child->next) {
    if (!isElement(child)) continue;
    const auto children = names.find(child->name->plain);
    if (children->second.first == nullptr) children->second.first = child;
  }
}

void ChildNameIndex::emptying(TreeNode* parent) noexcept {
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

/// What is known of the name of `child` below its parent, or null.
ChildNameIndex::Children* ChildNameIndex::childrenNamedAs(const TreeNode* child) noexcept {
  if (child->parent == nullptr || !child->parent->blnIndexed || !isElement(child)) return nullptr;
  Names& names = parents_.find(child->parent)->second;
  const auto children = names.find(child->name->plain);
  return children == names.end() ? nullptr : &children->second;
}

std::optional<ChildNameIndex::Match> ChildNameIndex::find(const TreeNode* parent,
                                                          const TreeName* plain) const {
  if (parent->blnIndexed) {
    Names& names = parents_.find(parent)->second;
    const auto children = names.find(plain);
    if (children == names.end()) return Match{};
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
