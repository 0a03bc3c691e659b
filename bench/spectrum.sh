#!/usr/bin/env bash
# The sums for one buffer of sound beside FFTW, natively in one process, and the instructions that
# they take. bench/spectrum.cpp has the measures.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
tools/setup.sh build bench
out=build/bench-native
mkdir -p "$out"
flags=(-std=gnu++20 -O3 -ffp-contract=off -I.)
g++ "${flags[@]}" -mavx -c waves/spectrum_avx.cpp -o "$out/spectrum_avx.o"
g++ "${flags[@]}" -DWITH_FFTW bench/spectrum.cpp waves/sound.cpp waves/spectrum.cpp \
  waves/format.cpp "$out/spectrum_avx.o" -lfftw3 -o "$out/spectrum"
"$out/spectrum"

instructions() { # BUFFERS FORM; inside the sums alone
  valgrind --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect='OurBuffer(int)' \
    "$out/spectrum" "$1" "$2" 2>&1 | sed -n 's/.*Collected : //p'
}
for form in avx sse2; do # the first buffer makes the tables
  few=$(instructions 1 "$form")
  many=$(instructions 11 "$form")
  printf '%-54s %7d\n' "one buffer, $form: instructions" $(((many - few) / 10))
done
