#!/usr/bin/env bash
# Machines for the program: named hosts below build/host, each with a Wine prefix, an X display
# and a sound server of its own. Tests, benchmarks, ./run.sh and developers use them alike.
#
#   tools/host.sh template             make the prefix that hosts are cloned from (once)
#   tools/host.sh start NAME [WxH|own] start a host (1280x1024 unless told); own: with the machine's
#                                      display and sound server where it has them
#   tools/host.sh run NAME -- CMD...   run a command in it (starts it when needed)
#   tools/host.sh install NAME BUILD   put the program and the DLLs of a build into C:\Tonvista
#   tools/host.sh shot NAME FILE.png   screenshot of its display
#   tools/host.sh path NAME            its Wine prefix
#   tools/host.sh end NAME             end it, keep its prefix for the next start
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
  setsid Xvfb -displayfd 3 -screen 0 "${2}x24" -nolisten tcp 3>"$fifo" 9>&- >/dev/null 2>&1 </dev/null &
  echo $! >"$1/xvfb.pid"
  local number; read -r number <"$fifo"; rm -f "$fifo"
  echo ":$number"
}

# norewinds=1: otherwise the monitor loses or repeats up to 0.6 s when a stream starts. The socket
# stands in a short folder of its own, since its path may have 107 characters at most.
start_sound() { # FOLDER
  local dir
  dir=$(mktemp -d "${TMPDIR:-/tmp}/tonvista-sound.XXXXXX")
  rm -rf "$1/pulse"; ln -s "$dir" "$1/pulse"
  XDG_RUNTIME_DIR=$dir PULSE_SERVER='' setsid pulseaudio -n --daemonize=no --exit-idle-time=-1 \
    --use-pid-file=no --log-level=error \
    -L "module-native-protocol-unix socket=$dir/native auth-anonymous=1" \
    -L "module-null-sink sink_name=tonv rate=44100 norewinds=1" 9>&- >/dev/null 2>&1 </dev/null &
  echo $! >"$1/pulse.pid"
  export PULSE_SERVER=unix:$dir/native PULSE_COOKIE=$dir/cookie XDG_RUNTIME_DIR=$dir
  local tries=0
  until pactl set-default-sink tonv >/dev/null 2>&1; do
    tries=$((tries + 1))
    [ $tries -lt 200 ] || die "the sound server did not start"
    sleep 0.05
  done
  pactl set-default-source tonv.monitor >/dev/null 2>&1 || die "no sound server"
}

# What the template was made from; another Wine or other settings make it anew.
template_stamp() { wine --version; cksum <"$root/tools/host/prefix.reg"; }

