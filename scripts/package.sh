#!/usr/bin/env bash
# Makes the Debian package and prints its file:
#   scripts/package.sh [FOLDER]
# FOLDER is where it is built, build/package unless given. Progress goes to FOLDER/package.log. The same sources give the
# same package.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

case ${1:-} in -*) sed -n '2,5s/^# \{0,1\}//p' "$0"; [ "$1" = --help ] && exit 0 || exit 2 ;; esac
"$root/scripts/setup.sh" package
mkdir -p "${1:-$root/build/package}"
folder=$(cd "${1:-$root/build/package}" && pwd)
# A folder that was made for another tree cannot be used again.
if [ -f "$folder/CMakeCache.txt" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$folder/CMakeCache.txt"; then
  rm -rf "$folder/CMakeCache.txt" "$folder/CMakeFiles"
fi
log=$folder/package.log
: >"$log"

# Files in the package bear this time: of the last change where git knows it.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git -C "$root" log -1 --format=%ct 2>/dev/null || stat -c %Y "$root/CHANGELOG.md")}
export SOURCE_DATE_EPOCH

# Debian's own flags: hardening, and no path of this machine in the result. The optimisation is the release's.
debian_flags() {
  (cd "$root" && DEB_BUILD_MAINT_OPTIONS=hardening=+all DEB_CFLAGS_MAINT_STRIP="-g -O2" DEB_CXXFLAGS_MAINT_STRIP="-g -O2" \
    dpkg-buildflags --get "$1")
}

make_package() {
  local preprocessor linker
  preprocessor=$(debian_flags CPPFLAGS)
  linker=$(debian_flags LDFLAGS)
  (cd "$root" && in_c_locale cmake --preset release -B "$folder" \
    -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_SKIP_INSTALL_RPATH=ON -DZEL_DEBIAN_PACKAGE=ON \
    -DZEL_ZSH_COMPLETIONS=share/zsh/vendor-completions \
    -DZEL_BUILD_PYTHON=ON -DZEL_BUILD_TESTS=OFF -DZEL_BUILD_BENCH=OFF \
    -DCMAKE_C_FLAGS="$(debian_flags CFLAGS) $preprocessor" -DCMAKE_CXX_FLAGS="$(debian_flags CXXFLAGS) $preprocessor" \
    -DCMAKE_EXE_LINKER_FLAGS="$linker" -DCMAKE_SHARED_LINKER_FLAGS="$linker" -DCMAKE_MODULE_LINKER_FLAGS="$linker") &&
    in_c_locale cmake --build "$folder" --parallel "$jobs" &&
    rm -f "$folder"/*.deb &&
    (cd "$folder" && umask 022 && in_c_locale cpack -G DEB)
}
tell_when_slow "Building the package (some minutes the first time) ..." "$log" make_package ||
  fail_with_log "the package" "$log"
ls "$folder"/*.deb
