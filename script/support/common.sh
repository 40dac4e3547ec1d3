# Shared by the scripts of this folder; sourced, never run. Sets $root and goes there; $started_in is where the
# script was started.

set -euo pipefail

started_in=$PWD
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
cd "$root"

# Debian packages by what needs them. One list, read by every script that installs something.
core_packages="g++ valgrind python3 python3-clang-16 cmake ninja-build pkg-config libxml2-dev libxml2-utils libgtest-dev libgmock-dev libbenchmark-dev
  clang-format clang-tidy"
python_packages="pybind11-dev python3-dev python3-numpy python3-pytest python3-pip mypy"
desktop_packages="qt6-base-dev qtbase5-dev libgdal-dev libcurl4-openssl-dev libsimdjson-dev nlohmann-json3-dev zlib1g-dev proj-data
  fonts-dejavu-core python3 openssl parallel python3-jsonschema mandoc doxygen desktop-file-utils
  appstream librsvg2-bin $python_packages"
package_packages="debhelper dh-python dpkg-dev fakeroot lintian"

say() { printf '%s\n' "==> $*"; }
fail() {
  printf '%s\n' "error: $*" >&2
  exit 1
}

# as_started <word>...: the words of a command line, each ended by a NUL. What is no option is a path, and a relative
# one is seen from where the script was started.
as_started() {
  local word
  for word in "$@"; do
    case "$word" in
      -* | /*) printf '%s\0' "$word" ;;
      *) printf '%s\0' "$started_in/$word" ;;
    esac
  done
}

is_installed() {
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

missing_packages() {
  local package
  for package in "$@"; do
    is_installed "$package" || printf '%s ' "$package"
  done
}

# apt waits by itself for the lock of dpkg, but not for that of its package lists.
apt_update() {
  local attempt log
  for attempt in $(seq 1 60); do
    if log=$($as_root apt-get update 2>&1); then return 0; fi
    case "$log" in
      *lock*) sleep 5 ;;
      *) [ "$attempt" -lt 3 ] || break ;;
    esac
  done
  printf '%s\n' "$log" >&2
  fail "apt-get update failed"
}

# install_packages <package>...: asks for more rights only when something is missing.
install_packages() {
  command -v dpkg-query >/dev/null || fail "these scripts know Debian only; install by hand: $*"
  local missing
  missing=$(missing_packages "$@")
  [ -n "$missing" ] || return 0

  as_root=""
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null ||
      fail "these packages are missing, and neither root nor sudo is at hand to install them: $missing"
    as_root="sudo"
  fi
  say "Installing: $missing"
  apt_update
  # shellcheck disable=SC2086  # a list of words on purpose
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
    -o DPkg::Lock::Timeout=600 $missing >&2
}

packages_for() {
  case "$1" in
    core-only) printf '%s' "$core_packages" ;;
    *) printf '%s' "$core_packages $desktop_packages" ;;
  esac
}

# A compiler cache speeds up every build after the first; nothing depends on it.
compiler_cache_options() {
  command -v ccache >/dev/null || return 0
  printf '%s' "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache"
}

# A new build folder for everything compiles several sources at a time; VLCLIENTUI_UNITY=OFF in the environment hinders it,
# and one that is there stays as it is. What the sanitizers build keeps to single sources, so that both ways are taken.
unity_option() {
  [ ! -e "$root/build/$1/CMakeCache.txt" ] || return 0
  case "$1" in
    dev | core-only | release) printf '%s' "-DVLCLIENTUI_UNITY=${VLCLIENTUI_UNITY:-ON}" ;;
  esac
}

# configure <preset> [cmake option...]
configure() {
  local preset=$1 log
  shift
  export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
  [ -w "${HOME:-/nowhere}" ] || export CCACHE_DIR=$root/build/ccache
  mkdir -p "$root/build"
  log=$root/build/configure-$preset.log
  # shellcheck disable=SC2046  # a list of options on purpose
  cmake --preset "$preset" $(compiler_cache_options) $(unity_option "$preset") "$@" >"$log" 2>&1 || {
    cat "$log" >&2
    fail "the build could not be configured"
  }
}

# build <preset> [target...]: where sources that are compiled at a time clash by their names, each is compiled by itself for
# this once, and compiled_alone is "yes" then. VLCLIENTUI_UNITY=ON in the environment makes such a clash a failure.
build() {
  local preset=$1
  shift
  build_once "$preset" "$@" && return 0
  is_unity "$preset" && [ "${VLCLIENTUI_UNITY:-}" != ON ] || return 1
  say "That may be sources that cannot be compiled together (cmake/CompiledAlone.txt), so now each by itself" >&2
  configure "$preset" -DVLCLIENTUI_UNITY=OFF
  local outcome=0
  build_once "$preset" "$@" || outcome=$?
  # The folder goes on as it was: the next build finds the clash again, if it is still there.
  configure "$preset" -DVLCLIENTUI_UNITY=ON
  [ "$outcome" != 0 ] || compiled_alone=yes
  return "$outcome"
}

is_unity() {
  grep -q 'VLCLIENTUI_UNITY:BOOL=ON' "$root/build/$1/CMakeCache.txt" 2>/dev/null
}

build_once() {
  local preset=$1
  shift
  cmake --build --preset "$preset" --parallel "$(nproc)" ${1:+--target "$@"}
}
