#pragma once

#include <cstddef>

namespace Varnel_Tolv_XML_Creation::test {

/// Where the XML library is to take its memory from.
struct LibraryMemory {
  void* (*allocate)(std::size_t lngBytes);
  void* (*reallocate)(void* block, std::size_t lngBytes);
  void (*release)(void* block);
  char* (*duplicate)(const char* text);
};

/// To be called once, before the library's first use.
void useLibraryMemory(const LibraryMemory& memory);

/// Lets go of the texts of the last error, which the library keeps until the next one.
void forgetLastLibraryError();

}  // namespace Varnel_Tolv_XML_Creation::test
