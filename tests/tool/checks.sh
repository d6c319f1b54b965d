# SPDX-License-Identifier: MIT
# Checks shared by the tool's shell tests; each sets $work, its scratch folder.

fail() { echo "FAILED: $*"; exit 1; }

# CAUSE COMMAND...: exits 69 with one line, which names CAUSE.
expect_unavailable() {
  local cause=$1 status=0
  shift
  "$@" 2>"$work/err" || status=$?
  [ $status -eq 69 ] && [ "$(wc -l <"$work/err")" -eq 1 ] && grep -q "$cause" "$work/err" ||
    fail "$* exits $status: $(cat "$work/err")"
}
