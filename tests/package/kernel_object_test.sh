#!/usr/bin/env bash
# The check of kernel objects takes a good one, and notices each kind of bad one.
# Usage: kernel_object_test.sh SCRATCH CXX NM OBJDUMP
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh"
scratch=$1 cxx=$2 nm=$3 objdump=$4
check=$(dirname "${BASH_SOURCE[0]}")/check_kernel_object.sh
rm -rf "$scratch"
mkdir -p "$scratch"

# check_source STATUS LEVEL OPTION...: of an object made of the source on stdin.
check_source() {
  "$cxx" -O3 -w "${@:3}" -x c++ -c - -o "$scratch/kernels.o"
  expect_status "$1" "$check" "$scratch/kernels.o" "$2" "$nm" "$objdump"
}

add='namespace { void Add(const float* __restrict a, float* __restrict b, int n) { for (int i = 0; i < n; ++i) b[i] += a[i]; } }'
copy='namespace { void Add(const float* __restrict a, float* __restrict b, int n) { for (int i = 0; i < n; ++i) b[i] = a[i]; } }'
divide='namespace orvandel { namespace { void Divide(float* a, int n) { for (int i = 1; i < n; ++i) a[i] = a[i - 1] / a[i]; } } }'
table='void (*kTable)(const float*, float*, int) = Add;'
in_avx2="namespace orvandel::simd_avx2 { $table }"

check_source 0 avx2 -mavx2 <<<"$add $in_avx2"
check_source 0 avx512 -mavx512f -mprefer-vector-width=512 <<<"$add namespace orvandel::simd_avx512 { $table }"
check_source 0 baseline <<<"$add namespace orvandel::simd_baseline { $table }"

# What is exported beside the tables of the level: an inline function, which is weak; another function; another level's
# table.
check_source 1 avx2 -mavx2 <<<"$add inline void Halve(float* x) { *x /= 2; }
  namespace orvandel::simd_avx2 { $table void (*kHalve)(float*) = Halve; }"
expect_line "Halve(float*)"
check_source 1 avx2 -mavx2 <<<"$add $in_avx2 void Halve(float* x) { *x /= 2; }"
expect_line "Halve(float*)"
check_source 1 avx512 -mavx512f -mprefer-vector-width=512 <<<"$add $in_avx2"
expect_line "orvandel::simd_avx2::kTable"

# Loops on single numbers, on narrower registers, and loops that only move; one bad loop beside a good one.
check_source 1 avx2 -mavx2 -fno-tree-vectorize <<<"$add $in_avx2"
expect_line "no packed arithmetic on %ymm"
check_source 1 avx2 <<<"$add $in_avx2"
expect_line "no packed arithmetic on %ymm"
check_source 1 avx2 -mavx2 <<<"$copy $in_avx2"
expect_line "no packed arithmetic on %ymm"
check_source 1 avx2 -mavx2 <<<"$add $divide namespace orvandel::simd_avx2 { $table void (*kDivide)(float*, int) = orvandel::Divide; }"
expect_line "loops without packed arithmetic on %ymm: orvandel::(anonymous namespace)::Divide(float*, int)"

# A listed function is left out, under its own kernels' name and level alone, and not what is called similarly.
cp "$check" "$scratch"
printf '# kernels\nkernels baseline,avx2 Divide one divides by the other\nkernels avx2 Div no such function\n' >"$scratch/narrow_loops.txt"
check=$scratch/check_kernel_object.sh
both="$add $divide namespace orvandel::simd_avx2 { $table void (*kDivide)(float*, int) = orvandel::Divide; }"
"$cxx" -O3 -w -mavx2 -x c++ -c - -o "$scratch/kernels_avx2.cpp.o" <<<"$both"
"$cxx" -O3 -w -mavx2 -x c++ -c - -o "$scratch/others_avx2.cpp.o" <<<"$both"
expect_status 0 "$check" "$scratch/kernels_avx2.cpp.o" avx2 "$nm" "$objdump"
expect_status 1 "$check" "$scratch/others_avx2.cpp.o" avx2 "$nm" "$objdump"
printf 'kernels avx2 Div no such function\nkernels avx512 Divide another level\n' >"$scratch/narrow_loops.txt"
expect_status 1 "$check" "$scratch/kernels_avx2.cpp.o" avx2 "$nm" "$objdump"

finish_expectations
