#include <plinth/appstatemanager/AppStateManager.h>

#include <atomic>

namespace plinth::appstatemanager {

namespace {

constinit std::atomic<std::int32_t> sState{0};

}  // namespace

std::int32_t GetState() noexcept {
  return sState.load();
}

void SetState(std::int32_t inState) noexcept {
  sState.store(inState);
}

}  // namespace plinth::appstatemanager
