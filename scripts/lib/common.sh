# Shared by scripts/run and scripts/test: install what is missing, then build.
# Sourced, not run.

VEXA_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
VEXA_BUILD="${VEXA_BUILD:-$VEXA_ROOT/build}"

VEXA_PACKAGES=(
  g++ cmake make pkg-config
  qtbase5-dev qttools5-dev qttools5-dev-tools
  libsqlite3-dev liblog4cplus-dev libmicrohttpd-dev libtag1-dev
  libgtest-dev libgmock-dev libbenchmark-dev clang libclang-rt-14-dev
  libgstreamer1.0-dev
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good glib-networking
  gstreamer1.0-alsa gstreamer1.0-pulseaudio
)

vexa_install_packages() {
  local missing=()
  local p
  for p in "${VEXA_PACKAGES[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
      missing+=("$p")
    fi
  done
  vexa_apt_install "${missing[@]}"
}

# The browser tests' tools: node with npm, and chromium. Looked for as
# commands, not packages: a node that brings its own npm stays as it is.
vexa_install_test_tools() {
  local missing=()
  command -v node >/dev/null || missing+=(nodejs)
  command -v npm >/dev/null || missing+=(npm)
  command -v chromium >/dev/null || missing+=(chromium)
  vexa_apt_install "${missing[@]}"
}

vexa_apt_install() {
  [ $# -eq 0 ] && return 0
  echo "Installing: $*" >&2
  local sudo=()
  [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  "${sudo[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "$@" >/dev/null
}

vexa_build() {
  if [ ! -f "$VEXA_BUILD/CMakeCache.txt" ]; then
    cmake -S "$VEXA_ROOT" -B "$VEXA_BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  fi
  # Quiet when all is well; the end of the log when the build fails.
  if ! cmake --build "$VEXA_BUILD" -j "$(nproc)" >"$VEXA_BUILD/build.log" 2>&1; then
    tail -n 60 "$VEXA_BUILD/build.log" >&2
    echo "Build failed; full log: $VEXA_BUILD/build.log" >&2
    return 1
  fi
}
