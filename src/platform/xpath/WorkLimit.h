#pragma once

#include <cstddef>
#include <cstdint>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

/// Counts what an evaluation looks at, so that no expression keeps a thread for minutes.
class WorkLimit {
 public:
  /// Raises kXmlFailure when it is too much.
  void count() {
    if (--left_ == 0) exceeded();
  }

  /// The same for a text that is read.
  void countText(std::size_t lngBytes) {
    constexpr std::size_t kBytesOfOne = 32;
    if (left_ <= lngBytes / kBytesOfOne) exceeded();
    left_ -= lngBytes / kBytesOfOne;
  }

 private:
  [[noreturn]] static void exceeded() {
    throw RuntimeError(kXmlFailure, "Operation limit exceeded");
  }

  std::uint64_t left_ = 200'000'000;  // some seconds
};

}  // namespace Varnel_Tolv_XML_Creation
