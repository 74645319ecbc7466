#!/usr/bin/env bash
# Installs into a scratch prefix, moves that elsewhere, and builds and runs hosts against it: once as a CMake project,
# once with pkg-config where that is. From the environment, as tests/package/CMakeLists.txt sets it:
#   BUILD VERSION LIBDIR BINDIR HAS_TOOL  what is installed
#   SCRATCH                               a folder of this test's own
#   CMAKE GENERATOR PKG_CONFIG CC CXX
#   TOOLCHAIN EMULATOR EXE                for programs of another system: CMake's toolchain file, the command that runs
#                                         them, their suffix
# shellcheck disable=SC2153
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

# Hosts must find the libraries by what was installed, not by what this shell was given.
unset LD_LIBRARY_PATH CMAKE_PREFIX_PATH PKG_CONFIG_PATH
rm -rf "$SCRATCH"
mkdir -p "$SCRATCH"

read -ra emulator <<<"$EMULATOR"
run() { "${emulator[@]}" "$1$EXE" "${@:2}"; }

install_and_move() {
  "$CMAKE" --install "$BUILD" --prefix "$SCRATCH/first place" >/dev/null
  prefix="$SCRATCH/moved"
  mv "$SCRATCH/first place" "$prefix"
}

# Installed text files must not lead back to where things were built or first installed.
check_relocatable() {
  if grep -rIlE "first place|$BUILD" "$prefix"; then
    echo "these installed files name the folders they were made in"
    return 1
  fi
}

run_cmake_host() {
  echo "== find_package"
  local build=$SCRATCH/cmake-host cross=()
  [[ -z $TOOLCHAIN ]] || cross=(-DCMAKE_TOOLCHAIN_FILE="$TOOLCHAIN" -DCMAKE_FIND_ROOT_PATH="$prefix")
  "$CMAKE" -S "$here/host" -B "$build" -G "$GENERATOR" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" \
    -DORVANDEL_EXPECTED_VERSION="$VERSION" "${cross[@]}" >/dev/null
  "$CMAKE" --build "$build"
  run "$build/find_pattern"
  run "$build/edge_tables"
  [[ $EXE != .exe ]] || run "$build/load_library"
}

run_pkg_config_host() {
  echo "== pkg-config"
  if [[ -z $PKG_CONFIG ]]; then
    echo "not for this system"
    return
  fi
  export PKG_CONFIG_PATH=$prefix/$LIBDIR/pkgconfig
  "$PKG_CONFIG" --exact-version="$VERSION" orvandel
  local cflags libs rpath=-Wl,-rpath,$prefix/$LIBDIR
  # xargs takes the quoting away that pkg-config gives to blanks.
  mapfile -t cflags < <("$PKG_CONFIG" --cflags orvandel | xargs -n 1)
  mapfile -t libs < <("$PKG_CONFIG" --libs orvandel | xargs -n 1)
  "$CXX" -std=c++20 "${cflags[@]}" "$here/host/find_pattern.cpp" -o "$SCRATCH/find_pattern" \
    "${libs[@]}" "$rpath"
  "$CC" "$here/host/edge_tables.c" -o "$SCRATCH/edge_tables" "${libs[@]}" "$rpath"
  "$SCRATCH/find_pattern"
  "$SCRATCH/edge_tables"
}

# Only the installed headers are on the path of the compilers above; none of those for the project's own use is there.
check_headers() {
  local private
  for private in contours/point_arrays.h src/contours/point_arrays.h classic/image_ptr.h; do
    [[ ! -e $prefix/include/orvandel/$private ]] || { echo "$private is installed"; return 1; }
  done
}

run_tool() {
  echo "== tool"
  if [[ $HAS_TOOL != ON ]]; then
    echo "not built"
    return
  fi
  local version
  version=$(run "$prefix/$BINDIR/orvandel" --version)
  echo "$version"
  [[ $version == *"$VERSION"* ]]
}

install_and_move
check_relocatable
check_headers
run_cmake_host
run_pkg_config_host
run_tool
