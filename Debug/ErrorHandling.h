/// \file
/// Error-handling switch: a debug setting of the host that its modules query.
#pragma once

#include <Module/Export.h>

/// Debugging aids.
namespace mezzo::debug {

/// Tells whether error handling is switched off. A query only: the library's own reports do not
/// depend on the switch.
///
/// The switch is the entry "mezzo.debug.DisableErrorHandling" of the host's debug database. Its
/// value is cached until the database's generation changes. With an unchanged database a call takes
/// a few atomic loads and a comparison, no lock and no allocation.
///
/// \return true if the entry's text is "true"; false for any other text and without an entry.
/// \exception std::bad_alloc and the database's own exceptions, on a call that reads the database.
/// \par Thread safety
/// Any thread may call it at any time.
MEZZO_EXPORT bool DisableErrorHandling();

}  // namespace mezzo::debug
