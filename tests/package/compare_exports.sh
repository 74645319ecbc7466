#!/usr/bin/env bash
# Fails when a shared library exports anything else than a list names. The list is written as C++ declares the names; a
# name that is in it without parameters is exported undecorated.
# Usage: compare_exports.sh LIBRARY LIST READER
#   READER  nm; for a DLL objdump, beside whose path there is a c++filt of the same prefix
set -euo pipefail
export LC_ALL=C
library=$1 list=$2 reader=$3

# Constructors and destructors come in several variants that are written alike.
case $library in
  *.dll)
    # A table of "[ordinal] name". The names of types that their typeinfo leads to are in every program that has the
    # headers, never imported.
    exported=$("$reader" -p "$library" | sed -n '/^\[Ordinal\/Name Pointer\] Table$/,/^$/p' |
      sed -nE 's/^[[:space:]]+\[ *[0-9]+\] //p' | "${reader%objdump}c++filt" | sort -u)
    published=$(grep -v '^typeinfo name for ' "$list" | sort -u)
    ;;
  *)
    # Lines are "address kind name".
    exported=$("$reader" --dynamic --defined-only --demangle "$library" | sed -E 's/^[0-9a-f]* +[A-Za-z] //' |
      sort -u)
    published=$(sort -u "$list")
    ;;
esac
missing=$(comm -23 <(printf '%s\n' "$published") <(printf '%s\n' "$exported"))
surplus=$(comm -13 <(printf '%s\n' "$published") <(printf '%s\n' "$exported"))

if [[ -z $missing && -z $surplus ]]; then
  echo "$(basename "$library") exports the $(wc -l <<<"$published") names of $(basename "$list")"
  exit 0
fi
echo "$(basename "$library") differs from $(basename "$list"):"
[[ -z $missing ]] || printf '  not exported, but published: %s\n' "${missing//$'\n'/$'\n  not exported, but published: '}"
[[ -z $surplus ]] || printf '  exported, but not published: %s\n' "${surplus//$'\n'/$'\n  exported, but not published: '}"
exit 1
