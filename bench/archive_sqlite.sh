#!/usr/bin/env bash
# The discs of bench/archive.cpp in SQLite, natively: what a general database takes for inserting,
# looking up, listing and searching them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
tools/setup.sh build bench
out=build/bench-native
mkdir -p "$out" build/results
g++ -std=gnu++20 -O3 -I. -Iapp bench/reference/archive_sqlite.cpp cdinfo/record.cpp cdinfo/pack.cpp \
  cdinfo/index.cpp core/text.cpp -lsqlite3 -o "$out/archive_sqlite"
"$out/archive_sqlite"
