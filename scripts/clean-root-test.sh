#!/usr/bin/env bash
# Tries the two commands on a bare Debian 12: debootstrap makes one in a scratch folder, the tree is copied into it under a path
# with blanks, and ./run and ./test have to succeed there with nothing installed beforehand. Takes root, network,
# 6 GB in /var/tmp and up to half an hour.
#
#   scripts/clean-root-test.sh [--run-only] [--keep]
#
# ZEL_MIRROR names another Debian mirror.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
. "$root/scripts/clean-root.sh"

test_name=clean-root
run_only=no
keep=no
for argument in "$@"; do
  case $argument in
    --run-only) run_only=yes ;;
    --keep) keep=yes ;;
    *)
      sed -n '2,8s/^# \{0,1\}//p' "$0"
      [ "$argument" = --help ] && exit 0 || exit 2
      ;;
  esac
done
require_clean_root
make_clean_root

place="/srv/terrain profiler"
mkdir -p "$system$place"
tar -C "$root" --exclude=./build --exclude=./.git --exclude=./profile.csv --exclude=./profile.png -cf - . | tar -C "$system$place" -xf -

# Without a display there: the picture, and the losses.
clean_root_stage run "'$place/run'" '^Modeled loss +[0-9.]+ dB'
head -c 8 "$system$place/profile.png" 2>/dev/null | grep -q PNG ||
  { echo "FAILED: $test_name: run left no profile.png" >&2; exit 1; }
clean_root_stage run-again "'$place/run'" '^Modeled loss +[0-9.]+ dB'
if [ "$run_only" = no ]; then
  clean_root_stage test "'$place/test'" '^100% tests passed, 0 tests failed out of [1-9]'
fi
