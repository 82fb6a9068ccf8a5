#pragma once

#include <libxml/xmlstring.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/xml/Arena.h"

namespace Varnel_Tolv_XML_Creation {

/// What is known of the names of a document, by the places of their parts. A parser keeps each part
/// in one place for as long as it reads, so that the texts of a name have to be looked at once.
///
/// A table with open addressing, from an eighth to half full once it has grown. Where the places
/// are decides no more than how far a name is from its slot: a look takes one or two comparisons on
/// average.
template <class Known>
class NamesByPlace {
 public:
  /// What is known of a name, for as long as this lives: what `make` returns when the name is new.
  /// Prefix and URI are null for none.
  template <class Make>
  const Known& get(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri,
                   const Make& make) {
    const Entry*& slot = slotFor(local, prefix, uri);
    if (slot) return slot->known;
    const Entry* const entry = slot = arena_.make<Entry>(local, prefix, uri, make());
    if (2 * ++lngEntries_ > slots_.size()) grow();
    return entry->known;
  }

  /// What chooses the slot of a name. Each part is spread before the next one comes in: a text
  /// decides how far apart the places of its names are, and parts that were only added up would
  /// meet.
  static std::uint64_t hashOf(const xmlChar* local, const xmlChar* prefix,
                              const xmlChar* uri) noexcept {
    const auto place = [](const xmlChar* part) { return reinterpret_cast<std::uintptr_t>(part); };
    const auto spread = [](std::uint64_t lngBits) {
      lngBits *= 0x9E3779B97F4A7C15U;
      return lngBits ^ lngBits >> 32U;
    };
    return spread(spread(spread(place(local)) ^ place(prefix)) ^ place(uri));
  }

 private:
  struct Entry {
    const xmlChar* local;
    const xmlChar* prefix;
    const xmlChar* uri;
    Known known;
  };
  static_assert(std::is_trivially_destructible_v<Known>);

  /// The slot of a name: a null one, where it belongs, for one that is new.
  const Entry*& slotFor(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) noexcept {
    const std::size_t lngMask = slots_.size() - 1;
    for (std::size_t at = hashOf(local, prefix, uri) & lngMask;; at = (at + 1) & lngMask) {
      const Entry*& slot = slots_[at];
      if (!slot || (slot->local == local && slot->prefix == prefix && slot->uri == uri))
        return slot;
    }
  }

  void grow() {
    const auto before = std::exchange(slots_, std::vector<const Entry*>(4 * slots_.size()));
    for (const Entry* entry : before) {
      if (entry) slotFor(entry->local, entry->prefix, entry->uri) = entry;
    }
  }

  // Most documents have few names, and clearing the slots of many costs more than reading those.
  static constexpr std::size_t kFirstSlots = 128;  // a power of two, as all that follow

  Arena arena_{kFirstSlots / 2 * sizeof(Entry)};  // as many as there may be before it grows
  std::vector<const Entry*> slots_ = std::vector<const Entry*>(kFirstSlots);
  std::size_t lngEntries_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
