# Sourced by ./run and ./test: packages, builds, a display and a Wine prefix. Everything that these make lies in
# build/ and program/ of the checkout.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build_packages=(
  cmake ninja-build g++ python3 googletest librsvg2-bin
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix)
wine_packages=(wine wine64 fonts-wine fonts-liberation2 xvfb xauth xdotool x11-utils imagemagick procps)

die() {
  echo "$(basename "$0"): $*" >&2
  exit 1
}

# Installs those of the named Debian packages that are missing.
install_packages() {
  local missing=() package
  for package in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  local as_root=()
  [ "$(id -u)" = 0 ] || as_root=(sudo)
  echo "Installing ${missing[*]}"
  local log=$top/build/packages.log
  mkdir -p "$top/build"
  "${as_root[@]}" apt-get update >"$log" 2>&1 || true
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "${missing[@]}" >>"$log" 2>&1 ||
    die "could not install ${missing[*]}; see $log"
}

# Configures and builds a preset; the output is shown only when it fails.
build() {
  local preset=$1 log=$top/build/$1.log
  mkdir -p "$top/build"
  (cd "$top" && { [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"; } &&
    cmake --build --preset "$preset") >"$log" 2>&1 || {
    tail -n 60 "$log" >&2
    die "building $preset failed; the whole output is in $log"
  }
}

wine_environment() {
  export WINEPREFIX=$1 WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
  # File names with accents need a locale that has them.
  [ "$(locale charmap 2>/dev/null)" = UTF-8 ] || export LC_ALL=C.UTF-8
  # No question about Mono or Gecko, nothing in the desktop's menus; without winedbg a crash is an exit code, not a
  # dialog that waits for ever.
  export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d;winedbg.exe=d'
}

# Starts an X server of our own, which ends with this script.
start_private_display() {
  local number
  for number in $(seq 90 190); do
    [ ! -e "/tmp/.X$number-lock" ] && [ ! -e "/tmp/.X11-unix/X$number" ] || continue
    Xvfb ":$number" -screen 0 "${1:-1024x768x24}" -nolisten tcp >/dev/null 2>&1 &
    display_pid=$!
    export DISPLAY=:$number
    local tries
    for tries in $(seq 100); do
      kill -0 "$display_pid" 2>/dev/null || break
      xdpyinfo >/dev/null 2>&1 && return 0
      sleep 0.05
    done
    kill "$display_pid" 2>/dev/null || true
  done
  die "no private display could be started"
}

have_display() { [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; }

# Ends what this script started: the programs of the prefix, then the display.
end_environment() {
  [ -z "${WINEPREFIX:-}" ] || { wineserver -k; wineserver -w; } >/dev/null 2>&1 || true
  [ -z "${display_pid:-}" ] || kill "$display_pid" 2>/dev/null || true
}

set_wine_value() { wine reg add "$1" /v "$2" /t REG_SZ /d "$3" /f </dev/null >/dev/null 2>&1; }

# Makes the Wine prefix $1 if it is missing. With "unmanaged" as $2 windows are not handed to a window manager,
# which a private display has none of.
make_prefix() {
  wine_environment "$1"
  local ready=$1/made-for-${2:-managed}
  if [ ! -f "$ready" ]; then
    echo "Making a Wine prefix"
    rm -rf "$1"
    mkdir -p "$1"
    wineboot -i </dev/null >/dev/null 2>&1 || die "Wine could not make its prefix in $1"
    wineserver -w
    cp /usr/share/fonts/truetype/liberation*/*.ttf "$1/drive_c/windows/Fonts/"
    cp /usr/share/wine/fonts/* "$1/drive_c/windows/Fonts/" 2>/dev/null || true
    local replacements='HKCU\Software\Wine\Fonts\Replacements'
    set_wine_value "$replacements" 'Courier New' 'Liberation Mono'
    set_wine_value "$replacements" 'Arial' 'Liberation Sans'
    set_wine_value "$replacements" 'Times New Roman' 'Liberation Serif'
    set_wine_value "$replacements" 'Microsoft Sans Serif' 'Tahoma'
    set_wine_value 'HKCU\Software\Wine\X11 Driver' Managed "$([ "${2:-}" = unmanaged ] && echo N || echo Y)"
    # A machine without sound would have its audio system complain on the terminal.
    aplay -l >/dev/null 2>&1 || set_wine_value 'HKCU\Software\Wine\Drivers' Audio ''
    wineserver -k
    wineserver -w
    touch "$ready"
  fi
  # The first process of a prefix starts services that keep its streams open: it gets none of ours.
  wine wineboot </dev/null >/dev/null 2>&1
}
