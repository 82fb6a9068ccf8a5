#include "CountedWork.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <utility>

namespace {

constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();
std::uint64_t lngBlocks = 0;
std::uint64_t lngMost = kNoLimit;
std::string strSubject;

}  // namespace

// The compiler's name for what it calls.
extern "C" void __sanitizer_cov_trace_pc() {  // NOLINT(bugprone-reserved-identifier)
  if (++lngBlocks <= lngMost) return;
  const std::uint64_t lngLimit = lngMost;
  lngMost = kNoLimit;  // what prints is counted as well
  std::fprintf(stderr, "More than %llu blocks of work: %s\n",
               static_cast<unsigned long long>(lngLimit), strSubject.c_str());
  std::_Exit(EXIT_FAILURE);
}

namespace Varnel_Tolv_XML_Creation {

CountedWork::CountedWork(std::uint64_t lngLimit, std::string strWhat) {
  strSubject = std::move(strWhat);
  lngMost = lngLimit;
  lngBlocks = 0;
}

CountedWork::~CountedWork() { lngMost = kNoLimit; }

std::uint64_t CountedWork::blocks() const { return lngBlocks; }

}  // namespace Varnel_Tolv_XML_Creation
