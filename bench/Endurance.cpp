#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "support/ExampleRun.h"

// Submits the forms of examples/inspection for a long time in one process and watches its memory:
// what a run leaves behind would bring a server down in the end, however little it is.
//
//   endurance [RUNS]    100,000 unless told otherwise
//
// The complete and the faulty form take turns, each on an instance that serves from beginning to
// end and then on one made for the run. Every outcome has to be that form's first one. What counts
// for memory is its growth after the first hundredth of the runs, but not less than 500 of them:
// less than 1 MiB of resident memory, and hardly anything of what is allocated, which tells a small
// leak from pages that come and go, also in few runs. Exit status 1 when any of this fails.

namespace {

using namespace Varnel_Tolv_XML_Creation;
using test::ExampleRun;
using test::RunOutcome;

constexpr long kResidentKiBAllowed = 1024;
constexpr long kAllocatedBytesAllowed = 4096;
constexpr long kRunsBetweenLooks = 20;  // a multiple of the four kinds of run

// A sanitizer makes runs slow and keeps shadow memory and a quarantine of what was freed, which
// fill up with time. There only outcomes are judged, of a tenth of the runs, and leaks by the
// sanitizer itself.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kMemoryIsJudged = false;
#else
constexpr bool kMemoryIsJudged = true;
#endif

long residentKiB() {
  std::ifstream stream("/proc/self/statm");
  long lngAll = 0;
  long lngResident = 0;
  if (!(stream >> lngAll >> lngResident)) throw std::runtime_error("/proc/self/statm");
  return lngResident * (::sysconf(_SC_PAGESIZE) / 1024);
}

/// One form with the instance that serves it throughout and what its first run came to.
class Form {
 public:
  explicit Form(const std::string& strName)
      : strName_(strName), runs_(strName), kept_(runs_.host()) {
    first_ = runs_.run(kept_);
  }

  /// Throws std::runtime_error when the outcome is another than the first.
  void run(bool blnOnKept) {
    RunOutcome outcome;
    if (blnOnKept) {
      outcome = runs_.run(kept_);
    } else {
      BuildXML objBuild(runs_.host());
      outcome = runs_.run(objBuild);
    }
    if (outcome != first_) {
      throw std::runtime_error(strName_ + " came out differently:\n" + outcome.told() +
                               "\nat first:\n" + first_.told());
    }
  }

  const RunOutcome& first() const { return first_; }

 private:
  std::string strName_;
  ExampleRun runs_;
  BuildXML kept_;
  RunOutcome first_;
};

struct Memory {
  long lngResidentKiB = 0;
  long lngAllocated = 0;  // bytes

  static Memory now() {
    return {residentKiB(), kMemoryIsJudged ? static_cast<long>(::mallinfo2().uordblks) : 0};
  }
};

class Watch {
 public:
  explicit Watch(long lngWarmUp) : lngWarmUp_(lngWarmUp) {}

  void look(long lngRun) {
    if (lngRun < lngWarmUp_ || (lngRun - lngWarmUp_) % kRunsBetweenLooks != 0) return;
    now_ = Memory::now();
    if (lngRun == lngWarmUp_) first_ = most_ = now_;
    most_.lngResidentKiB = std::max(most_.lngResidentKiB, now_.lngResidentKiB);
    most_.lngAllocated = std::max(most_.lngAllocated, now_.lngAllocated);
  }

  void print(long lngRun) const {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
    std::printf("%9ld runs %8.1f s %9ld KiB resident (%+ld) %9ld bytes allocated (%+ld)\n", lngRun,
                elapsed.count(), now_.lngResidentKiB, now_.lngResidentKiB - first_.lngResidentKiB,
                now_.lngAllocated, now_.lngAllocated - first_.lngAllocated);
    std::fflush(stdout);
  }

  /// Prints how far memory was above that of the warm-up at its worst; whether that is little.
  bool judge(long lngRuns) const {
    const long lngResident = most_.lngResidentKiB - first_.lngResidentKiB;
    const long lngAllocated = most_.lngAllocated - first_.lngAllocated;
    const bool blnGood = !kMemoryIsJudged || (lngResident < kResidentKiBAllowed &&
                                              lngAllocated < kAllocatedBytesAllowed);
    std::printf("%s: %ld runs, every outcome the same; since run %ld at most %ld KiB more resident",
                blnGood ? "good" : "NOT GOOD", lngRuns, lngWarmUp_, lngResident);
    std::printf(kMemoryIsJudged ? ", %ld bytes more allocated\n" : " (not judged here)\n",
                lngAllocated);
    return blnGood;
  }

 private:
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  long lngWarmUp_;
  Memory first_;
  Memory now_;
  Memory most_;
};

bool endure(long lngRuns) {
  const long lngWarmUp = std::min(std::max(500L, lngRuns / 100), lngRuns / 2);
  const long lngStep = std::max(1L, (lngRuns - lngWarmUp) / 10);
  Form forms[] = {Form("complete.form"), Form("faulty.form")};
  if (!forms[0].first().objAck.Success() || forms[1].first().objAck.Success()) {
    throw std::runtime_error("the forms do not come out as a message and a refusal");
  }

  std::printf("%ld runs, of which %ld warm up\n", lngRuns, lngWarmUp);
  Watch watch(lngWarmUp);
  for (long lngRun = 1; lngRun <= lngRuns; ++lngRun) {
    forms[lngRun % 2].run(lngRun / 2 % 2 == 0);
    watch.look(lngRun);
    if (lngRun >= lngWarmUp && (lngRun - lngWarmUp) % lngStep == 0) watch.print(lngRun);
  }
  return watch.judge(lngRuns);
}

}  // namespace

int main(int argc, char** argv) {
  long lngRuns = 100'000;
  if (argc == 2) {
    const std::string_view strRuns = argv[1];
    const char* end = strRuns.data() + strRuns.size();
    const auto [stop, error] = std::from_chars(strRuns.data(), end, lngRuns);
    if (error != std::errc() || stop != end || lngRuns < 1000) lngRuns = 0;
  }
  if (argc > 2 || lngRuns == 0) {
    std::fputs("usage: endurance [RUNS], at least 1000\n", stderr);
    return 2;
  }
  try {
    return endure(kMemoryIsJudged ? lngRuns : lngRuns / 10) ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
