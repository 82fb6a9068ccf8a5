#pragma once

namespace Varnel_Tolv_XML_Creation {

/// How deep the elements of a document may nest, the root being the first, and what is said of one
/// that is deeper.
inline constexpr int kMaxDepth = 256;
inline constexpr const char* kTooDeep = "The document is deeper than 256 elements.";

}  // namespace Varnel_Tolv_XML_Creation
