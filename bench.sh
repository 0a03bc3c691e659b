#!/usr/bin/env bash
# Builds the benchmarks and runs each in a host of its own, one after the other; prints what they
# print. ./bench.sh NAME... runs only these (crash_points for bench/crash_points.cpp).
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1
host=tools/host.sh
tools/setup.sh build wine || exit 1
mkdir -p build/results
export TONVISTA_BUILD=$PWD/build/win32 TONVISTA_ROOT=$PWD TONVISTA_HOST=bench

current=''
stop() { [ -z "$current" ] || "$host" stop "$current"; }
trap stop EXIT
trap 'exit 130' INT TERM

wanted() { # NAME; all when no name was given
  local name
  [ ${#names[@]} -gt 0 ] || return 0
  for name in "${names[@]}"; do [ "$name" = "$1" ] && return 0; done
  return 1
}

names=("$@")
programs=() scripts=() targets=(tonvista tonvdisc tonvextr)
for file in bench/*.cpp bench/*.sh bench/*.py; do
  [ -e "$file" ] || continue
  name=$(basename "${file%.*}")
  wanted "$name" || continue
  case $file in
    *.cpp) programs+=("$name"); targets+=("bench_$name") ;;
    *) scripts+=("$file") ;;
  esac
done
if [ $((${#programs[@]} + ${#scripts[@]})) = 0 ]; then
  echo "bench: nothing to run" >&2
  exit 1
fi

cmake --preset win32 >build/bench-cmake.log || { cat build/bench-cmake.log; exit 1; }
cmake --build build/win32 --target "${targets[@]}" || exit 1

failed=0
run() { # NAME COMMAND...
  local name=$1
  shift
  echo "==== $name"
  current=bench
  "$@" </dev/null || { echo "bench: $name ended with exit code $?" >&2; failed=1; }
  "$host" stop bench
  current=''
}
for name in "${programs[@]}"; do
  run "$name" "$host" run bench -- wine "build/win32/bench/bench_$name.exe"
done
for file in "${scripts[@]}"; do
  case $file in
    *.py) run "$file" python3 "$file" ;;
    *) run "$file" bash "$file" ;;
  esac
done
exit $failed
