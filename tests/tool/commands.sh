# Runs command lines of the tool: commands.sh TOOL
export LC_ALL=C.UTF-8
mezzo=$1
scratch=$(mktemp -d) && trap 'rm -r "$scratch"' EXIT
failures=0

fail() { echo "FAILED: $1" && ((++failures)); }

# expect STATUS OUTPUT COMPLAINT ARGUMENT...: COMPLAINT is a pattern for all of standard error. The
# tool gets the standard input of expect.
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

contain() { # TEXT PART...
  for part in "${@:2}"; do [[ $1 == *"$part"* ]] || fail "no $part"; done
}

# Arguments
expect 0 $'48000\n-48000\n-800' '' parse compact 1:00 -00:00:01:00 -- -.5
expect 0 $'-160000\n128000' '' parse bars-beats -1:4.000 2:1 --tempo 90
expect 0 $'-1234\n-5' '' parse samples -1234 -- -5
expect 0 $'   0:10.000\n  -0:00.001\n10:00:00.00' '' format decimal 480000 -73 1728000479
expect 0 '3:1.5' '' format bars-beats 150000 --meter 6/8 --ticks 10
expect 0 '0:1.000' '' format bars-beats 24000 --offset-ms 500 --duration
expect 0 1920 '' parse smpte 1 --fps 30 --fps 25
expect 0 '1351:3.957' '' convert 29.97df bars-beats '01;00;02;00' --tempo 90
expect 0 '00:00:00:24' '' convert 48 25 00:00:00:47
expect 0 86400 '' convert 24 frames 01:00:00:00
expect 0 17999 "*'smpte-drop' has 30 x 1000/1001 frames per second, but 'frames' has 30" convert 29.97df frames '00;10;00;00'
expect 0 $'350350\n3544905364' '' parse 23.976 00:00:07:07.000000000 20:29:38:10.00000
expect 0 $'60000\n12000' "*2: note: '0.49999999999999' is parsed with only 9 digits after the '.'" \
  parse beats 2.5000000000 0.49999999999999
expect 0 $'36000\n72000' '' parse bars-beats --ticks -1 1:2.5000000000 1:4
expect 1 $'7\n\n\n\n-8' '*argument 2: *position*argument 3: *position*argument 4: *64 bits*' \
  format samples ' 7 ' x 1.5 99999999999999999999 -8

# Texts that a format does not take, and texts out of range
while IFS='|' read -r format text complaint; do
  expect 1 '' "mezzo: argument 1: $complaint" parse "$format" -- "$text"
done <<'END'
smpte|01:00:00:00 Scene 2|unexpected 'Scene' in *
smpte|1:2:3:4:5|*has 5 numbers*
smpte|01:00:00:00 - 01:00:10:00|unexpected '- 01:00:10:00' in *
smpte|markers2024.txt|unexpected 'markers2024.txt' in *
smpte|1 h 30 min|unexpected 'h' in *; the number before it counts seconds
smpte|1:2:|unexpected ':' in *
smpte|1.|unexpected '.' in *
smpte|1:.5|unexpected '.5' in *
smpte|1.2.3|unexpected '3' in *; nothing may follow a fraction
decimal|1:02.5 min|unexpected 'min' in *; the number before it counts seconds
smpte|1,5|unexpected ',5' in *
smpte|20000:00:00:00|*out of range
smpte|99999999999|*out of range
smpte-drop|99:2147483647|*out of range
decimal|2147483648:00:00|*out of range
decimal|2147483647:60:00|*out of range
bars-beats|1:2;480|unexpected ';480' in *; ticks must follow a '.'
bars-beats|1:2.3.4|*has 4 numbers*
bars-beats|2.480|unexpected '.480' in *; a '.' may only follow a beat
bars-beats|600000000|*out of range
bars-beats|-536870911:1|*out of range
bars-beats|536870913:1|*out of range
frames|1:02|*has 2 numbers*
samples|12 x|*not a position*
milliseconds|1e3|unexpected 'e' in *
END
for position in 9223372036854775807 -9223372036854775808; do
  for format in smpte smpte-drop compact frames bars-beats beats; do
    expect 1 '' '*out of range*' format $format -- $position
  done
