#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Draws docs/chromaticity.png anew with the README's own plot command, by
# running the README's commands the way its test does.
# Usage: scripts/chromaticity.sh [TOOL]   (default: the release build's)
set -euo pipefail
cd "$(dirname "$0")/.."
tool=$(realpath "${1:-build/release/tools/quarnel/quarnel}")
QUARNEL_REGENERATE=1 tests/docs/readme_test.sh "$PWD" "$tool"
