#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Prints non-blank test lines over non-blank code lines and fails above the
# ceiling: tests stay roughly a quarter to a third of the code.
set -euo pipefail
cd "$(dirname "$0")/.."
ceiling=0.40
count() {
  git ls-files -- "$@" | grep -E '\.(c|cc|cpp|cxx|h|hh|hpp|py|sh)$' | tr '\n' '\0' |
    xargs -0 -r cat | grep -cvE '^\s*$' || true
}
code=$(count src include tools)
tests=$(count tests)
ratio=$(awk -v t="$tests" -v c="$code" 'BEGIN { printf "%.2f", t / c }')
echo "test lines / code lines: $tests / $code = $ratio (ceiling $ceiling)"
awk -v r="$ratio" -v m="$ceiling" 'BEGIN { exit !(r <= m) }'
