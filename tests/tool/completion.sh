# Completes command lines, and checks that the scripts contain every name: completion.sh TOOL DIRECTORY
# shellcheck source=/dev/null
source "$2/mezzo.bash"
mezzo=$1 directory=$2 failures=0
fail() { echo "FAILED: $1" && ((++failures)); }

# expect WORDS COMMAND-LINE-WORD...: the completions of the last word
expect() {
  local expected=$1 got && shift
  local line=$*
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
  _mezzo
  [[ ${COMPREPLY[*]} == "$expected" ]] || fail "$*: '${COMPREPLY[*]}' instead of '$expected'"
  command -v fish >/dev/null || return
  # Only bash splits words at "=".
  # shellcheck disable=SC2016
  got=$(fish -c 'source $argv[1]; complete -C "$argv[2]"' "$directory/mezzo.fish" "${line/ = /=}" |
    cut -f 1 | xargs)
  [[ $got == "$expected" ]] || fail "fish, $*: '$got' instead of '$expected'"
}

expect 'format formats' mezzo f
expect 'smpte-drop smpte-drop2' mezzo parse smpte-d
expect '29.97 29.97df' mezzo convert 25 29
expect '29.97 29.97df' mezzo convert --rate = 44100 25 29
expect 'smpte-drop smpte-drop2' mezzo parse --rate 44100 smpte-d
expect '' mezzo convert 25 29.97 sm
expect 'smpte-drop smpte-drop2' mezzo ruler --from 0 --format smpte-d
expect 'bars-beats' mezzo show --from bar
expect '--fps' mezzo show 5 --json --fp
expect '' mezzo show --rate ''
expect 'RuvoMP2 RuvoMP3' mezzo handler RuvoMP
expect "$2/mezzo.fish" mezzo ruler --svg "$2/mezzo.f"
expect "$2/mezzo.fish" mezzo parse 25 '<' "$2/mezzo.f"

# Each script contains every command, option, format and handler.
mapfile -t names < <(
  "$mezzo" formats | sed -En 's/^ ?[0-9]+  ([^ ]+) .*/\1/p; s/^([0-9.]+(df)?) .*/\1/p'
  "$mezzo" handlers | awk '{print $2}'
  "$mezzo" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p'
  "$mezzo" --help-all | grep -o -- '--[a-z][a-z-]*')
((${#names[@]} > 80)) || fail "only ${#names[@]} names"
for name in $(printf '%s\n' "${names[@]}" | sort -u); do
  for script in mezzo.bash _mezzo mezzo.fish; do
    grep -qE -- "(^|[^a-zA-Z0-9.-])($name|-l ${name#--})([^a-zA-Z0-9.-]|$)" "$2/$script" ||
      grep -qE "for option in.* ${name#--}( |$)" "$2/$script" || fail "$script lacks $name"
  done
done
if command -v zsh >/dev/null; then zsh -n "$2/_mezzo" || fail zsh; fi
exit $((failures > 0))
