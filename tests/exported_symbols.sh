#!/bin/sh
# Compares what a shared library exports with a list: exported_symbols.sh LIBRARY LIST
# Names are written as the headers declare them, whichever standard library they were built with.
set -eu
nm -D --defined-only --demangle "$1" | cut -d ' ' -f 3- | sed -E '
  s/std::(__[a-z0-9]+::)?basic_string<char16_t, std::(__[0-9]+::)?char_traits<char16_t>, plinth::allocator::STLAllocator<char16_t> ?>/plinth::UTF16String/g
  s/\blong\b/std::int64_t/g' | LC_ALL=C sort | diff "$2" -
