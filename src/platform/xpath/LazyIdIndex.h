#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "platform/xpath/IdIndex.h"

namespace Varnel_Tolv_XML_Creation {

/// The id index of a document while no element with an attribute `id` comes, goes or changes it.
/// Any number of threads may ask for it; only who writes to the document sets or drops it.
class LazyIdIndex {
 public:
  /// The index of a tree that was just loaded.
  void set(std::unique_ptr<const IdIndex> index) noexcept;

  /// To be called before anything changes that the index tells of or refers to.
  void drop() noexcept;

  /// The index of `document`, or null when there is none. One is built at the second wish since it
  /// was dropped: a document whose ids change after each selection never pays for it.
  const IdIndex* get(const TreeNode* document, bool blnWanted) const {
    const IdIndex* const ready = ready_.load(std::memory_order_acquire);
    return ready || !blnWanted ? ready : wish(document);
  }

  /// For who writes to the document: whether nobody wished for one since it was dropped.
  bool isUnwanted() const noexcept { return !index_ && !blnWantedBefore_; }

 private:
  const IdIndex* wish(const TreeNode* document) const;

  mutable std::atomic<const IdIndex*> ready_ = nullptr;
  mutable std::mutex mutex_;  // guards the two below, except against the writer
  mutable std::unique_ptr<const IdIndex> index_;
  mutable bool blnWantedBefore_ = false;
};

}  // namespace Varnel_Tolv_XML_Creation
