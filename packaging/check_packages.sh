#!/bin/sh
# Proves the Debian packages: installs them on a bare Debian 12 in a folder of its own, runs the programs, purges the
# packages, and looks for anything left. Run by `./zelvo package --check`, as root.
#
# Usage: check_packages.sh FOLDER_WITH_THE_PACKAGES
#
# Where no bare system can be fetched, the packages go to an empty root by themselves; that proves their files and their
# removal, and the programs run with the libraries of this machine.
set -eu

packages=$(cd "$1" && pwd)
work=$(mktemp -d "${TMPDIR:-/tmp}/zelvo-packages-XXXXXX")
root=$work/root

say() { printf '%s\n' "$*" >&2; }
fail() {
  say "check_packages: $*"
  exit 1
}

clean_up() {
  for point in proc dev; do
    if mountpoint -q "$root/$point" 2>/dev/null; then umount "$root/$point"; fi
  done
  # A mount that is still there would lose what it shows.
  if grep -q " $root/" /proc/mounts; then
    say "check_packages: something is still mounted below $root, so it was left."
  else
    rm -rf "$work"
  fi
}
trap clean_up EXIT
trap 'exit 130' INT TERM HUP

# files: every file of the root that is not the system's own diary.
files() {
  (cd "$root" && find . -xdev \( -path ./proc -o -path ./dev -o -path ./tmp -o -path ./var/cache -o -path ./var/log \
    -o -path ./var/lib/apt -o -path ./var/lib/dpkg -o -path ./etc/ld.so.cache \) -prune -o -print | sort)
}

inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/tmp \
  DEBIAN_FRONTEND=noninteractive QT_QPA_PLATFORM=offscreen "$@"; }

# A film without its end and without its index, small but larger than the least.
make_damaged_film() {
  ffmpeg -hide_banner -loglevel error -y -f lavfi -i testsrc2=size=320x240:rate=25 -f lavfi -i sine=frequency=440 \
    -t 12 -c:v mpeg4 -b:v 800k -c:a libmp3lame -f avi "$work/whole.avi" </dev/null
  head -c 1000000 "$work/whole.avi" >"$1"
}

bare_system() {
  proxy=
  eval "$(apt-config shell proxy Acquire::http::Proxy)"
  env ${proxy:+http_proxy="$proxy"} debootstrap --variant=minbase bookworm "$root" >"$work/log" 2>&1 || return 1
  cp /etc/resolv.conf "$root/etc/resolv.conf"
  cp -R /etc/apt/apt.conf.d/. "$root/etc/apt/apt.conf.d/"
  mount -t proc proc "$root/proc"
  mount --bind /dev "$root/dev"
  inside apt-get update >"$work/log" 2>&1
}

check_bare_system() {
  cp "$packages"/*.deb "$root/tmp/"
  # shellcheck disable=SC2046  # a list of names
  inside apt-get install --yes --no-install-recommends $(inside sh -c 'apt-get install --simulate \
    --no-install-recommends /tmp/*.deb' | sed -n 's/^Inst \([^ ]*\) .*/\1/p' | grep -v '^zelvo') >"$work/log" 2>&1 ||
    { tail -n 20 "$work/log" >&2 && fail "what the packages need could not be installed."; }
  files >"$work/before"
  inside sh -c 'apt-get install --yes --no-install-recommends /tmp/*.deb' >"$work/log" 2>&1 ||
    { tail -n 20 "$work/log" >&2 && fail "the packages could not be installed."; }
  files >"$work/installed"

  inside zelvo-avi --version || fail "zelvo-avi does not run."
  make_damaged_film "$root/tmp/damaged.avi"
  inside zelvo-avi repair /tmp/damaged.avi || fail "zelvo-avi does not repair."
  [ -s "$root/tmp/damaged-repaired.avi" ] || fail "zelvo-avi left no repaired film."
  # Whatever it says of the film: that it could be decoded.
  inside sh -c 'zelvo-avi verify /tmp/damaged-repaired.avi; [ $? -le 1 ]' || fail "zelvo-avi does not verify."
  ! has_window || {
    inside zelvo-avi-repair --version || fail "zelvo-avi-repair does not run."
    # It stays open until it is asked to end, and ends in order then.
    inside timeout --preserve-status 5 zelvo-avi-repair /tmp/damaged.avi || fail "the window does not open."
  }

  # shellcheck disable=SC2046  # a list of names
  inside apt-get purge --yes $(names) >"$work/log" 2>&1 ||
    { tail -n 20 "$work/log" >&2 && fail "the packages could not be purged."; }
  files >"$work/after"
}

in_empty_root() { dpkg --root="$root" --force-depends --force-script-chrootless "$@" >"$work/log" 2>&1; }

check_empty_root() {
  mkdir -p "$root/var/lib/dpkg" "$root/opt"
  : >"$root/var/lib/dpkg/status"
  files >"$work/before"
  in_empty_root --install "$packages"/*.deb ||
    { tail -n 20 "$work/log" >&2 && fail "the packages could not be installed."; }
  files >"$work/installed"
  "$root/usr/bin/zelvo-avi" --version || fail "zelvo-avi does not run."
  ! has_window || "$root/usr/bin/zelvo-avi-repair" --version || fail "zelvo-avi-repair does not run."
  # shellcheck disable=SC2046  # a list of names
  in_empty_root --purge $(names) || { tail -n 20 "$work/log" >&2 && fail "the packages could not be purged."; }
  files >"$work/after"
}

names() {
  for package in "$packages"/*.deb; do dpkg-deb --field "$package" Package; done
}

has_window() { names | grep -qx zelvo-avi-repair; }

[ "$(id -u)" -eq 0 ] || fail "installing needs root: sudo ./zelvo package --check"
ls "$packages"/*.deb >/dev/null 2>&1 || fail "no packages in $packages; ./zelvo package makes them."
if bare_system; then
  where="a bare Debian 12"
  check_bare_system
else
  say "check_packages: no bare system could be made, so an empty root serves. Its maker's last words:"
  tail -n 3 "$work/log" >&2
  if mountpoint -q "$root/proc" 2>/dev/null || mountpoint -q "$root/dev" 2>/dev/null; then
    fail "and it stays mounted."
  fi
  rm -rf "$root"
  where="an empty root"
  check_empty_root
fi

say "check_packages: installed on $where:"
comm -13 "$work/before" "$work/installed" >&2
diff "$work/before" "$work/after" >&2 || fail "the purge left or took something; see above."
say "check_packages: installed, run and purged on $where; nothing is left."
