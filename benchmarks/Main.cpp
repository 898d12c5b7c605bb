// Prints one table: every function's time, and how it compares with what stands beside it.

#include "Rows.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace mezzo::bench {
namespace {

struct Timing {
  std::string variant;
  double nanoseconds;
  double allocations;
};

double Median(std::vector<double> inValues) {
  const auto middle = inValues.begin() + static_cast<std::ptrdiff_t>(inValues.size() / 2);
  std::nth_element(inValues.begin(), middle, inValues.end());
  return *middle;
}

/// Collects the repetitions and prints the table at the end.
class TableReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& inRuns) override {
    for (const Run& run : inRuns) {
      if (run.run_type != Run::RT_Iteration) continue;
      const std::string name = run.run_name.function_name;
      if (fTimes.find(name) == fTimes.end()) fOrder.push_back(name);
      Times& times = fTimes[name];
      times.nanoseconds.push_back(run.GetAdjustedCPUTime());
      times.allocations = run.counters.at("allocations");
    }
  }

  void Finalize() override {
    std::printf("| function | ns | against the baseline | against the floor | allocations |\n");
    std::printf("| --- | ---: | --- | ---: | ---: |\n");
    // Interleaving shuffles the runs; the rows stand in the order of their names.
    std::sort(fOrder.begin(), fOrder.end());
    for (auto name = fOrder.begin(); name != fOrder.end();) {
      const std::string row = name->substr(0, name->find('|'));
      std::vector<Timing> timings;
      for (; name != fOrder.end() && name->substr(0, name->find('|')) == row; ++name) {
        const Times& times = fTimes[*name];
        timings.push_back(
            {name->substr(row.size() + 1), Median(times.nanoseconds), times.allocations});
      }
      PrintRow(row, timings);
    }
  }

 private:
  struct Times {
    std::vector<double> nanoseconds;
    double allocations = 0;
  };

  static void PrintRow(const std::string& inRow, const std::vector<Timing>& inTimings) {
    const auto library = std::find_if(inTimings.begin(), inTimings.end(),
                                      [](const Timing& t) { return t.variant == kLibrary; });
    if (library == inTimings.end()) return;
    std::string baselines;
    std::string floor;
    for (const Timing& timing : inTimings) {
      char text[64];
      if (timing.variant == kFloor) {
        std::snprintf(text, sizeof text, "%.2f ×", library->nanoseconds / timing.nanoseconds);
        floor = text;
      } else if (timing.variant != kLibrary) {
        std::snprintf(text, sizeof text, "%s%.1f × as fast as %s", baselines.empty() ? "" : ", ",
                      timing.nanoseconds / library->nanoseconds, timing.variant.c_str());
        baselines += text;
      }
    }
    std::printf("| %s | %.1f | %s | %s | %.2g |\n", inRow.substr(inRow.find(' ') + 1).c_str(),
                library->nanoseconds, baselines.c_str(), floor.c_str(), library->allocations);
  }

  std::vector<std::string> fOrder;
  std::map<std::string, Times> fTimes;
};

}  // namespace
}  // namespace mezzo::bench

int main(int argc, char** argv) {
  using namespace mezzo::bench;
  AddTimeConversions();
  AddMusicalNotes();
  AddMediaHandlers();
  AddApplicationState();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  TableReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return EXIT_SUCCESS;
}
