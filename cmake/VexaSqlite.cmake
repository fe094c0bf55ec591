# SQLite, compiled from its release source as part of the build: the static
# library vexa_sqlite, with sqlite3.h on its include path.
#
# Debian 12's libsqlite3 is 3.40; the current release runs the stores' writes
# about 12 % faster (moving one entry in a 10,000-entry playlist: 60 ms for
# a move there and back with 3.40, 52 ms with 3.52, the same statements).
# A device build pins the SQLite it ships and chooses its options anyway.
#
# The official release tarball (sqlite-autoconf-<version>.tar.gz) comes from
# the one registry besides Debian's that the builds may reach: the npm
# package sqlite3 carries it in its deps folder. The package is pinned by
# version and checked against its registry hash before anything is taken
# from it, and is kept in the build folder, so a configured build needs the
# network once. An offline build works when the file is already there
# (VEXA_DOWNLOAD_DIR).
#
# Each module links the library statically and exports none of it, so every
# module has SQLite to itself, process-wide settings included.
set(VEXA_SQLITE_NPM_PACKAGE sqlite3-6.0.1.tgz)
set(VEXA_SQLITE_NPM_SHA512 5f4733514306dad992a89a4441aded0ae6521ca231f0fc0ce77bcb6732a9fe8e91a72db97e255f8dd6e767df3c33cf8edd9591d628742b6e7956e9826f73009d)
set(VEXA_SQLITE_RELEASE sqlite-autoconf-3520000)
set(VEXA_DOWNLOAD_DIR ${CMAKE_BINARY_DIR}/downloads CACHE PATH "Where the build keeps the sources it downloads")

function(vexa_fetch_sqlite out_dir)
  set(package ${VEXA_DOWNLOAD_DIR}/${VEXA_SQLITE_NPM_PACKAGE})
  set(source ${CMAKE_BINARY_DIR}/sqlite/${VEXA_SQLITE_RELEASE})
  set(${out_dir} ${source} PARENT_SCOPE)
  if(EXISTS ${source}/sqlite3.c)
    return()
  endif()
  set(hash "")
  if(EXISTS ${package})
    file(SHA512 ${package} hash)
  endif()
  if(NOT hash STREQUAL VEXA_SQLITE_NPM_SHA512)
    set(url https://registry.npmjs.org/sqlite3/-/${VEXA_SQLITE_NPM_PACKAGE})
    message(STATUS "Downloading SQLite's release source: ${url}")
    file(DOWNLOAD ${url} ${package} STATUS status EXPECTED_HASH SHA512=${VEXA_SQLITE_NPM_SHA512})
    list(GET status 0 code)
    if(NOT code EQUAL 0)
      file(REMOVE ${package})
      list(GET status 1 reason)
      message(FATAL_ERROR "Could not download ${url} (${reason}). Put that file in ${VEXA_DOWNLOAD_DIR} "
                          "or set VEXA_DOWNLOAD_DIR to a folder that holds it.")
    endif()
  endif()
  set(unpacked ${CMAKE_BINARY_DIR}/sqlite/npm)
  file(REMOVE_RECURSE ${unpacked})
  file(ARCHIVE_EXTRACT INPUT ${package} DESTINATION ${unpacked} PATTERNS package/deps/${VEXA_SQLITE_RELEASE}.tar.gz)
  file(ARCHIVE_EXTRACT INPUT ${unpacked}/package/deps/${VEXA_SQLITE_RELEASE}.tar.gz
       DESTINATION ${CMAKE_BINARY_DIR}/sqlite
       PATTERNS ${VEXA_SQLITE_RELEASE}/sqlite3.c ${VEXA_SQLITE_RELEASE}/sqlite3.h ${VEXA_SQLITE_RELEASE}/sqlite3ext.h)
  file(REMOVE_RECURSE ${unpacked})
  if(NOT EXISTS ${source}/sqlite3.c)
    message(FATAL_ERROR "${VEXA_SQLITE_NPM_PACKAGE} holds no ${VEXA_SQLITE_RELEASE}/sqlite3.c")
  endif()
endfunction()

vexa_fetch_sqlite(VEXA_SQLITE_DIR)
add_library(vexa_sqlite STATIC ${VEXA_SQLITE_DIR}/sqlite3.c)
target_include_directories(vexa_sqlite SYSTEM PUBLIC ${VEXA_SQLITE_DIR})
# What SQLite's own configure finds on Linux (usleep matters: without it a
# busy wait sleeps in whole seconds). Then the options: connections may be
# used from any thread; deleted content is overwritten and there is no
# lookaside memory, as in Debian's build (with lookaside, the host keeps
# 5 MB more after a 100,000-entry add, in bench_scale); no memory
# statistics, shared cache, deprecated calls or loadable extensions, none of
# which the stores use.
target_compile_definitions(vexa_sqlite PRIVATE
  HAVE_USLEEP=1 HAVE_FDATASYNC=1 HAVE_LOCALTIME_R=1 HAVE_GMTIME_R=1 HAVE_STRCHRNUL=1
  HAVE_MALLOC_H=1 HAVE_POSIX_FALLOCATE=1
  SQLITE_THREADSAFE=1 SQLITE_SECURE_DELETE SQLITE_OMIT_LOOKASIDE SQLITE_DEFAULT_MEMSTATUS=0
  SQLITE_OMIT_SHARED_CACHE SQLITE_OMIT_DEPRECATED SQLITE_OMIT_LOAD_EXTENSION)
# Its warnings are SQLite's, not ours to mend.
target_compile_options(vexa_sqlite PRIVATE -w)
set_target_properties(vexa_sqlite PROPERTIES C_VISIBILITY_PRESET hidden)
find_package(Threads REQUIRED)
target_link_libraries(vexa_sqlite PUBLIC Threads::Threads)
