#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# quarnel apply --hold and autostart on a real X server (Xorg with the dummy
# video driver): the login entries pass their formats' own checkers, the
# command they hold loads the curve, loads it again after another client's
# identity ramp and a mode change, and ends on SIGTERM with the curve left.
# Usage: hold_autostart.sh QUARNEL DUMMY_CONF. Exits 77 when Xorg cannot start.
set -euo pipefail
quarnel=$1 conf=$2
work=$(mktemp -d) xorg="" holder=""
trap '[ -z "$holder" ] || kill "$holder" 2>/dev/null; [ -z "$xorg" ] || kill "$xorg" 2>/dev/null; wait; rm -rf "$work"' EXIT
. "$(dirname "$0")/../checks.sh"
. "$(dirname "$0")/xorg.sh"
command -v xrandr >/dev/null || skip "xrandr is not installed"
export XDG_CONFIG_HOME=$work/config
entry=$XDG_CONFIG_HOME/autostart/quarnel.desktop unit=$XDG_CONFIG_HOME/systemd/user/quarnel-apply.service

# A block in a folder whose name needs quoting in both files.
panel="$work/it's a \"panel\" \$HOME 100%"
mkdir -p "$panel"
"$quarnel" block sample >"$work/panel.json"
"$quarnel" block build "$work/panel.json" -o "$panel/panel.bin"
"$quarnel" lut slider --interval 0.7 --calib "$panel/panel.bin" --format csv -o "$work/mode.csv"
shown() { "$quarnel" show --output DUMMY0 --format csv -o "$work/shown.csv" 2>/dev/null && cmp -s "$1" "$work/shown.csv"; }
wait_shown() { for _ in $(seq 100); do shown "$1" && return; sleep 0.05; done; fail "$2"; }
identity() { echo "index,red,green,blue"; seq 0 255 | awk '{ v = $1 * 256; print $1 "," v "," v "," v }'; }
identity >"$work/identity.csv"

expect_usage() {
  local status=0
  "$@" 2>"$work/err" || status=$?
  [ $status -eq 64 ] && [ "$(wc -l <"$work/err")" -eq 1 ] && grep -q "creator application.*firmware" "$work/err" ||
    fail "$* exits $status: $(cat "$work/err")"
}
# Without a panel nothing is written and no display is touched.
expect_usage "$quarnel" autostart enable slider
expect_usage env -u DISPLAY "$quarnel" apply slider
[ ! -e "$XDG_CONFIG_HOME" ] || fail "enable without a panel wrote $(find "$XDG_CONFIG_HOME")"

expect_usage_line() {
  local status=0
  "$@" 2>"$work/err" || status=$?
  [ $status -eq 64 ] && [ "$(wc -l <"$work/err")" -eq 1 ] || fail "$* exits $status: $(cat "$work/err")"
}
expect_usage_line "$quarnel" autostart enable slider --sample --output "$(printf 'eDP-1\nExec=rm')"
[ ! -e "$XDG_CONFIG_HOME" ] || fail "a refused enable wrote $(find "$XDG_CONFIG_HOME")"
(cd "$panel" && "$quarnel" autostart enable slider --interval 0.7 --calib panel.bin --output DUMMY0 >/dev/null)
desktop-file-validate "$entry" || fail "the autostart entry does not validate"
systemd-analyze verify "$unit" 2>"$work/verify" || fail "the unit does not verify: $(cat "$work/verify")"
[ ! -s "$work/verify" ] || fail "systemd-analyze warns: $(cat "$work/verify")"
[ "$(readlink "$XDG_CONFIG_HOME/systemd/user/graphical-session.target.wants/quarnel-apply.service")" = \
  ../quarnel-apply.service ] || fail "the unit is not wanted by the graphical session"

# The entry's command line as a shell reads it (its quoting is the shell's
# once the value's own \\ is undone); the unit's undoes %% and $$ first.
exec_of() { sed -n "s/^$1=//p" "$2" | sed "$3"; }
eval "entry_args=($(exec_of Exec "$entry" 's/\\\\/\\/g; s/%%/%/g'))"
eval "unit_args=($(exec_of ExecStart "$unit" 's/%%/%/g; s/\$\$/\\$/g'))"
[ "${entry_args[*]}" = "${unit_args[*]}" ] || fail "entry and unit run different commands"
[ "${entry_args[0]}" = "$(readlink -f "$quarnel")" ] && [ "${entry_args[-1]}" = --hold ] &&
  printf '%s\n' "${entry_args[@]}" | grep -qxF "$panel/panel.bin" ||
  fail "the login command is not the absolute tool, block and --hold: ${entry_args[*]}"
"$quarnel" autostart status | grep -qF "$(exec_of Exec "$entry" '')" || fail "status does not show the entry's command"

# The login's command, run: it loads the curve and holds it.
"${entry_args[@]}" 2>"$work/hold.err" &
holder=$!
wait_shown "$work/mode.csv" "the login command did not load the curve: $(cat "$work/hold.err")"
"$quarnel" reset --output DUMMY0
shown "$work/identity.csv" || fail "reset did not load the identity"
xrandr --output DUMMY0 --mode 800x600
wait_shown "$work/mode.csv" "apply --hold did not load the curve again after a mode change"
grep -q "DUMMY0: slider, interval 0.70 loaded again" "$work/hold.err" || fail "the reload was not said: $(cat "$work/hold.err")"
kill -TERM "$holder"
status=0
wait "$holder" || status=$?
holder=""
[ $status -eq 0 ] || fail "apply --hold exits $status on SIGTERM"
shown "$work/mode.csv" || fail "the curve did not stay after the hold ended"

# A missing block at login: one line, and the unit does not try again.
mv "$panel/panel.bin" "$work/moved.bin"
status=0
"${entry_args[@]}" 2>"$work/err" || status=$?
[ $status -eq 66 ] && [ "$(wc -l <"$work/err")" -eq 1 ] || fail "a missing block exits $status: $(cat "$work/err")"
grep -q "^RestartPreventExitStatus=.*66" "$unit" || fail "the unit restarts on a missing block"

"$quarnel" autostart disable >/dev/null
[ -z "$(find "$XDG_CONFIG_HOME" ! -type d)" ] || fail "disable left $(find "$XDG_CONFIG_HOME" ! -type d)"
"$quarnel" autostart status | grep -c "not set" | grep -qx 2 || fail "status after disable: $("$quarnel" autostart status)"
echo "passed on display $DISPLAY"
