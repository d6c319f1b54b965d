#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks what users and developers get from the packages.
#   linux:   tests/consumer built against an install in a temporary prefix,
#            through find_package and through pkg-config; then the three
#            .deb files from scripts/package.sh: lintian, the library and its
#            development files installed alone (without the tool's libraries)
#            and the consumer built against them from the system's paths, the
#            tool with its manual and completions, and a purge that leaves
#            nothing behind.
#   windows: the .zip from scripts/package.sh, unpacked: its file list, the
#            DLL's version resource, and tests/consumer cross-built against
#            it with MinGW and run under Wine.
# Usage: scripts/test-packaging.sh [linux] [windows]   (both by default)
set -euo pipefail
cd "$(dirname "$0")/.."
# debhelper reads /dev/null as an empty file: were it a plain file, what
# others wrote to it would land in the packages' trigger lists.
[ -c /dev/null ] || { echo "/dev/null is not the null device; restore it: rm /dev/null && mknod -m 666 /dev/null c 1 3" >&2 && exit 1; }
root=$PWD
version=$(sed -n 's/^project(quarnel VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
major=${version%%.*}
packages=(libquarnel1 libquarnel-dev quarnel)
tmp=$(mktemp -d)
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
wine_started=""
purge() {
  local installed
  installed=$(dpkg-query -W -f='${db:Status-Abbrev} ${Package}\n' "${packages[@]}" 2>/dev/null | awk '$1 != "un" { print $2 }' || true)
  [ -z "$installed" ] || $sudo apt-get purge -y -qq $installed >/dev/null
}
cleanup() {
  purge || true
  [ -z "$wine_started" ] || wineserver -k >/dev/null 2>&1 || true
  rm -rf "$tmp"
}
trap cleanup EXIT
apt_install() { DEBIAN_FRONTEND=noninteractive $sudo apt-get install -o DPkg::Lock::Timeout=600 -y -qq "$@" >/dev/null; }

# same_lines <what> <actual> <expected>: fails with a diff when the sorted lists differ.
same_lines() {
  diff -u <(sort <<<"$3") <(sort <<<"$2") >&2 || { echo "unexpected $1" >&2; return 1; }
}

# consumer <build dir> <cmake arguments...>: configures and builds tests/consumer.
consumer() {
  cmake -S tests/consumer -B "$1" -G Ninja -DCMAKE_C_FLAGS="-Wall -Wextra -Werror" "${@:2}" >/dev/null
  cmake --build "$1" >/dev/null
}

# files <package>: the files (not folders) a package installed.
files() { dpkg -L "$1" | while read -r p; do [ -d "$p" ] || echo "$p"; done; }

# The files under /usr, /etc and /opt that no package installed since $1 owns.
unowned_since() {
  local new
  new=$(comm -13 "$1" <(dpkg-query -W -f='${Package}\n' | sort))
  comm -13 "$2" <(find /usr /etc /opt -xdev 2>/dev/null | sort) |
    grep -vxF -f <(for p in $new; do dpkg -L "$p"; done; echo /nothing) || true
}

linux() {
  scripts/install-deps.sh native packaging
  cmake --preset release >/dev/null
  cmake --build --preset release >/dev/null
  cmake --install build/release --prefix "$tmp/prefix" >/dev/null
  echo "== the installed tool finds its library"
  env -u LD_LIBRARY_PATH "$tmp/prefix/bin/quarnel" version
  echo "== consumer through find_package, from an install tree"
  consumer "$tmp/cmake" -DCMAKE_PREFIX_PATH="$tmp/prefix"
  "$tmp/cmake/consumer"
  echo "== consumer through pkg-config, from an install tree"
  PKG_CONFIG_PATH="$tmp/prefix/lib/pkgconfig" consumer "$tmp/pc" -DQUARNEL_VIA_PKGCONFIG=ON
  "$tmp/pc/consumer"

  echo "== packages"
  scripts/package.sh deb >/dev/null
  local arch multiarch deb=()
  arch=$(dpkg-architecture -qDEB_HOST_ARCH)
  multiarch=$(dpkg-architecture -qDEB_HOST_MULTIARCH)
  for p in "${packages[@]}"; do deb+=("$root/build/packages/${p}_${version}_$arch.deb"); done
  lintian --fail-on error,warning "${deb[@]}"

  purge
  dpkg-query -W -f='${Package}\n' | sort >"$tmp/packages-before"
  find /usr /etc /opt -xdev 2>/dev/null | sort >"$tmp/files-before"

  echo "== library and development files alone"
  apt_install "${deb[0]}" "${deb[1]}"
  ! dpkg -s quarnel >/dev/null 2>&1 || { echo "libquarnel-dev pulled in the tool" >&2 && return 1; }
  local pulled
  pulled=$(apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks \
    --no-replaces --no-enhances libquarnel-dev | grep -v '^ ' |
    grep -E '^(libcairo|libcolord|colord|libx11|libxrandr|libxcb|libwayland|liblcms|libfontconfig|libglib)' || true)
  [ -z "$pulled" ] || { echo "libquarnel-dev depends on the tool's libraries:" $pulled >&2 && return 1; }
  ldconfig -p | grep -F "libquarnel.so.$major " >/dev/null || { echo "the ldconfig trigger did not run" >&2 && return 1; }
  same_lines "files in libquarnel1" "$(files libquarnel1)" "/usr/lib/$multiarch/libquarnel.so.$major
/usr/lib/$multiarch/libquarnel.so.$version
/usr/share/doc/libquarnel1/changelog.gz
/usr/share/doc/libquarnel1/copyright"
  same_lines "files in libquarnel-dev" "$(files libquarnel-dev)" "/usr/include/quarnel/cctapi.h
/usr/lib/$multiarch/libquarnel.so
/usr/lib/$multiarch/cmake/quarnel/quarnelConfig.cmake
/usr/lib/$multiarch/cmake/quarnel/quarnelConfigVersion.cmake
/usr/lib/$multiarch/cmake/quarnel/quarnelTargets-none.cmake
/usr/lib/$multiarch/cmake/quarnel/quarnelTargets.cmake
/usr/lib/$multiarch/pkgconfig/quarnel.pc
/usr/share/doc/libquarnel-dev/changelog.gz
/usr/share/doc/libquarnel-dev/copyright"
  readelf -d "/usr/lib/$multiarch/libquarnel.so.$version" | grep -F "Library soname: [libquarnel.so.$major]" >/dev/null
  [ "$(pkg-config --modversion quarnel)" = "$version" ]
  echo "== consumer through find_package, from the system"
  consumer "$tmp/sys-cmake"
  "$tmp/sys-cmake/consumer"
  echo "== consumer through pkg-config, from the system"
  consumer "$tmp/sys-pc" -DQUARNEL_VIA_PKGCONFIG=ON
  "$tmp/sys-pc/consumer"
  # /lib is /usr/lib on a merged /usr, and the loader may name either.
  ldd "$tmp/sys-pc/consumer" | grep -E "=> (/usr)?/lib/$multiarch/libquarnel\.so\.$major " >/dev/null

  echo "== the tool"
  apt_install "${deb[2]}"
  [ "$(command -v quarnel)" = /usr/bin/quarnel ]
  quarnel modes
  quarnel version | grep -x "quarnel tool $version" >/dev/null
  [ "$(man -w quarnel)" = /usr/share/man/man1/quarnel.1.gz ]
  man quarnel 2>/dev/null | grep -q "EXIT STATUS"
  # bash-completion finds the tool's completion where it loads completions on demand.
  bash -c '. /usr/share/bash-completion/bash_completion && __load_completion quarnel && complete -p quarnel' |
    grep -q -- "-F _quarnel quarnel"
  same_lines "files in quarnel" "$(files quarnel)" "/usr/bin/quarnel
/usr/share/bash-completion/completions/quarnel
/usr/share/doc/quarnel/changelog.gz
/usr/share/doc/quarnel/copyright
/usr/share/man/man1/quarnel.1.gz
/usr/share/zsh/vendor-completions/_quarnel"
  # dpkg-buildflags' hardening: a position-independent tool, read-only relocations bound at start.
  readelf -h /usr/bin/quarnel | grep -q "DYN (Position-Independent Executable"
  for elf in /usr/bin/quarnel "/usr/lib/$multiarch/libquarnel.so.$version"; do
    readelf -d "$elf" | grep -q BIND_NOW && readelf -lW "$elf" | grep -q GNU_RELRO ||
      { echo "$elf is not built with the hardening flags" >&2 && return 1; }
  done

  echo "== purge"
  purge
  ! ldconfig -p | grep -F "libquarnel.so.$major " >/dev/null
  local left
  left=$(unowned_since "$tmp/packages-before" "$tmp/files-before")
  [ -z "$left" ] || { echo "left behind after the purge:" $left >&2 && return 1; }
}

windows() {
  scripts/install-deps.sh windows packaging
  export WINEPREFIX="${WINEPREFIX:-/tmp/quarnel-wine}" WINEDEBUG=-all
  wine_started=1
  wineboot -i >/dev/null 2>&1 </dev/null || true

  echo "== .zip"
  rm -f build/packages/quarnel-*-win64.zip
  scripts/package.sh windows >/dev/null
  (cd "$tmp" && cmake -E tar xf "$root/build/packages/quarnel-$version-win64.zip")
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
