# Runs command lines of the tool: commands.sh TOOL
export LC_ALL=C.UTF-8
mezzo=$1
scratch=$(mktemp -d) && trap 'rm -r "$scratch"' EXIT
failures=0

fail() { echo "FAILED: $1" && ((++failures)); }

# expect STATUS OUTPUT COMPLAINT ARGUMENT...: COMPLAINT is a pattern of all of standard error; what
# is on standard input is the tool's.
expect() {
  local status=$1 output=$2 complaint=$3 && shift 3
  local got && got=$("$mezzo" "$@" 2>"$scratch/errors")
  local got_status=$? errors && errors=$(<"$scratch/errors")
  [[ $got_status == "$status" ]] || fail "$*: status $got_status"
  [[ $got == "$output" ]] || fail "$*: output '$got'"
  # shellcheck disable=SC2053
  [[ $errors == $complaint ]] || fail "$*: complaint '$errors'"
}

refuse() { # COMPLAINT ARGUMENT...: one line on standard error, nothing else
  expect 2 '' "mezzo: $1" "${@:2}" </dev/null
  [[ $(wc -l <"$scratch/errors") == 1 ]] || fail "${*:2}: not one line"
}

# Arguments
expect 0 $'48000\n48000\n800' '' parse smpte 1:00 -00:00:01:00 -- -.5
expect 0 $'-160000\n128000' '' parse bars-beats -1:4.000 2:1 --tempo 90
expect 0 $'-1234\n-5' '' parse samples -1234 -- -5
expect 0 $'2882880\n2882880' '' parse 4 '00;01;00;00' '00;01;00;02'
expect 0 $'   0:10.000\n  -0:00.001' '' format decimal 480000 -73
expect 0 '3:1.5' '' format bars-beats 150000 --meter 6/8 --ticks 10
expect 0 '0:1.000' '' format bars-beats 24000 --offset-ms 500 --duration
expect 1 $'7\n-8' '*argument 2: *whole number*argument 3: *position*argument 4: *64 bits*' \
  format samples ' 7 ' x 1.5 99999999999999999999 -8
expect 1 12 '*argument 1: *64 bits*argument 2: *whole number*' \
  parse samples 99999999999999999999 'abc 12' 12

# Standard input: byte order mark, CRLF, empty, without a digit, not UTF-8, no line feed at the end
expect 1 $'48000\n96000' '*line 2: no digit*line 3: no digit*line 4: not valid UTF-8' \
  parse smpte < <(printf '\xef\xbb\xbf1:00\r\n\r\nabc\n\xff1\n2:00')
expect 1 $'[\n{"item":1,"samples":48000,"text":"1:00"},\n{"item":2,"text":"x","error":"no digit in \'x\'"}\n]' \
  '*line 2: no digit*' parse smpte --json <<<$'\xef\xbb\xbf1:00\r\nx'
piped=$(printf '%s\n' '00;00;10;00' '00;01;00;02' | "$mezzo" parse smpte-drop | "$mezzo" format bars-beats)
[[ $piped == $'6:1.019\n31:1.115' ]] || fail "pipe: $piped"

# Every display
expect 0 ' 0  decimal          "   0:10.000"
 1  samples          "480000"
 2  smpte            "00:00:10:00"
 3  smpte-pulldown   "00:00:09:29"
 4  smpte-drop       "00;00;09;29"
 5  beats            "20.000"
 6  bars-beats       "6:1.000"
 7  reserved         (no conversion)
 8  frames           "300"
 9  pulldown-frames  "299"
10  compact          "10:00.00"
11  milliseconds     "10000"
12  smpte-pulldown2  "00:00:09:29"
13  smpte-drop2      "00;00;09;29"
14  smpte-pulldown3  "00:00:09:29"' '' show 480000
"$mezzo" show -1 --fps 25 >"$scratch/out" 2>"$scratch/errors"
[[ $? == 1 && $(wc -l <"$scratch/out") == 15 ]] || fail 'show at 25 fps'
[[ $(<"$scratch/errors") == 'mezzo: library report: DropFrameToHMSF requires '* &&
  $(wc -l <"$scratch/errors") == 1 ]] || fail "report: $(<"$scratch/errors")"

# Notes and handlers
expect 0 'A4  (index 0, octave 4)' '' note 440
expect 0 'C♯/D♭5  (index 4, octave 4)' '' note --index 4 --octave 4
expect 0 'D♭  (index 4, octave -1)' '' note --index 4 --flat
mapfile -t rows < <("$mezzo" handlers)
[[ ${#rows[@]} == 19 ]] || fail "${#rows[@]} handlers"
for row in "${rows[@]}"; do
  read -r _ name identifier <<<"$row"
  for key in "$name" "$identifier" "{${identifier^^}}"; do expect 0 "$row" '' handler "$key"; done
done

# Bad arguments
refuse "no command*"
refuse "unknown command 'x'*" x
refuse 'POSITION*' show
refuse '*whole number' show $'a\nb'
refuse '*64 bits' show 9223372036854775808
refuse "FORMAT: unknown format '15'*" parse 15 5
refuse '*no conversion' format reserved 5
refuse '--rate: *' show 5 --rate 0
refuse '--tempo: *' show 5 --tempo nan
refuse '--meter: *' show 5 --meter 4/3
refuse 'note: *' note 440 --index 3
refuse 'FREQUENCY: *' note -- -5
refuse '*ruvowav*' handler ruvowav
refuse 'empty interval: *' ruler --from 5 --to 5
refuse '--width: *' ruler --from 0 --to 5 --width 0
refuse '*cannot write*' ruler --from 0 --to 5 --svg "$scratch/none/x.svg"
refuse 'ruler: *' ruler --from 0 --to 5 --svg x --json
[[ -e /dev/full ]] && { "$mezzo" formats >/dev/full 2>&1; [[ $? == 2 ]] || fail 'full device'; }

expect 0 'smpte-drop, 48000 Hz, 30 fps, samples 2786784 to 2975773

00;00;58;00    00;00;59;00   00;00;59;29 00;01;00;02  00;01;01;00    00;01;02;00
├───┬───┬───┬───┬───┼───┬───┬───┬───┬───┼──┬───┬───┬───┬───┼───┬───┬───┬───┬───┤
2786784          2834832         2881279 2882880        2927725          2975773' '' \
  ruler --format smpte-drop --from '00;00;58;00' --to '00;01;02;00'
# No ruler leaves its width, and none is wider or narrower than asked for.
for width in 20 21 50 79 133; do
  widest=$("$mezzo" ruler --format 11 --from @-4800 --to @4800 --width $width | wc -L)
  [[ $widest == "$width" ]] || fail "ruler of $width columns has $widest"
done

for command in '' show parse format formats ruler note handlers handler; do
  # shellcheck disable=SC2086
  [[ $("$mezzo" $command --help) == *"Usage: mezzo $command"*Examples:* ]] || fail "help of $command"
done
exit $((failures > 0))
