# Completes command lines with the script that is installed: completion.sh SCRIPT
# shellcheck source=/dev/null
source "$1"
failures=0

# expect WORDS COMMAND-LINE-WORD...: what the last word may become
expect() {
  local expected=$1 && shift
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
  _mezzo
  [[ ${COMPREPLY[*]} == "$expected" ]] && return
  echo "$*: '${COMPREPLY[*]}' instead of '$expected'" && ((++failures))
}

expect 'format formats' mezzo f
expect 'smpte-drop smpte-drop2' mezzo parse smpte-d
expect 'smpte-drop smpte-drop2' mezzo ruler --from 0 --format smpte-d
expect '--fps' mezzo show 5 --json --f
expect '' mezzo show --rate ''
expect 'RuvoMP2 RuvoMP3' mezzo handler RuvoMP
expect "$1" mezzo ruler --svg "${1%?}"
exit $((failures > 0))
