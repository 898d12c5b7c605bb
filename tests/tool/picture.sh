# Renders a ruler with librsvg, in the light colour scheme: picture.sh TOOL
set -o pipefail
colours=$("$1" ruler --format 29.97df --from '00;00;58;00' --to '00;01;02;00' --width 80 --svg - |
  rsvg-convert | pngtopnm | ppmhist -hexcolor -noheader |
  awk '{print substr($1, 3) substr($2, 3) substr($3, 3), $NF}') || exit 1
expect() { # COLOUR LEAST: at least so many of the picture's 97,696 pixels have that colour
  local count && count=$(awk -v colour="$1" '$1 == colour {print $2}' <<<"$colours")
  ((${count:-0} >= $2)) || { echo "$1: ${count:-0} pixels"; exit 1; }
}
expect ffffff 80000  # paper
expect 9aa1a9 500    # ticks
expect 1c2024 50     # labelled ticks and their labels
expect b3470b 50     # the gap
