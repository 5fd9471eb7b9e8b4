#!/usr/bin/env bash
# Builds the library and the Python package with the thread sanitizer, in build/threads, and runs eight threads of mixed
# calls through Python under it: scripts/thread-sanitizer.sh [BUILD]
#
# Fails for a wrong result, and for each report of the sanitizer but those of foreign libraries
# (tests/python/thread-sanitizer.supp), which are not built with it.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

folder=${1:-$root/build/threads}
(cd "$root" && in_c_locale cmake --preset threads -B "$folder")
in_c_locale cmake --build "$folder" --parallel "$jobs" --target zel_python

reports=$(mktemp -d)
trap 'rm -rf "$reports"' EXIT
export TSAN_OPTIONS="suppressions=$root/tests/python/thread-sanitizer.supp:log_path=$reports/report:exitcode=66:history_size=4"
export QT_QPA_PLATFORM=offscreen CUPS_SERVER=/nowhere/cups.sock ZEL_TEST_THREAD_SANITIZER=1
# Python is not built with the sanitizer, which has to be there first; and the sanitizer wants its memory where a
# randomised layout may have put something else.
status=0
LD_PRELOAD=$(g++-12 -print-file-name=libtsan.so.2) in_c_locale setarch -R /usr/bin/python3 \
  "$root/tests/python/run.py" "$folder/lib/python3/dist-packages" test_threads || status=$?
cat "$reports"/report* 2>/dev/null || true
[ $status -eq 0 ] || { echo "FAILED: threads through Python (exit status $status)" >&2; exit 1; }
if compgen -G "$reports/report*" >/dev/null; then
  echo "FAILED: the thread sanitizer has reports" >&2
  exit 1
fi
