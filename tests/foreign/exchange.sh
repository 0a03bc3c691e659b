#!/usr/bin/env bash
# CUE sheets and CDP files, and programs that are not ours: cueprint and cueconvert (package
# cuetools) and gsf (package libgsf-bin). What we write they read, what they write we import.
#
#   tests/foreign/exchange.sh [BUILD_WIN32_DIR [HOST]]      0: good, 1: not, 77: skipped
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
tests=${1:-$root/build/win32}/tests/windows_archive.exe
host=${2:-${TONVISTA_HOST:-foreign}}
for tool in gsf:libgsf-bin cueprint:cuetools cueconvert:cuetools; do
  command -v "${tool%:*}" >/dev/null ||
    { echo "skipped: ${tool%:*} is not installed (package ${tool#*:})"; exit 77; }
done
[ -f "$tests" ] || { echo "skipped: $tests is not built"; exit 77; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "failed: $*"; exit 1; }
run() { # FILE [VARIABLE=VALUE]
  "$root/tools/host.sh" run "$host" -- env TONVISTA_EXCHANGE="Z:${1//\//\\}" "${@:2}" wine "$tests" \
    '--gtest_filter=ForeignExchange.Run' >"$work/log" 2>&1 || { cat "$work/log"; fail "$1"; }
  grep -q '\[  PASSED  \] 1 test' "$work/log" || fail "$1 did not run"
}
came() { # FILE LINES...
  printf '%s\r\n' "${@:2}" | diff - "$1.csv" || fail "what came from $1"
}

# Our sheet, read by cueprint.
run "$work/sheets" TONVISTA_EXPORT=1
said=$(cueprint -d '%T|%P|%N\n' -t '%n|%t|%p\n' "$work"/sheets/*.cue 2>"$work/complaints")
[ ! -s "$work/complaints" ] || fail "cueprint: $(cat "$work/complaints")"
[ "$said" = "Made 'here'|Various|3
1|Track 1|Somebody
2|Track 2|Café Noir
3|The third = one; 'really'|Somebody" ] || fail "cueprint reads: $said"
# And turned into a table of contents and back, imported: the sheet that cueconvert writes has lost
# our remarks, so the identity comes from the marks (00:02:00, 03:22:00, 06:42:00).
cueconvert -i cue -o toc "$work"/sheets/*.cue "$work/ours.toc" 2>/dev/null
cueconvert -i toc -o cue "$work/ours.toc" "$work/ours.cue" 2>/dev/null
run "$work/ours.cue"
came "$work/ours.cue" \
  "\"00094200\",\"000\",\"Made 'here'\",\"Various\",\"\",\"6:40\"" \
  '"00094200","001","Track 1","Somebody","","3:20"' \
  $'"00094200","002","Track 2","Caf\xe9 Noir","","3:20"' \
  "\"00094200\",\"003\",\"The third = one; 'really'\",\"Somebody\",\"\",\"0:00\""

# A compound file of gsf's, imported.
mkdir "$work/made"
printf '\0\0\0\0\0\0\0\0\xee\xff\xc0\0\xee\xff\xc0\0' >"$work/made/Mappings"
printf '\x29\0\x0eMade elsewhere\x02\x80\xff\xff\xff\xff\x02\xff\xff\xff\x01\0\0\0\x96\0\0\0\x94\x11\0\0\x28\x23\0\0' \
  >"$work/made/00C0FFEE"
(cd "$work/made" && gsf createole "$work/theirs.cdp" Mappings 00C0FFEE >/dev/null 2>&1) ||
  fail "gsf createole"
run "$work/theirs.cdp"
came "$work/theirs.cdp" \
  '"00c0ffee","000","Made elsewhere","Artist","","1:58"' \
  '"00c0ffee","001","Track 1","Artist","","0:58"' \
  '"00c0ffee","002","Track 2","Artist","","1:00"'
echo "sheets and CDP files of others: good"
