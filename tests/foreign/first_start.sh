#!/usr/bin/env bash
# The first start on smaller displays than that of the test hosts, where the same test runs at 1280:
# the program is installed there and finds its layout by the screen's width.
#
#   tests/foreign/first_start.sh [BUILD_WIN32_DIR [HOST]]      0: good, 1: not, 77: skipped
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=${1:-$root/build/win32}
host=${2:-${TONVISTA_HOST:-foreign}}
tests=$build/tests/program_tests.exe
[ -f "$tests" ] || { echo "skipped: $tests is not built"; exit 77; }

log=$(mktemp)
trap '"$root/tools/host.sh" stop "$host" >/dev/null 2>&1; rm -f "$log"' EXIT
for size in 640x480 800x600 1024x768; do
  "$root/tools/host.sh" start "$host" "$size" >/dev/null
  TONVISTA_BUILD=$build TONVISTA_ROOT=$root TONVISTA_SCREEN_WIDTH=${size%x*} \
    "$root/tools/host.sh" run "$host" -- wine "$tests" \
    --gtest_filter=LayoutsTest.TheFirstStartSuitsTheScreen >"$log" 2>&1 || { cat "$log"; exit 1; }
  grep -q '\[  PASSED  \] 1 test' "$log" || { cat "$log"; echo "failed: nothing ran at $size"; exit 1; }
  "$root/tools/host.sh" stop "$host"
done
