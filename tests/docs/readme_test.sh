#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Holds the README to what it shows. Every line of its ```sh blocks runs, in
# order, in an empty directory with the built tool first on PATH and no
# display, and must succeed. The presets it names must exist, the files it
# and docs/ link must be there, its C program must be examples/calibrate.c,
# and docs/chromaticity.png must be what its plot command draws today
# (QUARNEL_REGENERATE=1 writes the picture anew instead).
# Usage: readme_test.sh SOURCE_DIR TOOL
set -uo pipefail
src=$1 readme=$1/README.md dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
failed=0
fail() { echo "README.md: $*" >&2; failed=1; }
# fenced LANG: "LINE<tab>text" for every line inside a block fenced as ```LANG.
fenced() { awk -v f="\`\`\`$1" '/^```/ { inside = !inside && $0 == f; next } inside { print NR "\t" $0 }' "$readme"; }

mkdir "$dir/bin" "$dir/run" "$dir/home" && ln -s "$2" "$dir/bin/quarnel"
while IFS=$'\t' read -r line command; do
  [[ $command =~ ^[[:space:]]*(#|$) ]] && continue
  (cd "$dir/run" && env -u DISPLAY -u WAYLAND_DISPLAY -u DBUS_SESSION_BUS_ADDRESS HOME="$dir/home" \
    XDG_DATA_HOME="$dir/home/data" PATH="$dir/bin:$PATH" bash -o pipefail -c "$command") >"$dir/out" 2>&1 ||
    { fail "line $line failed (exit $?): $command"; sed 's/^/  /' "$dir/out" >&2; }
done < <(fenced sh)

for lister in "cmake --workflow" "cmake" "cmake --build" "ctest"; do
  known=$(cd "$src" && $lister --list-presets | sed -n 's/^ *"\([^"]*\)".*/\1/p')
  for name in $(grep -o -- "$lister *--preset [a-z0-9-][a-z0-9-]*" "$readme" | awk '{ print $NF }'); do
    grep -qx -- "$name" <<<"$known" || fail "no preset \"$name\" for $lister"
  done
done
for page in "$readme" "$src"/docs/*.md; do
  for target in $(grep -o '](\([^)#:]*\))' "$page" | sed 's/^](\(.*\))$/\1/'); do
    [ -e "$(dirname "$page")/$target" ] || fail "${page#"$src"/} links to $target, which is missing"
  done
done
diff -u <(tail -n +2 "$src/examples/calibrate.c") <(fenced c | cut -f2-) >&2 ||
  fail "its C program differs from examples/calibrate.c"

picture=$dir/run/chromaticity.png
if [ -n "${QUARNEL_REGENERATE:-}" ]; then
  cp "$picture" "$src/docs/chromaticity.png"
elif ! cmp -s "$picture" "$src/docs/chromaticity.png"; then
  fail "docs/chromaticity.png is not what its command draws: scripts/chromaticity.sh draws it anew"
fi
exit $failed
