#!/usr/bin/env bash
# A disc of generated tones: OUTDIR/tones.cue and OUTDIR/tones.bin. Each track has a frequency of
# its own, so that one can hear, or measure, which track plays.
#
#   tools/make_tone_disc.sh OUTDIR [TRACK...]
#
# TRACK is SECONDS:HERTZ, or SECONDS:data for a data track. Without any: five tracks of audio.
set -euo pipefail
[ $# -ge 1 ] || { sed -n '2,8p' "${BASH_SOURCE[0]}"; exit 2; }
out=$1; shift
[ $# -gt 0 ] || set -- 8:440 10:550 12:660 14:880 16:1100
mkdir -p "$out"
bin=$out/tones.bin; cue=$out/tones.cue
: >"$bin"
echo 'FILE "tones.bin" BINARY' >"$cue"
number=0
for track; do
  seconds=${track%%:*}; tone=${track#*:}
  number=$((number + 1))
  sector=$(($(stat -c %s "$bin") / 2352)) # each track is whole seconds, of 75 sectors
  mode=AUDIO
  if [ "$tone" = data ]; then
    mode=MODE1/2352
    head -c $((seconds * 75 * 2352)) /dev/zero | tr '\0' 'U' >>"$bin"
  else
    sox -r 44100 -n -b 16 -c 2 -e signed -t raw - synth "$((seconds * 44100))s" sine "$tone" \
      gain -6 fade t 0.01 0 0.01 >>"$bin"
  fi
  printf '  TRACK %02d %s\n    INDEX 01 %02d:%02d:%02d\n' "$number" "$mode" \
    $((sector / 4500)) $((sector / 75 % 60)) $((sector % 75)) >>"$cue"
done
echo "$cue"
