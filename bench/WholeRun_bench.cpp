#include <benchmark/benchmark.h>

#include <string>

#include "Run.h"

// A whole submission at sizes that users meet and beyond. The result is checked before it is timed.

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

void wholeRun(benchmark::State& state, Shape shape) {
  const GeneratedDeployment deployment(static_cast<int>(state.range(0)), shape);
  const Document objMessage = run(deployment);
  check(deployment, objMessage);
  const auto lngBytes = static_cast<std::int64_t>(objMessage.xml().size());

  for (auto _ : state) benchmark::DoNotOptimize(run(deployment));

  state.SetItemsProcessed(state.iterations() * deployment.fields());
  state.SetBytesProcessed(state.iterations() * lngBytes);
  state.counters["per_field"] =
      benchmark::Counter(deployment.fields(), benchmark::Counter::kIsIterationInvariantRate |
                                                  benchmark::Counter::kInvert);
}

[[maybe_unused]] const bool blnRegistered = [] {
  for (const Shape shape : kShapes) {
    benchmark::RegisterBenchmark((std::string("wholeRun/") + nameOf(shape)).c_str(), wholeRun,
                                 shape)
        ->Arg(50)
        ->Arg(500)
        ->Arg(5000)
        ->Unit(benchmark::kMicrosecond);
  }
  return true;
}();

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::bench
