# Sourced by the other scripts.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export CMAKE_BUILD_PARALLEL_LEVEL=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}

# Installs those of the named Debian packages that are missing.
install_packages() {
  local missing=() as_root=()
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
    if ! command -v sudo >/dev/null; then
      echo "Missing, and neither root nor sudo to install them: ${missing[*]}" >&2
      exit 1
    fi
  fi
  if ! command -v apt-get >/dev/null; then
    echo "Missing, and no apt-get to install them: ${missing[*]}" >&2
    exit 1
  fi
  echo "Installing ${missing[*]}"
  if ! { "${as_root[@]}" apt-get update -qq &&
         "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
           apt-get install -qq --no-install-recommends "${missing[@]}" >/dev/null; }; then
    echo "Could not install: ${missing[*]}" >&2
    exit 1
  fi
}

# Installs what the release build needs, and builds its named targets in build/release.
build_release() {
  install_packages cmake g++ help2man libbenchmark-dev libboost-dev libcli11-dev libfast-float-dev libgtest-dev ninja-build \
    nlohmann-json3-dev
  # For this prefix, installed files lie where Debian has them; packages are made from this build.
  cmake --preset release -DCMAKE_INSTALL_PREFIX=/usr >/dev/null
  cmake --build --preset release --target "$@"
}
