/// \file
/// Where the application stands in its life, and the signal that tells of its activation.
///
/// The host's state manager keeps the state as a number: 0 not yet initialised, 1 initialised,
/// 2 event loop running, 3 event loop running and termination requested, 4 event loop ended and
/// termination requested, 5 and above terminating. Every query asks it anew.
#pragma once

#include <Module/Export.h>

#include <boost/signals2/signal.hpp>

namespace mezzo::utility {

/// Tells whether the application is initialised and not yet terminating.
/// \return true in the states 1 to 4; false in every other, unknown ones included.
MEZZO_EXPORT bool IsInitialized();

/// Tells whether the event loop is running.
/// \return true in the states 2 and 3; false in every other.
MEZZO_EXPORT bool IsEventLoopRunning();

/// Tells whether termination has been requested or has begun.
/// \return true in the states 3 and above; false below.
MEZZO_EXPORT bool WillTerminate();

/// Tells whether the application is terminating.
/// \return true in the states 5 and above; false below.
MEZZO_EXPORT bool IsTerminating();

/// Gives the process-wide signal of the application's activation.
///
/// Its argument is true when the application was activated, false when it was deactivated. Connect
/// and disconnect slots with the operations of Boost.Signals2; the signal lives as long as the
/// library is loaded.
///
/// \return the signal, the same object on every call.
/// \par Thread safety
/// Connecting, disconnecting and firing may happen on any thread.
MEZZO_EXPORT boost::signals2::signal<void(bool)>& GetAppActivatedSignal();

/// Calls every connected slot once, on the calling thread, in the signal's order.
/// \param inActivated true: the application was activated; false: it was deactivated.
/// \exception whatever a slot throws; the slots after it are then not called.
MEZZO_EXPORT void NotifyAppActivated(bool inActivated);

}  // namespace mezzo::utility
