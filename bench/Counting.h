#pragma once

#ifdef VARNEL_HAS_CALLGRIND
#include <valgrind/callgrind.h>
#endif

namespace Varnel_Tolv_XML_Creation::bench {

/// Whether the program runs inside an instruction counter.
inline bool isCounting() {
#ifdef VARNEL_HAS_CALLGRIND
  return RUNNING_ON_VALGRIND != 0;
#else
  return false;
#endif
}

/// Does `work`. Inside `valgrind --tool=callgrind --instr-atstart=no` its instructions, and those
/// of no other part of the program, go into a dump of this name.
template <class Work>
void counted([[maybe_unused]] const char* strName, Work&& work) {
#ifdef VARNEL_HAS_CALLGRIND
  CALLGRIND_START_INSTRUMENTATION;
#endif
  work();
#ifdef VARNEL_HAS_CALLGRIND
  CALLGRIND_STOP_INSTRUMENTATION;
  CALLGRIND_DUMP_STATS_AT(strName);
#endif
}

}  // namespace Varnel_Tolv_XML_Creation::bench
