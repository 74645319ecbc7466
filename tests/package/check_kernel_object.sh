#!/usr/bin/env bash
# An object file of kernels, compiled for one level of vector instructions:
#   - exports the tables of its level and nothing else: the linker keeps one copy of an inline function, and may keep the
#     one that a plain processor cannot run;
#   - works on the level's registers: every function that loops, and at least one, has packed arithmetic there (moves and
#     single numbers do not count). Functions that loop otherwise, and why, are listed in narrow_loops.txt.
# Usage: check_kernel_object.sh OBJECT LEVEL NM OBJDUMP
#   LEVEL  baseline, avx2 or avx512
set -euo pipefail
export LC_ALL=C
object=$1 level=$2 nm=$3 objdump=$4

case $level in
  baseline) register=xmm ;;
  avx2) register=ymm ;;
  avx512) register=zmm ;;
  *) echo "no level $level"; exit 1 ;;
esac

# Lines are "address kind name". Windows' objects hold pointers to data of others, under names that begin with .refptr.
exported=$("$nm" --extern-only --defined-only --demangle "$object" | sed -E 's/^[0-9a-f]* +[A-Za-z] //' |
  grep -v '^\.refptr\.' || true)
surplus=$(grep -vE "^orvandel::([a-z_]+::)*simd_$level::k[A-Z][A-Za-z0-9]*\$" <<<"$exported" || true)
if [[ -n $surplus ]]; then
  printf '%s exports more than the tables of orvandel::simd_%s:\n%s\n' "$(basename "$object")" "$level" "$surplus"
  exit 1
fi

# Lines are "kernels level,level function reason"; the object is called <kernels>_<level>.cpp.o.
kernels=$(basename "$object" | sed "s/_$level\..*//")
exempt=$(awk -v kernels="$kernels" -v level="$level" '
  $1 == kernels && index("," $2 ",", "," level ",") { print $3 }' "$(dirname "${BASH_SOURCE[0]}")/narrow_loops.txt")

# A jump backwards within a function is a loop. Addresses are hexadecimal, with 0x before a jump's where LLVM's objdump
# prints them, and equally wide ones compare as text.
"$objdump" --disassemble --no-show-raw-insn --demangle "$object" | awk -v register="%$register" -v exempt="$exempt" '
  function wide(address) { return sprintf("%16s", address) }
  # Function names are listed alone; objdump prints them between "::" and "(" or "<".
  function is_exempt(name,  i) {
    for (i = 1; i <= num_exempt; ++i)
      if (exempted[i] == "*" || index(name, "::" exempted[i] "(") || index(name, "::" exempted[i] "<")) return 1
    return 0
  }
  BEGIN { num_exempt = split(exempt, exempted) }
  /^[0-9a-f]+ <.*>:$/ {
    name = $0
    sub(/^[0-9a-f]+ </, "", name)
    sub(/>:$/, "", name)
    next
  }
  /^ +[0-9a-f]+:/ {
    at = $1
    sub(/:$/, "", at)
    target = $3
    sub(/^0x/, "", target)
    if ($2 ~ /^j/ && target ~ /^[0-9a-f]+$/ && wide(target) <= wide(at)) loops[name] = 1
    packed = $2 ~ /^v?(add|sub|mul|div|sqrt|min|max|cmp[a-z]*)p[sd]$/ ||
             $2 ~ /^v?p(add|sub|mul|madd|min|max|avg|cmp|abs|sra|srl|sll|sad)/
    if (packed && index($0, register)) arithmetic[name]++
  }
  END {
    for (name in loops) {
      num_loops++
      if (name in arithmetic || is_exempt(name)) continue
      print "loops without packed arithmetic on " register ": " name
      wrong = 1
    }
    for (name in arithmetic) num_arithmetic++
    if (!num_arithmetic && !is_exempt("")) {
      print "no packed arithmetic on " register
      wrong = 1
    }
    if (!wrong) print num_loops + 0 " functions loop, " num_arithmetic " have packed arithmetic on " register
    exit wrong
  }'
