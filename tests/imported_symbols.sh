#!/bin/sh
# Fails if a shared library imports functions that end the process, use its streams or depend on its
# locale: imported_symbols.sh LIBRARY
set -eu
imports=$(nm -D --undefined-only --demangle "$1" | sed 's/^ *[A-Za-z] //; s/@.*//')
ending='abort|exit|_exit|_Exit|quick_exit|__assert_fail|__assert_rtn'
streams='.*printf(_chk)?|.*scanf(_chk)?|f?puts|f?putc|putchar|fwrite|fopen|perror|std(in|out|err)'
locale='.*locale|localeconv|strto[a-z]+|ato[a-z]+|getenv'
cxx='std::(__[a-z0-9]+::)*(c(in|out|err|log)$|ios_base|locale|[io]?stream|basic_[a-z]*(stream|buf|ios))'
# Guards against an empty list: the library always imports functions of plinth.
echo "$imports" | grep -q '^plinth::'
! echo "$imports" | grep -E "^(($ending|$streams|$locale)\$|$cxx)"
