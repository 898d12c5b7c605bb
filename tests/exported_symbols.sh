#!/usr/bin/env bash
# Compares what a shared library exports with a list, and the functions of the list with those that
# have digests: exported_symbols.sh LIBRARY LIST DIGESTS
# Names are written as nm demangles them. The types behind plinth::UTF16String and std::int64_t, which
# differ between standard libraries and processors, are replaced by these names.
set -euo pipefail
export LC_ALL=C
nm -D --defined-only --demangle "$1" | cut -d ' ' -f 3- | sed -E '
  s/std::(__[a-z0-9]+::)?basic_string<char16_t, std::(__[0-9]+::)?char_traits<char16_t>, plinth::allocator::STLAllocator<char16_t> ?>/plinth::UTF16String/g
  s/\blong( long)?\b/std::int64_t/g' | sort | diff "$2" -
diff <(sed 's/(.*//; s/.*:://' "$2" | sort) <(sed 's/[- ].*//' "$3" | sort)
