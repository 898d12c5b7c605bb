# Sourced by the other scripts.

set -euo pipefail

# The comment at the top of a script is its help.
if [ "${1:-}" = --help ]; then
  sed -n '2,/^[^#]/{s/^# \{0,1\}//p}' "$0"
  exit
fi
refuse() {
  echo "${0##*/}: unknown argument '$1'; see --help" >&2
  exit 2
}

cd "$(dirname "${BASH_SOURCE[0]}")/.."
export CMAKE_BUILD_PARALLEL_LEVEL=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}

# Emscripten needs Debian's Node modules, whichever Node runs it.
export NODE_PATH=/usr/share/nodejs

# The Debian packages for each purpose.
declare -A packages=(
  [tool]='cmake g++ libboost-dev libcli11-dev libfast-float-dev ninja-build nlohmann-json3-dev'
  [full build]='help2man libbenchmark-dev libgtest-dev'
  [running tests]='dpkg-dev fakeroot file fish librsvg2-bin lintian locales netpbm pkg-config'
  [packaging]='dpkg-dev file'
  [checks]='binutils clang clang-format clang-tidy git'
  [fuzzing]='clang'
  [processors]='clang diffutils g++-aarch64-linux-gnu g++-i686-linux-gnu g++-s390x-linux-gnu
    googletest libc++-14-dev libc++abi-14-dev qemu-user-static'
  [more processors]='clang-19 emscripten g++-arm-linux-gnueabihf g++-powerpc64le-linux-gnu
    g++-riscv64-linux-gnu'
  [web]='emscripten'
  [browser]='chromium chromium-driver python3-selenium'
  [documents]='doxygen linkchecker'
)

# need PURPOSE...: installs missing packages.
need() {
  local missing=() as_root=() purpose package
  for purpose in "$@"; do
    for package in ${packages[$purpose]}; do
      dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
        missing+=("$package")
    done
  done
  [ ${#missing[@]} -eq 0 ] && return
  if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
    if ! command -v sudo >/dev/null; then
      echo "Cannot install without root or sudo: ${missing[*]}" >&2
      exit 1
    fi
  fi
  if ! command -v apt-get >/dev/null; then
    echo "Cannot install without apt-get: ${missing[*]}" >&2
    exit 1
  fi
  echo "Installing ${missing[*]}" >&2
  if ! { "${as_root[@]}" apt-get update -qq &&
         "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
           apt-get install -qq --no-install-recommends "${missing[@]}" >/dev/null; }; then
    echo "Could not install: ${missing[*]}" >&2
    exit 1
  fi
}

# build_release TARGET...: builds targets of the release build in build/release.
build_release() {
  need tool "full build"
  # Packages are made from this build. With this prefix, files are installed in Debian's directories.
  cmake --preset release -DCMAKE_INSTALL_PREFIX=/usr >/dev/null
  cmake --build --preset release --target "$@"
}
