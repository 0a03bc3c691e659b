#!/usr/bin/env bash
# Builds and tests everything; the last line is "N passed, N failed, N skipped".
#
#   ./test.sh               all: native tests, lints, the x86_64 compile, the tests under Wine
#   ./test.sh --quick       the native half alone (no Wine needed)
#   ./test.sh --only NAME   only what is so called: logic_core, windows_cdinfo, program_tests,
#                           native/logic_core, lint/words, foreign/read_back, 'replay_*'
#   ./test.sh --list        what there is
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1

groups=(build lint wine)
for word in "$@"; do
  case $word in
    --quick) groups=(build lint) ;;
    --help | -h) sed -n '2,8p' "${BASH_SOURCE[0]}"; exit 0 ;;
  esac
done
if ! tools/setup.sh "${groups[@]}"; then
  echo "0 passed, 1 failed, 0 skipped"
  exit 1
fi
exec python3 tools/testrun.py "$@"
