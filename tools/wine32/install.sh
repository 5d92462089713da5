# Sourced by ./test --x86, behind environment.sh: a Wine for 32-bit programs, and for those of 64 bits beside them.
# Debian's 64-bit Wine runs none of 32, so a small 32-bit Debian of its own is installed into build/wine/i386, once.

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

# Makes it, from then on, one for 64-bit programs as well.
use_wine32_and_64() {
  hold i386
  [ -f "$debian32/made64" ] || install_wine64
  exec {held}>&-
  wine_arch=win64
}

# Runs what installs something, and says how it failed; its output goes to a file of the name $1.
installing() {
  local log=$top/build/$1.log
  shift
  "$@" </dev/null >"$log" 2>&1 && return
  tail -n 40 "$log" >&2
  die "the 32-bit Debian could not be installed; the whole output is in $log"
}

# Sets install, what a command is started with to install as root.
prepare_installing() {
  local proxy=
  eval "$(apt-config shell proxy Acquire::http::Proxy)"
  proxy=${proxy:-${http_proxy:-}}
  install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive ${proxy:+"http_proxy=$proxy"})
}

install_wine64() {
  local install
  echo "Installing its 64-bit Wine (about 1 GB, once)"
  prepare_installing
  add_wine64() {
    "${install[@]}" "$top/tools/wine32/enter" --root dpkg --add-architecture amd64 &&
      "${install[@]}" "$top/tools/wine32/enter" --root apt-get update &&
      "${install[@]}" "$top/tools/wine32/enter" --root apt-get install -y --no-install-recommends wine64:amd64 &&
      "${install[@]}" "$top/tools/wine32/enter" --root apt-get clean
  }
  installing wine64 add_wine64
  "${as_root[@]}" touch "$debian32/made64"
}

install_debian32() {
  local mirror install
  echo "Installing a 32-bit Debian with Wine (about 1 GB, once)"
  # What is left of an attempt that did not end well; never through a mount into something else.
  ! grep -qF " $debian32/" /proc/mounts || die "something is mounted in $debian32; please unmount it"
  "${as_root[@]}" rm -rf --one-file-system "$debian32"
  # From where and by which way this machine gets its own packages.
  mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Codename: bookworm' 2>/dev/null | grep -m 1 '^http:') || true
  prepare_installing
  # It mounts things while it works, which nobody has to see, nor to take away when it fails.
  local debootstrap=(unshare --mount --propagation private debootstrap --arch=i386 --variant=minbase)
  add_debian32() {
    "${install[@]}" "${debootstrap[@]}" bookworm "$debian32" ${mirror:+"$mirror"} &&
      "${install[@]}" "$top/tools/wine32/enter" --root apt-get install -y --no-install-recommends wine wine32 &&
      "${install[@]}" "$top/tools/wine32/enter" --root apt-get clean
  }
  installing i386 add_debian32
  "${as_root[@]}" touch "$debian32/made"
}
