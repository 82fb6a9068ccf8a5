#include "platform/xpath/IdIndex.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <numeric>

#include "platform/text/ShortText.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

const TreeNode* idOf(const TreeNode* element) {
  const TreeNode* attribute = firstAttribute(element);
  while (attribute && !isSame(attribute->name->strQualified, "id")) attribute = attribute->next;
  return attribute;
}

struct Entry {
  std::size_t lngHash = 0;
  std::string_view strId;
  TreeNode* element = nullptr;

  friend bool operator<(const Entry& left, const Entry& right) {
    if (left.lngHash != right.lngHash) return left.lngHash < right.lngHash;
    return !isSame(left.strId, right.strId) && left.strId < right.strId;
  }
};

/// Entries by their hashes and ids, those of one id in the order that they had. About as many
/// buckets as entries, each for a range of hashes, leave hardly anything to be sorted.
std::vector<Entry> sorted(const std::vector<Entry>& entries) {
  const auto lngBits = static_cast<std::size_t>(std::bit_width(entries.size()));
  const auto bucketOf = [lngBits](const Entry& entry) {
    return entry.lngHash >> (std::numeric_limits<std::size_t>::digits - lngBits);
  };
  std::vector<std::size_t> ends((std::size_t{1} << lngBits) + 1);  // behind each bucket's entries
  for (const Entry& entry : entries) ++ends[bucketOf(entry) + 1];
  std::partial_sum(ends.begin(), ends.end(), ends.begin());
  std::vector<Entry> result(entries.size());
  for (const Entry& entry : entries) result[ends[bucketOf(entry)]++] = entry;
  auto first = result.begin();
  for (const std::size_t lngEnd : ends) {
    const auto last = result.begin() + static_cast<std::ptrdiff_t>(lngEnd);
    if (!std::is_sorted(first, last)) std::stable_sort(first, last);
    first = last;
  }
  return result;
}

}  // namespace

void IdIndex::build(const TreeNode* document) {
  std::vector<Entry> entries;
  for (TreeNode* node = nextBelow(document, document); node; node = nextBelow(node, document)) {
    if (!isElement(node)) continue;
    const TreeNode* const id = idOf(node);
    if (!id) continue;
    const std::string_view strId = valueOf(id);
    entries.push_back({std::hash<std::string_view>{}(strId), strId, node});
  }
  hashes_.clear();
  elements_.clear();
  hashes_.reserve(entries.size());
  elements_.reserve(entries.size());
  if (entries.empty()) return;
  for (const Entry& entry : sorted(entries)) {
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
