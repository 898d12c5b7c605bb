#!/bin/sh
# Installs a build tree to a scratch prefix and uses the library from there and from its sources:
# run.sh SOURCE BUILD SCRATCH COMPILER FLAGS
set -eux
source=$1 build=$2 scratch=$3 compiler=$4 flags=$5
consumer=$source/tests/consumer

rm -rf "$scratch"
# Installed, then moved: nothing may remember where it was.
cmake --install "$build" --prefix "$scratch/staged"
mv "$scratch/staged" "$scratch/prefix"
prefix=$scratch/prefix

use() {
  name=$1
  shift
  cmake -G Ninja -S "$consumer" -B "$scratch/$name" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" "$@"
  cmake --build "$scratch/$name"
  "$scratch/$name/app"
}
use package
use subdirectory -DMEZZO_SOURCE="$source"

PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name mezzo.pc)")
export PKG_CONFIG_PATH
# shellcheck disable=SC2046,SC2086
"$compiler" -std=c++20 $flags "$consumer/main.cpp" -o "$scratch/pkg-config-app" \
  $(pkg-config --cflags --libs mezzo) "-Wl,-rpath,$(pkg-config --variable=libdir mezzo)"
"$scratch/pkg-config-app"
