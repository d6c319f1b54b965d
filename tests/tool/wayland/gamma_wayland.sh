#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# quarnel apply, reset and show against a compositor of our own with the
# gamma control (test_compositor), over a real socket: the ramps it receives,
# when it gets them back, and every refusal as one line and exit 69.
# Usage: gamma_wayland.sh QUARNEL TEST_COMPOSITOR
set -euo pipefail
quarnel=$1 compositor=$2 mode=(theater --sample)
work=$(mktemp -d) server="" holder=""
stop() { [ -z "$1" ] || { kill "$1" 2>/dev/null; wait "$1" 2>/dev/null || true; }; }
trap 'stop "$holder"; stop "$server"; rm -rf "$work"' EXIT
. "$(dirname "$0")/../checks.sh"
export XDG_RUNTIME_DIR=$work WAYLAND_DISPLAY=quarnel-test
unset DISPLAY

# start SIZE OUTPUT...: a fresh compositor with an empty log.
start() {
  stop "$server"
  rm -f "$work/log" "$work/$WAYLAND_DISPLAY"
  "$compositor" "$WAYLAND_DISPLAY" "$1" "$work/log" "${@:2}" >"$work/ready" &
  server=$!
  for _ in $(seq 100); do grep -q ready "$work/ready" && return; sleep 0.05; done
  fail "the test compositor did not start"
}
# hold N ARGS...: `quarnel apply ARGS` in the background until N ramps arrived.
hold() {
  local n=$1
  shift
  timeout 60 "$quarnel" apply "$@" 2>"$work/hold.err" &
  holder=$!
  for _ in $(seq 200); do [ "$(count "ramp")" -ge "$n" ] && return; sleep 0.05; done
  fail "apply $* loaded no ramp: $(cat "$work/hold.err")"
}
# release: SIGTERM ends the hold with 0.
release() {
  kill -TERM "$holder"
  local status=0
  wait "$holder" || status=$?
  holder=""
  [ $status -eq 0 ] || fail "apply exits $status on SIGTERM: $(cat "$work/hold.err")"
}
# expect SIZE OUTPUT: the ramp OUTPUT last received is the mode's curve as
# entry x 65535 / 65280, read at SIZE points by linear interpolation, to 1 count
# (exactly at 256 entries).
expect() {
  grep "^ramp $2 " "$work/log" | tail -1 | tr ' ' '\n' | tail -n +4 >"$work/got"
  [ -s "$work/got" ] || fail "$2 received no ramp"
  awk -F, -v n="$1" -v tolerance=$([ "$1" -eq 256 ] && echo 0 || echo 1) '
    NR == FNR { if (FNR > 1) for (c = 0; c < 3; c++) { e = $(c + 2); if (e > 65280) e = 65280; r[c, FNR - 2] = int(e * 65535 / 65280 + 0.5) } next }
    { got[FNR - 1] = $1 }
    END {
      if (FNR != 3 * n) { print "ramp of " FNR " entries"; exit 1 }
      for (c = 0; c < 3; c++) for (j = 0; j < n; j++) {
        x = j * 255 / (n - 1); i = int(x); v = i < 255 ? r[c, i] + (x - i) * (r[c, i + 1] - r[c, i]) : r[c, 255]
        d = got[c * n + j] - v; if (d < 0) d = -d
        if (d > tolerance + 0.5 * (tolerance == 0)) { print "entry " c * n + j ": " got[c * n + j] " for " v; exit 1 }
      }
    }' "$work/curve.csv" "$work/got" || fail "$2's ramp at size $1 is not the curve"
}
count() { grep -c "^$1" "$work/log" || true; }

"$quarnel" lut "${mode[@]}" --format csv -o "$work/curve.csv"

# The built-in panel by default, held until SIGTERM and given back then.
start 256 HDMI-A-1 eDP-1
hold 1 "${mode[@]}"
expect 256 eDP-1
[ "$(count "ramp HDMI-A-1")" -eq 0 ] || fail "apply touched the external output"
sleep 0.2
grep -q "holding.*eDP-1" "$work/hold.err" || fail "apply does not name the output it holds: $(cat "$work/hold.err")"
[ "$(count "destroy")$(count "gone")" = "00" ] || fail "the ramp was given back while held"
release
[ "$(count "destroy eDP-1")" -eq 1 ] || fail "apply did not give the ramp back on SIGTERM: $(tail -1 "$work/log")"

# --output picks the other output; sizes other than 256 are resampled.
for size in 1024 4096; do
  start "$size" eDP-1 HDMI-A-1
  hold 1 "${mode[@]}" --output HDMI-A-1 -q
  expect "$size" HDMI-A-1
  [ "$(count "ramp eDP-1")" -eq 0 ] || fail "--output HDMI-A-1 touched eDP-1"
  [ ! -s "$work/hold.err" ] || fail "-q still says: $(cat "$work/hold.err")"
  release
done
start 256 eDP-1 HDMI-A-1
hold 2 "${mode[@]}" --all-outputs
expect 256 eDP-1
expect 256 HDMI-A-1
release

# A second client cannot take a held output; reset and show say why not.
start 256 eDP-1
hold 1 "${mode[@]}"
expect_unavailable "eDP-1.*another client" timeout 10 "$quarnel" apply "${mode[@]}"
expect_unavailable "eDP-1.*another client" timeout 10 "$quarnel" reset
expect_unavailable "cannot read a ramp back" timeout 10 "$quarnel" show -o "$work/shown.csv"
# The compositor going away ends the hold with one line.
stop "$server"
server=""
status=0
wait "$holder" || status=$?
holder=""
[ $status -eq 69 ] && [ "$(grep -c "lost the connection" "$work/hold.err")" -eq 1 ] &&
  tail -1 "$work/hold.err" | grep -q "lost the connection" ||
  fail "a vanished compositor ends the hold with $status: $(cat "$work/hold.err")"

# reset holds the identity for a moment, which gives the ramp back.
start 256 eDP-1
timeout 10 "$quarnel" reset
expect_identity() {
  grep "^ramp eDP-1 " "$work/log" | tr ' ' '\n' | tail -n +4 |
    awk '{ if ($1 != ((NR - 1) % 256) * 257) bad++ } END { exit NR != 768 || bad }'
}
expect_identity || fail "reset did not load the identity"
[ "$(count "destroy eDP-1")$(count "gone eDP-1")" != "00" ] || fail "reset kept the ramp"

start 0 eDP-1
expect_unavailable "eDP-1.*refused" timeout 10 "$quarnel" apply "${mode[@]}"
expect_unavailable "no connected output named DP-9" timeout 10 "$quarnel" apply "${mode[@]}" --output DP-9
start 256 HDMI-A-1
expect_unavailable "no built-in panel" timeout 10 "$quarnel" apply "${mode[@]}"
start none eDP-1
expect_unavailable "offers no gamma control.*DISPLAY is not set.*profile install" timeout 10 "$quarnel" apply "${mode[@]}"
stop "$server"
server=""
expect_unavailable "cannot connect to Wayland compositor quarnel-test" timeout 10 "$quarnel" apply "${mode[@]}"
expect_unavailable "cannot connect" timeout 10 "$quarnel" reset --backend wayland
echo "passed"
