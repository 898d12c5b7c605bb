/// \file
/// Export macro: marks the functions that the shared library exports; everything else is hidden.
#pragma once

/// Exports a declaration from the library, which is built with hidden visibility.
#define MEZZO_EXPORT __attribute__((visibility("default")))
