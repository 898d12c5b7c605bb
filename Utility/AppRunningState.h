/// \file
/// Application state: queries of the application's life cycle, and the application-activated
/// signal.
///
/// The host's state manager keeps the state as a number: 0 not yet initialised, 1 initialised,
/// 2 event loop running, 3 event loop running and termination requested, 4 event loop ended and
/// termination requested, 5 and above terminating. Every query reads it once; nothing is cached.
#pragma once

#include <Module/Export.h>

#include <boost/signals2/signal.hpp>

namespace mezzo::utility {

/// Tells whether the application is initialised and not yet terminating. The answer becomes false
/// again when termination begins.
/// \return true in states 1 to 4; false in all others, including unknown ones.
MEZZO_EXPORT bool IsInitialized();

/// Tells whether the event loop is running.
/// \return true in states 2 and 3; false in all others.
MEZZO_EXPORT bool IsEventLoopRunning();

/// Tells whether termination has been requested or has begun.
/// \return true in states 3 and above; false below.
MEZZO_EXPORT bool WillTerminate();

/// Tells whether the application is terminating.
/// \return true in states 5 and above; false below.
MEZZO_EXPORT bool IsTerminating();

/// Returns the process-wide application-activated signal.
///
/// Its argument is true on activation and false on deactivation. Connect and disconnect slots with
/// the operations of Boost.Signals2. The signal exists as long as the library is loaded.
///
/// \return the signal, the same object on every call.
/// \par Thread safety
/// Connecting, disconnecting and firing may happen on any thread.
MEZZO_EXPORT boost::signals2::signal<void(bool)>& GetAppActivatedSignal();

/// Fires the signal: calls every connected slot once, on the calling thread, in the signal's order.
/// \param inActivated true: the application was activated; false: it was deactivated.
/// \exception any exception of a slot; the slots after it are not called.
MEZZO_EXPORT void NotifyAppActivated(bool inActivated);

}  // namespace mezzo::utility
