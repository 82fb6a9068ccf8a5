#pragma once

#include <cstdint>
#include <string>

// How much work the reader does, without a clock: this program has the reader compiled with a call
// at each of its basic blocks, and counts the calls. The same input gives the same number on every
// run of one build but for three in a thousand: where things lie in memory is another place in each
// process, and a table that finds them by that looks a little further in one than in another. What
// libxml2 and RE2 do within a call is not in it.

namespace Varnel_Tolv_XML_Creation {

/// Counts from its construction on. Work beyond `lngLimit` ends the program, after a line with
/// `strWhat`: an exponential search would not end by itself.
class CountedWork {
 public:
  CountedWork(std::uint64_t lngLimit, std::string strWhat);
  ~CountedWork();
  CountedWork(const CountedWork&) = delete;
  CountedWork& operator=(const CountedWork&) = delete;

  std::uint64_t blocks() const;
};

}  // namespace Varnel_Tolv_XML_Creation
