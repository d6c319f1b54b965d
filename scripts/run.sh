#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the quarnel tool (release) and runs it; arguments go to the tool,
# which shows the sample panel's modes when given none.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh native
cmake --preset release >/dev/null
cmake --build --preset release --target quarnel_tool >/dev/null
exec build/release/tools/quarnel/quarnel "$@"
