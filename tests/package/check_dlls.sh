#!/usr/bin/env bash
# A DLL or program for Windows loads nothing but the DLLs that are named, and those that every Windows has: the runtime
# of the compiler is linked in. It may be loaded anywhere in memory, and its data is not run.
# Usage: check_dlls.sh FILE OBJDUMP [ALLOWED DLL...]
set -euo pipefail
file=$1 objdump=$2
allowed=(KERNEL32.dll ADVAPI32.dll msvcrt.dll "${@:3}")

headers=$("$objdump" -p "$file")
mapfile -t needed < <(awk '$1 == "DLL" && $2 == "Name:" { print $3 }' <<<"$headers")
wrong=0
if ((${#needed[@]} == 0)); then
  echo "$objdump lists no DLL that $file needs"
  wrong=1
fi
for name in "${needed[@]}"; do
  printf '%s\n' "${allowed[@]}" | grep -qxF -- "$name" && continue
  echo "needs $name"
  wrong=1
done
for flag in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT; do
  grep -qw "$flag" <<<"$headers" && continue
  echo "is not marked $flag"
  wrong=1
done
((wrong)) || echo "$(basename "$file") needs ${needed[*]}"
exit "$wrong"
