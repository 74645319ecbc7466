#!/usr/bin/env bash
# A file of an optimised build is hardened: relocations read-only and bound at start, no executable stack, stack
# protector, checked C library calls where it makes any, and branch targets marked for control-flow protection.
# Usage: check_hardening.sh FILE READELF OBJDUMP [FORTIFIED]
#   FORTIFIED  the file makes calls that the C library can check
set -euo pipefail
file=$1 readelf=$2 objdump=$3 fortified=${4:-}

wrong=0
complain() {
  echo "$file: $*"
  wrong=1
}

segments=$("$readelf" -lW "$file")
grep -q GNU_RELRO <<<"$segments" || complain "relocations stay writable"
stack=$(grep GNU_STACK <<<"$segments") || complain "says nothing of its stack"
[[ $stack != *RWE* ]] || complain "executable stack"

dynamic=$("$readelf" -dW "$file")
grep -qE 'BIND_NOW|FLAGS_1.*NOW' <<<"$dynamic" || complain "symbols are bound late, where they can be overwritten"

symbols=$("$readelf" --dyn-syms -W "$file")
grep -q __stack_chk_fail <<<"$symbols" || complain "no stack protector"
if [[ $fortified ]]; then
  grep -qE '__[a-z]+_chk' <<<"$symbols" || complain "no checked calls of the C library"
fi

# Every function that others can call starts with a branch target.
if "$readelf" -hW "$file" | grep -q 'X86-64'; then
  code=$("$objdump" -d --no-show-raw-insn "$file")
  functions=$(grep -cE '^[0-9a-f]+ <(_Z|im_|mvt_|SubCanny)[^@+]*>:$' <<<"$code" || true)
  unmarked=$(awk '/^[0-9a-f]+ <(_Z|im_|mvt_|SubCanny)[^@+]*>:$/ { name = $2; getline; if ($0 !~ /endbr64/) print name }' \
    <<<"$code" | grep -vE '\.(cold|part|isra|constprop)' || true)
  ((functions > 0)) || complain "no function found"
  called=$("$readelf" --dyn-syms -W "$file" | awk '$4 == "FUNC" && $7 != "UND" { sub(/@.*/, "", $8); print $8 }')
  while IFS= read -r name; do
    [[ $unmarked != *"<$name>:"* ]] || complain "$name has no mark for control-flow protection"
  done <<<"$called"
fi

((wrong)) || echo "$file is hardened"
exit "$wrong"
