#!/usr/bin/env bash
# The numbers that a CI run ends with are ctest's.
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/expect.sh"
source "$here/../../scripts/lib/counts.sh"

all_passed='      Start  1: edges.SubCanny.FlatImageHasNoEdge
1/2 Test  #1: edges.SubCanny.FlatImageHasNoEdge .....   Passed    0.01 sec
2/2 Test  #2: 100% tests passed, 0 tests failed out of 9 ..   Passed    0.01 sec

100% tests passed, 0 tests failed out of 212

Total Test time (real) =   4.20 sec'

some_failed='99% tests passed, 2 tests failed out of 150

Total Test time (real) =   4.20 sec

The following tests FAILED:
	 12 - lines.Join.TwoPieces (Failed)
	149 - package.install (Not Run)
Errors while running CTest'

some_skipped='90% tests passed, 1 tests failed out of 10

Total Test time (real) =   0.30 sec

The following tests did not run:
	  3 - platform.FullDisk.LeavesTheOlderFile (Skipped)
	 11 - platform.Old (Disabled)

The following tests FAILED:
	  5 - lines.Join.TwoPieces (Failed)'

expect_equal "all passed" "212 0" "$(count_tests <<<"$all_passed")"
expect_equal "failed ones are subtracted from the total" "148 2" "$(count_tests <<<"$some_failed")"
expect_equal "a skipped test is neither" "8 1" "$(count_tests <<<"$some_skipped")"
expect_equal "the build broke" "0 1" "$(count_tests <<<"ninja: build stopped: subcommand failed.")"
expect_equal "no output" "0 1" "$(count_tests </dev/null)"
expect_equal "only the last run counts" "148 2" "$(printf '%s\n%s\n' "$some_skipped" "$some_failed" | count_tests)"

add_test_run 0 <<<"$all_passed"
expect_equal "after a good run" "212 0" "$num_passed $num_failed"
expect_status 0 print_totals
expect_equal "totals" "212 passed, 0 failed" "$output"

add_test_run 8 <<<"$some_failed"
expect_equal "after a bad run" "360 2" "$num_passed $num_failed"
add_test_run 1 <<<"$all_passed"
expect_equal "a bad status without a failed test" "572 3" "$num_passed $num_failed"
add_step 0
add_step 1
expect_equal "after two steps" "573 4" "$num_passed $num_failed"
expect_status 1 print_totals
expect_equal "totals" "573 passed, 4 failed" "$output"

num_passed=0
num_failed=0
expect_status 1 print_totals
expect_equal "nothing ran" "0 passed, 0 failed" "$output"

finish_expectations
