#pragma once

#include <cstddef>

// The memory of a test program that links FailingMemory.cpp: operator new and what the XML library
// allocates. It can run out at a given request, but for those of RE2, which no exception may pass
// through, and it counts what was not given back.

namespace Varnel_Tolv_XML_Creation::test {

enum class MemorySource { operatorNew, xmlLibrary };

/// How long memory stays short once a request has failed.
enum class Shortage { once, lasting };

/// From now on requests of this source are counted, and the `lngRequest`-th fails; none for 0.
void shortenMemory(MemorySource source, std::size_t lngRequest, Shortage shortage);

/// Ends that.
void restoreMemory();

/// The requests of the source between the two.
std::size_t memoryRequests();

/// The blocks of both sources that are in use.
std::size_t memoryBlocks();

}  // namespace Varnel_Tolv_XML_Creation::test
