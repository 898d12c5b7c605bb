#include <Utility/AppRunningState.h>

#include <plinth/appstatemanager/AppStateManager.h>

#include <cstdint>

namespace mezzo::utility {

namespace {

using plinth::appstatemanager::GetState;

// The host's states. They are ordered: every number from kAppState_Terminating up means
// terminating. Negative numbers are not states.
enum AppState : std::int32_t {
  kAppState_Initialized = 1,
  kAppState_EventLoopRunning = 2,
  kAppState_TerminationRequested = 3,  // the event loop is running, termination is requested
  kAppState_EventLoopEnded = 4,        // termination is requested
  kAppState_Terminating = 5,
};

boost::signals2::signal<void(bool)> sAppActivatedSignal;

}  // namespace

bool IsInitialized() {
  const std::int32_t state = GetState();
  return state >= kAppState_Initialized && state <= kAppState_EventLoopEnded;
}

bool IsEventLoopRunning() {
  const std::int32_t state = GetState();
  return state == kAppState_EventLoopRunning || state == kAppState_TerminationRequested;
}

bool WillTerminate() {
  return GetState() >= kAppState_TerminationRequested;
}

bool IsTerminating() {
  return GetState() >= kAppState_Terminating;
}

boost::signals2::signal<void(bool)>& GetAppActivatedSignal() {
  return sAppActivatedSignal;
}

void NotifyAppActivated(bool inActivated) {
  sAppActivatedSignal(inActivated);
}

}  // namespace mezzo::utility
