# shellcheck shell=bash
# Builds and runs hosts against an installed Orvandel. Sourced; from the environment it takes
#   VERSION LIBDIR                 what is installed
#   SCRATCH                        a folder of the test's own
#   CMAKE GENERATOR PKG_CONFIG CC CXX
#   TOOLCHAIN EMULATOR EXE         for programs of another system: CMake's toolchain file, the command that runs them, their
#                                  suffix
# and from the test `prefix`, where it is installed.
# shellcheck disable=SC2153,SC2154

hosts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/host
strictly=(-std=c++14 -Wall -Wextra -pedantic -Werror)

# Hosts must find the libraries by what was installed, not by what this shell was given.
unset LD_LIBRARY_PATH CMAKE_PREFIX_PATH PKG_CONFIG_PATH

read -ra emulator <<<"$EMULATOR"
run() { "${emulator[@]}" "$1$EXE" "${@:2}"; }

# Installed text files must not lead back to where things were built or first installed.
check_relocatable() {  # check_relocatable FOLDER...
  local folder
  for folder in "$@"; do
    if grep -rIlF -- "$folder" "$prefix"; then
      echo "these installed files name the folder $folder, in which they were made"
      return 1
    fi
  done
}

# Every header by itself, as a host that takes no warnings and knows no more than C++14, C++17 or C99.
check_headers() {
  local header
  "$CXX" -std=c++17 "${strictly[@]:1}" -fsyntax-only -I"$prefix/include" -x c++ - <<<'#include <orvandel/orvandel.hpp>' ||
    { echo "a host cannot include orvandel.hpp"; return 1; }
  "$CC" -std=c99 "${strictly[@]:1}" -fsyntax-only -I"$prefix/include" -x c - <<<'#include <orvandel/orvandel.h>' ||
    { echo "a host in C cannot include orvandel.h"; return 1; }
  for header in "$prefix"/include/orvandel/classic/*.h; do
    "$CXX" "${strictly[@]}" -fsyntax-only -I"$prefix/include" -x c++ - \
      <<<"#include <orvandel/classic/$(basename "$header")>" || { echo "a host cannot include $header"; return 1; }
  done
}

run_cmake_host() {
  echo "== find_package"
  local build=$SCRATCH/cmake-host cross=()
  [[ -z $TOOLCHAIN ]] || cross=(-DCMAKE_TOOLCHAIN_FILE="$TOOLCHAIN" -DCMAKE_FIND_ROOT_PATH="$prefix")
  "$CMAKE" -S "$hosts" -B "$build" -G "$GENERATOR" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_FLAGS="${strictly[*]:1}" \
    -DORVANDEL_EXPECTED_VERSION="$VERSION" "${cross[@]}" >/dev/null
  "$CMAKE" --build "$build"
  run "$build/find_pattern"
  run "$build/edge_tables"
  [[ $EXE != .exe ]] || run "$build/load_library"
}

run_pkg_config_host() {  # run_pkg_config_host shared|static
  echo "== pkg-config"
  local options=()
  [[ $1 != static ]] || options=(--static)
  if [[ -z $PKG_CONFIG ]]; then
    echo "not for this system"
    return
  fi
  export PKG_CONFIG_PATH=$prefix/$LIBDIR/pkgconfig
  "$PKG_CONFIG" --exact-version="$VERSION" orvandel
  local cflags libs rpath=-Wl,-rpath,$prefix/$LIBDIR
  # xargs takes the quoting away that pkg-config gives to blanks.
  mapfile -t cflags < <("$PKG_CONFIG" "${options[@]}" --cflags orvandel | xargs -n 1)
  mapfile -t libs < <("$PKG_CONFIG" "${options[@]}" --libs orvandel | xargs -n 1)
  "$CXX" "${strictly[@]}" "${cflags[@]}" "$hosts/find_pattern.cpp" -o "$SCRATCH/find_pattern" "${libs[@]}" "$rpath"
  "$CC" "$hosts/edge_tables.c" -o "$SCRATCH/edge_tables" "${libs[@]}" "$rpath"
  "$SCRATCH/find_pattern"
  "$SCRATCH/edge_tables"
}
