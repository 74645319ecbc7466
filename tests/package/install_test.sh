#!/usr/bin/env bash
# Installs into a scratch prefix, moves that elsewhere, and builds and runs hosts against it: once as a CMake project,
# once with pkg-config where that is. From the environment, beside what installed_hosts.sh takes:
#   BUILD BINDIR HAS_TOOL  what is installed
# shellcheck disable=SC2153
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/installed_hosts.sh"
rm -rf "$SCRATCH"
mkdir -p "$SCRATCH"

install_and_move() {
  "$CMAKE" --install "$BUILD" --prefix "$SCRATCH/first place" >/dev/null
  prefix="$SCRATCH/moved"
  mv "$SCRATCH/first place" "$prefix"
}

# Only the installed headers are on the path of the compilers above; none of those for the project's own use is there.
check_private_headers() {
  local private
  for private in contours/contour_set.h src/contours/contour_set.h classic/image_ptr.h; do
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
check_relocatable "first place" "$BUILD"
check_private_headers
check_headers
run_cmake_host
run_pkg_config_host shared
run_tool
