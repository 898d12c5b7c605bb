# fish completion for mezzo
set -l formats decimal samples smpte smpte-pulldown smpte-drop beats bars-beats reserved frames \
    pulldown-frames compact milliseconds smpte-pulldown2 smpte-drop2 smpte-pulldown3 23.976 23.98 24 \
    25 29.97 29.97df 30 47.952 48 50 59.94 59.94df 60 100 119.88 120
set -l handlers RuvoAiff RuvoApe RuvoAT DLMS Dolby ImporterHost RuvoLSF RuvoMF RuvoMP2 RuvoMP3 RuvoQT \
    RuvoTwoLame RuvoWav FinalCutXML LegacyXML OmfSession KinoraInterchange KinodocNative DocketNative
function __mezzo_command_is
    set -l words (commandline -opc)
    contains -- "$words[2]" $argv
end
# Whether the number of arguments after the command is one of the numbers in $argv. Options and
# their values are not counted.
function __mezzo_argument_count_is
    set -l count 0
    set -l previous ''
    for word in (commandline -opc)[3..]
        string match -q -- '-*' $word
        or contains -- $previous --rate --fps --tempo --meter --ticks --offset-ms --field --delimiter
        or set count (math $count + 1)
        set previous $word
    end
    contains $count $argv
end
complete -c mezzo -f
complete -c mezzo -n __fish_use_subcommand -a show -d 'Show a position in every format'
complete -c mezzo -n __fish_use_subcommand -a parse -d 'Parse texts and print positions'
complete -c mezzo -n __fish_use_subcommand -a format -d 'Format positions as texts'
complete -c mezzo -n __fish_use_subcommand -a convert -d 'Convert texts into another format'
complete -c mezzo -n __fish_use_subcommand -a formats -d 'List the formats'
complete -c mezzo -n __fish_use_subcommand -a ruler -d 'Draw a time ruler'
complete -c mezzo -n __fish_use_subcommand -a note -d 'Name a note'
complete -c mezzo -n __fish_use_subcommand -a handlers -d 'List the native media handlers'
complete -c mezzo -n __fish_use_subcommand -a handler -d 'Find a native media handler'
complete -c mezzo -l help -d 'Print help'
complete -c mezzo -n __fish_use_subcommand -l help-all -d 'Print the options of every command'
complete -c mezzo -n __fish_use_subcommand -l version -d 'Print the version'
complete -c mezzo -n 'not __fish_use_subcommand' -l json -d 'Write JSON'
complete -c mezzo -n '__mezzo_command_is parse format; and __mezzo_argument_count_is 0' -a "$formats"
complete -c mezzo -n '__mezzo_command_is convert; and __mezzo_argument_count_is 0 1' -a "$formats"
complete -c mezzo -n '__mezzo_command_is show' -l from -x -a "$formats" -d 'Format of the position'
complete -c mezzo -n '__mezzo_command_is show parse convert' -l lenient -d 'Parse as the library does'
complete -c mezzo -n '__mezzo_command_is parse format convert' -l field -x -d 'Convert only this field of each line'
complete -c mezzo -n '__mezzo_command_is parse format convert' -l delimiter -x -d 'Character that separates fields'
complete -c mezzo -n '__mezzo_command_is parse format convert' -l header -d 'Do not convert the first line'
complete -c mezzo -n '__mezzo_command_is show parse format convert ruler' -l duration -d 'Convert lengths'
for option in rate fps tempo meter ticks offset-ms
    complete -c mezzo -n '__mezzo_command_is show parse format convert ruler' -l $option -x
end
complete -c mezzo -n '__mezzo_command_is ruler' -l format -x -a "$formats" -d 'Format of the labels, --from and --to'
complete -c mezzo -n '__mezzo_command_is ruler' -l from -x -d 'Beginning'
complete -c mezzo -n '__mezzo_command_is ruler' -l to -x -d 'End'
complete -c mezzo -n '__mezzo_command_is ruler' -l width -x -d 'Width in columns'
complete -c mezzo -n '__mezzo_command_is ruler' -l svg -r -F -d 'Draw an SVG picture'
complete -c mezzo -n '__mezzo_command_is note' -l index -x -d 'Semitones above A'
complete -c mezzo -n '__mezzo_command_is note' -l octave -x -d 'Octave of the A that --index counts from'
complete -c mezzo -n '__mezzo_command_is note' -l flat -d 'Name black keys only by their flats'
complete -c mezzo -n '__mezzo_command_is handler' -a "$handlers"
