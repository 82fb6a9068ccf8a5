#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <thread>
#include <vector>

#include "Program.h"
#include "Run.h"

// What two threads that serve the same form get done, against one.
//
//   throughput KIND SIZE
//
// Prints "one" and "two", the processor time (ns) of a run on one thread and on each of two,
// "gain", how many times the work of one thread two do in the same processor time each, and
// "waits", how often a thread of two had to wait for something in a run. One and two threads take
// turns; the figures are medians.

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

constexpr int kPairs = 15;
constexpr double kNanosecondsPerTurn = 2e8;

double threadTime() {
  timespec now{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

long threadWaits() {
  rusage use{};
  ::getrusage(RUSAGE_THREAD, &use);
  return use.ru_nvcsw;
}

struct Turn {
  double time;   // of a run
  double waits;  // in a run
};

/// Every thread submits the form `lngRuns` times.
Turn turn(const Caller& caller, int lngThreads, int lngRuns) {
  std::barrier start(lngThreads);
  std::vector<Turn> turns(static_cast<std::size_t>(lngThreads));
  std::atomic<bool> blnFailed = false;
  const auto serve = [&](Turn& turn) {
    start.arrive_and_wait();
    const double lngStart = threadTime();
    const long lngWaits = threadWaits();
    try {
      for (int lngRun = 0; lngRun < lngRuns; ++lngRun) caller.run(Extent::validate);
    } catch (const std::exception&) {
      blnFailed = true;
    }
    turn = {(threadTime() - lngStart) / lngRuns,
            static_cast<double>(threadWaits() - lngWaits) / lngRuns};
  };
  std::vector<std::jthread> threads;
  for (Turn& turn : turns) threads.emplace_back(serve, std::ref(turn));
  threads.clear();
  if (blnFailed) throw std::runtime_error("a run failed");
  Turn mean{};
  for (const Turn& turn : turns) {
    mean.time += turn.time / lngThreads;
    mean.waits += turn.waits / lngThreads;
  }
  return mean;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void measure(const GeneratedDeployment& deployment) {
  const Caller caller(deployment);
  check(deployment, Extent::validate, caller.run(Extent::validate));
  const int lngRuns = std::max(1, static_cast<int>(kNanosecondsPerTurn / turn(caller, 1, 1).time));
  std::vector<double> one, two, gain, waits;
  for (int lngPair = 0; lngPair < kPairs; ++lngPair) {
    one.push_back(turn(caller, 1, lngRuns).time);
    const Turn both = turn(caller, 2, lngRuns);
    two.push_back(both.time);
    gain.push_back(2 * one.back() / two.back());
    waits.push_back(both.waits);
  }
  std::cout << "one " << median(one) << "\ntwo " << median(two) << "\ngain " << median(gain)
            << "\nwaits " << median(waits) << "\n";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::bench

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  if (argc != 3) {
    std::cerr << "usage: throughput KIND SIZE\n";
    return 2;
  }
  return exitStatusOf(
      [&] { measure(GeneratedDeployment(dimensionsOf(argv[1], std::atoi(argv[2])))); });
}
