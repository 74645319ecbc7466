#!/usr/bin/env bash
# The comparison of exports notices a missing and a surplus name.
# Usage: compare_exports_test.sh LIBRARY LIST SCRATCH READER
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/expect.sh"
library=$1 list=$2 scratch=$3 reader=$4
compare=$(dirname "${BASH_SOURCE[0]}")/compare_exports.sh
rm -rf "$scratch"
mkdir -p "$scratch"

first=$(head -n 1 "$list")
sed 1d "$list" >"$scratch/shorter.txt"
expect_status 1 "$compare" "$library" "$scratch/shorter.txt" "$reader"
expect_line "  exported, but not published: $first"
expect_no_line "not exported, but published"

{ cat "$list"; echo "no_such_function(int)"; } >"$scratch/longer.txt"
expect_status 1 "$compare" "$library" "$scratch/longer.txt" "$reader"
expect_line "  not exported, but published: no_such_function(int)"
expect_no_line "exported, but not published"

finish_expectations
