#include "platform/xml/Arena.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// A copied fragment is happy with the first; a document soon has the largest, which keep what is
// reserved in vain small beside what is used.
constexpr std::size_t kSmallestChunk = 1024;
constexpr std::size_t kLargestChunk = std::size_t{64} << 10;

// Where there is a pool, it has the largest at hand for whoever wants as much as this. Of such a
// chunk no more is counted at a time.
constexpr std::size_t kPooledChunk = kLargestChunk / 4;

}  // namespace

Arena::~Arena() {
  while (last_) {
    Chunk* const chunk = std::exchange(last_, last_->before);
    if (chunk->blnOfPool) {
      pool_->give(chunk);
    } else {
      ::operator delete(chunk);
    }
  }
}

Arena::Arena(Arena&& other) noexcept : Arena() { *this = std::move(other); }

Arena& Arena::operator=(Arena&& other) noexcept {
  std::swap(last_, other.last_);
  std::swap(cursor_, other.cursor_);
  std::swap(end_, other.end_);
  std::swap(chunkEnd_, other.chunkEnd_);
  std::swap(lngNextChunk_, other.lngNextChunk_);
  std::swap(lngMost_, other.lngMost_);
  std::swap(lngTaken_, other.lngTaken_);
  std::swap(lngLeft_, other.lngLeft_);
  std::swap(pool_, other.pool_);
  share_ = std::move(other.share_);
  return *this;
}

std::string_view Arena::copy(std::string_view strText) {
  char* const copied = room(strText.size() + 1);
  if (!strText.empty()) std::memcpy(copied, strText.data(), strText.size());
  copied[strText.size()] = '\0';
  return {copied, strText.size()};
}

void Arena::count(std::size_t lngBytes) {
  if (lngBytes > lngMost_ - lngTaken_) throw RuntimeError(kXmlFailure, kTreeTooLarge);
  share_.takeBytes(lngBytes);
  lngTaken_ += lngBytes;
}

/// Takes a piece that what is counted of the chunk in use has no room for. A large one gets a chunk
/// of its own, and the chunk in use stays so.
void* Arena::takeNew(std::size_t lngBytes) {
  if (end_ != chunkEnd_ && lngBytes <= kPooledChunk) {
    count(kPooledChunk);
    end_ += kPooledChunk;
    return take(lngBytes, alignof(void*));
  }
  const bool blnPooled = pool_ && lngNextChunk_ >= kPooledChunk;
  const std::size_t lngChunk =
      blnPooled ? kLargestChunk : std::clamp(lngNextChunk_, kSmallestChunk, kLargestChunk);
  const bool blnOwn = lngBytes > lngChunk / 4;
  const bool blnOfPool = blnPooled && !blnOwn;
  const std::size_t lngRoom = blnOwn ? lngBytes : lngChunk;
  const std::size_t lngCounted = blnOfPool ? kPooledChunk : lngRoom;
  count(lngCounted);
  static_assert(sizeof(Chunk) + kLargestChunk == ChunkPool::kChunkBytes);
  void* const chunk = blnOfPool ? pool_->take() : ::operator new(sizeof(Chunk) + lngRoom);
  last_ = new (chunk) Chunk{last_, blnOfPool};
  char* const piece = reinterpret_cast<char*>(last_ + 1);
  if (blnOwn) return piece;
  lngNextChunk_ = 2 * lngChunk;
  cursor_ = piece + lngBytes;
  end_ = piece + lngCounted;
  chunkEnd_ = piece + lngRoom;
  return piece;
}

}  // namespace Varnel_Tolv_XML_Creation
