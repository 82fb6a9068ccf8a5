#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "platform/xml/ChunkPool.h"
#include "platform/xml/TreeBudget.h"
#include "platform/xml/TreeLimits.h"

namespace Varnel_Tolv_XML_Creation {

/// Memory for what lives and goes together: taken piece by piece from a few large chunks, given
/// back all at once. A piece costs the move of a pointer.
class Arena {
 public:
  /// `lngExpected` bytes will be wanted at least; it makes the first chunk large enough.
  /// `lngMost` may be taken at most. The largest chunks come from `pool` and go back to it; null:
  /// from the heap.
  explicit Arena(std::size_t lngExpected = 0, std::size_t lngMost = kMaxTreeBytes,
                 std::shared_ptr<ChunkPool> pool = nullptr) noexcept
      : lngNextChunk_(lngExpected), lngMost_(lngMost), pool_(std::move(pool)) {}
  ~Arena();
  Arena(Arena&& other) noexcept;
  Arena& operator=(Arena&& other) noexcept;

  /// Begins to count what is taken: as much as at first may be taken from here on.
  void startCount() noexcept {
    lngTaken_ = 0;
    lngLeft_ = static_cast<std::size_t>(end_ - cursor_);
  }

  /// The bytes of the chunks that were taken since it counts; of those of the pool only what was
  /// asked for, in pieces of 16 KiB.
  std::size_t taken() const noexcept { return lngTaken_; }

  /// At most so many bytes were given out since: what was left of the chunk before counts too.
  std::size_t mostGivenOut() const noexcept { return lngTaken_ + lngLeft_; }

  const std::shared_ptr<ChunkPool>& pool() const noexcept { return pool_; }

  /// What it takes of a budget. Whoever gives it another has that pay for what is taken already.
  TreeShare& share() noexcept { return share_; }
  const TreeShare& share() const noexcept { return share_; }

  /// A new object of these parts, which is never destroyed. std::bad_alloc when there is no memory,
  /// kXmlFailure when too much was taken, as for all here.
  template <class Type, class... Parts>
  Type* make(Parts&&... parts) {
    return new (take(sizeof(Type), alignof(Type))) Type{std::forward<Parts>(parts)...};
  }

  /// `lngCount` zero pointers.
  template <class Type>
  Type** pointers(std::size_t lngCount) {
    return new (take(lngCount * sizeof(Type*), alignof(Type*))) Type* [lngCount] {};
  }

  /// Room for objects, aligned as any pointer.
  char* objects(std::size_t lngBytes) { return static_cast<char*>(take(lngBytes, alignof(void*))); }

  /// Room for a text.
  char* room(std::size_t lngBytes) { return static_cast<char*>(take(lngBytes, 1)); }

  /// A copy with a NUL behind it.
  std::string_view copy(std::string_view strText);

 private:
  struct Chunk {
    Chunk* before;
    bool blnOfPool;
  };

  void* take(std::size_t lngBytes, std::size_t lngAlignment) {
    const std::size_t lngGap = -reinterpret_cast<std::size_t>(cursor_) & (lngAlignment - 1);
    if (static_cast<std::size_t>(end_ - cursor_) < lngGap + lngBytes) return takeNew(lngBytes);
    char* const piece = cursor_ + lngGap;
    cursor_ = piece + lngBytes;
    return piece;
  }
  void* takeNew(std::size_t lngBytes);
  void count(std::size_t lngBytes);

  Chunk* last_ = nullptr;
  char* cursor_ = nullptr;
  char* end_ = nullptr;       // of what is counted of the chunk in use
  char* chunkEnd_ = nullptr;  // of that chunk
  std::size_t lngNextChunk_;
  std::size_t lngMost_;
  std::size_t lngTaken_ = 0;
  std::size_t lngLeft_ = 0;
  std::shared_ptr<ChunkPool> pool_;
  TreeShare share_;
};

}  // namespace Varnel_Tolv_XML_Creation
