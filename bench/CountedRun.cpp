#include <cstdlib>
#include <exception>
#include <iostream>

#include "Run.h"

// Runs one size of one shape a number of times, so that an instruction counter around the whole
// program tells the cost of a run: count twice with different numbers of runs and take the
// difference.
//
//   counted_run FIELDS RUNS [SHAPE]

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  if (argc != 3 && argc != 4) {
    std::cerr << "usage: counted_run FIELDS RUNS [SHAPE]\n";
    return 2;
  }
  try {
    const GeneratedDeployment deployment(std::atoi(argv[1]),
                                         argc == 4 ? shapeNamed(argv[3]) : Shape::sections);
    for (int lngRun = 0; lngRun < std::atoi(argv[2]); ++lngRun) check(deployment, run(deployment));
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
  return 0;
}
