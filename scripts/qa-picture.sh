#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Draws docs/qa-report.png anew: the top of the HTML report of a made-up lot
# of 300 blocks, some damaged, as headless Chromium shows it.
# Usage: scripts/qa-picture.sh [TOOL]   (default: the release build's)
set -euo pipefail
cd "$(dirname "$0")/.."
tool=$(realpath "${1:-build/release/tools/quarnel/quarnel}")
out=$PWD/docs/qa-report.png
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir"
"$tool" block lot --count 300 --seed 7 --damaged 0.05 -o lot
"$tool" qa lot --quiet --report report.html >/dev/null 2>&1 || [ $? -eq 1 ]  # 1: damaged blocks
chromium --headless --no-sandbox --disable-gpu --hide-scrollbars --user-data-dir=browser \
  --window-size=1060,760 --screenshot="$dir/shot.png" "file://$dir/report.html" 2>/dev/null
cp "$dir/shot.png" "$out"
echo "wrote $out"
