#pragma once

#include <cstddef>
#include <mutex>

namespace Varnel_Tolv_XML_Creation {

/// The largest chunks of arenas, kept when an arena goes for the arenas to come. Memory that goes
/// back to the heap after each run may go on to the system, which then takes a page fault for each
/// page of the next run. Any number of threads may use it.
class ChunkPool {
 public:
  /// The bytes of each chunk.
  static constexpr std::size_t kChunkBytes = (std::size_t{64} << 10) + 2 * sizeof(void*);

  /// It keeps `lngMostBytes` at most.
  explicit ChunkPool(std::size_t lngMostBytes) noexcept : lngMost_(lngMostBytes / kChunkBytes) {}
  ~ChunkPool();
  ChunkPool(const ChunkPool&) = delete;
  ChunkPool& operator=(const ChunkPool&) = delete;

  /// A chunk: the one that was given last, which the processor's caches may still hold, or a new
  /// one. std::bad_alloc when there is no memory.
  void* take();

  /// Takes over a chunk that `take` gave.
  void give(void* chunk) noexcept;

  /// What it keeps.
  std::size_t bytes() const;

 private:
  struct Kept {
    Kept* next;
  };

  const std::size_t lngMost_;
  mutable std::mutex mutex_;  // guards what follows
  Kept* first_ = nullptr;
  std::size_t lngKept_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
