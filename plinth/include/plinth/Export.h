/// \file
/// Marks what the shared library offers to its users; everything else stays hidden inside it.
#pragma once

/// The stand-in for the host's foundation library: strings, streams and number parsing,
/// identifiers, the assertion dialog, the debug database, translations, and the application's
/// state.
namespace plinth {}

/// Gives a declaration default visibility in a library that is built with hidden visibility.
#define PLINTH_EXPORT __attribute__((visibility("default")))
