#!/usr/bin/env bash
# Draws the pictures of the documents anew: profile window, settings dialog, link budget, print preview, loss table.
# No display is needed, and the same pictures come out each time.
#
#   scripts/screenshots.sh [--program FILE] [FOLDER]
#
# FOLDER is docs/guide/pictures unless given. The program that draws them is built first, unless it is given.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

usage() { sed -n '2,7s/^# \{0,1\}//p' "$0"; }

program=
folder=$root/docs/guide/pictures
while [ $# -gt 0 ]; do
  case $1 in
    --program) program=${2:?"--program needs a file"}; shift ;;
    --help) usage; exit 0 ;;
    -*) usage >&2; exit 2 ;;
    *) folder=$1 ;;
  esac
  shift
done

if [ -z "$program" ]; then
  "$root/scripts/setup.sh" test
  mkdir -p "$logs"
  log=$logs/build-screenshots.log
  build_it() { configure release -DZEL_BUILD_TESTS=ON && build release screenshots; }
  tell_when_slow "Building the program that draws them ..." "$log" build_it || fail_with_log "the build" "$log"
  program=$root/build/release/bin/screenshots
fi

# All of them or none.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$program" "$scratch" || { echo "FAILED: the pictures cannot be drawn" >&2; exit 1; }
mkdir -p "$folder"
for picture in "$scratch"/*.png; do
  cp "$picture" "$folder/"
  echo "$folder/${picture##*/}"
done
