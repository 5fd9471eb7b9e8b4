#!/usr/bin/env bash
# Builds a consumer with the compiler and what pkg-config says of the installed tree, and runs it.
#   pkg_config.sh PREFIX CONSUMER-FOLDER WORK-FOLDER C-COMPILER C++-COMPILER
set -euo pipefail
prefix=$1 consumer=$2 work=$3
file=$(find "$prefix" -name zelProfiler01.pc)
[ -n "$file" ] || { echo "failed: there is no zelProfiler01.pc below $prefix"; exit 1; }
export PKG_CONFIG_PATH=${file%/*}
mkdir -p "$work"

# pkg-config writes blanks as the shell has them, so its words are read by the shell once more.
eval "flags=($(pkg-config --cflags --libs zelProfiler01))"
eval "libraries=$(pkg-config --variable=libdir zelProfiler01)"
if [ -f "$consumer/main.c" ]; then
  "$4" -std=c11 -Wall -Wextra -Wpedantic -Werror "$consumer/main.c" "${flags[@]}" -o "$work/host"
else
  "$5" -std=c++20 -Wall -Wextra -Wpedantic -Werror "$consumer/main.cpp" "${flags[@]}" -o "$work/host"
fi
LD_LIBRARY_PATH=$libraries "$work/host" "$work" | tee "$work/output"
grep -qE '^consumer: loss [0-9.]+ dB$' "$work/output"
