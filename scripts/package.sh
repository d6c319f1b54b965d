#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the packages into build/packages/:
#   deb:     libquarnel1, libquarnel-dev and quarnel, by dpkg-buildpackage from
#            debian/ (with the hardening flags of dpkg-buildflags);
#   windows: the .zip of the Windows cross build.
# Usage: scripts/package.sh [deb] [windows]   (deb by default)
# DEB_BUILD_OPTIONS is passed on; unset, it is "nocheck": the test suite has
# builds of its own, and the packages then need none of its dependencies.
# Debug-symbol packages are left out ("noddebs"): the three are what we ship.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
out=$root/build/packages
version=$(sed -n 's/^project(quarnel VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

deb() {
  scripts/install-deps.sh packaging
  local changelog
  changelog=$(dpkg-parsechangelog -S Version)
  [ "$changelog" = "$version" ] ||
    { echo "debian/changelog is at $changelog, CMakeLists.txt at $version: add a changelog entry" >&2 && exit 1; }
  export DEB_BUILD_OPTIONS="${DEB_BUILD_OPTIONS-nocheck} noddebs"
  local profiles=()
  [[ " $DEB_BUILD_OPTIONS " != *" nocheck "* ]] || profiles=(-Pnocheck)
  mkdir -p "$out"
  rm -f "$out"/*.deb "$out"/*.buildinfo "$out"/*.changes
  QUARNEL_DEB_DIR=$out dpkg-buildpackage -b --no-sign --post-clean "${profiles[@]}" \
    --buildinfo-option=-u"$out" --changes-option=-u"$out" \
    --buildinfo-file="$out/quarnel_${version}_$(dpkg-architecture -qDEB_HOST_ARCH).buildinfo" \
    --changes-file="$out/quarnel_${version}_$(dpkg-architecture -qDEB_HOST_ARCH).changes"
}

windows() {
  scripts/install-deps.sh windows
  cmake --preset windows >/dev/null
  cmake --build --preset windows >/dev/null
  (cd build/windows && cpack -G ZIP >/dev/null)
  mkdir -p "$out"
  cp "build/windows/quarnel-$version-win64.zip" "$out/"
}

parts=("$@")
[ $# -gt 0 ] || parts=(deb)
for part in "${parts[@]}"; do
  case $part in
    deb | windows) "$part" ;;
    *) echo "usage: $0 [deb] [windows]" >&2 && exit 2 ;;
  esac
done
ls "$out"
