# bash completion for mezzo                             -*- shell-script -*-

_mezzo() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' before=0 word last='' words=''
  local valued='@(--rate|--fps|--tempo|--meter|--ticks|--offset-ms|--field|--delimiter|=)'
  ((COMP_CWORD > 1)) && command=${COMP_WORDS[1]}
  [[ $previous == = ]] && previous=${COMP_WORDS[COMP_CWORD - 2]}
  # The number of arguments before this one, without options and their values: parse and format take
  # a format first, convert takes two.
  for word in "${COMP_WORDS[@]:2:COMP_CWORD-2}"; do
    [[ $word == [-=]* || $last == $valued ]] || ((++before))
    last=$word
  done

  local formats='decimal samples smpte smpte-pulldown smpte-drop beats bars-beats reserved frames
    pulldown-frames compact milliseconds smpte-pulldown2 smpte-drop2 smpte-pulldown3 23.976 23.98 24
    25 29.97 29.97df 30 47.952 48 50 59.94 59.94df 60 100 119.88 120'
  local timeline='--rate --fps --tempo --meter --ticks --offset-ms --duration'
  local table='--json --field --delimiter --header --help'
  case "$command $previous" in
    'show --from' | 'ruler --format') words=$formats ;;
    'ruler --svg' | *' <' | *' >' | *' >>')
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      compopt -o filenames 2>/dev/null
      return
      ;;
    *' --rate' | *' --fps' | *' --tempo' | *' --meter' | *' --ticks' | *' --offset-ms' | \
      *' --field' | *' --delimiter' | 'ruler --from' | *' --to' | *' --width' | *' --index' | \
      *' --octave') ;;
    *)
      case $command in
        '') words='show parse format convert formats ruler note handlers handler --help --help-all
          --version' ;;
        show) words="--from --lenient --json --help $timeline" ;;
        parse | convert) words="--lenient $table $timeline" ;;
        format) words="$table $timeline" ;;
        formats | handlers) words='--json --help' ;;
        ruler) words="--format --from --to --width --svg --json --help $timeline" ;;
        note) words='--index --octave --flat --json --help' ;;
        handler) words='RuvoAiff RuvoApe RuvoAT DLMS Dolby ImporterHost RuvoLSF RuvoMF RuvoMP2
          RuvoMP3 RuvoQT RuvoTwoLame RuvoWav FinalCutXML LegacyXML OmfSession KinoraInterchange
          KinodocNative DocketNative --json --help' ;;
      esac
      [[ $command == @(parse|format) && $before == 0 || $command == convert && $before -le 1 ]] &&
        words+=" $formats"
      ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -F _mezzo mezzo
