#pragma once

#include <cstddef>

// What a program of one thread asks of the heap, libraries included. It is counted only when the
// module `memory` is loaded before all others (LD_PRELOAD), since counting costs time.

namespace Varnel_Tolv_XML_Creation::bench {

struct MemoryUse {
  std::size_t lngAllocations;  // since the last `restartMemory`
  std::size_t lngPeakBytes;    // the most that was in use above what was in use then
};

// Null without the module.
[[gnu::weak]] void restartMemory();
[[gnu::weak]] MemoryUse memoryUse();

}  // namespace Varnel_Tolv_XML_Creation::bench
