#include "platform/xml/ChunkPool.h"

#include <cstddef>
#include <new>
#include <utility>

#if defined(__SANITIZE_ADDRESS__)
#define VARNEL_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VARNEL_ADDRESS_SANITIZER
#endif
#endif
#ifdef VARNEL_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace Varnel_Tolv_XML_Creation {

namespace {

// The address sanitizer tells of uses of a kept chunk as of one that went back to the heap. What a
// chunk begins with leads to the next one, which would seem lost in memory that nobody may read.
constexpr std::size_t kReadable = sizeof(void*);

void markUnused([[maybe_unused]] void* chunk) noexcept {
#ifdef VARNEL_ADDRESS_SANITIZER
  __asan_poison_memory_region(static_cast<char*>(chunk) + kReadable,
                              ChunkPool::kChunkBytes - kReadable);
#endif
}

void markUsed([[maybe_unused]] void* chunk) noexcept {
#ifdef VARNEL_ADDRESS_SANITIZER
  __asan_unpoison_memory_region(static_cast<char*>(chunk) + kReadable,
                                ChunkPool::kChunkBytes - kReadable);
#endif
}

}  // namespace

ChunkPool::~ChunkPool() {
  while (first_) {
    markUsed(first_);
    ::operator delete(std::exchange(first_, first_->next));
  }
}

void* ChunkPool::take() {
  {
    const std::lock_guard lock(mutex_);
    if (first_) {
      markUsed(first_);
      --lngKept_;
      return std::exchange(first_, first_->next);
    }
  }
  return ::operator new(kChunkBytes);
}

void ChunkPool::give(void* chunk) noexcept {
  {
    const std::lock_guard lock(mutex_);
    if (lngKept_ < lngMost_) {
      first_ = new (chunk) Kept{first_};
      markUnused(first_);
      ++lngKept_;
      return;
    }
  }
  ::operator delete(chunk);
}

std::size_t ChunkPool::bytes() const {
  const std::lock_guard lock(mutex_);
  return lngKept_ * kChunkBytes;
}

}  // namespace Varnel_Tolv_XML_Creation
