# shellcheck shell=bash
# Expectations for tests of scripts. Sourced; a test ends with finish_expectations.

num_checked=0
num_wrong=0
output=""

expect_equal() {  # expect_equal WHAT EXPECTED ACTUAL
  num_checked=$((num_checked + 1))
  if [[ $2 != "$3" ]]; then
    printf '%s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
    num_wrong=$((num_wrong + 1))
  fi
}

# expect_status STATUS COMMAND...: runs the command and keeps what it prints, on both streams, in `output`.
expect_status() {
  local expected=$1 status=0
  shift
  output=$("$@" 2>&1) || status=$?
  expect_equal "status of $*, which printed:"$'\n'"$output" "$expected" "$status"
}

expect_line() {  # expect_line LINE: among those of `output`
  num_checked=$((num_checked + 1))
  if ! grep -qxF -- "$1" <<<"$output"; then
    printf 'no line "%s" in:\n%s\n' "$1" "$output"
    num_wrong=$((num_wrong + 1))
  fi
}

expect_no_line() {  # expect_no_line TEXT: no line of `output` begins with it, blanks aside
  num_checked=$((num_checked + 1))
  if grep -qE -- "^ *$1" <<<"$output"; then
    printf 'a line begins with "%s" in:\n%s\n' "$1" "$output"
    num_wrong=$((num_wrong + 1))
  fi
}

finish_expectations() {
  echo "$num_checked expectations, $num_wrong not met"
  ((num_wrong == 0 && num_checked > 0))
  exit
}
