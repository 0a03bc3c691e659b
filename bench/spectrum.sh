#!/usr/bin/env bash
# The sums for one buffer of sound beside FFTW, natively in one process, and the instructions that
# they take. bench/spectrum.cpp has the measures.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
tools/setup.sh build bench
out=build/bench-native
mkdir -p "$out"
sources=(bench/spectrum.cpp waves/sound.cpp waves/spectrum.cpp waves/format.cpp)
g++ -std=gnu++20 -O3 -ffp-contract=off -DWITH_FFTW -I. "${sources[@]}" -lfftw3 -o "$out/spectrum"
"$out/spectrum"

instructions() { # BUFFERS; inside the sums alone
  valgrind --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect='OurBuffer(int)' \
    "$out/spectrum" "$1" 2>&1 | sed -n 's/.*Collected : //p'
}
# The first buffer makes the tables.
few=$(instructions 1)
many=$(instructions 11)
printf '%-54s %7d\n' "one buffer, instructions (callgrind)" $(((many - few) / 10))
