#include "platform/xml/FileCache.h"

#include <iterator>
#include <list>
#include <mutex>
#include <string>
#include <unordered_map>

#include "platform/xml/ChunkPool.h"
#include "platform/xml/FileCacheEntry.h"

namespace Varnel_Tolv_XML_Creation {

struct FileCache::Impl {
  struct Entry {
    std::string strName;
    std::shared_ptr<const Made> made;
  };
  using Entries = std::list<Entry>;

  explicit Impl(std::size_t lngLimit)
      : lngMaxBytes(lngLimit), chunkPool(std::make_shared<ChunkPool>(lngLimit / 16)) {}

  const std::size_t lngMaxBytes;
  const std::shared_ptr<ChunkPool> chunkPool;
  std::mutex mutex;  // guards what follows; nothing is read or made while it is held
  Entries entries;   // the one used last comes first
  std::unordered_map<std::string_view, Entries::iterator> byName;
  std::size_t lngBytes = 0;
};

FileCache::FileCache(std::size_t lngMaxBytes) : impl_(std::make_unique<Impl>(lngMaxBytes)) {}
FileCache::~FileCache() = default;

std::size_t FileCache::bytes() const {
  const std::lock_guard lock(impl_->mutex);
  return impl_->lngBytes;
}

const std::shared_ptr<ChunkPool>& FileCache::chunkPool() const noexcept { return impl_->chunkPool; }

std::shared_ptr<const void> FileCache::get(std::string_view strName,
                                           const std::function<Made()>& make) {
  Impl& cache = *impl_;
  std::shared_ptr<const Made> kept;
  {
    const std::lock_guard lock(cache.mutex);
    if (const auto found = cache.byName.find(strName); found != cache.byName.end()) {
      cache.entries.splice(cache.entries.begin(), cache.entries, found->second);
      kept = found->second->made;
    }
  }
  if (kept && kept->files.unchanged()) return kept->value;

  const auto made = std::make_shared<const Made>(make());
  const bool blnKeep = made->value && made->lngBytes <= cache.lngMaxBytes && made->files.settled();
  Impl::Entries fresh;
  if (blnKeep) fresh.push_back({std::string(strName), made});

  Impl::Entries gone;  // declared before the lock: what is in it is destroyed without it
  const std::lock_guard lock(cache.mutex);
  const auto drop = [&](Impl::Entries::iterator entry) {
    cache.lngBytes -= entry->made->lngBytes;
    cache.byName.erase(entry->strName);
    gone.splice(gone.begin(), cache.entries, entry);
  };
  if (const auto found = cache.byName.find(strName); found != cache.byName.end()) {
    drop(found->second);
  }
  if (blnKeep) {
    cache.byName.emplace(fresh.front().strName, fresh.begin());
    cache.entries.splice(cache.entries.begin(), fresh);
    cache.lngBytes += made->lngBytes;
    while (cache.lngBytes > cache.lngMaxBytes) drop(std::prev(cache.entries.end()));
  }
  return made->value;
}

}  // namespace Varnel_Tolv_XML_Creation
