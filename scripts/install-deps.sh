#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Debian packages a build needs, only those that are missing.
# Usage: scripts/install-deps.sh [native] [windows] [packaging] [fuzz]
set -euo pipefail

declare -A groups=(
  [native]="g++ cmake ninja-build python3 libgtest-dev libgmock-dev googletest libbenchmark-dev
    pkgconf libcli11-dev nlohmann-json3-dev liblcms2-dev libcairo2-dev argyll
    libxrandr-dev xserver-xorg-core xserver-xorg-video-dummy x11-xserver-utils libcolord-dev colord dbus-daemon
    libglib2.0-bin scdoc chromium libwayland-dev libwayland-bin desktop-file-utils systemd"
  [windows]="g++-mingw-w64-x86-64 wine wine64 googletest cmake ninja-build"
  [packaging]="build-essential debhelper dpkg-dev lintian scdoc man-db bash-completion file pkgconf binutils
    cmake ninja-build libcli11-dev nlohmann-json3-dev liblcms2-dev libcairo2-dev libfontconfig-dev
    libxrandr-dev libcolord-dev libwayland-dev libwayland-bin"
  [fuzz]="clang libclang-rt-14-dev cmake ninja-build nlohmann-json3-dev"
  [format]="clang-format git"
)

wanted=()
for group in "${@:-native}"; do
  for pkg in ${groups[$group]}; do
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || wanted+=("$pkg")
  done
done
[ ${#wanted[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -o DPkg::Lock::Timeout=600 -y -qq --no-install-recommends "${wanted[@]}" >/dev/null
