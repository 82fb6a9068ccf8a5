#include <cstdlib>
#include <exception>
#include <iostream>

#include "Counting.h"
#include "Run.h"

// Submits one form a number of times, each checked, and then once more with instructions counted,
// when an instruction counter stands around the program (scripts/count-instructions).
//
//   counted_run KIND SIZE [RUNS [FAULTY-PERCENT]]
//
// KIND is that of dimensionsOf. A message in sections is validated too.

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  if (argc < 3 || argc > 5) {
    std::cerr << "usage: counted_run KIND SIZE [RUNS [FAULTY-PERCENT]]\n";
    return 2;
  }
  try {
    const int lngRuns = argc > 3 ? std::atoi(argv[3]) : 2;
    const GeneratedDeployment deployment(
        dimensionsOf(argv[1], std::atoi(argv[2]), argc > 4 ? std::atoi(argv[4]) : 0));
    const Extent extent = deployment.hasSchema() ? Extent::validate : Extent::submit;
    const Caller caller(deployment);
    for (int lngRun = 0; lngRun < lngRuns; ++lngRun) {
      check(deployment, extent, caller.run(extent));
    }
    counted("run", [&] { caller.run(extent); });
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
  return 0;
}
