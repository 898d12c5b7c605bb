/// \file
/// Export macro of the library.
#pragma once

/// Exports a declaration from the library, which is built with hidden visibility.
#define MEZZO_EXPORT __attribute__((visibility("default")))
