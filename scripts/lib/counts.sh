# shellcheck shell=bash
# Sums what ctest reports. Sourced.

num_passed=0
num_failed=0

add_counts() {
  num_passed=$((num_passed + $1))
  num_failed=$((num_failed + $2))
}

# count_tests < OUTPUT: prints "PASSED FAILED", from the summary line that ctest ends with. Tests that skipped
# themselves are among ctest's passed ones; here they are in neither number. Output without a summary (the build
# broke, ctest was killed) counts as one failure.
count_tests() {
  local line summary="" skipped=0
  local summary_line='^[0-9]+% tests passed, ([0-9]+) tests? failed out of ([0-9]+)$'
  local skipped_line='^[[:space:]]+[0-9]+ - .* \(Skipped\)$'
  while IFS= read -r line; do
    if [[ $line =~ $summary_line ]]; then
      summary="${BASH_REMATCH[1]} ${BASH_REMATCH[2]}"
      skipped=0
    elif [[ $line =~ $skipped_line ]]; then
      skipped=$((skipped + 1))
    fi
  done
  if [[ -z $summary ]]; then
    echo "0 1"
    return
  fi
  local failed=${summary% *} total=${summary#* }
  echo "$((total - failed - skipped)) $failed"
}

# add_test_run STATUS < OUTPUT: adds a ctest run that ended with STATUS. A bad status without a failed test (no
# tests, an error of ctest's own) is a failure too.
add_test_run() {
  local status=$1 passed failed
  read -r passed failed < <(count_tests)
  if ((status != 0 && failed == 0)); then failed=1; fi
  add_counts "$passed" "$failed"
}

# add_step STATUS: adds a step that is no test run, as one test.
add_step() {
  if (($1 == 0)); then add_counts 1 0; else add_counts 0 1; fi
}

# The last line of a CI run; its status is 0 when something passed and nothing failed.
print_totals() {
  printf '%d passed, %d failed\n' "$num_passed" "$num_failed"
  ((num_failed == 0 && num_passed > 0))
}