make_template() {
  [ -f "$template/.done" ] && [ "$(cat "$template/.done")" = "$(template_stamp)" ] && return 0
  rm -rf "$template"; mkdir -p "$template"
  local work=$hosts/.template-host
  rm -rf "$work"; mkdir -p "$work"
  (
    wine_env
    export WINEPREFIX=$template
    DISPLAY=$(start_display "$work" 1024x768); export DISPLAY
    trap 'kill "$(cat "$work/xvfb.pid")" 2>/dev/null || true' EXIT
    exec 9>&- # the wineserver must not hold the lock
    wineboot -i >/dev/null 2>&1 </dev/null; wineserver -w
    [ -d "$template/drive_c/windows" ] || die "wineboot made no prefix"
    # Wine does not find Debian's wine fonts by itself.
    cp /usr/share/wine/fonts/* "$template/drive_c/windows/Fonts/" 2>/dev/null || true
    wine regedit /S "$root/tools/host/prefix.reg" >/dev/null 2>&1 </dev/null; wineserver -w
  )
  rm -rf "$work"
  template_stamp >"$template/.done"
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

# The recorded process still runs and is what it was: numbers are used again after a restart.
process_alive() { # PIDFILE NAME
  [ -f "$1" ] && [ "$(cat "/proc/$(cat "$1")/comm" 2>/dev/null)" = "$2" ]
}

alive() { # FOLDER
  [ -f "$1/env" ] || return 1
  ! [ -f "$1/xvfb.pid" ] || process_alive "$1/xvfb.pid" Xvfb || return 1
  ! [ -f "$1/pulse.pid" ] || process_alive "$1/pulse.pid" pulseaudio
}

own_display() { [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; }
managed_display() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
own_sound() { timeout 5 pactl info >/dev/null 2>&1; }

# With a window manager, Wine's windows go through it (unmanaged ones would stay above all others)
# but keep the frames they draw; without one every managed window that closes waits two seconds.
suit_display() { # PREFIX Y|N
  sed -i -e '/^"Decorated"=/d' -e 's/^"Managed"=.*/"Managed"="'"$2"'"\n"Decorated"="N"/' "$1/user.reg"
}

start_host() { # NAME [WxH|own]
  local dir=$hosts/$1
  alive "$dir" && return 0
  mkdir -p "$dir"
  # One start of a host at a time, and no clone of a template that is half made. What is started
  # here closes descriptor 9: whoever inherits it would hold the lock.
  exec 9>"$hosts/.lock"
  flock 9
  if ! alive "$dir"; then make_host "$@"; fi
  exec 9>&-
}

make_host() { # NAME [WxH|own]
  local dir=$hosts/$1 size=${2:-1280x1024} display=virtual sound=virtual
  make_template
  [ -d "$dir/prefix" ] && end_host "$1" keep
  [ -d "$dir/prefix" ] || clone_prefix "$dir/prefix"
  if [ "$size" = own ]; then
    size=1280x1024
    suit_display "$dir/prefix" N
    if own_display; then
      display=own
      if managed_display; then suit_display "$dir/prefix" Y; fi
    fi
    own_sound && sound=own
  fi
  [ $display = own ] || DISPLAY=$(start_display "$dir" "$size")
  [ $sound = own ] || start_sound "$dir"
  {
    echo "host_display=$display host_sound=$sound"
    echo "export WINEPREFIX='$dir/prefix' DISPLAY='$DISPLAY'"
    [ $sound = own ] || cat <<TEXT
export PULSE_SERVER='$PULSE_SERVER' PULSE_COOKIE='$PULSE_COOKIE' XDG_RUNTIME_DIR='$XDG_RUNTIME_DIR'
TEXT
  } >"$dir/env.new"
  mv "$dir/env.new" "$dir/env"
}

end_host() { # NAME [keep]
  local dir=$hosts/$1 entry
  if [ -f "$dir/env" ]; then
    (
      # shellcheck source=/dev/null
      . "$dir/env"
      wine_env
      wineserver -k >/dev/null 2>&1
      timeout 20 wineserver -w >/dev/null 2>&1
    ) || true
  fi
  for entry in xvfb:Xvfb pulse:pulseaudio; do
    local file=$dir/${entry%:*}.pid
    if process_alive "$file" "${entry#*:}"; then kill "$(cat "$file")" 2>/dev/null || true; fi
    rm -f "$file"
  done
  [ -L "$dir/pulse" ] && rm -rf "$(readlink "$dir/pulse")"
  rm -rf "$dir/env" "$dir/pulse"
  [ "${2:-}" = keep ] || rm -rf "$dir"
}

enter() { # NAME
  start_host "$1"
  # shellcheck source=/dev/null
  . "$hosts/$1/env"
  wine_env
}

# Wine's helpers inherit the first program's streams, so a pipe would wait for them: hence a file.
# Who has one at the other end already says so by TONVISTA_DIRECT and sees output as it comes.
run_in() { # CMD...
  if [ "$1" != wine ]; then "$@"; return; fi
  if [ -n "${TONVISTA_DIRECT:-}" ]; then "$@" </dev/null; return; fi
  local out rc=0
  out=$(mktemp); "$@" >"$out" 2>&1 </dev/null || rc=$?
  tr -d '\r' <"$out"; rm -f "$out"
  return $rc
}

install_program() { # NAME BUILD
  local dir=$hosts/$1/prefix/drive_c/Tonvista
  mkdir -p "$dir"
  cp --remove-destination "$2/tonvista.exe" "$dir/"
  cp --remove-destination "$2/TONVDisc.dll" "$2/TONVExtr.dll" "$dir/"
  rm -rf "$dir/manual"
  if [ -d "$2/manual" ]; then cp -r "$2/manual" "$dir/"; fi
  run_in wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\MCI' /v cdaudio \
    /d 'C:\Tonvista\TONVDisc.dll' /f >/dev/null
  run_in wine reg add 'HKCU\Software\TonvistaDiscDrive' /v Drive /d D /f >/dev/null
}

[ $# -ge 1 ] || { sed -n '2,15p' "${BASH_SOURCE[0]}"; exit 2; }
verb=$1; shift
case $verb in
  template) mkdir -p "$hosts"; exec 9>"$hosts/.lock"; flock 9; make_template ;;
  start) start_host "$@" ;;
  run) name=$1; shift; [ "${1:-}" = -- ] && shift; enter "$name"; run_in "$@" ;;
  install) enter "$1"; install_program "$1" "$2" ;;
  shot) enter "$1"; import -window root "$2" ;;
  path) enter "$1"; echo "$WINEPREFIX" ;;
  end) end_host "$1" keep ;;
  stop) end_host "$1" ;;
  *) die "unknown verb $verb" ;;
esac
