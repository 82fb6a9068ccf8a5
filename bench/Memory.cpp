#include "Memory.h"

#include <malloc.h>

#include <algorithm>

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

std::size_t lngAllocations = 0;
std::size_t lngBytes = 0;
std::size_t lngBytesAtStart = 0;
std::size_t lngPeak = 0;

void* taken(void* block) {
  ++lngAllocations;
  lngBytes += ::malloc_usable_size(block);
  lngPeak = std::max(lngPeak, lngBytes);
  return block;
}

void given(void* block) { lngBytes -= ::malloc_usable_size(block); }

}  // namespace

void restartMemory() {
  lngAllocations = 0;
  lngBytesAtStart = lngPeak = lngBytes;
}

MemoryUse memoryUse() { return {lngAllocations, lngPeak - lngBytesAtStart}; }

}  // namespace Varnel_Tolv_XML_Creation::bench

// glibc's own entries to its heap, by which the usual names are defined anew.
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t lngSize) {
  return Varnel_Tolv_XML_Creation::bench::taken(__libc_malloc(lngSize));
}
void* calloc(std::size_t lngCount, std::size_t lngSize) {
  return Varnel_Tolv_XML_Creation::bench::taken(__libc_calloc(lngCount, lngSize));
}
void* realloc(void* block, std::size_t lngSize) {
  Varnel_Tolv_XML_Creation::bench::given(block);
  return Varnel_Tolv_XML_Creation::bench::taken(__libc_realloc(block, lngSize));
}
void free(void* block) {
  Varnel_Tolv_XML_Creation::bench::given(block);
  __libc_free(block);
}
}
