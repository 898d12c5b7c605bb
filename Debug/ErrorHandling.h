/// \file
/// The host's switch that turns error handling off.
#pragma once

#include <Module/Export.h>

/// What helps to find faults.
namespace mezzo::debug {

/// Tells whether error handling is switched off.
///
/// The answer is the entry "mezzo.debug.DisableErrorHandling" of the host's debug database. It is
/// kept and read again only when the database's generation has changed; an unchanged database costs
/// a few atomic loads and a comparison, without lock or allocation.
///
/// \return true exactly when the entry's text is "true"; any other text, and no entry, give false.
/// \exception std::bad_alloc and what the database throws, on a call that has to read it.
/// \par Thread safety
/// Any thread may call it at any time.
MEZZO_EXPORT bool DisableErrorHandling();

}  // namespace mezzo::debug
