#!/usr/bin/env bash
# The libraries as static ones, from a build of their own: installs them, and builds and runs hosts against them. As no
# build type is given, it is Release. From the environment, beside what installed_hosts.sh takes:
#   SOURCE  the source tree
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/installed_hosts.sh"
rm -rf "$SCRATCH"
prefix=$SCRATCH/installed

# Release hosts optimise for themselves; here it would only take time.
build=$SCRATCH/build
"$CMAKE" -S "$SOURCE" -B "$build" -G "$GENERATOR" -DBUILD_SHARED_LIBS=OFF \
  -DORVANDEL_BUILD_TOOL=OFF -DORVANDEL_BUILD_EXAMPLES=OFF -DCMAKE_INSTALL_LIBDIR="$LIBDIR" \
  -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_FLAGS_RELEASE=-O0 \
  -DCMAKE_UNITY_BUILD=ON >/dev/null
grep -qx 'CMAKE_BUILD_TYPE:STRING=Release' "$build/CMakeCache.txt" || { echo "the build type is not Release"; exit 1; }
"$CMAKE" --build "$build" --parallel 2 >/dev/null
"$CMAKE" --install "$build" --prefix "$prefix" >/dev/null

shared=$(find "$prefix" -name '*.so*')
[[ -z $shared ]] || { echo "shared libraries in a static build: $shared"; exit 1; }
check_relocatable "$build"
run_cmake_host
run_pkg_config_host static

# Nothing of Orvandel is left to load.
needed=$("$OBJDUMP" -p "$SCRATCH/find_pattern" | awk '$1 == "NEEDED" { print $2 }')
[[ -n $needed ]] || { echo "$OBJDUMP lists no library that the host needs"; exit 1; }
if grep -E 'orvandel|imgutil|mvtools' <<<"$needed"; then
  echo "the host still loads these"
  exit 1
fi
