#include "platform/xpath/ChildNameIndex.h"

#include "platform/xml/XmlTree.h"
#include "platform/xpath/PathCondition.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

bool hasManyChildren(const xmlNode* parent) {
  std::size_t lngCount = 0;
  for (const xmlNode* child = parent->children; child != nullptr; child = child->next) {
    if (++lngCount >= ChildNameIndex::kManyChildren) return true;
  }
  return false;
}

}  // namespace

ChildNameIndex::ChildNameIndex(const xmlDoc* document) {
  const auto* top = reinterpret_cast<const xmlNode*>(document);
  for (const xmlNode* node = top; node != nullptr; node = nextBelow(node, top)) {
    if (firstChild(node) != nullptr && hasManyChildren(node)) parents_[node] = namesBelow(node);
  }
}

ChildNameIndex::Name ChildNameIndex::nameOf(const xmlNode* element) noexcept {
  const xmlNs* ns = element->ns;
  return {ns != nullptr, ns != nullptr ? view(ns->href) : std::string_view(), view(element->name)};
}

ChildNameIndex::Names ChildNameIndex::namesBelow(const xmlNode* parent) {
  Names names;
  for (xmlNode* child = parent->children; child != nullptr; child = child->next) {
    if (!isElement(child)) continue;
    Children& children = names[nameOf(child)];
    if (++children.lngCount == 1) children.first = child;
  }
  return names;
}

void ChildNameIndex::prepare(const xmlNode* parent, const xmlNode* child) {
  if (!isElement(child)) return;
  auto found = parents_.find(parent);
  if (found == parents_.end()) {
    if (!hasManyChildren(parent)) return;
    found = parents_.emplace(parent, namesBelow(parent)).first;
  }
  found->second.try_emplace(nameOf(child));
}

void ChildNameIndex::added(xmlNode* child) noexcept {
  Children* const children = childrenNamedAs(child);
  if (children == nullptr) return;
  if (children->lngCount == 0 || isFirst(child, *children)) children->first = child;
  ++children->lngCount;
}

void ChildNameIndex::removing(const xmlNode* child) noexcept {
  Children* const children = childrenNamedAs(child);
  if (children == nullptr) return;
  --children->lngCount;
  if (children->first != child) return;
  xmlNode* next = nullptr;
  if (children->lngCount != 0) {
    const Name name = nameOf(child);
    next = child->next;
    while (!isElement(next) || nameOf(next) != name) next = next->next;
  }
  children->first = next;
}

/// Whether `child` stands before the other children of its name. It looks both ways at once, since
/// it is mostly put at the end or beside one of them.
bool ChildNameIndex::isFirst(const xmlNode* child, const Children& others) noexcept {
  const Name name = nameOf(child);
  const xmlNode* before = child->prev;
  const xmlNode* after = child->next;
  while (before != nullptr && after != nullptr) {
    if (isElement(before) && nameOf(before) == name) return false;
    if (after == others.first) return true;
    before = before->prev;
    after = after->next;
  }
  return before == nullptr;
}

/// What is known of the name of `child` below its parent, or null.
ChildNameIndex::Children* ChildNameIndex::childrenNamedAs(const xmlNode* child) noexcept {
  if (child->parent == nullptr || !isElement(child)) return nullptr;
  const auto parent = parents_.find(child->parent);
  if (parent == parents_.end()) return nullptr;
  const auto children = parent->second.find(nameOf(child));
  return children == parent->second.end() ? nullptr : &children->second;
}

std::optional<ChildNameIndex::Match> ChildNameIndex::find(const xmlNode* parent,
                                                          const NameTest& name) const {
  const auto indexed = parents_.find(parent);
  if (indexed != parents_.end()) {
    const auto children = indexed->second.find({name.blnPrefixed, name.strUri, name.strName});
    if (children == indexed->second.end()) return Match{};
    return Match{children->second.first, children->second.lngCount <= 1};
  }
  Match match;
  std::size_t lngCount = 0;
  for (xmlNode* child = firstChild(parent); child != nullptr; child = child->next) {
    if (++lngCount > kManyChildren) return std::nullopt;  // a copied parent, not written to since
    if (!hasName(child, name)) continue;
    if (match.first != nullptr) {
      match.blnOnly = false;
      return match;
    }
    match.first = child;
  }
  return match;
}

}  // namespace Varnel_Tolv_XML_Creation
