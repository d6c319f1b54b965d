#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the quarnel tool (release) and runs it; arguments go to the tool,
# which shows the sample panel's modes when given none. The tool runs in the
# caller's directory, so a relative -o lands where the caller stands.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
(
  cd "$root"
  scripts/install-deps.sh native
  cmake --preset release >/dev/null
  cmake --build --preset release --target quarnel_tool >/dev/null
)
exec "$root/build/release/tools/quarnel/quarnel" "$@"
