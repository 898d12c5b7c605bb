/// \file
/// Where the application stands in its life.
#pragma once

#include <plinth/Export.h>

#include <cstdint>

namespace plinth::appstatemanager {

/// Gives the application's state; any thread may ask at any time.
/// \return 0 not yet initialised (and at first), 1 initialised, 2 event loop running, 3 event loop
///     running and termination requested, 4 event loop ended and termination requested, 5 and above
///     terminating.
PLINTH_EXPORT std::int32_t GetState() noexcept;

/// Moves the application to a state; for the host alone.
/// \param inState the state.
PLINTH_EXPORT void SetState(std::int32_t inState) noexcept;

}  // namespace plinth::appstatemanager
