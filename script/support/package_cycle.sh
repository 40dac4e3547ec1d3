#!/usr/bin/env bash
# The life of the packages in a minimal system of its own: installed by apt, used by a person, removed; nothing is left.
# Usage: package_cycle.sh <folder of the packages> [<folder of the system>]        root; writes out/packages-cycle.txt
. "$(dirname "$0")/common.sh"

packages=$(cd "$started_in" && cd "$1" && pwd)
system=${2:-/var/tmp/vlclientui-packages}
log=$root/out/packages-cycle.txt
[ "$(id -u)" = 0 ] || fail "a system of its own wants root"
[ ! -e "$system" ] || fail "$system is there already"
install_packages mmdebstrap

# Mounts live in a namespace of this script, so none is left behind, however it ends.
if [ "${VLCLIENTUI_MOUNTS:-}" != own ]; then
  VLCLIENTUI_MOUNTS=own exec unshare --mount --propagation private "$0" "$@"
fi
# Never with something mounted in it: that would be the machine's own.
remove_system() {
  umount --recursive "$system/dev" 2>/dev/null || true
  umount "$system/proc" 2>/dev/null || true
  if mountpoint -q "$system/dev" || mountpoint -q "$system/proc"; then
    fail "$system stays: something is mounted in it"
  fi
  rm -rf --one-file-system "$system"
}
trap remove_system EXIT

make_system() {
  local sources=/etc/apt/sources.list.d/debian.sources
  [ -e "$sources" ] || sources=/etc/apt/sources.list
  [ -s "$sources" ] || sources=
  mmdebstrap --quiet --variant=minbase bookworm "$system" ${sources:+"$sources"}
  mount -t proc proc "$system/proc"
  mount --rbind /dev "$system/dev"
  cp /etc/resolv.conf "$system/etc/resolv.conf"
  printf '#!/bin/sh\nexit 101\n' >"$system/usr/sbin/policy-rc.d"
  chmod +x "$system/usr/sbin/policy-rc.d"
  mkdir -p "$system/packages" "$system/tree/script/support" "$system/tree/tests" "$system/tree/docs"
  cp "$packages"/*.deb "$system/packages/"
  # What the steps run of this tree: scripts alone, nothing that was built.
  cp script/support/start_qgis.sh script/support/cycle_steps.sh "$system/tree/script/support/"
  cp -a tests/qgis "$system/tree/tests/"
  cp docs/python.md "$system/tree/docs/"
}

say "Making a minimal system in $system"
make_system
mkdir -p "$(dirname "$log")"
outcome=0
env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 TZ=UTC HOME=/root http_proxy="${http_proxy:-}" \
  https_proxy="${https_proxy:-}" chroot "$system" bash /tree/script/support/cycle_steps.sh 2>&1 | tee "$log" || outcome=$?
[ "$outcome" = 0 ] || fail "the cycle ended before its end; its log is $log"
say "The log is $log"
