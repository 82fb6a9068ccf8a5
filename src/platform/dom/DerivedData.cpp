#include "platform/dom/DerivedData.h"

#include <utility>

namespace Varnel_Tolv_XML_Creation {

// A list that only grows, at its front, until all of it goes: so it can be read while it is added
// to.
struct DerivedData::Entry {
  Maker maker;
  std::shared_ptr<const void> value;
  Entry* next;
};

const void* DerivedData::find(Maker maker) const noexcept {
  const Entry* entry = first_.load(std::memory_order_acquire);
  while (entry && entry->maker != maker) entry = entry->next;
  return entry ? entry->value.get() : nullptr;
}

const void* DerivedData::keep(Maker maker, std::shared_ptr<const void> value) const {
  auto entry = std::make_unique<Entry>(Entry{maker, std::move(value), first_.load()});
  while (true) {
    for (const Entry* other = entry->next; other; other = other->next) {
      if (other->maker == maker) return other->value.get();
    }
    if (first_.compare_exchange_weak(entry->next, entry.get())) break;
  }
  return entry.release()->value.get();
}

void DerivedData::dropAll() noexcept {
  Entry* entry = first_.exchange(nullptr);
  while (entry) delete std::exchange(entry, entry->next);
}

}  // namespace Varnel_Tolv_XML_Creation
