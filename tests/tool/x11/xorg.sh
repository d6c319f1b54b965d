# SPDX-License-Identifier: MIT
# Starts Xorg with the dummy video driver on a free display and exports
# DISPLAY; skips the test (77) where it cannot. Sourced by the X11 tests after
# they set $work and $conf and a trap that stops "$xorg".

skip() { echo "skipped: $*"; exit 77; }
command -v Xorg >/dev/null || skip "Xorg is not installed"
n=90
while [ -e /tmp/.X$n-lock ] || [ -e /tmp/.X11-unix/X$n ]; do n=$((n + 1)); done
export DISPLAY=:$n
unset WAYLAND_DISPLAY
Xorg "$DISPLAY" -noreset -nolisten tcp -config "$conf" -logfile "$work/xorg.log" >/dev/null 2>"$work/xorg.err" &
xorg=$!
for _ in $(seq 100); do
  [ -S /tmp/.X11-unix/X$n ] && break
  kill -0 "$xorg" 2>/dev/null || { xorg=""; skip "Xorg did not start: $(grep -hE '\(EE\) [A-Za-z]' "$work"/xorg.* | grep -m1 -v -e dbus -e 'warning,')"; }
  sleep 0.1
done
