#!/usr/bin/env bash
# Installs what Tonvista needs on Debian 12 (amd64): compilers, Wine with its 32-bit half, a
# virtual display, a sound server and test tools. Safe to call again and again: when everything is
# there it says so in a fraction of a second and changes nothing.
#
#   tools/setup.sh [GROUP...]     build, lint, wine, fuzz, bench; "build lint wine" unless told
#
# Runs as root, or through sudo for anybody else. Without network a complete machine still passes.
set -euo pipefail

# Everything the scripts of this project call that a bare Debian root lacks stands here by name.
build_packages=(
  ca-certificates git procps python3 g++ cmake ninja-build googletest libasan8 libubsan1
)
lint_packages=(clang-format clang-tidy shellcheck)
wine_packages=(
  g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix
  wine wine64 wine32:i386 libpulse0:i386
  gstreamer1.0-plugins-base:i386 gstreamer1.0-plugins-good:i386
  fonts-wine fonts-liberation
  xvfb xauth xdotool x11-utils imagemagick # displays, keys and clicks, screenshots
  pulseaudio pulseaudio-utils sox lame     # sound server, capture, tones
  libgsf-bin                               # a compound-file reader that is not Windows' own
  cuetools                                 # a reader and writer of CUE sheets that is not ours
  asterisk-moh-opsound-wav                 # the music of the demonstration disc
)
fuzz_packages=(clang libclang-rt-14-dev llvm)
bench_packages=(libfftw3-dev valgrind libsqlite3-dev) # what our own speed is measured by

say() { echo "setup: $*"; }
die() { echo "setup: $*" >&2; exit 1; }

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; return; fi
  command -v sudo >/dev/null || die "needs root to install packages, and there is no sudo"
  sudo --preserve-env=DEBIAN_FRONTEND,http_proxy,https_proxy "$@"
}

[ $# -gt 0 ] || set -- build lint wine
wanted=()
for group in "$@"; do
  case $group in
    build) wanted+=("${build_packages[@]}") ;;
    lint) wanted+=("${lint_packages[@]}") ;;
    wine) wanted+=("${wine_packages[@]}") ;;
    fuzz) wanted+=("${fuzz_packages[@]}") ;;
    bench) wanted+=("${bench_packages[@]}") ;;
    *) die "unknown group $group (build, lint, wine, fuzz, bench)" ;;
  esac
done

# Prints the wanted packages that are not installed.
missing_packages() {
  local installed name
  installed=$(dpkg-query -W -f='${db:Status-Status} ${Package} ${Package}:${Architecture}\n' \
    2>/dev/null | awk '$1 == "installed" { print $2 "\n" $3 }')
  for name in "${wanted[@]}"; do
    grep -qxF -- "$name" <<<"$installed" || echo "$name"
  done
}

mapfile -t missing < <(missing_packages)
if [ ${#missing[@]} = 0 ]; then
  say "nothing to do ($*)"
  exit 0
fi
say "to install (${#missing[@]}): ${missing[*]}"

command -v apt-get >/dev/null || die "this needs apt; made for Debian 12"
[ "$(dpkg --print-architecture)" = amd64 ] || die "this needs an amd64 machine"
export DEBIAN_FRONTEND=noninteractive

case " ${missing[*]} " in
  *:i386*)
    if ! dpkg --print-foreign-architectures | grep -qx i386; then
      say "switching on the i386 architecture"
      as_root dpkg --add-architecture i386
    fi
    ;;
esac

install_missing() { # APT OPTIONS...
  as_root apt-get install -y --no-install-recommends -o Dpkg::Use-Pty=0 "$@" "${missing[@]}"
}

# A mirror whose lists are half out of step gives errors here and still installs below.
say "reading package lists"
as_root apt-get update -q || say "some lists could not be read; going on with those that could"

say "installing"
if ! install_missing -q; then
  # Both architectures of a library must have one version. Where an archive suite lags behind for
  # i386, amd64 libraries from it have no twin; the main suite has both, so prefer it this once.
  say "the plain way failed; trying again with the main suite preferred"
  pin=$(mktemp)
  trap 'rm -f "$pin"' EXIT
  chmod 644 "$pin"
  codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
  printf 'Package: *\nPin: release n=%s\nPin-Priority: 1001\n' "$codename" >"$pin"
  install_missing -q --allow-downgrades -o Dir::Etc::Preferences="$pin"
fi

mapfile -t missing < <(missing_packages)
[ ${#missing[@]} = 0 ] || die "still missing: ${missing[*]}"
say "done ($*)"
