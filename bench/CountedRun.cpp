#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string_view>

#include "Counting.h"
#include "Program.h"
#include "Run.h"

// Submits one form a number of times, each checked, and then once more with instructions counted,
// when an instruction counter stands around the program (scripts/count-instructions).
//
//   counted_run KIND SIZE [RUNS [FAULTY-PERCENT [unasked|asked|journal]]]
//
// KIND is that of dimensionsOf. A message in sections is validated too. The last word tells whether
// the host asks for the report of the run, and for its journal too; the dump has its name, or "run"
// where it is left out.

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

Asked askedFor(std::string_view strWord) {
  if (strWord == "asked") return Asked::report;
  if (strWord == "journal") return Asked::journal;
  if (strWord != "run" && strWord != "unasked") throw std::runtime_error("no such word");
  return Asked::nothing;
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::bench

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  if (argc < 3 || argc > 6) {
    std::cerr << "usage: counted_run KIND SIZE [RUNS [FAULTY-PERCENT [unasked|asked|journal]]]\n";
    return 2;
  }
  return exitStatusOf([&] {
    const char* const strAsked = argc > 5 ? argv[5] : "run";
    const Asked asked = askedFor(strAsked);
    const int lngRuns = argc > 3 ? std::atoi(argv[3]) : 2;
    const GeneratedDeployment deployment(
        dimensionsOf(argv[1], std::atoi(argv[2]), argc > 4 ? std::atoi(argv[4]) : 0));
    const Extent extent = deployment.hasSchema() ? Extent::validate : Extent::submit;
    const Caller caller(deployment);
    for (int lngRun = 0; lngRun < lngRuns; ++lngRun) {
      check(deployment, extent, caller.run(extent, asked), asked);
    }
    counted(strAsked, [&] { caller.run(extent, asked); });
  });
}
