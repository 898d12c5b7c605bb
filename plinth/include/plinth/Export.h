/// \file
/// Export macro: marks the declarations that the shared library exports; everything else is hidden.
#pragma once

/// The stand-in for the host's foundation library: strings, streams and number parsing,
/// identifiers, the assertion dialog, the debug database, translations, and the application's
/// state.
namespace plinth {}

/// Exports a declaration from the library, which is built with hidden visibility.
#define PLINTH_EXPORT __attribute__((visibility("default")))
