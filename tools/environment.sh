# Sourced by ./run and ./test: packages, builds, a display and a Wine prefix. Everything that these make is in
# build/ and program/ of the checkout.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# What programs print is read here, so they speak one language, with a point in numbers; tests see one locale, whoever
# runs them. Only Wine on the user's desktop gets the user's.
user_locale=${LC_ALL:-}
export LC_ALL=C.UTF-8

build_packages=(
  cmake ninja-build ccache g++ python3 googletest librsvg2-bin
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools
  libboost1.81-dev libcli11-dev librapidxml-dev libutfcpp-dev libxxhash-dev nlohmann-json3-dev)
display_packages=(fonts-wine fonts-liberation2 locales xvfb xdotool x11-utils imagemagick)
wine_packages=(wine wine64 "${display_packages[@]}")
wine_arch=win64

die() {
  echo "$(basename "$0"): $*" >&2
  exit 1
}

# Makes as_root what a command is started with to run as root; ends with the message $1 when there is no way.
need_root() {
  as_root=()
  [ "$(id -u)" != 0 ] || return 0
  command -v sudo >/dev/null || die "$1"
  as_root=(sudo)
}

# Installs those of the named Debian packages that are missing.
install_packages() {
  local missing=() package
  for package in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  local as_root
  need_root "please install these packages as root: ${missing[*]}"
  echo "Installing ${missing[*]}"
  local log=$top/build/packages.log
  mkdir -p "$top/build"
  "${as_root[@]}" apt-get update >"$log" 2>&1 || true
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "${missing[@]}" >>"$log" 2>&1 ||
    die "could not install ${missing[*]}; see $log"
}

# Has the compilers ask a cache first, unless the caller has chosen what starts them. Files of the same sources are
# compiled once for all presets and commits that share them.
use_compiler_cache() {
  [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] || return 0
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_DIR=${CCACHE_DIR:-$top/build/ccache} CCACHE_MAXSIZE=${CCACHE_MAXSIZE:-1G}
}

