#!/usr/bin/env bash
# Runs one fuzzer for ZEL_FUZZ_SECONDS (5 without it), beginning with the bundled inputs:
#   scripts/fuzz.sh PROGRAM FOLDER CORPUS [MAX_LENGTH]
# FOLDER is emptied first. An input that breaks the program is left in FOLDER/artifacts.
set -euo pipefail
program=$1 folder=$2 corpus=$3 max_length=${4:-4096}

rm -rf "$folder"
mkdir -p "$folder/corpus" "$folder/artifacts"
places=("$folder/corpus")
[ -d "$corpus" ] && places+=("$corpus")
cd "$folder"

status=0
"$program" -max_total_time="${ZEL_FUZZ_SECONDS:-5}" -timeout=20 -max_len="$max_length" -print_final_stats=1 \
  -artifact_prefix="$folder/artifacts/" "${places[@]}" </dev/null >log 2>&1 || status=$?
tail -n 60 log
if [ $status -ne 0 ]; then
  replay=${program%/*}/replay_$(basename "$program" | sed 's/^fuzz_//')
  echo "error: to replay: $replay $folder/artifacts"
  exit 1
fi
# A fuzzer that ran nothing has found nothing out.
runs=$(sed -n 's/^stat::number_of_executed_units: *//p' log)
[ "${runs:-0}" -ge 10 ] || { echo "error: only ${runs:-0} inputs were tried"; exit 1; }
