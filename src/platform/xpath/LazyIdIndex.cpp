#include "platform/xpath/LazyIdIndex.h"

#include <utility>

namespace Varnel_Tolv_XML_Creation {

void LazyIdIndex::set(std::unique_ptr<const IdIndex> index) noexcept {
  index_ = std::move(index);
  ready_.store(index_.get(), std::memory_order_release);
}

void LazyIdIndex::drop() noexcept {
  ready_.store(nullptr, std::memory_order_release);
  index_.reset();
  blnWantedBefore_ = false;
}

const IdIndex* LazyIdIndex::wish(const TreeNode* document) const {
  const std::lock_guard lock(mutex_);
  if (index_) return index_.get();
  if (!std::exchange(blnWantedBefore_, true)) return nullptr;
  auto index = std::make_unique<IdIndex>();
  index->build(document);
  index_ = std::move(index);
  ready_.store(index_.get(), std::memory_order_release);
  return index_.get();
}

}  // namespace Varnel_Tolv_XML_Creation
