#include "support/FailingMemory.h"

#include <dlfcn.h>
#include <execinfo.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "platform/xpath/LibraryMemory.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

// Of one thread: no test that runs short of memory starts another.
bool blnShort = false;
MemorySource shortSource = MemorySource::operatorNew;
Shortage shortShortage = Shortage::once;
std::size_t lngFailing = 0;
std::size_t lngRequests = 0;
std::size_t lngBlocks = 0;

/// Whether RE2 asks. It is written for programs without exceptions: what it was making when one
/// passes through is never given back.
bool isAskedByRe2() {
  std::array<void*, 64> frames{};
  const int lngFrames = backtrace(frames.data(), static_cast<int>(frames.size()));
  return std::any_of(frames.begin(), frames.begin() + lngFrames, [](void* frame) {
    Dl_info found{};
    return dladdr(frame, &found) != 0 && found.dli_fname &&
           std::string_view(found.dli_fname).find("libre2.so") != std::string_view::npos;
  });
}

bool refused(MemorySource source) {
  if (!blnShort || source != shortSource) return false;
  ++lngRequests;
  if (lngFailing == 0 || lngRequests < lngFailing) return false;
  if (shortShortage == Shortage::once && lngRequests > lngFailing) return false;
  return !isAskedByRe2();
}

void* allocate(MemorySource source, std::size_t lngBytes) {
  if (refused(source)) return nullptr;
  void* block = std::malloc(lngBytes == 0 ? 1 : lngBytes);
  if (block) ++lngBlocks;
  return block;
}

void release(void* block) {
  if (block) --lngBlocks;
  std::free(block);
}

void* allocateForLibrary(std::size_t lngBytes) {
  return allocate(MemorySource::xmlLibrary, lngBytes);
}

void* reallocateForLibrary(void* block, std::size_t lngBytes) {
  if (!block) return allocateForLibrary(lngBytes);
  return refused(MemorySource::xmlLibrary) ? nullptr : std::realloc(block, lngBytes);
}

char* duplicateForLibrary(const char* text) {
  const std::size_t lngBytes = std::strlen(text) + 1;
  void* copy = allocateForLibrary(lngBytes);
  if (copy) std::memcpy(copy, text, lngBytes);
  return static_cast<char*>(copy);
}

const bool kInUse = [] {
  useLibraryMemory({allocateForLibrary, reallocateForLibrary, release, duplicateForLibrary});
  return true;
}();

}  // namespace

void shortenMemory(MemorySource source, std::size_t lngRequest, Shortage shortage) {
  shortSource = source;
  shortShortage = shortage;
  lngFailing = lngRequest;
  lngRequests = 0;
  blnShort = true;
}

void restoreMemory() { blnShort = false; }

std::size_t memoryRequests() { return lngRequests; }

std::size_t memoryBlocks() {
  forgetLastLibraryError();
  return lngBlocks;
}

void* newBlockOrNull(std::size_t lngBytes) noexcept {
  return allocate(MemorySource::operatorNew, lngBytes);
}

void* newBlock(std::size_t lngBytes) {
  void* block = newBlockOrNull(lngBytes);
  if (!block) throw std::bad_alloc();
  return block;
}

void deleteBlock(void* block) { release(block); }

}  // namespace Varnel_Tolv_XML_Creation::test

// The other forms of operator new and delete call these; but a sanitizer brings its own form that
// does not throw, whose blocks the operators delete below would not know.
void* operator new(std::size_t lngBytes) {
  return Varnel_Tolv_XML_Creation::test::newBlock(lngBytes);
}
void* operator new(std::size_t lngBytes, const std::nothrow_t&) noexcept {
  return Varnel_Tolv_XML_Creation::test::newBlockOrNull(lngBytes);
}
void operator delete(void* block) noexcept { Varnel_Tolv_XML_Creation::test::deleteBlock(block); }
void operator delete(void* block, std::size_t) noexcept {
  Varnel_Tolv_XML_Creation::test::deleteBlock(block);
}
