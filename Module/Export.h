/// \file
/// Marks what the shared library offers to its host; everything else stays hidden inside it.
#pragma once

/// Gives a declaration default visibility in a library that is built with hidden visibility.
#define MEZZO_EXPORT __attribute__((visibility("default")))
