#include "platform/xml/ChunkPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <thread>
#include <vector>

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(ChunkPool, GivesTheChunkThatWasGivenLast) {
  ChunkPool pool(3 * ChunkPool::kChunkBytes);
  void* const first = pool.take();
  void* const second = pool.take();
  EXPECT_NE(first, second);
  EXPECT_EQ(pool.bytes(), 0);
  pool.give(first);
  pool.give(second);
  EXPECT_EQ(pool.bytes(), 2 * ChunkPool::kChunkBytes);
  EXPECT_EQ(pool.take(), second);
  EXPECT_EQ(pool.take(), first);
  EXPECT_EQ(pool.bytes(), 0);
  pool.give(first);
  pool.give(second);
}

TEST(ChunkPool, KeepsNoMoreThanItMay) {
  const struct {
    std::size_t lngMost, lngKept;
  } cases[] = {
      {0, 0},
      {ChunkPool::kChunkBytes - 1, 0},
      {ChunkPool::kChunkBytes, 1},
      {3 * ChunkPool::kChunkBytes - 1, 2},
      {100 * ChunkPool::kChunkBytes, 5},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.lngMost);
    ChunkPool pool(c.lngMost);
    std::vector<void*> colChunks(5);
    for (void*& chunk : colChunks) chunk = pool.take();
    for (void* const chunk : colChunks) pool.give(chunk);
    EXPECT_EQ(pool.bytes(), c.lngKept * ChunkPool::kChunkBytes);
  }
}

// Whoever has a chunk has it alone.
TEST(ChunkPool, GivesNoChunkToTwoThreads) {
  ChunkPool pool(4 * ChunkPool::kChunkBytes);
  std::atomic<int> lngShared = 0;
  const auto use = [&](unsigned char letter) {
    for (int lngTime = 0; lngTime < 2000; ++lngTime) {
      std::vector<unsigned char*> colChunks(3);
      for (unsigned char*& chunk : colChunks) {
        chunk = static_cast<unsigned char*>(pool.take());
        std::memset(chunk, letter, 100);
      }
      for (unsigned char* const chunk : colChunks) {
        if (chunk[0] != letter || chunk[99] != letter) ++lngShared;
        pool.give(chunk);
      }
    }
  };
  std::thread one(use, 'a');
  std::thread two(use, 'b');
  one.join();
  two.join();
  EXPECT_EQ(lngShared, 0);
  EXPECT_LE(pool.bytes(), 4 * ChunkPool::kChunkBytes);
  EXPECT_GE(pool.bytes(), 3 * ChunkPool::kChunkBytes);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
