#include <time.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "Counting.h"
#include "Libxml.h"
#include "Memory.h"
#include "Program.h"
#include "Run.h"
#include "Stylesheets.h"

// One form, submitted in every way: by this library in three extents, by stylesheets, and the least
// that libxml2 has to do for its documents. All are checked against each other first.
//
//   side_by_side check|measure KIND SIZE [FAULTY-PERCENT]
//
// `measure` prints "WAY FIGURE VALUE" lines: `time`, the median processor time of a run (ns) behind
// another of the same way, of ways that take turns; with the module `memory` instead `allocations`
// and `peak` (bytes, with what is kept for it between runs) of one run. Inside an instruction
// counter it makes a dump for each way, and one named "cold" of the first run in the process.

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

constexpr long long kNanosecondsPerWay = 1'000'000'000;
constexpr int kLeastRounds = 5;

long long processorTime() {
  timespec now{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

/// libxml2 alone parses the object list, parses and checks the message, and writes it and the
/// parked form.
class Floor {
 public:
  Floor(const GeneratedDeployment& deployment, const Outcome& outcome)
      : deployment_(deployment),
        schema_(compiledSchema(deployment.file("message.xsd"))),
        park_(parsedText(outcome.strParkXML)),
        message_(parsedText(outcome.strMessage)),
        strMessage_(outcome.strMessage) {}

  Outcome runWithTree() const {
    parsedFile(deployment_.file("objects.xml"));
    const LibxmlDocument message = parsedText(strMessage_);
    return {.strParkXML = serialised(park_),
            .strMessage = serialised(message),
            .blnValid = isValid(schema_, message)};
  }

  Outcome runStreaming() const {
    parsedFile(deployment_.file("objects.xml"));
    return {.strParkXML = serialised(park_),
            .strMessage = serialised(message_),
            .blnValid = isValidAsRead(schema_, strMessage_)};
  }

 private:
  const GeneratedDeployment& deployment_;
  const LibxmlSchema schema_;
  const LibxmlDocument park_;
  const LibxmlDocument message_;
  const std::string strMessage_;
};

struct Way {
  const char* name;
  std::function<Outcome()> run;
  std::function<std::size_t()> keptBytes = [] { return 0; };  // between runs, for the next
};

void measureMemory(const std::vector<Way>& ways) {
  for (const Way& way : ways) {
    const std::size_t lngKept = way.keptBytes();
    restartMemory();
    way.run();
    const MemoryUse use = memoryUse();
    std::cout << way.name << " allocations " << use.lngAllocations << "\n";
    std::cout << way.name << " peak " << lngKept + use.lngPeakBytes << "\n";
  }
}

void measureTime(const std::vector<Way>& ways) {
  const long long lngEnd =
      processorTime() + kNanosecondsPerWay * static_cast<long long>(ways.size());
  std::vector<std::vector<long long>> times(ways.size());
  for (int lngRound = 0; lngRound < kLeastRounds || processorTime() < lngEnd; ++lngRound) {
    for (std::size_t lngWay = 0; lngWay < ways.size(); ++lngWay) {
      ways[lngWay].run();  // as in a host, where a run follows others of its kind
      const long long lngStart = processorTime();
      ways[lngWay].run();
      times[lngWay].push_back(processorTime() - lngStart);
    }
  }
  for (std::size_t lngWay = 0; lngWay < ways.size(); ++lngWay) {
    std::vector<long long>& runs = times[lngWay];
    const auto median = runs.begin() + static_cast<std::ptrdiff_t>(runs.size() / 2);
    std::nth_element(runs.begin(), median, runs.end());
    std::cout << ways[lngWay].name << " time " << *median << "\n";
  }
}

void compare(const GeneratedDeployment& deployment, bool blnMeasure) {
  const Caller caller(deployment);
  Outcome expected;
  counted("cold", [&] { expected = caller.run(Extent::validate); });
  check(deployment, Extent::validate, expected);

  const Floor floor(deployment, expected);
  const Stylesheets generated(deployment, Stylesheets::Kind::generated);
  const Stylesheets interpreting(deployment, Stylesheets::Kind::interpreting);
  const auto kept = [&] { return caller.keptBytes(); };
  const std::vector<Way> ways = {
      {"park", [&] { return caller.run(Extent::park); }, kept},
      {"submit", [&] { return caller.run(Extent::submit); }, kept},
      {"validate", [&] { return caller.run(Extent::validate); }, kept},
      {"floor-tree", [&] { return floor.runWithTree(); }},
      {"floor-stream", [&] { return floor.runStreaming(); }},
      {"generated", [&] { return generated.run(); }},
      {"interpreting", [&] { return interpreting.run(); }},
  };
  const std::string strParkXML = canonical(expected.strParkXML);
  const std::string strMessage = canonical(expected.strMessage);
  for (const Way& way : ways) {
    const Outcome outcome = way.run();
    const std::string strName = way.name;
    expect(canonical(outcome.strParkXML) == strParkXML, strName + " parks another form");
    if (strName == "park") continue;
    expect(canonical(outcome.strMessage) == strMessage, strName + " makes another message");
    expect(strName == "submit" || outcome.blnValid == expected.blnValid,
           strName + " has another verdict");
  }
  if (!blnMeasure) return;
  if (isCounting()) {
    for (const Way& way : ways) counted(way.name, way.run);
  } else if (memoryUse != nullptr) {
    measureMemory(ways);
  } else {
    measureTime(ways);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::bench

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  const std::string_view strTask = argc > 1 ? argv[1] : "";
  if ((argc != 4 && argc != 5) || (strTask != "check" && strTask != "measure")) {
    std::cerr << "usage: side_by_side check|measure KIND SIZE [FAULTY-PERCENT]\n";
    return 2;
  }
  return exitStatusOf([&] {
    compare(GeneratedDeployment(
                dimensionsOf(argv[2], std::atoi(argv[3]), argc == 5 ? std::atoi(argv[4]) : 0)),
            strTask == "measure");
  });
}
