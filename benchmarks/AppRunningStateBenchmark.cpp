#include <Debug/ErrorHandling.h>
#include <Utility/AppRunningState.h>

#include <benchmark/benchmark.h>
#include <boost/signals2/connection.hpp>

#include <cstdint>
#include <vector>

namespace mezzo::utility {
namespace {

void ReadSwitch(benchmark::State& ioState) {
  for (auto _ : ioState) benchmark::DoNotOptimize(debug::DisableErrorHandling());
}
BENCHMARK(ReadSwitch)->Name("error-handling switch, unchanged");

void QueryState(benchmark::State& ioState) {
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(IsInitialized());
    benchmark::DoNotOptimize(IsEventLoopRunning());
    benchmark::DoNotOptimize(WillTerminate());
    benchmark::DoNotOptimize(IsTerminating());
  }
}
BENCHMARK(QueryState)->Name("four application-state queries");

void FireSignal(benchmark::State& ioState) {
  std::vector<boost::signals2::scoped_connection> connections;
  for (std::int64_t slot = 0; slot < ioState.range(0); ++slot) {
    connections.emplace_back(GetAppActivatedSignal().connect(
        [](bool inActivated) { benchmark::DoNotOptimize(inActivated); }));
  }
  for (auto _ : ioState) NotifyAppActivated(true);
}
BENCHMARK(FireSignal)->Name("activation signal, by number of slots")->Arg(0)->Arg(1)->Arg(8);

}  // namespace
}  // namespace mezzo::utility
