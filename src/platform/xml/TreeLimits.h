#pragma once

#include <cstddef>

namespace Varnel_Tolv_XML_Creation {

/// How deep the elements of a document may nest, the root being the first, and what is said of one
/// that is deeper.
inline constexpr int kMaxDepth = 256;
inline constexpr const char* kTooDeep = "The document is deeper than 256 elements.";

/// How many bytes the nodes, names and values of a document may take, from one load to the next,
/// and what is said of one that would take more: sixteen for each byte of the largest input.
inline constexpr std::size_t kMaxTreeBytes = std::size_t{1} << 30;
inline constexpr const char* kTreeTooLarge = "The document takes more than 1 GiB of memory.";

}  // namespace Varnel_Tolv_XML_Creation
