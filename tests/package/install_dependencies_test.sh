#!/usr/bin/env bash
# scripts/install-dependencies installs what is missing and nothing else. The package manager is a stand-in that
# writes down what it was asked.
# Usage: install_dependencies_test.sh SCRATCH
# shellcheck disable=SC2016 # bodies of the stand-ins
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/expect.sh"
script=$here/../../scripts/install-dependencies
scratch=$1
rm -rf "$scratch"
mkdir -p "$scratch/bin"
export FAKE=$scratch

stand_in() {  # stand_in COMMAND, with its body on stdin
  { echo '#!/usr/bin/env bash'; cat; } >"$scratch/bin/$1"
  chmod +x "$scratch/bin/$1"
}

# As dpkg-query -W -f FORMAT PACKAGE...: a line for each package known, status 1 when one is not.
stand_in dpkg-query <<'BODY'
status=0
for name in "${@:3}"; do grep "^$name " "$FAKE/packages" || { echo "no packages found matching $name" >&2; status=1; }; done
exit "$status"
BODY
stand_in apt-get <<'BODY'
echo "$DEBIAN_FRONTEND: apt-get $*" >>"$FAKE/calls"
echo "noise of apt-get"
[[ ! -e $FAKE/apt-fails ]]
BODY
stand_in id <<<'cat "$FAKE/uid"'
stand_in sudo <<'BODY'
[[ -e $FAKE/sudo-works ]] || { echo "sudo: a password is required" >&2; exit 1; }
[[ $1 == -n ]] || exit 1
echo "sudo $2" >>"$FAKE/calls"
"${@:2}"
BODY

# shellcheck disable=SC2317 # called through expect_status
run() { PATH=$scratch/bin:$PATH "$script" "$@"; }
calls() { if [[ -e $scratch/calls ]]; then sed 's/-o [^ ]* //' "$scratch/calls"; fi; }
reset() {  # reset UID, with the packages and their states on stdin
  rm -f "$scratch/calls" "$scratch/sudo-works" "$scratch/apt-fails"
  echo "$1" >"$scratch/uid"
  cat >"$scratch/packages"
}

reset 0 <<<'libgtest-dev installed
libmpfr-dev installed
pkgconf installed
binutils installed'
expect_status 0 run test
expect_equal "everything is there" "-- Packages for test: all installed" "$output"
expect_equal "nothing is asked of apt-get" "" "$(calls)"

# pkgconf was removed, binutils was never there.
reset 0 <<<'libgtest-dev installed
libmpfr-dev installed
pkgconf config-files'
expect_status 0 run test
expect_equal "a line a step" "-- Updating the package lists;-- Installing pkgconf binutils;" "$(tr '\n' ';' <<<"$output")"
expect_equal "updates, then installs what is missing" \
  "noninteractive: apt-get -y -q update
noninteractive: apt-get -y -q install --no-install-recommends pkgconf binutils" "$(calls)"

touch "$scratch/apt-fails"
expect_status 1 run test
expect_line "noise of apt-get"
expect_line "install-dependencies: apt-get update failed"

reset 1000 <<<'libgtest-dev installed
libmpfr-dev installed'
touch "$scratch/sudo-works"
expect_status 0 run test
expect_equal "through sudo" \
  "sudo true
sudo env
noninteractive: apt-get -y -q update
sudo env
noninteractive: apt-get -y -q install --no-install-recommends pkgconf binutils" "$(calls)"

reset 1000 <<<'libgtest-dev installed
libmpfr-dev installed'
expect_status 1 run test
expect_line "install-dependencies: these packages are missing, and installing them takes root (or sudo without a password): apt-get install pkgconf binutils"
expect_equal "without root nothing is tried" "" "$(calls)"

expect_status 1 run no-such-group
expect_status 1 run

finish_expectations
