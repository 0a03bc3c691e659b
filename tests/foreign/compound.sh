#!/usr/bin/env bash
# The database and a compound-file tool that is not Windows' own (gsf, package libgsf-bin): what
# the program writes is read with it, and what it writes is read and changed by the program.
#
#   tests/foreign/compound.sh [BUILD_WIN32_DIR [HOST]]      0: good, 1: not, 77: skipped
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
tests=${1:-$root/build/win32}/tests/windows_cdinfo.exe
host=${2:-${TONVISTA_HOST:-foreign}}
command -v gsf >/dev/null || { echo "skipped: gsf is not installed (package libgsf-bin)"; exit 77; }
[ -f "$tests" ] || { echo "skipped: $tests is not built"; exit 77; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "failed: $*"; exit 1; }
run() { # NAME
  "$root/tools/host.sh" run "$host" -- wine "$tests" "--gtest_filter=Foreign.$1" >"$work/log" 2>&1 ||
    { cat "$work/log"; fail "$1"; }
  grep -q '\[  PASSED  \] 1 test' "$work/log" || fail "$1 did not run"
}
bytes() { gsf cat "$1" "$2" | od -An -v -tx1 | tr -d ' \n'; }

# Ours, read by gsf.
TONVISTA_DATABASE_OUT="Z:${work//\//\\}\\ours.cdp" run Write
ours=$work/ours.cdp
names=$(gsf list "$ours" | awk '$1 == "f" { print $NF }' | sort | tr '\n' ' ')
[ "$names" = "0000ABCD 00C0FFEE Mappings " ] || fail "streams: $names"
[ "$(bytes "$ours" Mappings)" = 0000000000000000eeffc000eeffc000cdab0000cdab0000 ] || fail "index"
for entry in 00C0FFEE 0000ABCD; do
  hex=$(bytes "$ours" "$entry")
  length=$((16#${hex:2:2}${hex:0:2}))
  [ "$length" -eq $((${#hex} / 2)) ] || fail "$entry says $length bytes and has $((${#hex} / 2))"
done
[ "$length" -gt 4096 ] || fail "the large entry is only $length bytes"
gsf cat "$ours" 00C0FFEE | grep -aq 'Made here' || fail "title of 00C0FFEE"
gsf cat "$ours" 0000ABCD | grep -aq 'Large one' || fail "title of 0000ABCD"

# Many at once, for which the program lays the file out itself.
TONVISTA_DATABASE_MANY="Z:${work//\//\\}\\many.cdp" run WriteMany
many=$work/many.cdp
gsf list "$many" | awk '$1 == "f" { print $NF, $2 }' | sort >"$work/many"
[ "$(wc -l <"$work/many")" = 5001 ] || fail "$(wc -l <"$work/many") streams of 5001"
[ "$(gsf cat "$many" Mappings | wc -c)" = $((8 * 5001)) ] || fail "index of many"
while read -r entry _; do
  hex=$(bytes "$many" "$entry")
  [ $((16#${hex:2:2}${hex:0:2})) -eq $((${#hex} / 2)) ] || fail "$entry of many"
done < <(grep -v Mappings "$work/many" | awk 'NR % 100 == 0')

# gsf's, read and changed by the program.
made=$work/made
mkdir "$made"
printf '\0\0\0\0\0\0\0\0\xee\xff\xc0\0\xee\xff\xc0\0' >"$made/Mappings"
# length 39, title, two tracks, no program, default artists and titles, level 2, no comments,
# revision 1, starts 150, 4500 and 9000
printf '\x29\0\x0eMade elsewhere\x02\x80\xff\xff\xff\xff\x02\xff\xff\xff\x01\0\0\0\x96\0\0\0\x94\x11\0\0\x28\x23\0\0' >"$made/00C0FFEE"
head -c 9000 /dev/zero >"$made/0000BEEF"
head -c 120 /dev/zero >"$made/zeta"
(cd "$made" && gsf createole "$work/theirs.cdp" Mappings 00C0FFEE 0000BEEF zeta >/dev/null 2>&1) ||
  fail "gsf createole"
TONVISTA_DATABASE_IN="Z:${work//\//\\}\\theirs.cdp" run Read
theirs=$work/theirs.cdp
names=$(gsf list "$theirs" | awk '$1 == "f" { print $NF }' | sort | tr '\n' ' ')
[ "$names" = "00000077 0000BEEF Mappings zeta " ] || fail "streams after the change: $names"
[ "$(bytes "$theirs" Mappings)" = 00000000000000007700000077000000 ] || fail "index after the change"
gsf cat "$theirs" 0000BEEF | cmp -s - "$made/0000BEEF" || fail "a stream of theirs was changed"
echo "read by gsf and back: good"
