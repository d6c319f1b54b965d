# SPDX-License-Identifier: MIT
# Holds the manual page and the bash completion to what the tool accepts: its
# commands, options and value lists, read from the tool's own --help, so a
# command or option added later is caught until it is documented.
# Usage: surface_test.sh manual QUARNEL MANUAL.scd TOOL_ERROR.h
#        surface_test.sh completion QUARNEL COMPLETION.bash
set -uo pipefail
what=$1 quarnel=$2
failures=0
miss() { echo "$*"; failures=$((failures + 1)); }

# section PATH NAME: the first words of the lines in section NAME of PATH's help.
section() {
  "$quarnel" $1 --help | awk -v s="$2:" '/^[A-Z][A-Za-z]*:$/ { on = $0 == s; next } on && /^  [^ ]/ { print $1 }'
}
options() { section "$1" Options | tr ',' '\n'; }
# value_lists PATH: "NAME v1 v2 ..." for every argument and option with a fixed set of values.
value_lists() {
  "$quarnel" $1 --help | sed -n 's/^  \([-A-Z][-a-zA-Z]*\) [A-Z]*:{\([^}]*\)}.*/\1 \2/p' | tr ',' ' '
}
commands() { echo "$1"; local c; for c in $(section "$1" Subcommands); do commands "${1:+$1 }$c"; done; }
mapfile -t all < <(commands "")
formats=$("$quarnel" lut slider -o x --format '?' 2>&1 | sed -n 's/.*(\(.*\))$/\1/p' | tr -d ',')
[ ${#all[@]} -gt 10 ] && [ -n "$formats" ] || { echo "cannot read the tool's commands or formats"; exit 1; }

manual() {
  local manual=$1 path item
  for path in "${all[@]}"; do
    [ -n "$path" ] && [ -z "$(section "$path" Subcommands)" ] && ! grep -q "^\*$path\*" "$manual" &&
      miss "command '$path' has no entry in $manual"
    for item in $(options "$path"); do grep -qF "*$item*" "$manual" || miss "option $item of '$path' missing"; done
    for item in $(value_lists "$path" | cut -d' ' -f2-); do
      grep -qE "^\s*\*$item\*$" "$manual" || miss "value $item of '$path' has no entry"
    done
  done
  for item in $formats; do grep -qE "^\s*\*$item\*$" "$manual" || miss "format $item has no entry"; done
  for item in $(sed -n 's/.*= \([0-9][0-9]*\).*/\1/p' "$2"); do
    grep -qE "^(\[\[|\|) +\*$item\*$" "$manual" || miss "exit code $item has no row"
  done
}

set_of() { printf '%s\n' $* | sort -u | paste -sd' '; }
# expect EXPECTED WORDS...: the completion offers exactly EXPECTED for the last of WORDS.
expect() {
  COMP_WORDS=(quarnel "${@:2}") COMP_CWORD=$(($# - 1))
  _quarnel
  local got
  got=$(set_of "${COMPREPLY[@]}")
  [ "$got" = "$(set_of $1)" ] || miss "quarnel ${*:2} offers '$got', not '$(set_of $1)'"
}
completion() {
  . "$1"
  local path name values
  for path in "${all[@]}"; do
    expect "$(options "$path") ${path:+-v --verbose}" $path -
    [ -z "$(section "$path" Subcommands)" ] || expect "$(section "$path" Subcommands)" $path ''
    while read -r name values; do
      case $name in -*) expect "$values" $path "$name" '' ;; *) expect "$values" $path '' ;; esac
    done < <(value_lists "$path")
    ! options "$path" | grep -qx -- --format || expect "$formats" $path --format ''
  done
  cd "$(mktemp -d)" && touch panel.bin && mkdir plots || exit 1
  for words in "lut slider -o p" "lut vivid --calib p" "block inspect p" "string encode p"; do
    expect "panel.bin plots" $words
  done
  rm -r "$PWD"
}

"$what" "${@:3}"
[ $failures -eq 0 ] || { echo "$failures missing"; exit 1; }
