#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Cross-builds quarnel.dll and the test suite with MinGW-w64 and runs the
# tests under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh windows

export WINEPREFIX="${WINEPREFIX:-/tmp/quarnel-wine}"
export WINEDEBUG=-all
# A running wineserver keeps ctest from waiting on pipes that Wine's
# first-start processes inherit.
wineboot -i >/dev/null 2>&1 </dev/null || true
wineserver -p >/dev/null 2>&1 </dev/null || true
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT

cmake --workflow --preset windows