done
expect 0 $'420000\n96000\n-1440000' '' parse bars-beats '5 bar 2 beat 480 ticks' 2 -14:1 --tempo 120 --meter 4/4
expect 0 $'172801600\n96000' '' parse smpte '1 hr 0 min 0 s 1 f' '2 sec 0'
expect 1 '' '*out of range*' format frames --rate 1000 --fps 1000 -- -2147483649
expect 0 3436988563008 '' parse 29.97df '19890;00;00;00'
expect 1 2147483647 '*2: *out of range*' format pulldown-frames 3439409810636 3439409810637
expect 0 $'48000\n3200' "*argument 2: note: '01:00:00:00 Scene 2' is parsed leniently, as sample 3200" \
  parse smpte --lenient 1:00 '01:00:00:00 Scene 2'
expect 0 103079520000000 '' parse decimal 596525:00:00
expect 0 51539607456000 '' parse bars-beats 536870912:1

# Notes on conversions: a run prints the first of each kind
expect 0 $'2882880\n2882880' "mezzo: argument 1: note: '00;01;00;00' is not a label; it stands for '00;01;00;02'
mezzo: note: 1 more; --json shows all notes" \
  parse smpte-drop '00;01;00;00' '00;01;00;01'
expect 0 -2882880 "*'-00;01;00;00' is not a label; it stands for '-00;01;00;02'" parse 29.97df -- '-00;01;00;00'
expect 0 3954999 "*'3954999' is the text of sample 7909992090, but it lies in frame 3955000" format pulldown-frames 7909992090 --rate 47952 --fps 24
expect 0 2883681 "*'00;01;00;00.5' lies in '00;01;00;02'" parse smpte-drop '00;01;00;00.5'
expect 0 $'1600\n3200' "mezzo: argument 1: note: '0;1' has a ';', but smpte has no drop-frame labels" \
  parse smpte '0;1' 2
expect 0 5 "*'00:00:00:05' stands for '00:00:00:06'" parse smpte 00:00:00:05 --rate 10 --fps 12
expect 0 -10731148206 "*'-15:30:35:561.346' is parsed with only 2 digits after the '.'" \
  parse smpte-pulldown --rate 192000 --fps 1000 -- -15:30:35:561.346
expect 1 6443236800000 '*2: *is too far from sample 0 to have a fraction' \
  parse smpte-pulldown 596:00:00:00.0 596:00:00:00.2 --rate 3000000 --fps 1000
expect 0 28 '' parse bars-beats 1:1.001 --rate 44100 --tempo 97
expect 0 $'96000\n24000' "*'1:5' stands for '2:1.000'*" parse bars-beats 1:5 1:2
expect 0 -24000 "*'1:0' stands for '0:4.000'" parse bars-beats 1:0
expect 0 $'24125\n24000\n-288000' "*3: note: '-3:5' stands for '-2:1.0000'" parse bars-beats --ticks 1000000 '1:2.5208 ticks' 1:2.0 -3:5
expect 0 3203200000000 '*' parse smpte-drop 2000000000
expect 0 24125 "*'1:2.5' stands for '1:2.005'" parse bars-beats 1:2.5
expect 0 00:59:59:29 "*'smpte-drop' has 30 x *" convert smpte-drop smpte '01;00;00;00'
expect 0 24000 "*'-0:1' stands for '0:1.000'*" parse bars-beats --duration -0:1
expect 0 2880000 "*'1 000' stands for '1:00.000'" parse decimal '1 000'
expect 0 57600 "*'0:36' stands for '1:06.00'" parse compact 0:36
expect 0 1632486400 "*'01020304' stands for '09:26:50:04'" parse smpte 01020304
expect 0 $'5760000\n259200000' "*: '1:60' stands for '2:00.000'" parse decimal 1:60 90:00
expect 0 16800 "*'10.5' lies in '00:00:00:10'" parse 30 10.5
expect 0 19220 "*'00:00:10.01' lies in '00:00:00:10'" parse 25 00:00:10.01
expect 0 $'3.6e+06\n3.6e+06' '*exponent *, which cannot be parsed*1 more*' format milliseconds 172800000 172800000
expect 0 $'-0.9\n1\n100000' "*1: note: in milliseconds, '-0.9' is the text of sample -48, but it is at -1.000000 ms*1 more*" \
  format milliseconds -- -48 48 4800019
expect 0 -0.9 '*the text of sample -1, but it is at -1.000000 ms' format milliseconds --rate 1000 -- -1
expect 0 $'0:4.999\n1:1.000' "*'0:4.999' is the text of sample 0, but another text is nearer to it" \
  format bars-beats --ticks -1 0 12
expect 0 '   0:00.015' "*'   0:00.015' is the text of sample 1, but parses *" format decimal --rate 100 1
expect 1 '' '*1: library report: These * just hours, minutes, seconds.' parse decimal --lenient 1:00:00:00

