#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# quarnel profile install, list and remove against a real colord on a private
# system bus, with colord's own colormgr as the independent reader.
# Usage: profile_colord.sh QUARNEL. Exits 77 when colord cannot be started.
set -euo pipefail
quarnel=$1 device=xrandr-Quarnel-Sample-0001
work=$(mktemp -d) bus="" daemon=""
stop() { [ -z "$1" ] || { kill "$1" 2>/dev/null; wait "$1" 2>/dev/null || true; }; }
trap 'stop "$daemon"; stop "$bus"; rm -rf "$work"' EXIT
skip() { echo "skipped: $*"; exit 77; }
. "$(dirname "$0")/../checks.sh"

colord=$(ls /usr/libexec/colord /usr/lib/colord/colord 2>/dev/null | head -1 || true)
[ -n "$colord" ] || skip "colord is not installed"
command -v colormgr >/dev/null || skip "colormgr is not installed"
command -v dbus-daemon >/dev/null || skip "dbus-daemon is not installed"
[ "$(id -u)" -eq 0 ] || skip "colord lets only root act without a polkit agent"

cat >"$work/bus.conf" <<CONF
<busconfig>
  <type>system</type>
  <listen>unix:path=$work/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/> <allow own="*"/> <allow send_destination="*"/> <allow receive_sender="*"/>
  </policy>
</busconfig>
CONF
dbus-daemon --config-file="$work/bus.conf" --nofork 2>"$work/bus.err" &
bus=$!
export DBUS_SYSTEM_BUS_ADDRESS=unix:path=$work/bus XDG_DATA_HOME=$work/data
for _ in $(seq 50); do [ -S "$work/bus" ] && break; sleep 0.1; done
# colord keeps its databases in its state folder: a private one where mounts
# may be made, else the machine's.
mkdir "$work/state"
private_state=no
! unshare --mount true 2>/dev/null || private_state=yes
start_colord() {
  if [ $private_state = yes ]; then
    unshare --mount sh -c 'mount --bind "$1" /var/lib/colord 2>/dev/null || true; exec "$2"' sh "$work/state" "$colord" \
      >"$work/colord.log" 2>&1 &
  else
    "$colord" >"$work/colord.log" 2>&1 &
  fi
  daemon=$!
  for _ in $(seq 100); do timeout 5 colormgr get-devices >/dev/null 2>&1 && break; sleep 0.1; done
  timeout 5 colormgr get-devices >/dev/null 2>&1 || skip "colord did not start: $(tail -1 "$work/colord.log")"
}
start_colord

# The display as a compositor registers it.
colormgr create-device "$device" normal display >/dev/null
colormgr device-set-vendor "$device" Quarnel >/dev/null
colormgr device-set-model "$device" Sample >/dev/null

q() { timeout 30 "$quarnel" "$@"; }
q lut slider --interval 0.7 -o "$work/slider.icc"
q profile install slider --interval 0.7 --sample --device "$device" >/dev/null
installed=$work/data/icc/quarnel-$device.icc
# The mode's curve and colours, as ArgyllCMS reads them from both files.
for tag in vcgt rXYZ wtpt rTRC; do
  cmp <(iccdump -v3 -t $tag "$work/slider.icc" | tail -n +2) <(iccdump -v3 -t $tag "$installed" | tail -n +2) ||
    fail "the installed file's $tag is not the mode's"
done
colormgr device-get-default-profile "$device" >"$work/default"
grep -q "MAPPING_device_id=$device" "$work/default" || fail "the profile does not name its device: $(cat "$work/default")"
grep -q "Filename: *$installed\$" "$work/default" || fail "not the default profile: $(cat "$work/default")"
grep -q "Gamma Table: *Yes" "$work/default" || fail "colord sees no gamma table"
q profile list | grep -q "^$device  default  icc-[0-9a-f]*  $installed\$" || fail "list does not show it"

# Another mode replaces it.
q profile install theater --sample --device "$device" >/dev/null
[ "$(colormgr get-profiles | grep -c "$work/data")" -eq 1 ] || fail "the first profile stayed registered"

q profile remove --device "$device" >/dev/null
[ ! -e "$installed" ] || fail "remove left the file"
colormgr get-profiles | grep -q "$work/data" && fail "remove left the profile in colord"
colormgr device-get-default-profile "$device" | grep -q "Filename" && fail "remove left a default profile"

expect_unavailable "no device" q profile install native --sample --device xrandr-no-such-display
colormgr delete-device "$device" >/dev/null

# The panel as each desktop registers it, next to an external monitor: found
# by what the compositor said about it, made the default, and the default
# again after colord restarts and the desktop adds device and profile back.
call() { gdbus call --system --dest org.freedesktop.ColorManager --object-path /org/freedesktop/ColorManager \
  --method "org.freedesktop.ColorManager.$1" "${@:2}" >/dev/null; }
monitor="{'Kind':'display','Vendor':'Other','Model':'Monitor','Serial':'9','XRANDR_name':'HDMI-A-1'}"
mutter="{'Kind':'display','Vendor':'Quarnel','Model':'Sample','Serial':'0001','Embedded':'','XRANDR_name':'eDP-1',\
'OutputEdidMd5':'00112233445566778899aabbccddeeff'}"
kwin="{'Kind':'display','Vendor':'Quarnel','Model':'Sample','Serial':'0001','Embedded':''}"
default_of() { colormgr device-get-default-profile "$1" 2>/dev/null | sed -n 's/^Filename: *//p'; }
for desktop in mutter:xrandr-Quarnel-Sample-0001 kwin:eDP-1; do
  id=${desktop#*:} props=${desktop%%:*}
  call CreateDevice xrandr-Other-Monitor-9 normal "$monitor"
  call CreateDevice "$id" normal "${!props}"
  for choice in "" "--output eDP-1"; do
    q profile install vivid --sample $choice >"$work/said" || fail "$props: install $choice failed"
    installed=$work/data/icc/quarnel-$id.icc
    [ "$(default_of "$id")" = "$installed" ] || fail "$props ($choice): not the default of $id: $(cat "$work/said")"
  done
  [ -z "$(default_of xrandr-Other-Monitor-9)" ] || fail "$props: the external monitor got a profile"
  expect_unavailable "no display device for DP-9" q profile install vivid --sample --output DP-9
  stop "$daemon"
  start_colord
  call CreateDevice "$id" normal "${!props}"
  call CreateProfile "icc-$(md5sum <"$installed" | cut -c1-32)" normal "{'Filename':'$installed'}"
  [ $private_state = no ] || [ "$(default_of "$id")" = "$installed" ] ||
    fail "$props: after a restart the default of $id is '$(default_of "$id")'"
  q profile remove >/dev/null
  [ ! -e "$installed" ] || fail "$props: remove left the file"
  colormgr delete-device "$id" >/dev/null
  colormgr delete-device xrandr-Other-Monitor-9 >/dev/null 2>&1 || true
done
stop "$daemon"
daemon=""
expect_unavailable "cannot reach colord" q profile list
status=0
q profile install slider --device "$device" 2>"$work/err" || status=$?
[ $status -eq 64 ] && grep -q "creator application" "$work/err" || fail "install without a panel exits $status"
expect_unavailable "cannot reach colord" env DBUS_SYSTEM_BUS_ADDRESS=unix:path=$work/no-bus "$quarnel" profile list
[ -z "$(ls -A "$work/data/icc")" ] || fail "a failed install left a file"
echo "passed"
