# Shared by the scripts: install what is missing, then build.
# Sourced, not run.

VEXA_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
VEXA_BUILD="${VEXA_BUILD:-$VEXA_ROOT/build}"

VEXA_PACKAGES=(
  g++ cmake make pkg-config
  ca-certificates  # the first configure fetches SQLite's source over HTTPS
  qtbase5-dev qttools5-dev qttools5-dev-tools
  liblog4cplus-dev libmicrohttpd-dev libtag1-dev
  libgtest-dev libgmock-dev libbenchmark-dev clang libclang-rt-14-dev
  libgstreamer1.0-dev
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good glib-networking
  gstreamer1.0-alsa gstreamer1.0-pulseaudio
)

vexa_install_packages() {
  vexa_install_missing "${VEXA_PACKAGES[@]}"
}

# The browser tests' tools: node with npm, and chromium. Looked for as
# commands, not packages: a node that brings its own npm stays as it is.
# The package test's: curl, and what packaging needs.
vexa_install_test_tools() {
  local missing=()
  command -v node >/dev/null || missing+=(nodejs)
  command -v npm >/dev/null || missing+=(npm)
  command -v chromium >/dev/null || missing+=(chromium)
  command -v curl >/dev/null || missing+=(curl)
  vexa_apt_install "${missing[@]}"
  vexa_install_package_tools
}

# What CPack's Debian packages need: dpkg-shlibdeps (dpkg-dev) and file.
vexa_install_package_tools() {
  vexa_install_missing dpkg-dev file
}

# Installs those of the packages given (name or name:arch) that are not installed.
vexa_install_missing() {
  local missing=()
  local p
  for p in "$@"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
      missing+=("$p")
    fi
  done
  vexa_apt_install "${missing[@]}"
}

# Installs the packages given, or stops with one line saying what is missing
# and why: a package the archive does not have (or could not be reached
# for), one whose install would remove another (two architectures of a
# package that cannot be installed side by side), or a failed install.
vexa_apt_install() {
  [ $# -eq 0 ] && return 0
  echo "Installing: $*" >&2
  local sudo=() log unknown=() removed p
  [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  log="$(mktemp)"
  if ! "${sudo[@]}" apt-get update -qq >"$log" 2>&1; then
    echo "Missing: $* (apt-get update failed, Debian's package archive unreachable: $(grep -m1 '^[EW]:' "$log"))" >&2
    return 1
  fi
  for p in "$@"; do
    [[ "$(apt-cache policy "$p" 2>/dev/null)" == *"Candidate: "[^\(]* ]] || unknown+=("$p")
  done
  if [ ${#unknown[@]} -gt 0 ]; then
    echo "Missing: ${unknown[*]} (not in Debian's package archive)" >&2
    return 1
  fi
  removed="$(apt-get install -s -qq --no-install-recommends "$@" 2>/dev/null | sed -n 's/^Remv \([^ ]*\).*/\1/p' | tr '\n' ' ' || true)"
  if [ -n "$removed" ]; then
    echo "Missing: $* (installing them would remove ${removed% }; stopping)" >&2
    return 1
  fi
  if ! DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "$@" >"$log" 2>&1; then
    echo "Missing: $* (apt-get install failed: $(grep -m1 '^E:' "$log"))" >&2
    return 1
  fi
  rm -f "$log"
}

# Configures (once) and builds into $VEXA_BUILD; arguments go to the first configure.
vexa_build() {
  if [ ! -f "$VEXA_BUILD/CMakeCache.txt" ]; then
    cmake -S "$VEXA_ROOT" -B "$VEXA_BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
  fi
  # Quiet when all is well; the end of the log when the build fails.
  if ! cmake --build "$VEXA_BUILD" -j "$(nproc)" >"$VEXA_BUILD/build.log" 2>&1; then
    tail -n 60 "$VEXA_BUILD/build.log" >&2
    echo "Build failed; full log: $VEXA_BUILD/build.log" >&2
    return 1
  fi
}
