#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# quarnel apply, show and reset on a real X server (Xorg with the dummy video
# driver), with ArgyllCMS's dispwin as an independent reader of the ramp.
# Usage: display_gamma.sh QUARNEL DUMMY_CONF. Exits 77 when Xorg cannot start.
set -euo pipefail
quarnel=$1 conf=$2 mode=(theater --sample) out=(--output DUMMY0)
work=$(mktemp -d) xorg=""
trap '[ -z "$xorg" ] || kill "$xorg" 2>/dev/null; wait; rm -rf "$work"' EXIT
. "$(dirname "$0")/../checks.sh"
command -v dispwin >/dev/null || { echo "skipped: dispwin (ArgyllCMS) is not installed"; exit 77; }
. "$(dirname "$0")/xorg.sh"

# Each command runs as its own process, so the ramp lives on the server.
"$quarnel" lut theater --format csv -o "$work/mode.csv"
"$quarnel" lut theater --format cal -o "$work/mode.cal"
"$quarnel" apply "${mode[@]}" "${out[@]}" 2>"$work/said"
grep -qx "quarnel: DUMMY0: theater loaded (CRTC 0x[0-9a-f]*, 256 entries)" "$work/said" ||
  fail "apply does not say what it loaded: $(cat "$work/said")"
"$quarnel" show --output DUMMY0 --format csv -o "$work/shown.csv" 2>"$work/said"
grep -qx "quarnel: read CRTC 0x[0-9a-f]* of DUMMY0, 256 entries" "$work/said" || fail "show does not say which CRTC it reads: $(cat "$work/said")"
cmp "$work/mode.csv" "$work/shown.csv" || fail "show does not give the applied curve"
dispwin -d1 -V "$work/mode.cal" | grep -q "IS loaded" || fail "dispwin does not find the mode's curve loaded"
# The ramp as dispwin reads it holds entry / 65280 of full scale, to the ramp's 16-bit step.
cal_rows() { sed -n '/^BEGIN_DATA$/,/^END_DATA$/p' "$1" | sed '1d;$d'; }
same_cal() {
  dispwin -d1 -s "$work/saved.cal" >/dev/null
  paste -d' ' <(cal_rows "$1") <(cal_rows "$work/saved.cal") |
    awk '{ for (i = 1; i <= 4; i++) if (($i - $(i + 4)) ^ 2 > (0.51 / 65535) ^ 2) bad++ } END { exit NR != 256 || bad }'
}
same_cal "$work/mode.cal" || fail "the loaded ramp is not the mode's curve at entry / 65280"

"$quarnel" reset --all-outputs
"$quarnel" show "${out[@]}" --format csv -o "$work/reset.csv"
cmp <(head -1 "$work/mode.csv"; seq 0 255 | awk '{ v = $1 * 256; print $1 "," v "," v "," v }') "$work/reset.csv" ||
  fail "reset does not load the identity"
seq 0 255 | awk 'BEGIN { print "BEGIN_DATA" } { v = $1 / 255; print v, v, v, v } END { print "END_DATA" }' >"$work/identity.cal"
same_cal "$work/identity.cal" || fail "reset does not fill the ramp up to 65535"

expect_unavailable "DISPLAY is not set.*profile install" env -u DISPLAY "$quarnel" reset
expect_unavailable "no built-in panel (eDP, LVDS, DSI) among DUMMY0" "$quarnel" apply "${mode[@]}"
expect_unavailable NO-SUCH-OUTPUT "$quarnel" show --output NO-SUCH-OUTPUT
# A ramp of the wrong size draws a protocol error from the server: one line and 69, not Xlib's report.
printf '#include <X11/extensions/Xrandr.h>\nint XRRGetCrtcGammaSize(Display *d, RRCrtc c) { return 7; }\n' >"$work/size.c"
if cc -shared -fPIC -o "$work/size.so" "$work/size.c" 2>/dev/null; then
  expect_unavailable "refused a RandR request: BadMatch" env LD_PRELOAD="$work/size.so" \
    ASAN_OPTIONS=verify_asan_link_order=0 "$quarnel" reset "${out[@]}"
fi
echo "passed on display $DISPLAY"