# Every text but milliseconds reads back as the position of its frame or unit, also before sample 0.
for format in $("$mezzo" formats | sed -En 's/^ ?[0-9]+  ([^ ]+) .*/\1/p; s/^([0-9.]+(df)?) .*/\1/p'); do
  [[ $format == @(reserved|milliseconds) ]] && continue
  for position in 480000 -480000 123456789 -123456789; do
    text=$("$mezzo" format "$format" -- $position)
    read=$("$mezzo" parse "$format" -- "$text")
    [[ ${read%%[0-9]*} == "${position%%[0-9]*}" && $("$mezzo" format "$format" -- "$read") == "$text" ]] ||
      fail "$format: $position is '$text', which is $read"
  done
done

# Standard input: byte order mark, CRLF, empty, without a digit, not UTF-8, NUL, no line feed at the end
expect 1 $'48000\n\n\n\n\n96000' \
  "*line 2: no digit*line 3: no digit in 'a\\\\x09bc'*line 4: *'\\\\xff1'*line 5: *'1\\\\x00'*" \
  parse smpte < <(printf '\xef\xbb\xbf1:00\r\n\r\na\tbc\n\xff1\n1\0\n2:00')
expect 1 $'[\n{"item":1,"position":48000,"text":"1:00"}\n,{"item":2,"text":"x","error":"no digit in \'x\'"}\n]' \
  '*line 2: no digit*' parse smpte --json <<<$'\xef\xbb\xbf1:00\r\nx'
expect 2 '' 'mezzo: standard input is UTF-16, not UTF-8' parse smpte < <(printf '\xff\xfe1\0')
expect 1 '' "mezzo: argument 1: no digit in '$(printf 'x%.0s' {1..80})...'" \
  parse smpte "$(printf 'x%.0s' {1..99})"
expect 0 $'1600\n48000\n3200' '' parse smpte 1 - 2 <<<1:00
expect 1 $'[a,b]\n\n\n48000' "*2: unexpected '\[1,5\]' in *3: '$0' is a file; put '<' before it *" parse smpte --header '[a,b]' '[1,5]' "$0" 1:00
piped=$(printf '%s\n' '00;00;10;00' '00;01;00;02' | "$mezzo" parse smpte-drop | "$mezzo" format bars-beats)
[[ $piped == $'6:1.019\n31:1.115' ]] || fail "pipe: $piped"

# Tables
expect 1 $'name,at\n"a, b","1:1.000",x\nc' "*line 3: no field 2 in 'c'; see --delimiter" \
  convert smpte bars-beats --field 2 --header <<<$'name,at\n"a, b","00:00:00:00",x\nc'
expect 0 $'\xef\xbb\xbfa\tb\r\na\t48000\r' '' parse smpte --field 2 --delimiter tab --header \
  <<<$'\xef\xbb\xbfa\tb\r\na\t1:00\r'
expect 1 $'"a\nb, 1:00",48000,x\nc' "*1: note: the row ends in line 2, *line 3: no field 2*" parse smpte --field 2 \
  <<<$'"a\nb, 1:00",1:00,x\nc'
expect 1 $'1,1:00,"x\n2,1:00' "mezzo: line 1: no closing quote in *" parse smpte --field 2 \
  <<<$'1,1:00,"x\n2,1:00'
expect 1 $'"a\n2,1:00' '*line 1: no closing quote in *' parse smpte --field 2 --header <<<$'"a\n2,1:00'
expect 1 $'5",48000\n"a,1:00' "*line 2: no closing quote in '*" parse smpte --field 2 <<<$'5",1:00\n"a,1:00'
expect 0 $'"a\t48000\n"b"\t"96000"' '' parse smpte --field 2 --delimiter tab <<<$'"a\t1:00\n"b"\t"2:00"'
expect 0 'a;1602;00' "*line 1: note: '01' was converted alone; texts that contain the delimiter ';' need *" parse 29.97df --field 2 --delimiter ';' \
  <<<'a;01;00'
expect 0 '"00;00;00;00";"00;00;00;29"' '' convert 25 29.97df --field 2 --delimiter ';' \
  <<<'"00;00;00;00";1:00'
expect 0 'a:"6:1.000"' '' format bars-beats --field 2 --delimiter : <<<a:480000

# Every format
expect 0 ' 0  decimal          "   0:10.000"
 1  samples          "480000"
 2  smpte            "00:00:10:00"
 3  smpte-pulldown   "00:00:09:24"
 4  smpte-drop       (not at 25 fps)
 5  beats            "20.000"
 6  bars-beats       "6:1.000"
 7  reserved         (no conversion)
 8  frames           "250"
 9  pulldown-frames  "249"
