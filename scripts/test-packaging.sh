#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks what a developer gets from the packages.
#   linux:   tests/consumer built against an install in a temporary prefix,
#            once through find_package and once through pkg-config; then the
#            .deb installed with apt-get: the tool on PATH, the package's file
#            list and the library's SONAME. The package is removed again.
#   windows: the .zip from the windows preset, unpacked: its file list, the
#            DLL's version resource, and tests/consumer cross-built against
#            it with MinGW and run under Wine.
# Usage: scripts/test-packaging.sh [linux] [windows]   (both by default)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
version=$(sed -n 's/^project(quarnel VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
major=${version%%.*}
tmp=$(mktemp -d)
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
deb_installed="" wine_started=""
cleanup() {
  [ -z "$deb_installed" ] || $sudo apt-get purge -y -qq quarnel >/dev/null || true
  [ -z "$wine_started" ] || wineserver -k >/dev/null 2>&1 || true
  rm -rf "$tmp"
}
trap cleanup EXIT

# same_lines <what> <actual> <expected>: fails with a diff when the sorted lists differ.
same_lines() {
  diff -u <(sort <<<"$3") <(sort <<<"$2") >&2 || { echo "unexpected $1" >&2; return 1; }
}

# consumer <build dir> <cmake arguments...>: configures and builds tests/consumer.
consumer() {
  cmake -S tests/consumer -B "$1" -G Ninja -DCMAKE_C_FLAGS="-Wall -Wextra -Werror" "${@:2}" >/dev/null
  cmake --build "$1" >/dev/null
}

linux() {
  scripts/install-deps.sh native packaging
  cmake --preset release >/dev/null
  cmake --build --preset release >/dev/null
  cmake --install build/release --prefix "$tmp/prefix" >/dev/null
  echo "== the installed tool finds its library"
  env -u LD_LIBRARY_PATH "$tmp/prefix/bin/quarnel" version

  echo "== consumer through find_package"
  consumer "$tmp/cmake" -DCMAKE_PREFIX_PATH="$tmp/prefix"
  "$tmp/cmake/consumer"
  echo "== consumer through pkg-config"
  PKG_CONFIG_PATH="$tmp/prefix/lib/pkgconfig" consumer "$tmp/pc" -DQUARNEL_VIA_PKGCONFIG=ON
  "$tmp/pc/consumer"

  echo "== .deb"
  rm -f build/release/quarnel_*.deb
  (cd build/release && cpack -G DEB >/dev/null)
  local deb=("$root"/build/release/quarnel_"$version"_*.deb)
  ! dpkg -s quarnel >/dev/null 2>&1 || $sudo apt-get purge -y -qq quarnel >/dev/null
  deb_installed=1
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -o DPkg::Lock::Timeout=600 -y -qq "${deb[0]}" >/dev/null
  [ "$(command -v quarnel)" = /usr/bin/quarnel ]
  quarnel modes
  quarnel version | grep -x "quarnel tool $version" >/dev/null
  same_lines "files in the .deb" "$(dpkg -L quarnel | while read -r p; do [ -d "$p" ] || echo "$p"; done)" \
    "/usr/bin/quarnel
/usr/include/quarnel/cctapi.h
/usr/lib/libquarnel.so
/usr/lib/libquarnel.so.$major
/usr/lib/libquarnel.so.$version
/usr/lib/cmake/quarnel/quarnelConfig.cmake
/usr/lib/cmake/quarnel/quarnelConfigVersion.cmake
/usr/lib/cmake/quarnel/quarnelTargets.cmake
/usr/lib/cmake/quarnel/quarnelTargets-release.cmake
/usr/lib/pkgconfig/quarnel.pc
/usr/share/doc/quarnel/copyright"
  readelf -d /usr/lib/libquarnel.so."$version" | grep -F "Library soname: [libquarnel.so.$major]"
  [ "$(pkg-config --modversion quarnel)" = "$version" ]
}

windows() {
  scripts/install-deps.sh windows packaging
  export WINEPREFIX="${WINEPREFIX:-/tmp/quarnel-wine}" WINEDEBUG=-all
  wine_started=1
  wineboot -i >/dev/null 2>&1 </dev/null || true
  cmake --preset windows >/dev/null
  cmake --build --preset windows >/dev/null

  echo "== .zip"
  rm -f build/windows/quarnel-*-win64.zip
  (cd build/windows && cpack -G ZIP >/dev/null)
  (cd "$tmp" && cmake -E tar xf "$root/build/windows/quarnel-$version-win64.zip")
  local win="$tmp/quarnel-$version-win64"
  same_lines "files in the .zip" "$(cd "$win" && find . -type f | sort)" \
    "./LICENSE.txt
./bin/quarnel.dll
./include/quarnel/cctapi.h
./lib/libquarnel.dll.a
./lib/quarnel.def
./lib/pkgconfig/quarnel.pc
./lib/cmake/quarnel/quarnelConfig.cmake
./lib/cmake/quarnel/quarnelConfigVersion.cmake
./lib/cmake/quarnel/quarnelTargets.cmake
./lib/cmake/quarnel/quarnelTargets-release.cmake$( [ -f "$win/bin/quarnel.exe" ] && printf '\n./bin/quarnel.exe')"
  # The version resource holds its strings in UTF-16.
  strings -el "$win/bin/quarnel.dll" | grep -qx "$version"
  strings -el "$win/bin/quarnel.dll" | grep -qx Quarnel

  echo "== MinGW consumer under Wine"
  consumer "$tmp/mingw" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-mingw64.cmake" -DCMAKE_PREFIX_PATH="$win"
  cp "$win/bin/quarnel.dll" "$tmp/mingw/"
  wine "$tmp/mingw/consumer.exe" </dev/null
}

parts=("$@")
[ $# -gt 0 ] || parts=(linux windows)
for part in "${parts[@]}"; do
  case $part in
    linux | windows) "$part" ;;
    *) echo "usage: $0 [linux] [windows]" >&2 && exit 2 ;;
  esac
done