# Configures a preset and builds it, or the targets named behind it; the output is shown only when it fails.
build() {
  local preset=$1 log=$top/build/$1.log
  shift
  echo "Building $preset"
  hold build
  use_compiler_cache
  (cd "$top" && { [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"; } &&
    cmake --build --preset "$preset" ${1:+--target "$@"}) >"$log" 2>&1 || {
    tail -n 60 "$log" >&2
    die "building $preset failed; the whole output is in $log"
  }
  exec {held}>&-
}

wine_environment() {
  export WINEPREFIX=$1 WINEARCH=$wine_arch WINEDEBUG=${WINEDEBUG:--all}
  # No question about Mono or Gecko, nothing in the desktop's menus; without winedbg a crash is an exit code, not a
  # dialog that waits for ever.
  export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d;winedbg.exe=d'
}

# Waits until no other run or test works on the same thing; what is held is let go when the script ends.
hold() {
  mkdir -p "$top/build"
  exec {held}>"$top/build/$1.lock"
  flock --nonblock "$held" || { echo "Waiting for another run to end ($1)"; flock "$held"; }
}

# Starts an X server of our own, which ends with this script.
start_private_display() {
  local number_file=$top/build/display.$BASHPID
  # The server takes a number that is free and tells it.
  Xvfb -displayfd 5 -screen 0 "${1:-1024x768x24}" -nolisten tcp -noreset 5>"$number_file" >/dev/null 2>&1 &
  display_pid=$!
  local tries
  for tries in $(seq 200); do
    [ ! -s "$number_file" ] || break
    kill -0 "$display_pid" 2>/dev/null || break
    sleep 0.05
  done
  DISPLAY=:$(cat "$number_file")
  export DISPLAY
  rm -f "$number_file"
  xdpyinfo >/dev/null 2>&1 || die "no private display could be started"
  # A desktop tells programs its resources; where none are told, the X library looks for their files each time
  # that Wine selects a font. This one means nothing to any program.
  xprop -root -f RESOURCE_MANAGER 8s -set RESOURCE_MANAGER 'Snipstore.display: private'
}

have_display() { [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; }

# Ends what runs in the private prefix, which nobody else uses, and the private display. Programs on the
# user's own display are the user's.
end_environment() {
  [ -z "${private_prefix:-}" ] || { wineserver -k; wineserver -w; } >/dev/null 2>&1 || true
  [ -z "${display_pid:-}" ] || kill "$display_pid" 2>/dev/null || true
}

set_wine_value() {
  wine reg add "$1" /v "$2" /t REG_SZ /d "$3" /f </dev/null >/dev/null 2>&1 || die "Wine could not set $2"
}

# Wine on a private display: a prefix, of the name $1 if given, that one script at a time works in. There is no window
# manager, so windows are not handed to one.
use_private_wine() {
  start_private_display
  local name=${1:-private}
  [ "$wine_arch" = win64 ] || name+=-$wine_arch
  hold "$name"
  private_prefix=$top/build/wine/$name
  make_prefix "$private_prefix" N
}

# Wine on the user's display. Several programs may run there at once.
use_desktop_wine() {
  LC_ALL=$user_locale
  # File names with accents need a locale that has them.
  [ "$(locale charmap 2>/dev/null)" = UTF-8 ] || LC_ALL=C.UTF-8
  make_prefix "$top/build/wine/desktop" Y
}

# Makes the Wine prefix $1 if it is missing; $2 says whether a window manager manages the windows (Y or N).
make_prefix() {
  wine_environment "$1"
  if [ ! -f "$1/made" ]; then
    echo "Making a Wine prefix"
    rm -rf "$1"
    mkdir -p "$1"
    wineboot -i </dev/null >/dev/null 2>&1 || die "Wine could not make its prefix in $1"
    wineserver -w
    cp /usr/share/fonts/truetype/liberation2/*.ttf "$1/drive_c/windows/Fonts/"
    cp /usr/share/wine/fonts/* "$1/drive_c/windows/Fonts/" 2>/dev/null || true
    local replacements='HKCU\Software\Wine\Fonts\Replacements'
    set_wine_value "$replacements" 'Courier New' 'Liberation Mono'
    set_wine_value "$replacements" 'Arial' 'Liberation Sans'
    set_wine_value "$replacements" 'Times New Roman' 'Liberation Serif'
    set_wine_value "$replacements" 'Microsoft Sans Serif' 'Tahoma'
    set_wine_value 'HKCU\Software\Wine\X11 Driver' Managed "$2"
    # A machine without sound would have its audio system complain on the terminal.
    aplay -l >/dev/null 2>&1 || set_wine_value 'HKCU\Software\Wine\Drivers' Audio ''
    wineserver -k || true
    wineserver -w
    touch "$1/made"
  fi
  if [ "$2" = N ]; then start_private_server; else wine wineboot </dev/null >/dev/null 2>&1; fi ||
    die "Wine does not start in $1"
}

# Starts Wine's server for the private prefix, and ends first what still runs there. Debian's ends with the last program,
# and one that starts at that moment fails: this one waits for a minute. The services that the first program starts keep
# its streams open, and must not hold our lock either, since they outlive a script that is killed.
start_private_server() {
  (exec {held}>&-; wineserver -k; wineserver -w; wineserver -p60; wine wineboot) </dev/null >/dev/null 2>&1
}

# Prints the X window with that title once there is one; waits for at most a minute.
wait_for_window() {
  local tries window
  for tries in $(seq 600); do
    window=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1) || true
    [ -z "$window" ] || { echo "$window"; return 0; }
    sleep 0.1
  done
  die "the window '$1' did not come up"
}

# Writes a picture of the X window $2 to the file $1. Two pictures a moment apart that are the same show a window that
# has been painted to the end.
take_screenshot() {
  local file=$1 window=$2 previous='' picture tries
  for tries in $(seq 100); do
    picture=$(import -window "$window" ppm:- | cksum)
    [ "$picture" != "$previous" ] || break
    previous=$picture
    sleep 0.3
  done
  import -window "$window" -define png:exclude-chunk=date,time "$file"
  echo "The picture is in $file"
}
