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
[ "$(id -u)" -eq 0 ] || { echo "FAILED: the clean-root test needs root" >&2; exit 1; }
command -v debootstrap >/dev/null || { echo "FAILED: the clean-root test needs debootstrap" >&2; exit 1; }

mkdir -p "$logs"
scratch=$(mktemp -d /var/tmp/clean-root.XXXXXX)
system=$scratch/root
place="/srv/terrain profiler"

clean_up() {
  umount "$system/proc" 2>/dev/null || true
  if [ "$keep" = yes ]; then
    echo "kept: $scratch" >&2
  elif ! mountpoint -q "$system/proc"; then
    rm -rf --one-file-system "$scratch"
  fi
}
trap clean_up EXIT

echo "bare Debian 12 ..." >&2
debootstrap --variant=minbase bookworm "$system" "${ZEL_MIRROR:-http://deb.debian.org/debian}" \
  >"$logs/clean-root-debootstrap.log" 2>&1 || fail_with_log "debootstrap" "$logs/clean-root-debootstrap.log"
mount -t proc proc "$system/proc"
# The same way to the network as this machine has.
cp -L /etc/resolv.conf /etc/hosts "$system/etc/"
proxy=
eval "$(apt-config shell proxy Acquire::http::Proxy)"
[ -z "$proxy" ] || echo "Acquire::http::Proxy \"$proxy\";" >"$system/etc/apt/apt.conf.d/90proxy"

mkdir -p "$system$place"
tar -C "$root" --exclude=./build --exclude=./.git --exclude=./profile.csv --exclude=./profile.png -cf - . | tar -C "$system$place" -xf -

# in_clean_root COMMAND: with an empty environment, no terminal and no input, from a folder that is not the tree's.
in_clean_root() {
  chroot "$system" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin /bin/sh -c "cd / && $1" </dev/null
}

# stage NAME COMMAND PATTERN: runs it; its output has to hold the pattern.
stage() {
  local name=$1 log="$logs/clean-root-$1.log" start=$SECONDS
  in_clean_root "$2" >"$log" 2>&1 || fail_with_log "clean root: $name" "$log"
  grep -qE "$3" "$log" || fail_with_log "clean root: $name did not print $3" "$log"
  printf 'clean root: %-12s %4d s\n' "$name" $((SECONDS - start)) >&2
}

# Without a display there: the picture, and the losses.
stage run "'$place/run'" '^Modeled loss +[0-9.]+ dB'
head -c 8 "$system$place/profile.png" 2>/dev/null | grep -q PNG ||
  { echo "FAILED: clean root: run left no profile.png" >&2; exit 1; }
stage run-again "'$place/run'" '^Modeled loss +[0-9.]+ dB'
if [ "$run_only" = no ]; then
  stage test "'$place/test'" '^100% tests passed, 0 tests failed out of [1-9]'
fi
