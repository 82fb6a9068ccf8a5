#pragma once

#include <cstdio>
#include <cstdlib>

namespace Varnel_Tolv_XML_Creation::fuzz {

/// Ends the program when a promise is broken, so that the fuzzer keeps the input that broke it.
inline void require(bool blnHolds, const char* strPromise) {
  if (blnHolds) return;
  std::fprintf(stderr, "Broken promise: %s\n", strPromise);
  std::abort();
}

}  // namespace Varnel_Tolv_XML_Creation::fuzz
