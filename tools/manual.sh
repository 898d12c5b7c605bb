#!/usr/bin/env bash
# Writes the manual pages from the tool's own help: manual.sh TOOL DIRECTORY
set -euo pipefail
tool=$1 directory=$2 include=$(dirname "$0")/mezzo.h2m

page() { # PAGE HEADLINE COMMAND...
  help2man --no-info --include="$include" --version-string="$("$tool" --version)" \
    --name="$2" "${*:3}" |
    # Each example is a line of its own, no word is hyphenated, and the page has its command's name.
    sed -E "/^\.SH EXAMPLES/,/^\.SH/s/^mezzo |^seq /.br\n&/; s/^mezzo \\\\- /$1 \\\\- /;
      s/^\.TH [^ ]+(.*)/.TH ${1^^}\1\n.nh/" | gzip -9n >"$directory/$1.1.gz"
}

mkdir -p "$directory"
page mezzo 'convert positions on an audio timeline, draw rulers and name notes' "$tool"
"$tool" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) *\(.*\)/\1 \2/p' |
  while read -r command headline; do page "mezzo-$command" "${headline,}" "$tool $command"; done
