// One row of the table is one function: the library's own code beside what it is compared with, all
// in one run, since absolute times change from run to run.
#pragma once

#include "../tests/support/Heap.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

namespace mezzo::bench {

/// What a benchmark of a row is: the library, something written in its place, or the fastest kernel
/// that the hardware allows for the row's case alone.
inline constexpr const char* kLibrary = "library";
inline constexpr const char* kFloor = "floor";

/// Adds one benchmark to a row; every call of `inCall` gets the next number, for data that varies.
/// \param inVariant `kLibrary`, `kFloor`, or the name of a baseline.
template <class Call>
void Add(const std::string& inRow, const std::string& inVariant, Call inCall) {
  const auto run = [inCall](benchmark::State& state) {
    Call call = inCall;
    std::size_t number = 0;
    call(number++);  // what is allocated once is not counted
    const auto before = test::heap::AllocationCount();
    for (auto _ : state) call(number++);
    const auto allocations = static_cast<double>(test::heap::AllocationCount() - before);
    state.counters["allocations"] =
        benchmark::Counter(allocations, benchmark::Counter::kAvgIterations);
  };
  benchmark::RegisterBenchmark((inRow + "|" + inVariant).c_str(), run);
}

void AddTimeConversions();
void AddMusicalNotes();
void AddMediaHandlers();
void AddApplicationState();

}  // namespace mezzo::bench
