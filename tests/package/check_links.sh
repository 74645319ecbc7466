#!/usr/bin/env bash
# A shared library loads nothing but the libraries that are named, and those of compiler and C library; and its soname
# carries the major version.
# Usage: check_links.sh LIBRARY SONAME OBJDUMP [ALLOWED LIBRARY...]
set -euo pipefail
library=$1 expected_soname=$2 objdump=$3
allowed=("libstdc++.so.*" "libm.so.*" "libgcc_s.so.*" "libc.so.*" "ld-linux*.so.*" "${@:4}")

headers=$("$objdump" -p "$library")
soname=$(awk '$1 == "SONAME" { print $2 }' <<<"$headers")
mapfile -t needed < <(awk '$1 == "NEEDED" { print $2 }' <<<"$headers")

is_allowed() {
  local pattern
  for pattern in "${allowed[@]}"; do
    # shellcheck disable=SC2053 # a pattern
    [[ $1 != $pattern ]] || return 0
  done
  return 1
}

wrong=0
if [[ $soname != "$expected_soname" ]]; then
  echo "soname is $soname, not $expected_soname"
  wrong=1
fi
if ((${#needed[@]} == 0)); then
  echo "$objdump lists no library that $library needs"
  wrong=1
fi
for name in "${needed[@]}"; do
  is_allowed "$name" && continue
  echo "needs $name"
  wrong=1
done
((wrong)) || echo "$soname needs ${needed[*]}"
exit "$wrong"
