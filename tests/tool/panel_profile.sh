#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The panel profiles checked by ArgyllCMS against the factory measurements:
# the native profile against the measurements themselves, every mode's
# profile against the panel (a profile of the measurements) driven through
# that mode's .cal. Usage: panel_profile.sh QUARNEL. Exits 77 without ArgyllCMS.
set -euo pipefail
quarnel=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
for tool in colprof targen fakeread profcheck iccdump; do
  command -v $tool >/dev/null || { echo "skipped: $tool (ArgyllCMS) is not installed"; exit 77; }
done
. "$(dirname "$0")/checks.sh"

# PROFILE READINGS MEAN MAX: profcheck's CIEDE2000 figures within bounds.
check() {
  local line
  line=$(profcheck -k "$2" "$1" 2>&1 | grep 'errors(CIEDE2000)') || fail "profcheck $1: no result"
  echo "$1: $line"
  awk -v mean="$3" -v max="$4" '{ gsub(",", ""); if ($7 > max || $10 > mean) exit 1 }' <<<"$line" ||
    fail "$1 strays from the panel: $line"
}

"$quarnel" block sample -o panel.json
"$quarnel" block build panel.json -o panel.bin
"$quarnel" block measurements panel.bin -o factory.ti3
"$quarnel" lut native --calib panel.bin -o native.icc
check native.icc factory.ti3 0.1 0.5

colprof -v0 -qm -as factory >/dev/null
targen -v0 -d3 -f 125 -s 10 -g 10 patches >/dev/null
while read -r name args; do
  "$quarnel" lut $args --calib panel.bin -o "$name.cal"
  "$quarnel" lut $args --calib panel.bin -o "$name.icc"
  cp patches.ti1 "$name.ti1"
  fakeread -k "$name.cal" factory.icc "$name" >/dev/null
  check "$name.icc" "$name.ti3" 0.1 1
done <<'MODES'
slider-0.5 slider --interval 0.5
slider-0.7 slider --interval 0.7
slider-1.5 slider --interval 1.5
vivid vivid
theater theater
reading-strong reading-strong
reading-weak reading-weak
MODES

# Every tag of a display profile, curves of 1024 entries.
dump=$(iccdump -v3 slider-0.7.icc)
for tag in wtpt lumi chad rXYZ gXYZ bXYZ rTRC gTRC bTRC vcgt desc dmdd cprt meta; do
  grep -q "sig      '$tag'" <<<"$dump" || fail "no $tag tag"
done
[ "$(grep -c 'No. elements = 1024' <<<"$dump")" -eq 3 ] || fail "tone curves are not 1024 entries"

# The native curve is the exact identity: input i / 255 gives i / 255.
"$quarnel" lut native -o identity.cal
sed -n '/^BEGIN_DATA$/,/^END_DATA$/p' identity.cal | sed '1d;$d' |
  awk '{ v = (NR - 1) / 255; for (i = 1; i <= 4; i++) if (($i - v) ^ 2 > 1e-18) bad++ } END { exit NR != 256 || bad }' ||
  fail "the native .cal is not the identity"
echo passed
