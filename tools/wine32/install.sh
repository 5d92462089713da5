# Sourced by ./test --x86, behind environment.sh: a Wine for 32-bit programs. Debian's 64-bit Wine runs none, so a small
# 32-bit Debian of its own is installed into build/wine/i386, once.

debian32=$top/build/wine/i386

# Makes "wine" the 32-bit one from here on.
use_wine32() {
  need_root "please run this as root: changing into the 32-bit Debian that runs the x86 program needs it"
  hold i386
  [ -f "$debian32/made" ] || install_debian32
  exec {held}>&-
  wine_arch=win32
  PATH=$top/tools/wine32:$PATH
}

install_debian32() {
  local log=$top/build/i386.log mirror proxy=
  echo "Installing a 32-bit Debian with Wine (about 1 GB, once)"
  # What is left of an attempt that did not end well; never through a mount into something else.
  ! grep -qF " $debian32/" /proc/mounts || die "something is mounted in $debian32; please unmount it"
  "${as_root[@]}" rm -rf --one-file-system "$debian32"
  # From where and by which way this machine gets its own packages.
  mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Codename: bookworm' 2>/dev/null | grep -m 1 '^http:') || true
  eval "$(apt-config shell proxy Acquire::http::Proxy)"
  proxy=${proxy:-${http_proxy:-}}
  local install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive ${proxy:+"http_proxy=$proxy"})
  # It mounts things while it works, which nobody has to see, nor to take away when it fails.
  local debootstrap=(unshare --mount --propagation private debootstrap --arch=i386 --variant=minbase)
  {
    "${install[@]}" "${debootstrap[@]}" bookworm "$debian32" ${mirror:+"$mirror"} &&
      "${install[@]}" "$top/tools/wine32/enter" --root apt-get install -y --no-install-recommends wine wine32 &&
      "${install[@]}" "$top/tools/wine32/enter" --root apt-get clean
  } </dev/null >"$log" 2>&1 || {
    tail -n 40 "$log" >&2
    die "the 32-bit Debian could not be installed; the whole output is in $log"
  }
  "${as_root[@]}" touch "$debian32/made"
}
