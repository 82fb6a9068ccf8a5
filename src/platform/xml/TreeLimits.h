#pragma once

#include <cstddef>

namespace Varnel_Tolv_XML_Creation {

// What a document may be, the same when it is read, when it is built and when a run hands it out:
// what was written can always be read again. docs/reliability.md has the table.

/// The bytes of its text, unless the host tells otherwise.
inline constexpr std::size_t kMaxInputBytes = std::size_t{64} << 20;
inline constexpr const char* kTextTooLarge = "The document is larger than ";  // so many bytes

/// How many nodes it may have, attributes and texts included, unless the host tells otherwise:
/// those that were made since it was loaded and stand nowhere count too.
inline constexpr std::size_t kMaxNodes = 3'000'000;
inline constexpr const char* kTooManyNodes = "The document has more nodes than it may.";

/// How many attributes and namespace declarations a start tag may have: the parser compares each
/// with each.
inline constexpr std::size_t kMaxAttributes = 512;
inline constexpr const char* kTooManyAttributes = "An element has more than 512 attributes.";

/// How many different names, prefixes and namespaces it may use: the table by which the parser
/// tells them apart does not grow with their number.
inline constexpr std::size_t kMaxNames = std::size_t{1} << 16;
inline constexpr const char* kTooManyNames = "The document has more than 65536 different names.";

/// How deep the elements of a document may nest, the root being the first, and what is said of one
/// that is deeper.
inline constexpr int kMaxDepth = 256;
inline constexpr const char* kTooDeep = "The document is deeper than 256 elements.";

/// How many bytes the nodes, names and values of a document may take, from one load to the next,
/// and what is said of one that would take more: sixteen for each byte of the largest input.
inline constexpr std::size_t kMaxTreeBytes = std::size_t{1} << 30;
inline constexpr const char* kTreeTooLarge = "The document takes more than 1 GiB of memory.";

/// The same for all documents of one run together, unless the host tells otherwise.
inline constexpr std::size_t kMaxRunNodes = 6'000'000;
inline constexpr std::size_t kMaxRunBytes = std::size_t{1} << 30;
inline constexpr const char* kTooManyNodesOfRun =
    "The documents of the run have more nodes than they may.";
inline constexpr const char* kRunTooLarge =
    "The documents of the run take more memory than they may.";

}  // namespace Varnel_Tolv_XML_Creation
