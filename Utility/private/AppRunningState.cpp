#include <Utility/AppRunningState.h>

#include <plinth/appstatemanager/AppStateManager.h>

#include <cstdint>

namespace mezzo::utility {

namespace {

boost::signals2::signal<void(bool)> sAppActivatedSignal;

std::int32_t State() {
  return plinth::appstatemanager::GetState();
}

}  // namespace

// One range test: states below 1 become large unsigned numbers.
bool IsInitialized() {
  return static_cast<std::uint32_t>(State()) - 1u < 4u;
}

// The two states with a running event loop differ in their lowest bit only.
bool IsEventLoopRunning() {
  return (State() & ~std::int32_t{1}) == 2;
}

bool WillTerminate() {
  return State() > 2;
}

bool IsTerminating() {
  return State() > 4;
}

boost::signals2::signal<void(bool)>& GetAppActivatedSignal() {
  return sAppActivatedSignal;
}

void NotifyAppActivated(bool inActivated) {
  sAppActivatedSignal(inActivated);
}

}  // namespace mezzo::utility
