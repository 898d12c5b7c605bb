#include "Rows.h"
#include <Debug/ErrorHandling.h>
#include <Utility/AppRunningState.h>

#include <boost/signals2/connection.hpp>

#include <memory>
#include <string>
#include <vector>

namespace mezzo::bench {
namespace {

using Connections = std::vector<boost::signals2::scoped_connection>;

/// Slots stay connected for one call at a time, so that other rows fire without them.
void AddFiring(int inSlots) {
  Add("72 firing with " + std::to_string(inSlots) + " slots", kLibrary,
      [inSlots, connections = std::shared_ptr<Connections>()](std::size_t number) mutable {
        if (connections == nullptr) {
          connections = std::make_shared<Connections>();
          for (int slot = 0; slot < inSlots; ++slot) {
            connections->emplace_back(utility::GetAppActivatedSignal().connect(
                [](bool activated) { benchmark::DoNotOptimize(activated); }));
          }
        }
        utility::NotifyAppActivated(number % 2 == 0);
      });
}

}  // namespace

void AddApplicationState() {
  Add("70 error-handling switch, unchanged", kLibrary,
      [](std::size_t) { benchmark::DoNotOptimize(debug::DisableErrorHandling()); });
  Add("71 four application-state queries", kLibrary, [](std::size_t) {
    benchmark::DoNotOptimize(utility::IsInitialized());
    benchmark::DoNotOptimize(utility::IsEventLoopRunning());
    benchmark::DoNotOptimize(utility::WillTerminate());
    benchmark::DoNotOptimize(utility::IsTerminating());
  });
  for (const int slots : {0, 1, 8}) AddFiring(slots);
}

}  // namespace mezzo::bench
