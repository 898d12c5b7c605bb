/// \file
/// Assertion dialog: reports failed assertions to the host.
#pragma once

#include <plinth/Export.h>

namespace plinth::debug {

/// Shows or records a failed assertion. Returns true to break into the debugger. The parameters are
/// those of `BreakAfterAssertDialog`.
///
/// An assertion does not report while its flag is true. It may fail on several threads at once, so
/// a handler sets the flag, `ioDisabled`, with `__atomic_store_n`.
using AssertDialogHandler = bool (*)(bool& ioDisabled, const char* inCondition,
                                     const unsigned char* inMessage, const char* inFile, int inLine,
                                     const char* inFunction, bool inFlag);

/// Installs the host's handler.
///
/// The default handler writes one line to standard error and does not ask for a break.
///
/// \param inHandler the handler; null restores the default.
/// \return the previous handler; null for the default.
/// \par Thread safety
/// Any thread may call it at any time; a report in progress keeps its handler.
PLINTH_EXPORT AssertDialogHandler SetAssertDialogHandler(AssertDialogHandler inHandler) noexcept;

/// Reports a failed assertion to the host's handler. The caller breaks into the debugger if asked.
///
/// Callers check their site's flag first, with `__atomic_load_n`; this function does not check it.
///
/// \param[in,out] ioDisabled the flag of the assertion's site; the handler may set it to true to
///     silence the site.
/// \param inCondition the text of the condition.
/// \param inMessage the message, UTF-8, ending in a line feed; or empty.
/// \param inFile the source file.
/// \param inLine the line in the file.
/// \param inFunction the signature of the function.
/// \param inFlag a flag of the host's dialog, passed on to the handler; the library always passes
///     true.
/// \return true if the program should break into the debugger.
PLINTH_EXPORT bool BreakAfterAssertDialog(bool& ioDisabled, const char* inCondition,
                                          const unsigned char* inMessage, const char* inFile,
                                          int inLine, const char* inFunction, bool inFlag);

/// Asks the operating system whether a debugger is attached to the process.
/// \return true if one is attached; false also if that cannot be determined.
PLINTH_EXPORT bool IsDebuggerAttached();

}  // namespace plinth::debug
