#!/usr/bin/env bash
# Installs the Debian packages of a build into a root of their own, uses them, removes them:
# run.sh SOURCE BUILD SCRATCH COMPILER
set -euo pipefail
source=$1 build=$2 scratch=$3
packages=(libmezzo1 libmezzo-dev mezzo) root=$scratch/root
rm -rf "$scratch"
mkdir -p "$root/var/lib/dpkg/"{info,triggers,updates}
touch "$root/var/lib/dpkg/"{available,status}

cpack --config "$build/CPackConfig.cmake" -B "$scratch/packages" >"$scratch/log"

in_root() {
  PATH=$PATH:/usr/sbin:/sbin fakeroot dpkg --root="$root" --log=/dev/null --no-triggers \
    --force-script-chrootless --force-depends "$@" >>"$scratch/log" 2>&1
}
files() { (cd "$root" && find . -path ./var/lib/dpkg -prune -o -print | sort); }

lintian --fail-on error,warning "$scratch/packages/"*.deb
before=$(files)
in_root --install "$scratch/packages/"*.deb
dpkg-query --admindir="$root/var/lib/dpkg" -W -f '${Package} ${db:Status-Status} ${Depends}\n' |
  tee "$scratch/installed"
for package in "${packages[@]}"; do grep -q "^$package installed " "$scratch/installed"; done
grep -q '^mezzo .*libmezzo1 (= ' "$scratch/installed"
grep -q '^libmezzo-dev .*libmezzo1 (= .*libboost-dev' "$scratch/installed"
grep -q '^libmezzo1 .*libstdc++6' "$scratch/installed"

diff <("$build/bin/mezzo" show 480000) <("$root/usr/bin/mezzo" show 480000)
ldd "$root/usr/bin/mezzo" >"$scratch/libraries"
grep -q "libMezzo.so.1 => $root/usr/" "$scratch/libraries"
# The README's project finds the library in this root, although the library was built for another
# prefix. The lines added below include every header. They also have an implicit conversion, which
# compiles because users of the library do not get its own warning options.
mkdir -p "$scratch/reader/host" && cd "$scratch/reader"
awk '/^```/ { file = $2; next } file { print >file }' "$source/README.md"
(cd "$root/usr/include/mezzo" && printf '#include <%s>\n' */*.h) >>label.cpp
echo 'int Whole(double inNumber) { return inNumber; }' >>label.cpp
cmake -G Ninja -B build -DCMAKE_CXX_COMPILER="$4" -DCMAKE_PREFIX_PATH="$root/usr" >>"$scratch/log"
cmake --build build >>"$scratch/log"
PKG_CONFIG_PATH=$(dirname "$(find "$root" -name mezzo.pc)")
export PKG_CONFIG_PATH
read -ra flags < <(pkg-config --cflags --libs mezzo)
"$4" -std=c++20 label.cpp -o label "${flags[@]}" \
  "-Wl,-rpath,$(pkg-config --variable=libdir mezzo)"
diff <(build/label) <(./label)

in_root --purge "${packages[@]}"
diff <(echo "$before") <(files)
