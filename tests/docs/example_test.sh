#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The C example on the tool's sample block: request 1 finds the factory data,
# the library prints its 17 lines on standard output, and the warm end of the
# slider is the curve the tool writes for the same block.
# Usage: example_test.sh TOOL EXAMPLE
set -euo pipefail
tool=$1 example=$2
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir"
"$tool" block sample -o panel.json
"$tool" block build panel.json -o panel.bin
"$example" "$dir/" panel.bin >library.txt 2>report.txt
top=$("$tool" lut slider --calib panel.bin --interval 0.5 -o - --format csv | tail -n 1 | cut -d, -f2- | tr , ' ')
diff -u - report.txt <<<"request 1: 0, factory data: 1
request 2: 0, entry 255: $top"
lines=$(wc -l <library.txt)
[ "$lines" -eq 17 ] || { echo "the library printed $lines lines, not 17:" >&2; cat library.txt >&2; exit 1; }
