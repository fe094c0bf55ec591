# Cross build for 64-bit Arm with Debian's cross compiler and the arm64
# packages of the libraries installed beside the native ones (multiarch).
# Qt's code generators (moc, rcc, lrelease) stay the native ones: the arm64
# Qt config files name them by their arch-independent path.
# Libraries are found in the arm64 multiarch folders (CMAKE_LIBRARY_ARCHITECTURE).
# The tests, and the listing of their cases at build time, run under
# qemu-aarch64 (no binfmt needed), which finds the arm64 loader and
# libraries in their multiarch places of /.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
# GCC unless a compiler is given (the fuzz targets are built by clang, with
# CMAKE_CXX_COMPILER_TARGET naming the triple).
if(NOT CMAKE_C_COMPILER)
  set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
endif()
if(NOT CMAKE_CXX_COMPILER)
  set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)

# pkg-config answers with the arm64 .pc files only.
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)

# What the packages are for, in Debian's words.
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
