#!/usr/bin/env bash
# Machines for the program: named hosts below build/host, each with a Wine prefix, an X display
# and a sound server of its own. Tests, benchmarks, ./run.sh and developers use them alike.
#
#   tools/host.sh template             make the prefix that hosts are cloned from (once)
#   tools/host.sh start NAME [WxH]     start a host (1280x1024 unless told)
#   tools/host.sh run NAME -- CMD...   run a command in it (starts it when needed)
#   tools/host.sh install NAME BUILD   put the program and the disc drive of a build into C:\Tonvista
#   tools/host.sh shot NAME FILE.png   screenshot of its display
#   tools/host.sh path NAME            its Wine prefix
#   tools/host.sh stop NAME            end it and forget its prefix
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
hosts=$root/build/host
template=$hosts/template

die() { echo "host.sh: $*" >&2; exit 1; }

wine_env() {
  export WINEARCH=win32 WINEDEBUG=${WINEDEBUG:--all} LANG=C.UTF-8 LC_ALL=C.UTF-8
  export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
  unset WAYLAND_DISPLAY
}

# An X server on a free display; prints the number. -displayfd lets the server choose.
start_display() { # FOLDER WxH
  local fifo=$1/display.fifo
  rm -f "$fifo"; mkfifo "$fifo"
  setsid Xvfb -displayfd 3 -screen 0 "${2}x24" -nolisten tcp 3>"$fifo" >/dev/null 2>&1 </dev/null &
  echo $! >"$1/xvfb.pid"
  local number; read -r number <"$fifo"; rm -f "$fifo"
  echo ":$number"
}

# norewinds=1: otherwise the monitor loses or repeats up to 0.6 s when a stream starts.
start_sound() { # FOLDER
  local dir=$1/pulse
  mkdir -p "$dir"; chmod 700 "$dir"
  XDG_RUNTIME_DIR=$dir PULSE_SERVER= setsid pulseaudio -n --daemonize=no --exit-idle-time=-1 \
    --use-pid-file=no --log-level=error \
    -L "module-native-protocol-unix socket=$dir/native auth-anonymous=1" \
    -L "module-null-sink sink_name=tonv rate=44100 norewinds=1" >/dev/null 2>&1 </dev/null &
  echo $! >"$1/pulse.pid"
  local i
  for i in $(seq 100); do [ -S "$dir/native" ] && break; sleep 0.05; done
  export PULSE_SERVER=unix:$dir/native PULSE_COOKIE=$dir/cookie XDG_RUNTIME_DIR=$dir
  for i in $(seq 40); do pactl set-default-sink tonv >/dev/null 2>&1 && break; sleep 0.05; done
  pactl set-default-source tonv.monitor >/dev/null 2>&1 || die "no sound server"
}

make_template() {
  [ -f "$template/.done" ] && return 0
  rm -rf "$template"; mkdir -p "$template"
  local work=$hosts/.template-host
  rm -rf "$work"; mkdir -p "$work"
  (
    wine_env
    export WINEPREFIX=$template
    DISPLAY=$(start_display "$work" 1024x768); export DISPLAY
    trap 'kill "$(cat "$work/xvfb.pid")" 2>/dev/null || true' EXIT
    wineboot -i >/dev/null 2>&1 </dev/null; wineserver -w
    [ -d "$template/drive_c/windows" ] || die "wineboot made no prefix"
    # Wine does not find Debian's wine fonts by itself.
    cp /usr/share/wine/fonts/* "$template/drive_c/windows/Fonts/" 2>/dev/null || true
    wine regedit /S "$root/tools/host/prefix.reg" >/dev/null 2>&1 </dev/null; wineserver -w
  )
  rm -rf "$work"
  touch "$template/.done"
}

# Large files hard-linked; everything that is written in place is a copy.
clone_prefix() { # NEW
  rm -rf "$1"
  cp -al "$template" "$1" 2>/dev/null || cp -a "$template" "$1"
  local f
  for f in "$template"/*.reg; do rm -f "$1/${f##*/}"; cp -p "$f" "$1/"; done
  rm -rf "$1/drive_c/users"; cp -a "$template/drive_c/users" "$1/drive_c/"
  (cd "$template/drive_c/windows" && find . -maxdepth 2 -type f \( -name '*.ini' -o -name '*.inf' \
      -o -name '*.log' \)) | while read -r f; do
    rm -f "$1/drive_c/windows/$f"; cp -p "$template/drive_c/windows/$f" "$1/drive_c/windows/$f"
  done
}

