#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the libFuzzer targets with clang and runs each for a bounded time,
# starting from its kept corpus. New finds go to build/fuzz/corpus, never
# into the kept corpus; a crash input is left in build/fuzz/crashes (copy it
# into fuzz/regressions/<target>/ once fixed).
# Usage: scripts/fuzz-smoke.sh [seconds-per-target]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
scripts/install-deps.sh fuzz
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
mapfile -t targets < <(find build/fuzz/fuzz -mindepth 2 -maxdepth 2 -type f -perm -u+x | sort)
[ ${#targets[@]} -gt 0 ] || { echo "no fuzz targets built" >&2; exit 1; }
mkdir -p build/fuzz/crashes
for target in "${targets[@]}"; do
  name="$(basename "$target")"
  echo "== $name for ${seconds}s"
  scratch="build/fuzz/corpus/$name"
  mkdir -p "$scratch"
  # -close_fd_mask=1 closes the library's standard output: its chatter would
  # otherwise hold some targets to a few hundred runs a second.
  "$target" -close_fd_mask=1 -max_total_time="$seconds" -print_final_stats=0 \
    -artifact_prefix=build/fuzz/crashes/ "$scratch" "fuzz/corpus/$name" 2>&1 | tail -n 3
done
