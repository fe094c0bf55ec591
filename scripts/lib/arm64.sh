# The arm64 cross build, shared by scripts/test-arm64 and scripts/package:
# Debian's cross compiler and the arm64 packages of the libraries, installed
# beside the native ones (multiarch), with the native build tools and Qt's
# code generators; qemu-user runs the arm64 programs. Sourced after
# common.sh, not run.

VEXA_ARM64_BUILD="${VEXA_ARM64_BUILD:-$VEXA_ROOT/build-arm64}"

VEXA_ARM64_PACKAGES=(
  cmake make pkg-config qtbase5-dev-tools qttools5-dev-tools
  g++-aarch64-linux-gnu qemu-user clang libclang-rt-14-dev:arm64
  qtbase5-dev:arm64 qttools5-dev:arm64
  liblog4cplus-dev:arm64 libmicrohttpd-dev:arm64 libtag1-dev:arm64
  libgtest-dev:arm64 libgmock-dev:arm64 libbenchmark-dev:arm64
  libgstreamer1.0-dev:arm64
  gstreamer1.0-plugins-base:arm64 gstreamer1.0-plugins-good:arm64 glib-networking:arm64
)

vexa_install_arm64_packages() {
  if ! dpkg --print-foreign-architectures | grep -qx arm64; then
    local sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    echo "Adding the arm64 architecture to dpkg" >&2
    "${sudo[@]}" dpkg --add-architecture arm64
  fi
  vexa_install_missing "${VEXA_ARM64_PACKAGES[@]}"
}

vexa_build_arm64() {
  VEXA_BUILD="$VEXA_ARM64_BUILD" vexa_build -DCMAKE_TOOLCHAIN_FILE="$VEXA_ROOT/cmake/Arm64Toolchain.cmake"
}
