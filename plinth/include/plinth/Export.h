/// \file
/// Marks what the shared library offers to its users; everything else stays hidden inside it.
#pragma once

/// Gives a declaration default visibility in a library that is built with hidden visibility.
#define PLINTH_EXPORT __attribute__((visibility("default")))
