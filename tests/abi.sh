#!/bin/sh
# Compares the binary interface of a shared library, built with debug information, with its
# description: abi.sh LIBRARY DESCRIPTION
# With --write before them, it writes the description anew.
set -eu
here=$(dirname "$0")
describe() {
  # Paths of a build directory are no part of the interface.
  abidw --suppressions "$here/abi_suppressions.ini" --exported-interfaces-only \
    --drop-undefined-syms --no-elf-needed --no-architecture --no-corpus-path --no-comp-dir-path \
    --no-show-locs --no-parameter-names --type-id-style hash "$1" |
    sed "s| path='[^']*/\([^/']*\)'| path='\1'|"
}
[ "$1" != --write ] || { describe "$2" >"$3"; exit 0; }
actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
describe "$1" >"$actual"
abidiff "$2" "$actual"
