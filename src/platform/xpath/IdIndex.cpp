#include "platform/xpath/IdIndex.h"

#include <algorithm>
#include <functional>

namespace Varnel_Tolv_XML_Creation {

namespace {

const TreeNode* idOf(const TreeNode* element) {
  const TreeNode* attribute = firstAttribute(element);
  while (attribute && attribute->name->strQualified != "id") attribute = attribute->next;
  return attribute;
}

struct Entry {
  std::size_t lngHash;
  std::string_view strId;
  std::size_t lngPlace;  // in document order
  TreeNode* element;

  friend bool operator<(const Entry& left, const Entry& right) {
    if (left.lngHash != right.lngHash) return left.lngHash < right.lngHash;
    const int lngOrder = left.strId.compare(right.strId);
    return lngOrder != 0 ? lngOrder < 0 : left.lngPlace < right.lngPlace;
  }
};

}  // namespace

void IdIndex::build(const TreeNode* document) {
  std::vector<Entry> entries;
  for (TreeNode* node = nextBelow(document, document); node; node = nextBelow(node, document)) {
    if (!isElement(node)) continue;
    const TreeNode* id = idOf(node);
    if (!id) continue;
    const std::string_view strId = valueOf(id);
    entries.push_back({std::hash<std::string_view>{}(strId), strId, entries.size(), node});
  }
  std::sort(entries.begin(), entries.end());
  hashes_.clear();
  elements_.clear();
  hashes_.reserve(entries.size());
  elements_.reserve(entries.size());
  for (const Entry& entry : entries) {
    hashes_.push_back(entry.lngHash);
    elements_.push_back(entry.element);
  }
}

std::span<TreeNode* const> IdIndex::find(std::string_view strId) const {
  const auto [lower, upper] =
      std::equal_range(hashes_.begin(), hashes_.end(), std::hash<std::string_view>{}(strId));
  auto first = elements_.begin() + (lower - hashes_.begin());
  auto last = elements_.begin() + (upper - hashes_.begin());
  // Other values of the same hash, should there be any, stand before or behind.
  while (first != last && valueOf(idOf(*first)) != strId) ++first;
  while (first != last && valueOf(idOf(*(last - 1))) != strId) --last;
  return {first, last};
}

}  // namespace Varnel_Tolv_XML_Creation
