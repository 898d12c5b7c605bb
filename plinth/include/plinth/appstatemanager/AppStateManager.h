/// \file
/// Application state manager: where the application stands in its life cycle.
#pragma once

#include <plinth/Export.h>

#include <cstdint>

namespace plinth::appstatemanager {

/// Returns the application's state. Any thread may call it at any time.
/// \return 0 not yet initialised (the initial state), 1 initialised, 2 event loop running, 3 event
///     loop running and termination requested, 4 event loop ended and termination requested, 5 and
///     above terminating.
PLINTH_EXPORT std::int32_t GetState() noexcept;

/// Sets the application's state; for the host only.
/// \param inState the state.
PLINTH_EXPORT void SetState(std::int32_t inState) noexcept;

}  // namespace plinth::appstatemanager
