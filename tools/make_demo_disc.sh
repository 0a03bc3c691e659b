#!/usr/bin/env bash
# A disc of real recordings: OUTDIR/demo.cue and OUTDIR/demo.bin, some 19 minutes of music. They
# are the pieces of the Debian package asterisk-moh-opsound-wav, published by their makers under
# the Creative Commons Attribution-ShareAlike 3.0 licence (its text comes along as LICENSE.txt).
#
#   tools/make_demo_disc.sh OUTDIR
#
# Makes the disc once; takes the package from the system if it is installed there, else fetches it
# without installing it.
set -euo pipefail
[ $# -eq 1 ] || { sed -n '2,10p' "${BASH_SOURCE[0]}"; exit 2; }
package=asterisk-moh-opsound-wav
mkdir -p "$1"
out=$(cd "$1" && pwd)
if [ -f "$out/demo.cue" ]; then echo "$out/demo.cue"; exit 0; fi

tracks=( # file|performer|title
  "macroform-the_simplicity|Macroform|The Simplicity"
  "reno_project-system|Reno Project|System"
  "manolo_camp-morning_coffee|Manolo Camp|Morning Coffee"
  "macroform-cold_day|Macroform|Cold Day"
  "macroform-robot_dity|Macroform|Robot Dity"
)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=
if [ ! -f "/usr/share/asterisk/moh/${tracks[0]%%|*}.wav" ]; then
  chmod 755 "$work" # apt reads and writes there as a user of its own
  (cd "$work" && apt-get download -q "$package") >"$work/log" 2>&1 || {
    cat "$work/log" >&2; echo "make_demo_disc: cannot fetch $package" >&2; exit 1; }
  root=$work/root
  dpkg-deb -x "$work/$package"_*.deb "$root"
fi

{
  echo 'PERFORMER "Various Artists"'
  echo 'TITLE "Music on Hold"'
  echo 'FILE "demo.bin" BINARY'
} >"$work/demo.cue"
: >"$work/demo.bin"
number=0
for entry in "${tracks[@]}"; do
  IFS='|' read -r file performer title <<<"$entry"
  number=$((number + 1))
  sector=$(($(stat -c %s "$work/demo.bin") / 2352))
  sox "$root/usr/share/asterisk/moh/$file.wav" -r 44100 -b 16 -c 2 -e signed -t raw - gain -n -1 \
    >>"$work/demo.bin"
  rest=$(($(stat -c %s "$work/demo.bin") % 2352)) # silence up to a whole sector
  [ "$rest" -eq 0 ] || head -c $((2352 - rest)) /dev/zero >>"$work/demo.bin"
  printf '  TRACK %02d AUDIO\n    TITLE "%s"\n    PERFORMER "%s"\n    INDEX 01 %02d:%02d:%02d\n' \
    "$number" "$title" "$performer" \
    $((sector / 4500)) $((sector / 75 % 60)) $((sector % 75)) >>"$work/demo.cue"
done
cp "$root/usr/share/doc/$package/copyright" "$out/LICENSE.txt"
mv "$work/demo.bin" "$out/"
mv "$work/demo.cue" "$out/" # last: it says that all is there
echo "$out/demo.cue"
