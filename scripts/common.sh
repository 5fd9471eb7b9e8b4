# Sourced by the commands: where things are, and how one stage is run. Messages go to standard error.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
logs=$root/build/logs
jobs=$(nproc)

# Where the environment has none, the shell's own default also serves the compiler.
export PATH

# Precompiled headers can be cached only so; nothing of ours depends on the time of the day.
export CCACHE_SLOPPINESS=pch_defines,time_macros

# ccache refuses to start without a place for its cache.
if [ -z "${HOME:-}" ]; then
  export CCACHE_DIR=${CCACHE_DIR:-$root/build/ccache}
fi

# fail_with_log TEXT LOG: the telling part of a log, then the one line that says what failed, and out.
fail_with_log() {
  telling_part "$2" | cut -c "1-300" >&2
  echo "FAILED: $1 (log: $2)" >&2
  exit 1
}

telling_part() {
  local log=$1 first length
  # Which cases failed, and where: a long suite's own list of them says neither.
  if grep -qE '(^|[^ ]): Failure$' "$log"; then
    grep -E -A 8 '(^|[^ ]): Failure$' "$log" | head -n 60
    grep -E '^\[  FAILED  \] [^ ]+ \(' "$log" || true
    tail -n 15 "$log"
    return
  fi
  # From the first failed compilation, configuration or test on; the plain end where there is none.
  first=$(grep -nE -m 1 '^FAILED: |(^|[ :])(fatal )?error: |^CMake Error|\*\*\*(Failed|Exception|Timeout|Not Run)' "$log" |
    cut -d: -f1 || true)
  length=$(wc -l <"$log")
  if [ -n "$first" ] && [ $((length - first)) -gt 55 ]; then
    sed -n "$first,$((first + 39))p" "$log"
    echo "..."
    tail -n 15 "$log"
  elif [ -n "$first" ]; then
    tail -n "+$first" "$log"
  else
    tail -n 60 "$log"
  fi
}

# in_c_locale COMMAND...: tools speak one language, so that their messages can be read by the scripts.
in_c_locale() {
  LC_ALL=C.UTF-8 "$@" </dev/null
}

# tell_when_slow TEXT LOG COMMAND...: runs it with its output in the log, and says so if it takes more than a moment.
tell_when_slow() {
  local text=$1 log=$2 status=0 teller
  shift 2
  (sleep 2 >/dev/null 2>&1 && echo "$text" >&2) &
  teller=$!
  "$@" >"$log" 2>&1 || status=$?
  kill "$teller" 2>/dev/null || true
  wait "$teller" 2>/dev/null || true
  return $status
}

# configure PRESET [CMAKE ARGUMENTS...]: makes build/PRESET, or brings it up to date.
configure() {
  local preset=$1 folder=$root/build/$1
  shift
  # A build folder that was made elsewhere (a copied or moved tree) cannot be used again.
  if [ -f "$folder/CMakeCache.txt" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$folder/CMakeCache.txt"; then
    rm -rf "$folder"
  fi
  (cd "$root" && in_c_locale cmake --preset "$preset" "$@")
}

# is_configured PRESET: whether build/PRESET was made for this very tree.
is_configured() {
  [ -f "$root/build/$1/build.ninja" ] &&
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$root/build/$1/CMakeCache.txt"
}

# build PRESET [TARGETS...]
build() {
  local preset=$1
  shift
  in_c_locale cmake --build "$root/build/$preset" --parallel "$jobs" ${1:+--target "$@"}
}

# sources: every C and C++ file of the project, ended by NUL, sorted.
sources() {
  (cd "$root" && find . -path ./build -prune -o -path './.*' -prune -o -type f \
    \( -name '*.h' -o -name '*.hpp' -o -name '*.cpp' -o -name '*.c' \) -print0 | sort -z)
}
