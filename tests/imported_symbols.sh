#!/bin/sh
# Fails when a shared library imports what ends the process, writes to its streams or depends on
# its locale: imported_symbols.sh LIBRARY
set -eu
imports=$(nm -D --undefined-only --demangle "$1" | sed 's/^ *[A-Za-z] //; s/@.*//')
ending='abort|exit|_exit|_Exit|quick_exit|__assert_fail|__assert_rtn'
streams='.*printf(_chk)?|.*scanf(_chk)?|f?puts|f?putc|putchar|fwrite|fopen|perror|std(in|out|err)'
locale='.*locale|localeconv|strto[a-z]+|ato[a-z]+|getenv'
cxx='std::(__[a-z0-9]+::)*(c(in|out|err|log)$|ios_base|locale|[io]?stream|basic_[a-z]*(stream|buf|ios))'
# Without any import of its host's, the list itself would be wrong.
echo "$imports" | grep -q '^plinth::'
! echo "$imports" | grep -E "^(($ending|$streams|$locale)\$|$cxx)"
