#!/usr/bin/env bash
# Checks the layout of the sources, or mends it: scripts/format.sh [--fix]
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

mode=(--dry-run --Werror)
case ${1:-} in
  "") ;;
  --fix) mode=(-i) ;;
  *) echo "usage: $0 [--fix]" >&2; exit 2 ;;
esac
command -v clang-format-14 >/dev/null || { echo "clang-format-14 is missing: scripts/setup.sh test" >&2; exit 1; }
cd "$root"
sources | xargs -0 clang-format-14 "${mode[@]}" --
