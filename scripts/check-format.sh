#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails when a C or C++ source differs from what .clang-format asks for.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh format
git ls-files -z '*.c' '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror
echo "formatting: clean"