alive() { [ -f "$1/env" ] && kill -0 "$(cat "$1/xvfb.pid")" 2>/dev/null && kill -0 "$(cat "$1/pulse.pid")" 2>/dev/null; }

start_host() { # NAME [WxH]
  local dir=$hosts/$1 size=${2:-1280x1024}
  alive "$dir" && return 0
  mkdir -p "$hosts"
  (flock 9; make_template) 9>"$hosts/.lock"
  [ -d "$dir/prefix" ] && end_host "$1" keep
  mkdir -p "$dir"
  [ -d "$dir/prefix" ] || clone_prefix "$dir/prefix"
  local display; display=$(start_display "$dir" "$size")
  start_sound "$dir"
  cat >"$dir/env" <<TEXT
export WINEPREFIX='$dir/prefix' DISPLAY='$display' PULSE_SERVER='$PULSE_SERVER'
export PULSE_COOKIE='$PULSE_COOKIE' XDG_RUNTIME_DIR='$XDG_RUNTIME_DIR'
TEXT
}

end_host() { # NAME [keep]
  local dir=$hosts/$1 pid
  if [ -f "$dir/env" ]; then
    (. "$dir/env"; wine_env; wineserver -k >/dev/null 2>&1; timeout 20 wineserver -w >/dev/null 2>&1) || true
  fi
  for pid in xvfb pulse; do
    [ -f "$dir/$pid.pid" ] && kill "$(cat "$dir/$pid.pid")" 2>/dev/null || true
    rm -f "$dir/$pid.pid"
  done
  rm -f "$dir/env"
  [ "${2:-}" = keep ] || rm -rf "$dir"
}

enter() { start_host "$1"; . "$hosts/$1/env"; wine_env; }

# Wine's helpers inherit the first program's streams, so a pipe would wait for them: hence a file.
run_in() { # CMD...
  if [ "$1" != wine ]; then "$@"; return; fi
  local out rc=0
  out=$(mktemp); "$@" >"$out" 2>&1 </dev/null || rc=$?
  tr -d '\r' <"$out"; rm -f "$out"
  return $rc
}

install_program() { # NAME BUILD
  local dir=$hosts/$1/prefix/drive_c/Tonvista
  mkdir -p "$dir"
  cp "$2/tonvista.exe" "$dir/"
  [ -f "$2/TONVDisc.dll" ] && cp "$2/TONVDisc.dll" "$dir/"
  run_in wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\MCI' /v cdaudio \
    /d 'C:\Tonvista\TONVDisc.dll' /f >/dev/null
  run_in wine reg add 'HKCU\Software\TonvistaDiscDrive' /v Drive /d D /f >/dev/null
}

[ $# -ge 1 ] || { sed -n '2,13p' "${BASH_SOURCE[0]}"; exit 2; }
verb=$1; shift
case $verb in
  template) mkdir -p "$hosts"; (flock 9; make_template) 9>"$hosts/.lock" ;;
  start) start_host "$@" ;;
  run) name=$1; shift; [ "${1:-}" = -- ] && shift; enter "$name"; run_in "$@" ;;
  install) enter "$1"; install_program "$1" "$2" ;;
  shot) enter "$1"; import -window root "$2" ;;
  path) enter "$1"; echo "$WINEPREFIX" ;;
  stop) end_host "$1" ;;
  *) die "unknown verb $verb" ;;
esac