10  compact          "10:00.00"
11  milliseconds     "10000"
12  smpte-pulldown2  "00:00:09:24"
13  smpte-drop2      (not at 25 fps)
14  smpte-pulldown3  "00:00:09:24"' '' show 480000 --fps 25
contain "$("$mezzo" show --from 29.97DF '00;01;00;00' --json 2>/dev/null)" '"position": 2882880' \
  '"notes": [' 'is not a label' '"text": "00;01;00;02"'
contain "$("$mezzo" show 9223372036854775807 2>&1)" 'smpte            (out of range)' 'an exponent'

# Musical notes and handlers
expect 0 'A4  (0 semitones above A4)' '' note 440
expect 0 'C♯/D♭5  (4 semitones above A4)' '' note --index 4 --octave 4
expect 0 'D♭  (4 semitones above A)' '' note --index 4 --octave -1 --flat
mapfile -t rows < <("$mezzo" handlers)
[[ ${#rows[@]} == 19 ]] || fail "${#rows[@]} handlers"
for row in "${rows[@]}"; do
  read -r _ name identifier <<<"$row"
  for key in "${name^^}" "$identifier" "{${identifier^^}}"; do expect 0 "$row" '' handler "$key"; done
done

# Bad arguments
refuse "no command*"
for line in show parse format 'convert 25' 'ruler --from 0' 'ruler --to 1' handler; do
  read -ra words <<<"$line" && refuse '* is required' "${words[@]}"
done
refuse '*64 bits' show 9223372036854775808
refuse "*; 'convert' and 'show --from' take other formats" show 1:00
for pair in barsbeat=bars-beats bars=bars-beats drop=smpte-drop 29.98=29.97 23.97=23.976 \
  30ndf=30 30df=29.97df 60df=59.94df 24fps=24; do
  refuse "unknown format '${pair%=*}'; did you mean '${pair#*=}'?" parse "${pair%=*}" 5
done
refuse "unknown format '12'; see 'mezzo formats'" parse 12 5
refuse "unknown command 'shwo'; did you mean 'show'?" help shwo
refuse "no command before '--rate'*" --rate 48000 show 5
refuse "unknown option '--fron'; did you mean '--from'?" ruler --fron 0 --to 5
refuse "unknown option '--bpm'; see 'mezzo show --help'" show 5 --bpm 90
refuse "unknown option '-.5'; put '--' *" parse smpte -.5
refuse "unexpected argument '-1:00'; see *" ruler -1:00
refuse "unknown option '-r'; did you mean '--rate'?" parse smpte -r 44100 1
refuse "unexpected argument '7'; see 'mezzo show --help'" show 5 7 8
refuse '--fps needs a value' show 5 --fps
refuse '--lenient takes no value' show 5 --lenient=3
refuse "no command before '--versio'; did you mean '--version'?" --versio show 5
refuse '--rate needs a value' format smpte --rate= 48000 96000
refuse '*no conversion' format reserved 5
refuse '*30 and 60 have drop-frame labels' format smpte-drop 5 --fps 25
refuse '*30 frames per second, but --fps selects 25' format 29.97df 5 --fps 25
refuse '--fps: must be nominal: for 29.97, use 30 with smpte-pulldown or smpte-drop' show 5 --fps 29.97
refuse '--delimiter: *' parse smpte --field 1 --delimiter ab
refuse '--delimiter requires --field' parse smpte --delimiter tab
refuse "--fps: * for 29.97df, use 30 with smpte-drop" show 5 --fps 29.97df
refuse "--rate: must be a whole number from 1 to 3000000, not '44.1'" show 5 --rate 44.1
for tempo in nan 0x10; do refuse '--tempo: must be a number from 0.001 to 100000, not *' show 5 --tempo $tempo; done
refuse "--fps: must be a whole number *" show 5 --fps 025
refuse '--meter: *' show 5 --meter 4/3
refuse 'give either *' note 440 --index 3
refuse 'FREQUENCY: must be a number from 13.36 to 28985, not *' note 8.18
refuse "*'ruvo-wav'; did you mean 'RuvoWav'?" handler ruvo-wav
refuse "no digit in 'x'" ruler --from x --to 5
refuse "'' is not a position*" ruler --from 0 --to @
refuse "*more than 250 hours*" ruler --from 0 --to 999:0:0:0
refuse 'empty interval: *' ruler --from 5 --to 5
refuse '--width: *' ruler --from 0 --to 5 --width 2001
refuse '--svg needs a value' ruler --from 0 --to 5 --svg --json
refuse '*cannot write*' ruler --from 0 --to 5 --svg /dev/full
refuse '* exclude each other' ruler --from 0 --to 5 --svg x --json
[[ -e /dev/full ]] && { yes 1 | timeout 9 "$mezzo" format smpte >/dev/full 2>&1; [[ $? == 2 ]] || fail 'full device'; }

# Rulers: the line of labels
while IFS='|' read -r labels arguments; do
  # shellcheck disable=SC2086
  got=$("$mezzo" ruler $arguments | sed -n '/^$/{n;p}')
  [[ $got == "$labels" ]] || fail "ruler $arguments: '$got'"
done <<'END'
00:00:00:00              100:00:00:00           200:00:00:00|--width 60 --from 0 --to 200:00:00:00
00:00:00:00         00:00:00:05             00:00:00:10|--width 60 --from 0 --to 12 --format 25
00;09;58;00              00;10;00;00             00;10;02;00|--width 60 --from 9;58;00 --to 10;02;00 --format 29.97df
00;00;00;00              00;05;00;02             00;10;00;00|--width 60 --from 0 --to 10;00;00 --format 29.97df
        00;00;59;29  00;01;00;02|--width 40 --from 58;00 --to 1;02;00 --format 29.97df
-00;01;02;00    -00;01;00;04  -00;00;59;59      -00;00;58;00|--width 60 --from -1;02;00 --to -58;00 --format 59.94df
00;00;59;29         00;01;00;02|--width 40 --from 59;28 --to 1;00;04 --format 29.97df
-00:00:02:00       00:00:02:00|--width 30 --from @-96000 --to @96000
1:1.000           513:1.000|--width 44 --from 1:1 --to 1000:1 --format bars-beats
0:1.000            0:2.000           0:3.000|--width 44 --from 0:1 --to 0:3 --format bars-beats --ticks 480
        1:1.000              3:1.000|--width 44 --from 0:1 --to 4:1 --format bars-beats --meter 6/8
-1.000   -0.500     0.000     0.500    1.000|--width 44 --from -1 --to 1 --format beats
999900            1e+06*     1.0001e+06*|--width 40 --from 999900 --to 1000100 --format milliseconds
 0      50    100    150    200    250   300|--width 44 --from -5 --to 300 --format samples
END
contain "$("$mezzo" ruler --from @10 --to @20 2>&1)" 'note: no tick falls within this interval'
contain "$("$mezzo" ruler --format bars-beats --from 1:1 --to 1:7 --meter 6/8 --tempo 90 2>&1)" \
  "note: '1:7' stands for '2:1.000'" 'bars-beats, 48000 Hz, 6/8, 90 quarter notes per minute, samples 0 to 96000'
ascii=$(LC_ALL=C "$mezzo" ruler --from 0 --to 1:00)
[[ $ascii == *"|---"*"'"* && ! $ascii == *[^[:ascii:]]* ]] || fail "ruler in ASCII: $ascii"
# Every ruler is exactly as wide as requested.
for width in 20 21 50 79 133 2000; do
  widest=$("$mezzo" ruler --format milliseconds --from @-4800 --to @4800 --width $width | wc -L)
  [[ $widest == "$width" ]] || fail "ruler of $width columns has $widest"
done
contain "$("$mezzo" ruler --format 29.97df --from '58;00' --to '1;02;00' --width 80 --svg -)" \
  'viewBox="0 0 688 142" width="688" height="142"' 'd="M24 94.5H664"' 'd="M28.5 78V94"' \
  'd="M39.5 86V94"' 'x="24" y="68" font-size="13" text-anchor="start">00;00;58;00<' \
  'x="189" y="114" font-size="12" text-anchor="middle">2834832<' \
  'class="gap" fill="#b3470b" x="336" y="68" font-size="13" text-anchor="end">00;00;59;29<'

# Help, with the defaults
for command in '' show parse format convert formats ruler note handlers handler; do
  [[ $("$mezzo" ${command:+"$command"} --help) == *"Usage: mezzo $command"*Examples:* ]] || fail "help of $command"
done
contain "$("$mezzo" parse foo --rate 0 --help)$("$mezzo" help)" 'Usage: mezzo parse ' 'Usage: mezzo ['
contain "$("$mezzo" --help-all)" '--rate HZ=48000 ' '--fps N=30 ' '--tempo BPM=120 ' \
  '--meter N/N=4/4 ' '--ticks N=960 ' '--offset-ms MS=0 ' '--delimiter C=, ' \
  '--format FORMAT=smpte ' '--octave N=-1 ' '--width COLUMNS '
exit $((failures > 0))
