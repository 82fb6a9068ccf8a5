#include "platform/xml/Arena.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/xml/TreeBudget.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

void expectPiecesThatDoNotOverlap(Arena arena) {
  std::vector<std::pair<char*, std::size_t>> colPieces;
  for (std::size_t lngBytes : {1, 7, 100, 5000, 3, 0, 70'000, 200, 1'000'000, 8}) {
    for (int piece = 0; piece < 50; ++piece) {
      char* const room = arena.room(lngBytes);
      std::fill_n(room, lngBytes, static_cast<char>(colPieces.size() % 100));
      colPieces.emplace_back(room, lngBytes);
      const auto place = reinterpret_cast<std::uintptr_t>(arena.make<void*>());
      EXPECT_EQ(place % alignof(void*), 0U);
    }
  }
  for (std::size_t piece = 0; piece < colPieces.size(); ++piece) {
    const auto [room, lngBytes] = colPieces[piece];
    EXPECT_EQ(std::count(room, room + lngBytes, static_cast<char>(piece % 100)),
              static_cast<std::ptrdiff_t>(lngBytes));
  }
}

TEST(Arena, GivesPiecesThatDoNotOverlap) {
  expectPiecesThatDoNotOverlap(Arena());
  const auto pool = std::make_shared<ChunkPool>(2 * ChunkPool::kChunkBytes);
  expectPiecesThatDoNotOverlap(Arena(0, kMaxTreeBytes, pool));
}

TEST(Arena, KeepsWhatItGaveWhenItMoves) {
  Arena arena;
  const std::string_view strText = arena.copy("text");
  Arena other = std::move(arena);
  EXPECT_EQ(strText, "text");
  EXPECT_EQ(other.copy("more"), "more");
  EXPECT_EQ(arena.copy("again"), "again");  // NOLINT(bugprone-use-after-move): it is empty
}

TEST(Arena, GivesNoMoreThanItMay) {
  Arena arena(0, 100'000);
  arena.room(60'000);
  try {
    arena.room(60'000);
    FAIL() << "It gave too much.";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kXmlFailure);
    EXPECT_EQ(error.description(), "The document takes more than 1 GiB of memory.");
  }
  Arena other = std::move(arena);
  EXPECT_THROW(other.room(60'000), RuntimeError);
  other.room(30'000);
  EXPECT_THROW(
      {
        for (int piece = 0; piece < 100'000; ++piece) other.room(1);
      },
      RuntimeError);
  other.startCount();
  other.room(60'000);
  EXPECT_THROW(other.room(SIZE_MAX), RuntimeError);
}

TEST(Arena, TakesALargestChunkOfAPoolForASmallerOne) {
  const struct {
    std::size_t lngExpected, lngChunks;
  } cases[] = {{8'000, 0}, {16'383, 0}, {16'384, 1}, {60'000, 1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.lngExpected);
    const auto pool = std::make_shared<ChunkPool>(2 * ChunkPool::kChunkBytes);
    { Arena(c.lngExpected, kMaxTreeBytes, pool).room(1); }
    EXPECT_EQ(pool->bytes(), c.lngChunks * ChunkPool::kChunkBytes);
  }
}

TEST(Arena, CountsOfAChunkOfAPoolWhatIsAskedFor) {
  const struct {
    std::size_t lngBytes, lngTaken;
  } cases[] = {{1, 16'384},      {16'384, 16'384}, {16'385, 32'768},
               {40'000, 49'152}, {65'536, 65'536}, {65'537, 81'920}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.lngBytes);
    const auto pool = std::make_shared<ChunkPool>(2 * ChunkPool::kChunkBytes);
    const auto budget = std::make_shared<TreeBudget>(0, c.lngTaken);
    Arena arena(16'384, kMaxTreeBytes, pool);
    arena.share() = TreeShare(budget);
    for (std::size_t lngByte = 0; lngByte < c.lngBytes; ++lngByte) arena.room(1);
    EXPECT_EQ(arena.taken(), c.lngTaken);
    EXPECT_THROW(arena.room(c.lngTaken - c.lngBytes + 1), BudgetExceeded);
  }
}

TEST(Arena, TakesItsLargestChunksFromAPool) {
  const auto pool = std::make_shared<ChunkPool>(100 * ChunkPool::kChunkBytes);
  const auto fill = [](Arena& arena) {
    for (int piece = 0; piece < 10'000; ++piece) arena.room(100);  // some 15 of 64 KiB
    arena.room(200'000);                                           // has one of its own
  };
  {
    Arena arena(0, kMaxTreeBytes, pool);
    fill(arena);
    Arena other = std::move(arena);
    fill(other);
    EXPECT_EQ(pool->bytes(), 0);
  }
  const std::size_t lngKept = pool->bytes();
  EXPECT_GT(lngKept, 25 * ChunkPool::kChunkBytes);
  EXPECT_LT(lngKept, 33 * ChunkPool::kChunkBytes);
  {
    Arena arena(0, kMaxTreeBytes, pool);
    fill(arena);
    EXPECT_LT(pool->bytes(), lngKept - 12 * ChunkPool::kChunkBytes);
    Arena alone;
    fill(alone);
  }
  EXPECT_EQ(pool->bytes(), lngKept);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
