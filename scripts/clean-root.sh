# Sourced by the tests on a bare Debian 12: makes one in a scratch folder with debootstrap, and runs commands in it.
# Takes root and network. ZEL_MIRROR names another Debian mirror. The caller may set keep=yes to keep the folder, and sets
# test_name, which heads its messages and logs ("clean-root").
# shellcheck shell=bash

require_clean_root() {
  [ "$(id -u)" -eq 0 ] || { echo "FAILED: $test_name needs root" >&2; exit 1; }
  command -v debootstrap >/dev/null || { echo "FAILED: $test_name needs debootstrap" >&2; exit 1; }
}

remove_clean_root() {
  umount "$system/proc" 2>/dev/null || true
  if [ "${keep:-no}" = yes ]; then
    echo "kept: $scratch" >&2
  elif ! mountpoint -q "$system/proc"; then
    rm -rf --one-file-system "$scratch"
  fi
}

# Sets scratch and system, the root of the bare system. It is gone when the caller ends.
make_clean_root() {
  mkdir -p "$logs"
  scratch=$(mktemp -d "/var/tmp/$test_name.XXXXXX")
  system=$scratch/root
  trap remove_clean_root EXIT
  echo "bare Debian 12 ..." >&2
  debootstrap --variant=minbase bookworm "$system" "${ZEL_MIRROR:-http://deb.debian.org/debian}" \
    >"$logs/$test_name-debootstrap.log" 2>&1 || fail_with_log "debootstrap" "$logs/$test_name-debootstrap.log"
  mount -t proc proc "$system/proc"
  # The same way to the network as this machine has.
  cp -L /etc/resolv.conf /etc/hosts "$system/etc/"
  local proxy=
  eval "$(apt-config shell proxy Acquire::http::Proxy)"
  [ -z "$proxy" ] || echo "Acquire::http::Proxy \"$proxy\";" >"$system/etc/apt/apt.conf.d/90proxy"
}

# in_clean_root COMMAND: with an empty environment, no terminal and no input, from a folder that is nobody's.
in_clean_root() {
  chroot "$system" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin /bin/sh -c "cd / && $1" </dev/null
}

# clean_root_stage NAME COMMAND PATTERN: runs it; its output has to hold the pattern.
clean_root_stage() {
  local name=$1 log="$logs/$test_name-$1.log" start=$SECONDS
  in_clean_root "$2" >"$log" 2>&1 || fail_with_log "$test_name: $name" "$log"
  grep -qE "$3" "$log" || fail_with_log "$test_name: $name did not print $3" "$log"
  printf '%s: %-12s %4d s\n' "$test_name" "$name" $((SECONDS - start)) >&2
}
