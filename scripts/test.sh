#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the library, the tool and the test suite (release) and runs the tests.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh native
cmake --workflow --preset release
