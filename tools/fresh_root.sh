#!/usr/bin/env bash
# Tries a command on a machine that has nothing: a bare Debian root with a clean clone of HEAD.
#
#   tools/fresh_root.sh [--root DIR] [COMMAND...]      default: build/fresh-root, ./test.sh --quick
#
# Needs root and debootstrap. The bare system comes from the mirror that this machine itself uses,
# and is kept as a tar file beside DIR, so that the next trial starts in seconds. DIR is made anew
# each time and stays afterwards to be looked at (the clone is in DIR/srv/tonvista). Mounts and
# processes live in namespaces of their own and end with the command.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
die() { echo "fresh_root: $*" >&2; exit 1; }

dir=$root/build/fresh-root
if [ "${1:-}" = --root ]; then dir=$(realpath -m "$2"); shift 2; fi
[ $# -gt 0 ] || set -- ./test.sh --quick
[ "$(id -u)" = 0 ] || die "needs root"
command -v debootstrap >/dev/null || die "needs the package debootstrap"
[ "$dir" != / ] || die "not there"
if grep -q " $dir/" /proc/mounts; then die "something is mounted below $dir"; fi
base=$dir.tar

# "URI SUITE COMPONENT" of this Debian in the machine's own package sources.
sources() {
  local codename
  codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
  apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
    awk -v c="$codename" '$2 == c || $2 ~ "^" c "-(updates|security)$"' | sort -u
}

make_base() {
  local mirror suite
  read -r mirror suite _ < <(sources | awk '$2 !~ /-/ && $3 == "main"')
  [ -n "${mirror:-}" ] || die "no package source found for this Debian"
  echo "fresh_root: making the bare system"
  rm -rf --one-file-system "$dir"
  debootstrap --variant=minbase "$suite" "$dir" "$mirror" >"$dir.log" 2>&1 || die "see $dir.log"
  sources | sed 's/^/deb /' >"$dir/etc/apt/sources.list"
  apt-config dump | grep -iE '^Acquire::(https?|ftp)::Proxy' >"$dir/etc/apt/apt.conf.d/90proxy" || true
  tar -C "$dir" -cf "$base.new" .
  mv "$base.new" "$base"
}

mkdir -p "$(dirname "$dir")"
[ -f "$base" ] || make_base
rm -rf --one-file-system "$dir"
mkdir -p "$dir"
tar -C "$dir" -xf "$base"
cp /etc/resolv.conf /etc/hosts "$dir/etc/"
git clone -q --no-hardlinks "$root" "$dir/srv/tonvista"

export dir
exec unshare --mount --pid --fork --kill-child bash -c '
  set -e
  mount --make-rprivate /
  mount -t proc proc "$dir/proc"
  mount --rbind /sys "$dir/sys"
  mount --rbind /dev "$dir/dev"
  exec chroot "$dir" /usr/bin/env -i HOME=/tmp TERM="${TERM:-dumb}" LANG=C.UTF-8 \
    PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
    ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} \
    bash -c "cd /srv/tonvista && exec \"\$@\"" bash "$@"' bash "$@"
