#!/usr/bin/env bash
# Without the classic face the library holds nothing of the face, its engine and the imported libraries, installs without
# them, and loads nothing beside the system's own.
# Usage: without_classic_test.sh SOURCE SCRATCH CMAKE GENERATOR CC CXX OBJDUMP SONAME
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh"
source=$1 scratch=$2 cmake=$3 generator=$4 cc=$5 cxx=$6 objdump=$7 soname=$8
rm -rf "$scratch"

expect_status 0 "$cmake" -S "$source" -B "$scratch" -G "$generator" -DORVANDEL_CLASSIC=OFF -DCMAKE_C_COMPILER="$cc" \
  -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS_RELEASE=-O0 \
  -DCMAKE_UNITY_BUILD=ON -DCMAKE_INSTALL_LIBDIR=lib
expect_line "-- Without the classic face there are no tool, examples, benchmarks and fuzz targets: they stand on it"
expect_status 0 "$cmake" --build "$scratch"

objects=$(find "$scratch/src" -name '*.o' -o -name '*.obj')
expect_equal "the rooms below are built" "some" "$([[ $objects != *orvandel_base* || $objects != *orvandel_shape* ]] || echo some)"
expect_equal "objects of the classic face" "" \
  "$(grep -E '/(imgutil|mvtools|contours|edges|lines|verify|search)/' <<<"$objects" | grep -v /shape/ || true)"
expect_equal "imported libraries and tool" "" \
  "$(find "$scratch" -name '*imgutil*' -o -name '*mvtools*' -o -path '*/cli/*')"
expect_status 0 "$cmake" --install "$scratch" --prefix "$scratch/installed"
expect_equal "headers of the classic face" "" "$(find "$scratch/installed/include" -path '*/orvandel/classic*')"
expect_status 0 "$(dirname "${BASH_SOURCE[0]}")/check_links.sh" "$scratch/installed/lib/liborvandel.so" "$soname" "$objdump"

finish_expectations
