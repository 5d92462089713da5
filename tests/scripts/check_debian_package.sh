#!/usr/bin/env bash
# Checks a Debian package of bns: lintian finds nothing, and a minimal Debian 12 installs it, runs it and is rid of it
# afterwards. Needs root, debootstrap and lintian.
set -euo pipefail
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
lintian --allow-root --fail-on warning,error "$1"
debootstrap --variant=minbase bookworm "$root" >/dev/null
files() { (cd "$root" && find usr etc opt | sort); }
before=$(files)
cp "$1" "$root/bns.deb"
chroot "$root" dpkg --install /bns.deb
chroot "$root" sh -c 'printf "BNS2.0\r\n...\r\n" >/l.bns && bns add /l.bns One -c x && [ "$(bns list /l.bns)" = One ]'
chroot "$root" dpkg --purge snipstore-bns
diff <(files) - <<<"$before"
