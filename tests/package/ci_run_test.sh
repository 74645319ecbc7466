#!/usr/bin/env bash
# A CI run calls every check, every preset, the Windows build, the fuzzing and the demo, survives their failures and ends with the
# sum. The scripts that it calls are stand-ins here.
# Usage: ci_run_test.sh SCRATCH
# shellcheck disable=SC2016 # bodies of the stand-ins
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/expect.sh"
scratch=$1
rm -rf "$scratch"
mkdir -p "$scratch/.ci" "$scratch/scripts"
cp "$here/../../.ci/run" "$scratch/.ci"
cp -r "$here/../../scripts/lib" "$scratch/scripts"

stand_in() {  # stand_in NAME, with its body on stdin
  { echo '#!/usr/bin/env bash'; echo "echo \"$1 \$*\" >>'$scratch/calls'"; cat; } >"$scratch/scripts/$1"
  chmod +x "$scratch/scripts/$1"
}
last_line() { tail -n 1 <<<"$output"; }

stand_in check <<<'exit 0'
stand_in fuzz <<<'exit 0'
stand_in demo <<<'exit 0'
stand_in test <<<'echo "100% tests passed, 0 tests failed out of 100"'
stand_in windows <<<'echo "100% tests passed, 0 tests failed out of 50"'
expect_status 0 "$scratch/.ci/run"
# 6 checks, 3 presets of 100 tests, 50 tests for Windows, the fuzzing, the demo
expect_equal "all good" "358 passed, 0 failed" "$(last_line)"
expect_equal "what was called" \
  "check format;check rooms;check dependencies;check shell;check bench;check tidy;test dev;test asan-ubsan;test tsan;windows ;fuzz 60;demo ;" \
  "$(tr '\n' ';' <"$scratch/calls")"

stand_in test <<'BODY'
case $1 in
  asan-ubsan) echo "no compiler"; exit 1 ;;
  tsan) echo "99% tests passed, 1 tests failed out of 100"; exit 8 ;;
  *) echo "100% tests passed, 0 tests failed out of 100" ;;
esac
BODY
stand_in windows <<'BODY'
echo "100% tests passed, 0 tests failed out of 50"
echo "no archive"
exit 1
BODY
stand_in check <<<'[[ $1 != tidy ]]'
stand_in fuzz <<<'exit 1'
expect_status 1 "$scratch/.ci/run"
# 5 checks, 100 + 0 + 99 + 50 tests, the demo; tidy, asan-ubsan, one test of tsan, what follows those for Windows, the fuzzing
expect_equal "some bad" "255 passed, 5 failed" "$(last_line)"

stand_in demo <<<'kill -TERM $PPID'
expect_status 1 "$scratch/.ci/run"
expect_equal "stopped from outside" "254 passed, 6 failed" "$(last_line)"

stand_in demo <<<'cat; exit 0'
stand_in test <<<'echo "100% tests passed, 0 tests failed out of 100"'
stand_in windows <<<'echo "100% tests passed, 0 tests failed out of 50"'
stand_in check <<<'exit 0'
stand_in fuzz <<<'exit 0'
output=$(sleep 5 | "$scratch/.ci/run")
expect_equal "does not read what stands on standard input" "358 passed, 0 failed" "$(last_line)"

finish_expectations
