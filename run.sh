#!/usr/bin/env bash
# Builds Tonvista and starts it with a disc playing: enough on a fresh Debian 12 machine.
#
#   ./run.sh [--image PATH] [--seconds N] [--screenshot FILE]
#
#   --image PATH       another disc: a .cue file, or a folder of WAV files
#   --seconds N        end N seconds after the disc began to play; else it runs until it is closed
#   --screenshot FILE  save a picture once it plays
#
# Uses the machine's display and sound server, or virtual ones where it has none. The Wine prefix
# (settings, CDInfo.CDP) is build/host/run/prefix and stays from run to run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
root=$PWD
host=tools/host.sh
image='' seconds='' screenshot=''
host_display='' host_sound=''
program_pid=''

say() { echo "run: $*"; }
die() { echo "run: $*" >&2; exit 1; }

while [ $# -gt 0 ]; do
  case $1 in
    --image) image=$(realpath -e "${2:?--image needs a path}") || die "no such disc: $2"; shift 2 ;;
    --seconds) seconds=${2:?--seconds needs a number}; shift 2 ;;
    --screenshot) screenshot=$(realpath -m "${2:?--screenshot needs a file}"); shift 2 ;;
    -h | --help) sed -n '2,11p' "${BASH_SOURCE[0]}"; exit 0 ;;
    *) die "unknown option $1 (see --help)" ;;
  esac
done
[[ $seconds =~ ^[0-9]*$ ]] || die "--seconds takes a whole number"

in_host() { "$host" run run -- "$@"; }
reg_add() { # KEY NAME TYPE VALUE
  in_host wine reg add "$1" /v "$2" /t "$3" /d "$4" /f >/dev/null
}
program_runs() { kill -0 "$program_pid" 2>/dev/null; }

wait_for() { # SECONDS COMMAND...
  local left=$(($1 * 5))
  shift
  until "$@"; do
    left=$((left - 1))
    [ $left -gt 0 ] || return 1
    sleep 0.2
  done
}

# Closes the program as a user would, so that it saves its state; the host ends in any case.
finish() {
  local code=$?
  trap - EXIT INT TERM
  if [ -n "$program_pid" ] && program_runs; then
    say "closing"
    in_host wine taskkill /IM tonvista.exe >/dev/null 2>&1 || true
    wait_for 10 program_ended || say "it did not close by itself"
  fi
  "$host" end run || true
  exit $code
}
program_ended() { ! program_runs; }

prepare() {
  tools/setup.sh build wine
  say "building"
  cmake --preset win32 >build/run-cmake.log 2>&1 || { cat build/run-cmake.log; die "cmake failed"; }
  cmake --build build/win32 --target tonvista tonvdisc tonvextr
  if [ -z "$image" ]; then
    compgen -G 'build/demo-disc/*.cue' >/dev/null || tools/make_demo_disc.sh build/demo-disc >/dev/null
    image=$(realpath -e build/demo-disc/*.cue | head -n 1)
  fi
}

start_host() {
  "$host" start run own
  # shellcheck source=/dev/null
  . build/host/run/env
  if [ "$host_display" = virtual ]; then
    say "no display here: using a virtual one"
    screenshot=${screenshot:-$root/build/screenshot.png}
  fi
  [ "$host_sound" = own ] || say "no sound server here: using a virtual one"
  "$host" install run build/win32
}

# Starts the program in a session of its own: Ctrl+C here must not kill it half-way.
start_program() { # ARGUMENTS...
  local log=$root/build/run-program.log
  # From the program's own folder: there it leaves the list of a single song.
  (cd build/host/run/prefix/drive_c/Tonvista &&
    exec setsid "$root/$host" run run -- wine 'C:\Tonvista\tonvista.exe' "$@" >"$log" 2>&1) &
  program_pid=$!
}

# The first start installs and says so in message boxes. Answers them with Return.
answer_boxes() {
  local box
  for box in $(in_host xdotool search --onlyvisible --name '^Tonvista Install' 2>/dev/null); do
    in_host xdotool windowfocus "$box" key --clearmodifiers Return >/dev/null 2>&1 || true
  done
  program_ended
}

install_once() {
  if in_host wine reg query 'HKCU\Software\Tonvista' >/dev/null; then return; fi
  say "first start: installing"
  start_program /nodefcd /nodefmed /install
  wait_for 60 answer_boxes || die "the installation did not end"
  in_host wine reg query 'HKCU\Software\Tonvista' >/dev/null || die "the installation failed"
  # The first layout opens the windows, and these start their engines.
  switch_on VolumeMeterTBIcon
  reg_add 'HKCU\Software\Tonvista\UIWindow3' Gainer REG_BINARY 0ad7a33c # 0.02: a quiet disc
}

switch_on() { # VALUE... of the console's section
  local value
  for value in "$@"; do reg_add 'HKCU\Software\Tonvista\UIWindow1' "$value" REG_DWORD 1; done
}

set_up_player() {
  local path="Z:${image//\//\\}"
  say "disc: $image"
  reg_add 'HKCU\Software\TonvistaDiscDrive' Drive REG_SZ D
  reg_add 'HKCU\Software\TonvistaDiscDrive' Door REG_DWORD 0
  reg_add 'HKCU\Software\TonvistaDiscDrive' Image REG_SZ "$path"
  switch_on CDPlayerUI CDEngineOn
  reg_add 'HKCU\Software\Tonvista\CDEngine' AutoRun REG_DWORD 1
  forgive_start 'HKLM\Software\Tonvista'
  forgive_start 'HKCU\Software\Tonvista'
}

# A start that was broken off would make this one switch everything off and say so in a box.
forgive_start() { # KEY
  if in_host wine reg query "$1" /v LastOK 2>/dev/null | grep -qw 0x0; then
    say "the last start was broken off; starting with everything on again"
    reg_add "$1" LastOK REG_DWORD 1
  fi
}

# A stream of ours that is not paused at the sound server.
plays() {
  program_runs || die "the program ended: $(cat build/run-program.log)"
  in_host env LC_ALL=C pactl list sink-inputs 2>/dev/null | awk -v RS= '
    /Corked: no/ && /[Tt]onvista/ { found = 1 } END { exit !found }'
}

mkdir -p build
prepare
trap finish EXIT
trap 'exit 130' INT TERM
start_host
install_once
set_up_player
say "starting"
start_program
wait_for 40 plays || die "it does not play"
say "playing"
began=$SECONDS
if [ -n "$screenshot" ]; then
  sleep 5 # the windows have drawn the first seconds of the disc by then
  mkdir -p "$(dirname "$screenshot")"
  "$host" shot run "$screenshot"
  say "screenshot: $screenshot"
fi
if [ -z "$seconds" ]; then say "it runs until it is closed; Ctrl+C here closes it"; fi
while program_runs; do
  if [ -n "$seconds" ] && [ $((SECONDS - began)) -ge "$seconds" ]; then break; fi
  sleep 0.5
done
if ! program_runs; then say "it was closed"; fi
