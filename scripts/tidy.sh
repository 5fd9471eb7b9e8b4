#!/usr/bin/env bash
# Runs clang-tidy over all sources, or over those whose path holds a given text:
#   scripts/tidy.sh [TEXT]
# Each file is looked at by itself, with the options of the release build. Exits 1 at the first finding's end of run.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=$root/build/tidy
database=$build/compile_commands.json
(cd "$root" && cmake --preset release -B "$build" -DZEL_UNITY=OFF -DZEL_BUILD_TESTS=ON -DZEL_UNIT_TESTS=ON >/dev/null)
command -v clang-tidy-14 >/dev/null || { echo "clang-tidy-14 is missing: scripts/setup.sh long" >&2; exit 1; }

# Only what the project wrote: generated files lie in the build folder.
files() {
  /usr/bin/python3 - "$database" "$root" "${1:-}" <<'PY'
import json, sys
database, root, part = sys.argv[1:]
names = {entry["file"] for entry in json.load(open(database))}
mine = sorted(name for name in names if name.startswith(root + "/") and not name.startswith(root + "/build/") and part in name)
sys.stdout.write("".join(name + "\0" for name in mine))
PY
}
count=$(files "${1:-}" | tr -cd '\0' | wc -c)
[ "$count" -gt 0 ] || { echo "no source to look at" >&2; exit 1; }
# GCC's own warning options in the database mean nothing to clang.
files "${1:-}" | xargs -0 -n 1 -P "$jobs" clang-tidy-14 -p "$build" --quiet \
  --extra-arg=-Wno-unknown-warning-option --warnings-as-errors='*'
echo "$count sources without a finding"
