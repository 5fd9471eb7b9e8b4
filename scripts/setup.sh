#!/usr/bin/env bash
# Installs the Debian 12 packages that are missing. Usage: scripts/setup.sh [run|test|long|package]
# Quiet when there is nothing to do. Messages go to standard error; the log is build/logs/setup.log.
# ZEL_SKIP_SETUP=1 leaves the machine as it is.
set -euo pipefail

# What the program is built from.
run_packages=(
  cmake ninja-build g++ ccache pkg-config
  qt6-base-dev qt6-svg-dev gnuplot-nox libgdal-dev libproj-dev proj-data
  libcli11-dev nlohmann-json3-dev libzip-dev
  fonts-dejavu-core python3 python3-markdown
)
# What its tests, fuzzers and checks need besides. poppler reads pages back; xvfb is a screen in memory for the window;
# llvm-14 makes the sanitizers' reports name functions.
test_packages=(
  libgtest-dev libbenchmark-dev poppler-utils xvfb
  python3-dev pybind11-dev python3-numpy
  clang-14 libclang-rt-14-dev lld-14 llvm-14 clang-format-14
)
# What only ./test --long needs.
long_packages=(clang-tidy-14 debootstrap)
# What scripts/package.sh needs to make a Debian package of the program, with the Python package in it.
package_packages=(dpkg-dev file python3-dev pybind11-dev)

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
log=$root/build/logs/setup.log

fail() {
  echo "set-up failed: $*" >&2
  exit 1
}

case ${1:-run} in
  run) wanted=("${run_packages[@]}") ;;
  test) wanted=("${run_packages[@]}" "${test_packages[@]}") ;;
  long) wanted=("${run_packages[@]}" "${test_packages[@]}" "${long_packages[@]}" "${package_packages[@]}") ;;
  package) wanted=("${run_packages[@]}" "${package_packages[@]}") ;;
  *)
    echo "usage: $0 [run|test|long|package]" >&2
    exit 2
    ;;
esac
[ "${ZEL_SKIP_SETUP:-0}" = 1 ] && exit 0

system_name() {
  # A subshell, because the file sets variables.
  (. /etc/os-release 2>/dev/null && echo "${ID:-unknown} ${VERSION_ID:-}") || echo "unknown"
}

missing_packages() {
  local installed name
  installed=" $(dpkg-query -W -f '${db:Status-Status} ${Package}\n' 2>/dev/null | sed -n 's/^installed //p' | tr '\n' ' ') "
  for name in "${wanted[@]}"; do
    case $installed in *" $name "*) ;; *) echo "$name" ;; esac
  done
}

# The reason for a failed installation in one line, from what apt wrote.
reason() {
  if grep -qiE 'no space left|enough free space' "$log"; then
    echo "the disk is full"
  elif grep -qiE 'Temporary failure resolving|Could not resolve|Could not connect|Network is unreachable|Connection (timed out|refused|failed)' "$log"; then
    echo "the package server cannot be reached (no network?)"
  elif grep -q 'Could not get lock' "$log"; then
    echo "another package manager is running"
  else
    grep '^E:' "$log" | tail -n 1 | sed 's/^E: //' || true
  fi
}

system=$(system_name)
if ! command -v dpkg-query >/dev/null; then
  fail "this needs Debian 12, and the machine is \"$system\". With the same packages installed by hand, set ZEL_SKIP_SETUP=1: ${wanted[*]}"
fi
read -r -d "" -a missing <<<"$(missing_packages)" || true
[ ${#missing[@]} -eq 0 ] && exit 0

[ "${system%% *}" = debian ] && [ "${system##* }" = 12 ] ||
  fail "this needs Debian 12, and the machine is \"$system\". With these packages installed by hand, set ZEL_SKIP_SETUP=1: ${missing[*]}"

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null ||
    fail "installing packages needs root or sudo. As root: apt-get install --no-install-recommends ${missing[*]}"
  as_root=(sudo)
  # Without a terminal sudo could only wait for a password that nobody types.
  [ -t 0 ] || as_root=(sudo -n)
  "${as_root[@]}" true 2>/dev/null || fail "sudo was refused. As root: apt-get install --no-install-recommends ${missing[*]}"
fi

mkdir -p "$(dirname "$log")" 2>/dev/null || fail "cannot write to $root"
echo "Installing ${#missing[@]} Debian packages (once; a few minutes) ..." >&2
apt() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C PATH="$PATH:/usr/sbin:/sbin" \
    apt-get -q -y -o DPkg::Lock::Timeout=600 -o Acquire::Retries=3 "$@" </dev/null >>"$log" 2>&1
}
: >"$log"
# A broken extra source must not matter as long as the packages can be had, so only the installation decides.
apt update || true
apt install --no-install-recommends "${missing[@]}" || fail "$(reason). Details: $log"
