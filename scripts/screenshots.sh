#!/usr/bin/env bash
# Draws the pictures of the documents anew: the profile's windows and dialogs, and those of the desktop program.
# No display is needed, and the same pictures come out each time.
#
#   scripts/screenshots.sh [--programs FOLDER] [FOLDER]
#
# FOLDER is docs/guide/pictures unless given. The programs that draw them are built first, unless the folder with them is
# given.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

usage() { sed -n '2,8s/^# \{0,1\}//p' "$0"; }

programs=
folder=$root/docs/guide/pictures
while [ $# -gt 0 ]; do
  case $1 in
    --programs) programs=${2:?"--programs needs a folder"}; shift ;;
    --help) usage; exit 0 ;;
    -*) usage >&2; exit 2 ;;
    *) folder=$1 ;;
  esac
  shift
done

if [ -z "$programs" ]; then
  "$root/scripts/setup.sh" test
  mkdir -p "$logs"
  log=$logs/build-screenshots.log
  build_it() { configure release -DZEL_BUILD_TESTS=ON && build release screenshots host_screenshots; }
  tell_when_slow "Building the programs that draw them ..." "$log" build_it || fail_with_log "the build" "$log"
  programs=$root/build/release/bin
fi

# All of them or none.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
for program in screenshots host_screenshots; do
  "$programs/$program" "$scratch" || { echo "FAILED: the pictures cannot be drawn" >&2; exit 1; }
done
mkdir -p "$folder"
for picture in "$scratch"/*.png; do
  cp "$picture" "$folder/"
  echo "$folder/${picture##*/}"
done
