/// \file
/// Where failed assertions go.
#pragma once

#include <plinth/Export.h>

namespace plinth::debug {

/// Shows or records one failed assertion; the arguments are those of `BreakAfterAssertDialog`.
///
/// The flag is the site's own: once it is true, the site reports no more, not even from within the
/// handler. A site may fail on several threads at once, so a handler sets the flag with
/// `__atomic_store_n`.
using AssertDialogHandler = bool (*)(bool& ioDisabled, const char* inCondition,
                                     const unsigned char* inMessage, const char* inFile, int inLine,
                                     const char* inFunction, bool inFlag);

/// Installs the host's handler.
///
/// Without one, a failure becomes one line on standard error and asks for no break.
///
/// \param inHandler the handler; null puts the default back.
/// \return the handler before it; null for the default.
/// \par Thread safety
/// Any thread may call it at any time; a report under way keeps the handler that it began with.
PLINTH_EXPORT AssertDialogHandler SetAssertDialogHandler(AssertDialogHandler inHandler) noexcept;

/// Reports a failed assertion to the host's handler.
///
/// A caller reads its site's flag with `__atomic_load_n`.
///
/// \param[in,out] ioDisabled the flag of the assertion's site, which the handler may set to true to
///     silence it.
/// \param inCondition the condition as it stands in the source.
/// \param inMessage what went wrong, UTF-8, ending in a line feed; or the empty text.
/// \param inFile the source file.
/// \param inLine the line in the file.
/// \param inFunction the signature of the function.
/// \param inFlag handed on to the handler.
/// \return true when the program is to break into the debugger.
PLINTH_EXPORT bool BreakAfterAssertDialog(bool& ioDisabled, const char* inCondition,
                                          const unsigned char* inMessage, const char* inFile,
                                          int inLine, const char* inFunction, bool inFlag);

/// Asks the operating system whether a debugger is attached to the process.
/// \return true when one is; false also when the operating system does not answer.
PLINTH_EXPORT bool IsDebuggerAttached();

}  // namespace plinth::debug
