#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the libFuzzer targets with clang and runs each for a bounded time.
# Usage: scripts/fuzz-smoke.sh [seconds-per-target]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
scripts/install-deps.sh fuzz
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
mapfile -t targets < <(find build/fuzz/fuzz -mindepth 2 -maxdepth 2 -type f -perm -u+x | sort)
[ ${#targets[@]} -gt 0 ] || { echo "no fuzz targets built" >&2; exit 1; }
for target in "${targets[@]}"; do
  echo "== $(basename "$target") for ${seconds}s"
  corpus="build/fuzz/corpus/$(basename "$target")"
  mkdir -p "$corpus"
  "$target" -max_total_time="$seconds" -print_final_stats=0 "$corpus" 2>&1 | tail -n 3
done
