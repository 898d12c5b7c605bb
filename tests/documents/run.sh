#!/usr/bin/env bash
# Does what the documents show, in their order: run.sh SOURCE BUILD SCRATCH COMPILER FLAGS
#
# A fenced block that names a file is that file. A console block is a transcript: a line that begins
# with "$ " is a command; the lines below are its output.
set -euo pipefail
source=$1 build=$2 scratch=$3
documents=("$source"/{README,CONTRIBUTING,docs/concepts}.md)
export CXX=$4 CXXFLAGS=$5 LC_ALL=C.UTF-8 CMAKE_GENERATOR=Ninja
unset COLUMNS
rm -rf "$scratch"
mkdir -p "$scratch/reader/host/foundation"
cmake --install "$build" --prefix "$scratch/prefix" >/dev/null
export CMAKE_PREFIX_PATH=$scratch/prefix PATH=$scratch/prefix/bin:$PATH
failures=0
fail() { echo "FAILED: $1"; failures=$((failures + 1)); }

# The host's own foundation library, and a link to the sources of Mezzo.
cat >"$scratch/reader/host/foundation/CMakeLists.txt" <<'CMAKE'
find_library(foundation_library plinth REQUIRED)
find_path(foundation_headers plinth/Export.h REQUIRED)
add_library(foundation INTERFACE)
target_include_directories(foundation INTERFACE "${foundation_headers}")
target_link_libraries(foundation INTERFACE "${foundation_library}")
add_library(plinth::plinth ALIAS foundation)
CMAKE
ln -s "$source" "$scratch/reader/host/mezzo"

cd "$scratch/reader"
awk '/^```/ { file = $2; next } file { print >file }' "${documents[@]}"
awk '/^```/ { shown = $0 == "```console"; next } shown' "${documents[@]}" >"$scratch/shown"
while IFS= read -r line; do
  printf '%s\n' "$line"
  bash -c "${line#\$ }" 2>&1 </dev/null || true
done < <(grep '^\$ ' "$scratch/shown") >"$scratch/seen"
diff "$scratch/shown" "$scratch/seen" || fail 'the output differs from the documents'
[ -e host/build/mezzo ] && [ ! -e host/build/mezzo/plinth ] || fail 'the stand-in was built in the host'

# The README describes every script. Each describes itself with --help and refuses unknown options,
# except run, which passes its arguments to the tool. Every file that the documents name exists.
for script in "$source"/scripts/*; do
  [ -x "$script" ] || continue
  name=${script##*/}
  grep -qF "\`./scripts/$name" "$source/README.md" || fail "README without $name"
  [[ $name == run ]] && continue
  "$script" --help | grep -q "scripts/$name" || fail "$name --help"
  status=0
  "$script" --unknown >/dev/null 2>&1 || status=$?
  [ $status = 2 ] || fail "$name --unknown"
done
for document in "${documents[@]}"; do
  while IFS= read -r path; do
    [ -e "$source/$path" ] || [ -e "${document%/*}/$path" ] || fail "${document##*/}: no $path"
  done < <(grep -oE '\]\([^)#]+|`(\./)?[A-Za-z]+/[A-Za-z0-9_./]+' "$document" | sed 's/^\](\|^`//')
done

# Every function has an example.
names=$(sed -E 's/\(.*//; s/.*:://' "$source/cmake/exports.txt" | sort -u)
diff <(echo "$names") <(grep -oFf <(echo "$names") "$source/docs/examples.md" | sort -u) ||
  fail 'functions without an example'
exit "$failures"
